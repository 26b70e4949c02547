#include "module.h"
#include "progress.h"

namespace binding {

void defineFilters(py::module_& module) {
  define(
      module,
      {"median", "CDIB32::MedianFilter32BitsImage",
       "Median filter, in place: each pixel becomes the median of its size x size neighbourhood by "
       "luminance."},
      [](Image32 image, Positive size) { CDIB32::MedianFilter32BitsImage(image, size); }, arg("image"),
      arg("size") = 3);
  define(
      module,
      {"sharpen", "CDIB32::Sharpen32BitsImage",
       "Sharpen the colours, in place, by a 3 x 3 kernel with -1 around a centre of k + 8, divided by k. 1 "
       "sharpens most; "
       "below 1 there is no division, which finds edges."},
      [](Image32 image, Integer k) { CDIB32::Sharpen32BitsImage(image, k); }, arg("image"), arg("k") = 1);
  define(
      module,
      {"remove_noise", "RemoveNoiseDIB",
       "Remove stray pixels by a median filter of 3 x 3: every channel becomes the median of its "
       "neighbourhood. "
       "Transparent pixels neither change nor count.",
       "A new image of 24 bits."},
      [](Image24 image, Mask& mask, Callback& progress) {
        requireMaskOf(image, mask);
        return madeWith(progress, [&](CQorCommonProgress* p) { return RemoveNoiseDIB(image, mask, p); });
      },
      arg("image"), none("mask"), none("progress"));
  define(
      module,
      {"pixelate", "Mosaic32BitsDIB",
       "Show in every block of pixels the average colour of the block and of the column and row that follow "
       "it.",
       "A new opaque image of 32 bits.", "The image needs a pixel."},
      [](Image32 image, Positive block) {
        require(image->width() > 0 && image->height() > 0, "the image has no pixels");
        return made(Mosaic32BitsDIB(image, block));
      },
      arg("image"), arg("block"));
  define(
      module,
      {"soft_erase", "CDIB32::SmoothBlock",
       "Erase with a soft brush, in place: subtract amount x c / n^2 from the alpha under the brush, where c "
       "counts the "
       "brush's pixels in the box of n x n around it. `coverage` is the brush, `size` the width of its "
       "feathered edge."},
      [](Image32 destination, Coverage& coverage, POINT at, Byte amount, Positive size, Clip& clip) {
        require(coverage.dib != nullptr, "a brush is needed");
        CDIB32::SmoothBlock(destination, coverage, at, amount, size, clip);
      },
      arg("destination"), arg("coverage"), origin("at"), arg("amount") = 255, arg("size") = 1, none("clip"));
  define(
      module,
      {"soft_fill", "CDIB32::SmoothFillBlock",
       "Add alpha with a soft brush, in place, as `soft_erase` subtracts it; `amount` 0 is the strongest. "
       "With "
       "`reference`, only where its pixel at the same place is not transparent.",
       "", "The reference is as wide as the destination."},
      [](Image32 destination, Coverage& coverage, POINT at, Byte amount, Positive size, Clip& clip,
         std::optional<Image32> reference) {
        require(coverage.dib != nullptr, "a brush is needed");
        if (!reference) {
          CDIB32::SmoothFillBlock(destination, coverage, at, amount, size, clip);
          return;
        }
        require((*reference)->width() == destination->width(), "the reference has another width");
        CDIB32::SmoothFillBlock(destination, coverage, *reference, at, amount, size, clip);
      },
      arg("destination"), arg("coverage"), origin("at"), arg("amount") = 0, arg("size") = 1, none("clip"),
      none("reference"));
  define(
      module,
      {"margins", "CDIB32::CheckBlankBorder", "Measure the transparent margins of an image.",
       "Left, top, right, bottom, in pixels; (0, height, 0, 0) for an image without a visible pixel."},
      [](Image32 image) {
        int left = 0, top = 0, right = 0, bottom = 0;
        CDIB32::CheckBlankBorder(image, &left, &top, &right, &bottom);
        return RECT{left, top, right, bottom};
      },
      arg("image"));
  define(
      module,
      {"trim", "CDIB32::Trim32BitsDIB", "Cut margins off.", "A new image of 32 bits.",
       "Margins are 0 or more and do not overlap."},
      [](Image32 image, RECT margins) {
        const auto fit = [](LONG a, LONG b, int side) {
          return a >= 0 && b >= 0 && std::int64_t{a} + b <= side;
        };
        require(fit(margins.left, margins.right, image->width()) &&
                    fit(margins.top, margins.bottom, image->height()),
                "margins are 0 or more and do not overlap");
        return made(CDIB32::Trim32BitsDIB(image, margins.left, margins.top, margins.right, margins.bottom));
      },
      arg("image"), arg("margins"));
  define(
      module,
      {"transparent_mask", "CDIB32::CreateIconMaskFromAlphaChannel", "Tell which pixels are transparent.",
       "True where alpha is 0."},
      [](Image32 image) {
        MaskResult mask{dibkit::OwnedDib(CDIB32::CreateIconMaskFromAlphaChannel(image))};
        requireDone(mask.dib ? 1 : 0);
        return mask;
      },
      arg("image"));
  define(
      module,
      {"shadow", "CDIB32::CreateParaShadowDIB",
       "Make the silhouette of an image: one colour with the image's alpha.", "A new image of 32 bits."},
      [](Image32 image, Colour colour) { return made(CDIB32::CreateParaShadowDIB(image, colour)); },
      arg("image"), arg("colour") = py::make_tuple(0, 0, 0));
  define(
      module,
      {"luminance_difference", "CDIB32::CompareColors",
       "Compute the luminance of colour `a` less that of colour `b`; luminance is (117 blue + 601 green + "
       "306 red) / 1024, "
       "truncated.",
       "-255 to 255."},
      [](Colour a, Colour b) {
        const BYTE first[]{a.blue, a.green, a.red, 255};
        const BYTE second[]{b.blue, b.green, b.red, 255};
        return CDIB32::CompareColors(first, second);
      },
      arg("a"), arg("b"));
  define(
      module,
      {"field_of_bits", "CDIB32::CalcuMaskShift", "Find the lowest run of set bits in a mask of a colour.",
       "How many clear bits are below the run, and how many bits it has."},
      [](Number<0, UINT32_MAX> bits) {
        int shift = 0, length = 0;
        CDIB32::CalcuMaskShift(bits, shift, length);
        return std::tuple(shift, length);
      },
      arg("bits"));
}

}  // namespace binding
