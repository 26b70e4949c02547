#include "module.h"
#include "operation.h"

namespace binding {

namespace {

using Draw = void(BITMAPINFOHEADER*, const POINT&, BITMAPINFOHEADER*, const POINT&, BYTE);

/// An operation that draws a source on a destination, with a number for its strength.
template <Draw* draw>
void defineDrawing(py::module_& module, const Operation& operation, const char* number, int fullStrength) {
  define(
      module, operation,
      [](Image32 destination, Image32 source, POINT at, Byte amount, POINT destination_at) {
        draw(destination, destination_at, source, at, amount);
      },
      arg("destination"), arg("source"), origin("at"), arg(number) = fullStrength, origin("destination_at"));
}

using Copy = void(BITMAPINFOHEADER*, const POINT&, BITMAPINFOHEADER*, const POINT&);

template <Copy* copy>
void defineCopy(py::module_& module, const Operation& operation) {
  define(
      module, operation,
      [](Image32 destination, Image32 source, POINT at, POINT destination_at) {
        copy(destination, destination_at, source, at);
      },
      arg("destination"), arg("source"), origin("at"), origin("destination_at"));
}

CPoint corner(POINT at) { return {static_cast<int>(at.x), static_cast<int>(at.y)}; }

}  // namespace

void defineCompositing(py::module_& module) {
  defineDrawing<CDIB32::CombineBlock>(module,
                                      {"composite", "CDIB32::CombineBlock",
                                       "Composite a source over a destination, exactly: straight alpha "
                                       "\"over\". Where both are transparent, the result "
                                       "is transparent black."},
                                      "reduction", 0);
  defineDrawing<CDIB32::BitBlt32DIBPlain>(module,
                                          {"composite_fast", "CDIB32::BitBlt32DIBPlain",
                                           "Composite a source over a destination in steps of 1/256."},
                                          "reduction", 0);
  defineDrawing<CDIB32::BitBlt32DIBMMX>(module,
                                        {"mix_fast", "CDIB32::BitBlt32DIBMMX",
                                         "Mix all four bytes with the source's alpha as weight, in steps of "
                                         "1/256; the alpha byte that is mixed in is the "
                                         "source's own."},
                                        "reduction", 0);
  defineDrawing<CDIB32::BitBlt32DIB>(module,
                                     {"copy_opaque", "CDIB32::BitBlt32DIB",
                                      "Copy the pixels of a source that are opaque after the reduction. "
                                      "Translucent ones change the source, not the "
                                      "destination: its channels move towards the destination's."},
                                     "reduction", 0);
  defineDrawing<CDIB32::CopyBlock>(
      module, {"copy_reduced", "CDIB32::CopyBlock", "Copy colours, and alpha less the reduction."},
      "reduction", 0);
  defineCopy<CDIB32::TransformBlock>(module, {"copy_pixels", "CDIB32::TransformBlock", "Copy whole pixels."});
  defineCopy<CDIB32::TransformAlphaChannelBlock>(
      module, {"copy_alpha", "CDIB32::TransformAlphaChannelBlock", "Copy alpha alone."});
  define(
      module,
      {"mix", "CDIB32::Mix32BitsDIBMMX, Mix32BitsDIBMMX_Mask",
       "Mix all four bytes with the source's alpha as weight, in steps of 1/32768. Coverage scales the alpha "
       "by value / "
       "255."},
      [](Image32 destination, Image32 source, POINT at, Byte transparency, Coverage& coverage,
         POINT coverage_at, POINT destination_at) {
        if (coverage.dib == nullptr) {
          CDIB32::Mix32BitsDIBMMX(destination, destination_at, source, at, transparency);
        } else {
          CDIB32::Mix32BitsDIBMMX_Mask(destination, destination_at, source, at, transparency, coverage,
                                       corner(coverage_at));
        }
      },
      arg("destination"), arg("source"), origin("at"), arg("transparency") = 0, none("coverage"),
      origin("coverage_at"), origin("destination_at"));
  define(
      module,
      {"erase", "CDIB32::Erase32BitsBlock",
       "Erase: subtract the scaled alpha of the source from the destination's. Colours are unchanged."},
      [](Image32 destination, Image32 source, POINT at, Byte strength, Coverage& coverage, POINT coverage_at,
         POINT destination_at) {
        if (coverage.dib == nullptr) {
          CDIB32::Erase32BitsBlock(destination, destination_at, source, at, strength);
        } else {
          CDIB32::Erase32BitsBlock(destination, destination_at, source, at, strength, coverage,
                                   corner(coverage_at));
        }
      },
      arg("destination"), arg("source"), origin("at"), arg("strength") = 255, none("coverage"),
      origin("coverage_at"), origin("destination_at"));
  define(
      module,
      {"composite_alpha", "CDIB32::BitBltDIBAlphaChannelPlain",
       "Composite alpha alone, onto the last byte of the destination's pixels, which have 8 to 32 bits."},
      [](AnyImage destination, Image32 source, POINT at, Byte reduction, POINT destination_at) {
        require(destination->depth() >= 8, "the destination needs 8 bits a pixel or more");
        CDIB32::BitBltDIBAlphaChannelPlain(destination, destination_at, source, at, reduction);
      },
      arg("destination"), arg("source"), origin("at"), arg("reduction") = 0, origin("destination_at"));
  define(
      module,
      {"union_alpha", "CDIB32::CalcuOpacity", "Compute the alpha of one layer over another.", "0 to 255."},
      [](Byte a, Byte b) { return static_cast<int>(CDIB32::CalcuOpacity(a, b)); }, arg("a"), arg("b"));
  define(
      module,
      {"over_channel", "CDIB32::CalcuRGBValue",
       "Compute one channel of a layer over another, with straight alpha; `alpha` is the result's, from "
       "`union_alpha`.",
       "0 to 255."},
      [](Byte lower_alpha, Byte upper_alpha, Byte lower, Byte upper, Byte alpha) {
        return static_cast<int>(CDIB32::CalcuRGBValue(lower_alpha, upper_alpha, lower, upper, alpha));
      },
      arg("lower_alpha"), arg("upper_alpha"), arg("lower"), arg("upper"), arg("alpha"));
}

}  // namespace binding
