#include "module.h"
#include "operation.h"

namespace binding {

namespace {

/// What an animation stores of a frame: the rectangle that changed.
using Change = std::tuple<Image, MaskResult, POINT, bool>;

std::optional<Change> changeFrom(const CSpiltEmbededDIB& splitter, bool sameTransparent) {
  if (splitter.IsEqual() != 0) return std::nullopt;
  dibkit::OwnedDib piece;
  MaskResult mask;
  POINT at{};
  int same = 0;
  const int done = sameTransparent
                       ? splitter.SplitTransparency(dibkit::out(piece), dibkit::out(mask.dib), &at, &same)
                       : splitter.SplitOpacity(dibkit::out(piece), dibkit::out(mask.dib), &at, &same);
  require(done != 0, "a pixel turned from opaque to transparent, which no piece can show");
  return Change(made(std::move(piece)), std::move(mask), at, same != 0);
}

}  // namespace

void defineSplitting(py::module_& module) {
  define(
      module,
      {"frame_change",
       "CSpiltEmbededDIB::Reset, IsEqual, SplitOpacity, SplitTransparency, CropEmbededDIB, "
       "CSpiltEmbededDIBEx::CropEmbededDIB",
       "Find the rectangle in which frame `b` differs from frame `a`, and cut it out. `same_transparent` "
       "makes the pixels "
       "in it that are the same transparent. `indexed` takes 8-bit frames, and the piece keeps palette and "
       "indexes.",
       "The piece, its mask or None, its (x, y) on the canvas, and whether a pixel of it is the same; None "
       "if nothing "
       "changed.",
       "No pixel may turn from opaque to transparent."},
      [](AnyImage a, AnyImage b, bool same_transparent, bool indexed, Mask& mask_a, Mask& mask_b, POINT at_a,
         POINT at_b) {
        requireMaskOf(a, mask_a);
        requireMaskOf(b, mask_b);
        require(b->width() > 0 && b->height() > 0, "the frame has no pixels");
        require(!indexed || b->depth() == 8, "indexed frames have 8 bits");
        const auto changeOf = [&](auto&& splitter) {
          splitter.Reset(a, mask_a, at_a, b, mask_b, at_b);
          return changeFrom(splitter, same_transparent);
        };
        return indexed ? changeOf(CSpiltEmbededDIB()) : changeOf(CSpiltEmbededDIBEx());
      },
      arg("a"), arg("b"), arg("same_transparent") = false, arg("indexed") = false, none("mask_a"),
      none("mask_b"), origin("at_a"), origin("at_b"));
  define(
      module,
      {"can_split", "CSpiltEmbededDIB::IsCanSpilt",
       "Tell whether two frames end at the same corner of the canvas and have one width or one height.", ""},
      [](AnyImage a, AnyImage b, POINT at_a, POINT at_b) {
        CSpiltEmbededDIBEx splitter;
        splitter.Reset(a, nullptr, at_a, b, nullptr, at_b);
        return splitter.IsCanSpilt() != 0;
      },
      arg("a"), arg("b"), origin("at_a"), origin("at_b"));
}

}  // namespace binding
