#include <cmath>

#include "module.h"
#include "operation.h"

namespace binding {

namespace {

using Zoom = void(BITMAPINFOHEADER*, const POINT&, BITMAPINFOHEADER*, const POINT&, int, BYTE);

template <Zoom* zoom>
void defineZoom(py::module_& module, const Operation& operation) {
  define(
      module, operation,
      [](Image32 destination, Image32 source, Positive factor, POINT at, Byte reduction,
         POINT destination_at) { zoom(destination, destination_at, source, at, factor, reduction); },
      arg("destination"), arg("source"), arg("factor"), origin("at"), arg("reduction") = 0,
      origin("destination_at"));
}

using Stretch = void(BITMAPINFOHEADER*, BITMAPINFOHEADER*, const POINT&, DWORD, BYTE);

template <Stretch* stretch>
void defineStretch(py::module_& module, const Operation& operation) {
  define(
      module, operation,
      [](Image32 destination, Image32 source, double scale, POINT at, Byte reduction) {
        constexpr double unit = 32768;
        require(scale * unit >= 1 && scale * unit <= 4294967295.0,
                "the scale is a number above 0, at most 131071");
        stretch(destination, source, at, static_cast<DWORD>(std::llround(scale * unit)), reduction);
      },
      arg("destination"), arg("source"), arg("scale"), origin("at"), arg("reduction") = 0);
}

using ZoomIndexed = void(BITMAPINFOHEADER*, const POINT&, BITMAPINFOHEADER*, BITMAPINFOHEADER*, const POINT&,
                         int);

template <ZoomIndexed* zoom>
void defineIndexedZoom(py::module_& module, const Operation& operation) {
  define(
      module, operation,
      [](Image32 destination, ImageOf<8> source, Positive factor, POINT at, Mask& mask,
         POINT destination_at) {
        requireMaskOf(source, mask);
        zoom(destination, destination_at, source, mask, at, factor);
      },
      arg("destination"), arg("source"), arg("factor"), origin("at"), none("mask"), origin("destination_at"));
}

}  // namespace

void defineScaling(py::module_& module) {
  defineStretch<static_cast<Stretch*>(CDIB32::Stretch32DIB)>(
      module, {"stretch", "CDIB32::Stretch32DIB",
               "Draw a source at `scale` times its size, by the nearest pixel, as `copy_opaque` draws; `at` "
               "is scaled too."});
  defineStretch<static_cast<Stretch*>(CDIB32::Stretch32DIBMMX)>(
      module,
      {"stretch_mixed", "CDIB32::Stretch32DIBMMX",
       "Draw a source at `scale` times its size, by the nearest pixel, as `mix` draws; `at` is scaled too."});
  defineZoom<CDIB32::ZoomIn32DIB>(
      module, {"zoom_in", "CDIB32::ZoomIn32DIB",
               "Draw each pixel of a source as a square of factor x factor, as `copy_opaque` draws."});
  defineZoom<CDIB32::ZoomIn32DIBMMX>(
      module, {"zoom_in_mixed", "CDIB32::ZoomIn32DIBMMX",
               "Draw each pixel of a source as a square of factor x factor, as `mix` draws."});
  defineZoom<CDIB32::ZoomOut32DIB>(
      module, {"zoom_out", "CDIB32::ZoomOut32DIB",
               "Draw one of factor x factor pixels of a source, the top-left one, as `copy_opaque` draws."});
  defineZoom<CDIB32::ZoomOut32DIBMMX>(
      module, {"zoom_out_mixed", "CDIB32::ZoomOut32DIBMMX",
               "Draw one of factor x factor pixels of a source, the top-left one, as `mix` draws."});
  define(
      module,
      {"draw_indexed", "CDIB32::BitBlt8BitsDIB",
       "Draw the colours of an 8-bit picture where its mask is False; the destination's alpha is unchanged."},
      [](Image32 destination, ImageOf<8> source, POINT at, Mask& mask, POINT destination_at) {
        requireMaskOf(source, mask);
        CDIB32::BitBlt8BitsDIB(destination, destination_at, source, mask, at);
      },
      arg("destination"), arg("source"), origin("at"), none("mask"), origin("destination_at"));
  defineIndexedZoom<CDIB32::ZoomIn8BitsDIB>(module, {"zoom_in_indexed", "CDIB32::ZoomIn8BitsDIB",
                                                     "Draw as `draw_indexed`, placed as by `zoom_in`."});
  defineIndexedZoom<CDIB32::ZoomOut8BitsDIB>(module,
                                             {"zoom_out_indexed", "CDIB32::ZoomOut8BitsDIB",
                                              "Draw as `draw_indexed`, placed as by `zoom_out_mixed`."});
}

}  // namespace binding
