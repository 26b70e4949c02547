#include <algorithm>
#include <initializer_list>

#include "module.h"
#include "operation.h"

namespace binding {

namespace {

using Piece = std::tuple<Image, MaskResult>;
using PlacedPiece = std::tuple<Image, MaskResult, POINT>;

/// Out-parameters of an operation on frames, and what Python gets of them.
struct Out {
  dibkit::OwnedDib image;
  MaskResult mask;
  POINT at{};

  Piece piece() { return {made(std::move(image)), std::move(mask)}; }
  PlacedPiece placed() { return {made(std::move(image)), std::move(mask), at}; }
};

const char* const pieceResult =
    "A new image, with a palette if it has at most 256 colours, and its mask or None.";
const char* const placedResult =
    "A new image, with a palette if it has at most 256 colours, its mask or None, and the (x, y) of its "
    "top-left pixel "
    "on the canvas.";

void requireMasks(const AnyImage& a, const Mask& maskA, const AnyImage& b, const Mask& maskB) {
  requireMaskOf(a, maskA);
  requireMaskOf(b, maskB);
}

/// Throws unless the images have pixels.
void requirePixels(std::initializer_list<const Image*> images) {
  for (const Image* image : images)
    require(image->width() > 0 && image->height() > 0, "the image has no pixels");
}

/// Throws when a sum of both places and sizes cannot be one image.
void requireNear(const AnyImage& a, POINT atA, const AnyImage& b, POINT atB) {
  const auto extent = [](LONG first, int lengthA, LONG second, int lengthB) {
    return std::max(std::int64_t{first} + lengthA, std::int64_t{second} + lengthB) -
           std::min(std::int64_t{first}, std::int64_t{second});
  };
  const std::int64_t width = extent(atA.x, a->width(), atB.x, b->width());
  const std::int64_t height = extent(atA.y, a->height(), atB.y, b->height());
  require(height == 0 || width <= (dibkit::maximumDibBytes - 40) / 4 / height,
          "the frames are too far apart for one that holds both");
}

}  // namespace

void defineFrames(py::module_& module) {
  define(
      module,
      {"same_frame", "CompareFrame",
       "Tell whether two frames show the same: one size, the same transparent pixels, and the same colours "
       "elsewhere. "
       "Depths may differ."},
      [](AnyImage a, AnyImage b, Mask& mask_a, Mask& mask_b) {
        requireMasks(a, mask_a, b, mask_b);
        return CompareFrame(a, mask_a, b, mask_b) != 0;
      },
      arg("a"), arg("b"), none("mask_a"), none("mask_b"));
  define(
      module,
      {"fade_to_colour", "AlphaBlendByColor",
       "Fade a frame to a colour: (frame x opacity + colour x (255 - opacity)) / 255 in each channel.",
       pieceResult},
      [](AnyImage image, Colour colour, Byte opacity, Mask& mask) {
        requirePixels({image.image});
        requireMaskOf(image, mask);
        Out out;
        requireDone(AlphaBlendByColor(image, mask, colour, opacity, dibkit::out(out.image),
                                      dibkit::out(out.mask.dib)));
        return out.piece();
      },
      arg("image"), arg("colour"), arg("opacity"), none("mask"));
  define(
      module,
      {"fade_to_frame", "AlphaBlendByFrame",
       "Fade frame `a` to frame `b`, and to a colour where that does not show. `opacity` is the weight of "
       "`a`.",
       "A new image of the size of `a`, and its mask or None."},
      [](AnyImage a, AnyImage b, Byte opacity, Colour colour, Mask& mask_a, Mask& mask_b, POINT at_a,
         POINT at_b) {
        requirePixels({a.image, b.image});
        requireMasks(a, mask_a, b, mask_b);
        Out out;
        requireDone(AlphaBlendByFrame(a, mask_a, at_a, b, mask_b, at_b, colour, opacity,
                                      dibkit::out(out.image), dibkit::out(out.mask.dib)));
        return out.piece();
      },
      arg("a"), arg("b"), arg("opacity"), arg("colour") = py::make_tuple(0, 0, 0), none("mask_a"),
      none("mask_b"), origin("at_a"), origin("at_b"));
  define(
      module,
      {"merge_frames", "MergeFrames",
       "Merge frame `a` over frame `b`, without blending, into an image that holds both.", placedResult,
       "Both have to fit into one image."},
      [](AnyImage a, AnyImage b, Mask& mask_a, Mask& mask_b, POINT at_a, POINT at_b) {
        requirePixels({a.image, b.image});
        requireMasks(a, mask_a, b, mask_b);
        requireNear(a, at_a, b, at_b);
        Out out;
        requireDone(MergeFrames(a, mask_a, at_a, b, mask_b, at_b, dibkit::out(out.image),
                                dibkit::out(out.mask.dib), &out.at));
        return out.placed();
      },
      arg("a"), arg("b"), none("mask_a"), none("mask_b"), origin("at_a"), origin("at_b"));
  define(
      module,
      {"blend_frames", "AlphaBlendByFrame2",
       "Merge frame `a` over frame `b` and blend `a` with its backdrop, `b` or a colour: (a x opacity + "
       "backdrop x (256 - "
       "opacity)) / 256 in each channel. The result is cut to the canvas.",
       placedResult, "Both have to fit into one image."},
      [](AnyImage a, AnyImage b, Number<0, 256> opacity, SIZE canvas, Colour colour, Mask& mask_a,
         Mask& mask_b, POINT at_a, POINT at_b) {
        requirePixels({a.image, b.image});
        requireMasks(a, mask_a, b, mask_b);
        requireNear(a, at_a, b, at_b);
        Out out;
        requireDone(AlphaBlendByFrame2(a, mask_a, at_a, b, mask_b, at_b, colour, opacity, canvas,
                                       dibkit::out(out.image), dibkit::out(out.mask.dib), &out.at));
        return out.placed();
      },
      arg("a"), arg("b"), arg("opacity"), arg("canvas"), arg("colour") = py::make_tuple(0, 0, 0),
      none("mask_a"), none("mask_b"), origin("at_a"), origin("at_b"));
  define(
      module,
      {"fill_frame", "ExtFillFrame",
       "Fill every opaque pixel of a frame that is near a target colour, connected or not.", pieceResult},
      [](AnyImage image, Colour target, Colour fill, Number<0, 100> percent, Integer tolerance, Mask& mask) {
        requirePixels({image.image});
        requireMaskOf(image, mask);
        Out out;
        requireDone(ExtFillFrame(image, mask, target, fill, percent, tolerance, dibkit::out(out.image),
                                 dibkit::out(out.mask.dib)));
        return out.piece();
      },
      arg("image"), arg("target"), arg("fill"), arg("percent") = 100, arg("tolerance") = 0, none("mask"));
  define(
      module,
      {"fill_frame_connected", "ExtFillAdjacentArea",
       "Flood fill of a frame: fill the connected opaque pixels near a target colour around a seed. `target` "
       "None is the "
       "colour at the seed.",
       pieceResult, "The seed has to be inside the frame."},
      [](AnyImage image, POINT seed, Colour fill, std::optional<Colour> target, Number<0, 100> percent,
         Integer tolerance, Mask& mask) {
        requireMaskOf(image, mask);
        require(seed.x >= 0 && seed.x < image->width() && seed.y >= 0 && seed.y < image->height(),
                "the seed is outside the frame");
        Out out;
        requireDone(ExtFillAdjacentArea(image, mask, target ? *target : colourAt(*image.image, seed), fill,
                                        percent, tolerance, seed, dibkit::out(out.image),
                                        dibkit::out(out.mask.dib)));
        return out.piece();
      },
      arg("image"), arg("seed"), arg("fill"), none("target"), arg("percent") = 100, arg("tolerance") = 0,
      none("mask"));
  define(
      module,
      {"fill_frame_background", "ExtFillBkgnd",
       "Flood fill of the background: extend a frame to its canvas, make the transparent area around a seed "
       "opaque, in "
       "the fill colour mixed with white (`percent` is the share of the fill colour), and trim what is still "
       "transparent "
       "at the edges.",
       placedResult, "The seed has to be inside the canvas."},
      [](AnyImage image, POINT seed, Colour fill, SIZE canvas, Number<0, 100> percent, Mask& mask, POINT at) {
        requirePixels({image.image});
        requireMaskOf(image, mask);
        require(seed.x >= 0 && seed.x < canvas.cx && seed.y >= 0 && seed.y < canvas.cy,
                "the seed is outside the canvas");
        Out out;
        requireDone(ExtFillBkgnd(image, mask, at, canvas, fill, percent, 0, seed, dibkit::out(out.image),
                                 dibkit::out(out.mask.dib), &out.at));
        return out.placed();
      },
      arg("image"), arg("seed"), arg("fill"), arg("canvas"), arg("percent") = 100, none("mask"),
      origin("at"));
}

}  // namespace binding
