#include <algorithm>

#include "module.h"
#include "operation.h"

namespace binding {

namespace {

using Placed = std::tuple<Image, POINT>;

/// What a merge made; it fails only for images that are too large together, or without memory.
Placed placed(BOOL done, dibkit::OwnedDib dib, POINT at) {
  if (done == 0) dib.reset();
  return {made(std::move(dib)), at};
}

/// A rectangle in the common space.
struct Box {
  std::int64_t left, top, right, bottom;

  Box(const Image32& image, POINT at)
      : left(at.x), top(at.y), right(left + image->width()), bottom(top + image->height()) {}
  explicit Box(const RECT& rect) : left(rect.left), top(rect.top), right(rect.right), bottom(rect.bottom) {
    require(left < right && top < bottom, "the rectangle is empty");
  }
};

/// Throws unless the bounding box of both is one that an image can have.
void requireJoint(const Box& a, const Box& b) {
  const std::int64_t width = std::max(a.right, b.right) - std::min(a.left, b.left);
  const std::int64_t height = std::max(a.bottom, b.bottom) - std::min(a.top, b.top);
  require(width > 0 && height > 0, "the result has no pixels");
  require(width <= (dibkit::maximumDibBytes - 40) / 4 / height, "the result is larger than an image can be");
}

}  // namespace

void defineMerging(py::module_& module) {
  const char* const result = "A new image of 32 bits that holds both, and the (x, y) of its top-left pixel.";
  const char* const refusal = "Both have to fit into one image.";
  define(
      module,
      {"combine", "CDIB32::CombineDIBs",
       "Composite `top` over `bottom` into a new image, after the subtraction of a reduction from the alpha "
       "of each.",
       result, refusal},
      [](Image32 bottom, Image32 top, POINT bottom_at, POINT top_at, Byte bottom_reduction,
         Byte top_reduction) {
        requireJoint({bottom, bottom_at}, {top, top_at});
        dibkit::OwnedDib dib;
        POINT at{};
        const BOOL done = CDIB32::CombineDIBs(bottom, bottom_at, bottom_reduction, top, top_at, top_reduction,
                                              dibkit::out(dib), &at);
        return placed(done, std::move(dib), at);
      },
      arg("bottom"), arg("top"), origin("bottom_at"), origin("top_at"), arg("bottom_reduction") = 0,
      arg("top_reduction") = 0);
  define(
      module,
      {"merge_colours", "CDIB32::Merge32DIBs",
       "Merge the colours of two images: of `second` where it is visible, of `first` where only that is. "
       "Every alpha is "
       "0, and byte 12 of a row with a visible pixel is 255.",
       result, refusal},
      [](Image32 first, Image32 second, POINT first_at, POINT second_at) {
        requireJoint({first, first_at}, {second, second_at});
        dibkit::OwnedDib dib;
        POINT at{};
        const BOOL done = CDIB32::Merge32DIBs(first, first_at, second, second_at, dibkit::out(dib), &at);
        return placed(done, std::move(dib), at);
      },
      arg("first"), arg("second"), origin("first_at"), origin("second_at"));
  define(
      module,
      {"merge", "CDIB32::Merge32BitsDIB",
       "Merge two images without blending: the pixels of `top` that are not transparent, elsewhere those of "
       "`bottom`.",
       result, refusal},
      [](Image32 bottom, Image32 top, POINT bottom_at, POINT top_at) {
        requireJoint({bottom, bottom_at}, {top, top_at});
        dibkit::OwnedDib dib;
        POINT at{};
        const BOOL done = CDIB32::Merge32BitsDIB(bottom, bottom_at, top, top_at, dibkit::out(dib), &at);
        return placed(done, std::move(dib), at);
      },
      arg("bottom"), arg("top"), origin("bottom_at"), origin("top_at"));
  define(
      module,
      {"merge_hole", "CDIB32::Merge32BitsDIB", "Cut a hole into an image: transparent black inside `rect`.",
       result, refusal},
      [](Image32 image, RECT rect, POINT at) {
        requireJoint({image, at}, Box(rect));
        dibkit::OwnedDib dib;
        POINT where{};
        const BOOL done = CDIB32::Merge32BitsDIB(image, at, rect, dibkit::out(dib), &where);
        return placed(done, std::move(dib), where);
      },
      arg("image"), arg("rect"), origin("at"));
  define(
      module,
      {"merge_background", "CDIB32::Merge32BitsDIB",
       "Put an image on a background: the opaque colour as far as `rect` reaches. Transparent pixels of the "
       "image "
       "replace it.",
       result, refusal},
      [](Image32 image, Colour colour, RECT rect, POINT at) {
        requireJoint({image, at}, Box(rect));
        dibkit::OwnedDib dib;
        POINT where{};
        const BOOL done = CDIB32::Merge32BitsDIB(image, at, colour, rect, dibkit::out(dib), &where);
        return placed(done, std::move(dib), where);
      },
      arg("image"), arg("colour"), arg("rect"), origin("at"));
}

}  // namespace binding
