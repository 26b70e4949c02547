#include <new>

#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/pixel_box.h"
#include "platform/guard.h"
#include "raster/flood_fill.h"
#include "raster/region_builder.h"

namespace dibkit {
namespace {

/// Pixels with at least this alpha count as opaque.
constexpr int opaqueFrom = 128;

/// The pixels of an image that a wand selects: those similar to its seed.
struct SimilarPixels {
  ConstView image;
  POINT seed{};
  PixelBox box;

  /// Null when there is no pixel to start from. A seed outside the image moves to the nearest edge.
  SimilarPixels(const BITMAPINFOHEADER* dib, const POINT& clicked, int tolerance)
      : image(viewOfDepth(dib, 32)) {
    if (image.width() == 0 || image.height() == 0) {
      image = ConstView();
      return;
    }
    seed = {std::clamp<LONG>(clicked.x, 0, image.width() - 1),
            std::clamp<LONG>(clicked.y, 0, image.height() - 1)};
    const Bgra& pixel = pixelsOf(image.row(static_cast<int>(seed.y)))[seed.x];
    // Alpha counts only as opaque or transparent; the colours of transparent pixels count too.
    const ByteRange alpha =
        pixel.alpha < opaqueFrom ? ByteRange{0, opaqueFrom - 1} : ByteRange{opaqueFrom, 255};
    box = PixelBox::around(pixel, tolerance, alpha);
  }

  void mark(int x, int y, int count, BYTE* flags) const {
    markMatches(pixelsOf(image.row(y)) + x, count, box, flags);
  }
};

OwnedRegion selectConnected(const SimilarPixels& similar) {
  const int width = similar.image.width();
  const int height = similar.image.height();
  RegionBuilder builder(width, height);
  floodFill(
      width, height, similar.seed,
      [&](int y, int x, int count, BYTE* flags) { similar.mark(x, y, count, flags); },
      [&](int y, int left, int right) { builder.add(y, left, right); });
  return builder.region();
}

OwnedRegion selectEverywhere(const SimilarPixels& similar) {
  const int width = similar.image.width();
  RegionBuilder builder(width, similar.image.height());
  for (int y = 0; y < similar.image.height(); ++y) {
    packMarked(
        width, [&](int x, int count, BYTE* flags) { similar.mark(x, y, count, flags); }, builder.row(y));
  }
  // Only a tolerance below 0 leaves out even the seed.
  return builder.empty() ? OwnedRegion() : builder.region();
}

/// Allocates a block for the data of 100 rectangles and never releases it.
bool leakRegionBlock() {
  constexpr std::size_t bytes = sizeof(RGNDATAHEADER) + 100 * sizeof(RECT);
  // A leak on purpose: each call of this selection has always kept such a block of 1632 bytes.
  return ::operator new[](bytes, std::nothrow) != nullptr;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

HRGN CDIB32::MagicWandRegion(BITMAPINFOHEADER* image, POINT seed, int tolerance) {
  const SimilarPixels similar(image, seed, tolerance);
  if (!similar.image) return nullptr;
  return catchOutOfMemory([&] { return selectConnected(similar).release(); });
}

HRGN CDIB32::MagicWandRegion2(BITMAPINFOHEADER* image, POINT seed, int tolerance) {
  const SimilarPixels similar(image, seed, tolerance);
  if (!similar.image || !leakRegionBlock()) return nullptr;
  return catchOutOfMemory([&] { return selectEverywhere(similar).release(); });
}
