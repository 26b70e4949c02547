#include <algorithm>

#include "module.h"
#include "operation.h"

namespace binding {

namespace {

Region selected(HRGN region) { return Region(dibkit::OwnedRegion(region)); }

void requirePixels(const AnyImage& image) {
  require(image->width() > 0 && image->height() > 0, "the image has no pixels");
}

/// A canvas that ends where a frame does.
SIZE endOf(const AnyImage& image, POINT at) {
  const auto end = [](std::int64_t place, int extent) {
    return static_cast<LONG>(std::min<std::int64_t>(place + extent, INT32_MAX));
  };
  return {end(at.x, image->width()), end(at.y, image->height())};
}

}  // namespace

void defineSelections(py::module_& module) {
  define(
      module,
      {"magic_wand", "CDIB32::MagicWandRegion, MagicWandRegion2",
       "Select the pixels similar to a seed: each channel differs by at most `tolerance`, and both are "
       "opaque (alpha 128 "
       "and above) or both transparent. `connected` selects only those connected with the seed from left, "
       "right, above "
       "and below. A seed outside the image moves to the nearest edge.",
       "The region."},
      [](Image32 image, POINT seed, Number<0, 255> tolerance, bool connected) {
        requirePixels({image.image});
        return selected(connected ? CDIB32::MagicWandRegion(image, seed, tolerance)
                                  : CDIB32::MagicWandRegion2(image, seed, tolerance));
      },
      arg("image"), arg("seed"), arg("tolerance") = 0, arg("connected") = true);
  define(
      module,
      {"magic_wand_frame", "MagicWandRegion",
       "Select on an animation's canvas the connected area around a seed whose pixels are transparent as the "
       "seed is, or "
       "opaque as the seed is and within a tolerance of its colour. Canvas beside the frame is transparent. "
       "Without "
       "`canvas`, it ends where the frame does.",
       "The region, in canvas coordinates.", "The seed has to be inside the canvas."},
      [](AnyImage image, POINT seed, Number<-1, 255> tolerance, Mask& mask, POINT at,
         std::optional<SIZE> canvas) {
        requireMaskOf(image, mask);
        const SIZE size = canvas.value_or(endOf(image, at));
        require(seed.x >= 0 && seed.y >= 0 && seed.x < size.cx && seed.y < size.cy,
                "the seed is outside the canvas");
        return selected(MagicWandRegion(image, mask, at, seed, tolerance, size));
      },
      arg("image"), arg("seed"), arg("tolerance") = 0, none("mask"), origin("at"), none("canvas"));
  define(
      module,
      {"opaque_region", "CalcOpacityAreaRgn",
       "Give the opaque pixels of a mask, which are False, as a region.", "The region."},
      [](RequiredMask& mask) {
        HRGN region = CalcOpacityAreaRgn(mask);
        return region != nullptr ? selected(region) : Region();
      },
      arg("mask"));
  define(
      module,
      {"mask_margins", "CaclOpaqueBoundary",
       "Measure the transparent margins of a mask: rows and columns at its edges that are all True.",
       "Left, top, right, bottom, in pixels. For a mask that is all True, its width and height."},
      [](RequiredMask& mask) {
        int left = 0, top = 0, right = 0, bottom = 0;
        CaclOpaqueBoundary(mask, &left, &top, &right, &bottom);
        return RECT{left, top, right, bottom};
      },
      arg("mask"));
  define(
      module,
      {"join_rectangle", "CDIB32::AddRect",
       "Add a rectangle to a list of disjoint ones. If it shares a whole edge with one of them the two "
       "become one, and so "
       "on.",
       "The new list."},
      [](const std::vector<RECT>& rectangles, RECT rect) {
        std::vector<RECT> list = rectangles;
        require(list.size() < 1 << 24, "the list is too long");
        const int count = static_cast<int>(list.size());
        list.push_back({});
        list.resize(static_cast<std::size_t>(CDIB32::AddRect(list.data(), count, rect)));
        return list;
      },
      arg("rectangles"), arg("rect"));
  define(
      module,
      {"crop", "Crop32BitsDIB",
       "Crop an image to the bounding box of a region. Pixels outside the region get alpha 0.",
       "A new image of 32 bits, 0 x 0 for an empty region."},
      [](Image32 image, const Region& region) { return made(Crop32BitsDIB(image, region.get())); },
      arg("image"), arg("region"));
  define(
      module,
      {"crop_frame", "CropFrame",
       "Crop a frame of any depth to the bounding box of a region, palette unchanged. Pixels outside the "
       "region are "
       "transparent in the mask.",
       "A new image of the same depth, and its mask, None if no pixel is transparent."},
      [](AnyImage image, const Region& region, Mask& mask) {
        requireMaskOf(image, mask);
        dibkit::OwnedDib piece;
        MaskResult pieceMask;
        requireDone(CropFrame(image, mask, region.get(), dibkit::out(piece), dibkit::out(pieceMask.dib)));
        return std::tuple(made(std::move(piece)), std::move(pieceMask));
      },
      arg("image"), arg("region"), none("mask"));
  define(
      module, {"is_opaque", "CDIB32::IsFullOpacity32BitsImage", "Tell whether every pixel is opaque.", ""},
      [](Image32 image) { return CDIB32::IsFullOpacity32BitsImage(image) != 0; }, arg("image"));
  define(
      module,
      {"is_translucent", "CDIB32::IsTranslucence32BitsImage",
       "Tell whether some pixel has an alpha from 1 to 254.", ""},
      [](Image32 image) { return CDIB32::IsTranslucence32BitsImage(image) != 0; }, arg("image"));
  define(
      module,
      {"is_visible_at", "CDIB32::IsIn32BitsDIB",
       "Tell whether a point is inside an image and its pixel is not transparent.", ""},
      [](Image32 image, POINT point) { return CDIB32::IsIn32BitsDIB(image, point) != 0; }, arg("image"),
      arg("point"));
}

}  // namespace binding
