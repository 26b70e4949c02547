#include "module.h"
#include "operation.h"

namespace binding {

namespace {

/// A mask that an operation made.
MaskResult madeMask(BITMAPINFOHEADER* mask) {
  MaskResult result{dibkit::OwnedDib(mask)};
  requireDone(mask != nullptr ? 1 : 0);
  return result;
}

/// Throws unless margins leave a size that an image can have.
void requireMargins(const AnyImage& image, const RECT& margins) {
  const std::int64_t width = std::int64_t{image->width()} + margins.left + margins.right;
  const std::int64_t height = std::int64_t{image->height()} + margins.top + margins.bottom;
  require(width >= 0 && height >= 0, "the margins leave less than nothing");
  require(height == 0 || width <= (dibkit::maximumDibBytes - 1064) / 4 / height, "the margins are too large");
}

}  // namespace

void defineMasks(py::module_& module) {
  define(
      module,
      {"split_alpha", "CMaskedBitmapTransform::Spilt32BitsDIBForGIF",
       "Split an image with alpha into what a GIF stores: pixels of alpha 0 get the colour `transparent`, "
       "all others are "
       "blended with `background`.",
       "A new image of 24 bits, and its mask, None if no pixel is transparent."},
      [](Image32 image, Colour background, Colour transparent) {
        require(image->width() > 0 && image->height() > 0, "the image has no pixels");
        dibkit::OwnedDib dib;
        MaskResult mask;
        requireDone(CMaskedBitmapTransform::Spilt32BitsDIBForGIF(image, background, transparent,
                                                                 dibkit::out(dib), dibkit::out(mask.dib)));
        return std::tuple(made(std::move(dib)), std::move(mask));
      },
      arg("image"), arg("background") = py::make_tuple(255, 255, 255),
      arg("transparent") = py::make_tuple(255, 255, 255));
  define(
      module,
      {"pad", "CMaskedBitmapTransform::ExpandDIB",
       "Pad a frame of any depth with transparent margins. Pixels in the margins and transparent ones become "
       "0.",
       "A new image of the same depth and palette, and its mask."},
      [](AnyImage image, RECT margins, Mask& mask) {
        requireMaskOf(image, mask);
        requireMargins(image, margins);
        dibkit::OwnedDib dib;
        MaskResult padded;
        requireDone(CMaskedBitmapTransform::ExpandDIB(image, mask, dibkit::out(dib), dibkit::out(padded.dib),
                                                      margins.left, margins.top, margins.right,
                                                      margins.bottom));
        return std::tuple(made(std::move(dib)), std::move(padded));
      },
      arg("image"), arg("margins"), none("mask"));
  define(
      module,
      {"flatten", "CMaskedBitmapTransform::OutputDIBStream, InflateDib",
       "Flatten a frame: its transparent pixels, and the margins around it, get a colour. A palette without "
       "the colour "
       "gets one more entry; if it is full, the depth grows.",
       "A new image."},
      [](AnyImage image, Colour colour, Mask& mask, RECT margins) {
        requireMaskOf(image, mask);
        requireMargins(image, margins);
        const bool none = margins.left == 0 && margins.top == 0 && margins.right == 0 && margins.bottom == 0;
        if (none && mask.dib) return made(CMaskedBitmapTransform::OutputDIBStream(image, mask, colour));
        return made(
            InflateDib(image, mask, colour, margins.left, margins.top, margins.right, margins.bottom));
      },
      arg("image"), arg("colour"), none("mask"), arg("margins") = py::make_tuple(0, 0, 0, 0));
  define(
      module,
      {"mark_region", "CMaskedBitmapTransform::FillMask", "Mark the pixels of a region as transparent.",
       "A new mask."},
      [](RequiredMask& mask, const Region& region) {
        BITMAPINFOHEADER* marked = CMaskedBitmapTransform::FillMask(mask, region.get());
        return marked == mask.dib.get() ? MaskResult{std::move(mask.dib)} : madeMask(marked);
      },
      arg("mask"), arg("region"));
  define(
      module,
      {"mark_rectangle", "CMaskedBitmapTransform::FillMaskDIBBits, ExclusiveWhiteFill2BitsDib",
       "Set the pixels of a mask inside a rectangle to `value`; with `outside`, those outside of it to True.",
       "A new mask."},
      [](RequiredMask& mask, RECT rect, bool value, bool outside) {
        if (outside) {
          BITMAPINFOHEADER* dib = mask.dib.get();
          ExclusiveWhiteFill2BitsDib(GetDIBBits(dib), dib->biWidth, dib->biHeight, rect);
        } else {
          CMaskedBitmapTransform::FillMaskDIBBits(mask, rect, value);
        }
        return MaskResult{std::move(mask.dib)};
      },
      arg("mask"), arg("rect"), arg("value") = true, arg("outside") = false);
  define(
      module,
      {"copy_mask", "CMaskedBitmapTransform::MarkedMaskDIB",
       "Copy a second mask over a mask, from the top-left corner of both.", "A new mask."},
      [](RequiredMask& mask, RequiredMask& second) {
        return madeMask(CMaskedBitmapTransform::MarkedMaskDIB(mask, second));
      },
      arg("mask"), arg("second"));
  define(
      module,
      {"spread_corner", "CMaskedBitmapTransform::MarkedBmpDIB",
       "Give every pixel that a mask reaches the value of the top-left one. Only the size of the mask "
       "counts.",
       "A new image."},
      [](AnyImage image, RequiredMask& mask) {
        require(image->width() > 0 && image->height() > 0, "the image has no pixels");
        return made(CMaskedBitmapTransform::MarkedBmpDIB(image, mask));
      },
      arg("image"), arg("mask"));
  define(
      module,
      {"show_mask", "CMaskedBitmapTransform::MarkHighBitsDIB, MarkLowBitsDIB",
       "Make a picture of a mask in two colours: that of the image's top-left pixel where the mask is True, "
       "and its "
       "complement, or the palette's colour that differs most, where it is False.",
       "A new image."},
      [](AnyImage image, RequiredMask& mask) {
        require(image->width() > 0 && image->height() > 0, "the image has no pixels");
        return made(image->depth() > 8 ? CMaskedBitmapTransform::MarkHighBitsDIB(image, mask)
                                       : CMaskedBitmapTransform::MarkLowBitsDIB(image, mask));
      },
      arg("image"), arg("mask"));
}

}  // namespace binding
