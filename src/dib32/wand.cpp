#include <new>

#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/pixel_box.h"
#include "platform/guard.h"
#include "raster/flood_fill.h"
#include "raster/region_builder.h"

namespace dibkit {
namespace {

/// The least opacity of a pixel that a wand takes for opaque.
constexpr int opaqueFrom = 128;

/// What a wand is looking for in which picture.
struct Selection {
  ConstView image;
  POINT seed{};
  PixelBox similar;

  /// Null when there is no pixel to start from. A seed outside the image moves to the nearest edge.
  Selection(const BITMAPINFOHEADER* dib, const POINT& clicked, int tolerance) : image(viewOfDepth(dib, 32)) {
    if (image.width() == 0 || image.height() == 0) {
      image = ConstView();
      return;
    }
    seed = {std::clamp<LONG>(clicked.x, 0, image.width() - 1),
            std::clamp<LONG>(clicked.y, 0, image.height() - 1)};
    const Bgra& pixel = pixelsOf(image.row(static_cast<int>(seed.y)))[seed.x];
    // Opacity counts by class only, and transparent pixels are told apart by their colours too.
    const ByteRange alpha =
        pixel.alpha < opaqueFrom ? ByteRange{0, opaqueFrom - 1} : ByteRange{opaqueFrom, 255};
    similar = PixelBox::around(pixel, tolerance, alpha);
  }

  void mark(int x, int y, int count, BYTE* flags) const {
    markMatches(pixelsOf(image.row(y)) + x, count, similar, flags);
  }
};

OwnedRegion selectConnected(const Selection& selection) {
  const int width = selection.image.width();
  const int height = selection.image.height();
  RegionBuilder builder(width, height);
  floodFill(
      width, height, selection.seed,
      [&](int y, int x, int count, BYTE* flags) { selection.mark(x, y, count, flags); },
      [&](int y, int left, int right) { builder.add(y, left, right); });
  return builder.region();
}

OwnedRegion selectEverywhere(const Selection& selection) {
  const int width = selection.image.width();
  RegionBuilder builder(width, selection.image.height());
  for (int y = 0; y < selection.image.height(); ++y) {
    packMarked(
        width, [&](int x, int count, BYTE* flags) { selection.mark(x, y, count, flags); }, builder.row(y));
  }
  // Only a tolerance below 0 leaves out even the seed.
  return builder.empty() ? OwnedRegion() : builder.region();
}

/// Takes a region data block for 100 rectangles and never releases it.
bool leakRegionBlock() {
  constexpr std::size_t bytes = sizeof(RGNDATAHEADER) + 100 * sizeof(RECT);
  // A leak on purpose: hosts have always seen this selection keep one such block of 1632 bytes a call.
  return ::operator new[](bytes, std::nothrow) != nullptr;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

HRGN CDIB32::MagicWandRegion(BITMAPINFOHEADER* image, POINT seed, int tolerance) {
  const Selection selection(image, seed, tolerance);
  if (!selection.image) return nullptr;
  return orOutOfMemory(HRGN{}, [&] { return selectConnected(selection).release(); });
}

HRGN CDIB32::MagicWandRegion2(BITMAPINFOHEADER* image, POINT seed, int tolerance) {
  const Selection selection(image, seed, tolerance);
  if (!selection.image || !leakRegionBlock()) return nullptr;
  return orOutOfMemory(HRGN{}, [&] { return selectEverywhere(selection).release(); });
}
