#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/paint.h"
#include "dib32/pixel_box.h"
#include "platform/guard.h"
#include "raster/flood_fill.h"
#include "raster/placement.h"

namespace dibkit {
namespace {

/// The flood fill of every connected fill. It gives the runs of floodFill, except that the seed, which is
/// filled whether it matches or not, is a run of its own.
template <class Match, class Visit>
BOOL floodFromSeed(const View& image, const POINT& seed, Match&& match, Visit&& visit) {
  return catchOutOfMemory([&] {
    const int at = static_cast<int>(seed.x);
    floodFill(image.width(), image.height(), seed, match, [&](int y, int left, int right) {
      if (y != seed.y || at < left || at >= right) {
        visit(y, left, right);
        return;
      }
      if (left < at) visit(y, left, at);
      visit(y, at, at + 1);
      if (at + 1 < right) visit(y, at + 1, right);
    });
    return TRUE;
  });
}

/// Fills the pixels in the box that are connected with the seed.
/// \param paint called as paint(run, count); all pixels but the seed are in the box
/// \param bounds receives the box around the area, unless null
template <class Paint>
BOOL fillConnected(BITMAPINFOHEADER* dib, const POINT seed, const PixelBox& box, Paint paint,
                   RECT* bounds = nullptr) {
  const View image = viewOfDepth(dib, 32);
  if (!image.contains(seed.x, seed.y)) return FALSE;
  if (bounds != nullptr) *bounds = {seed.x, seed.y, seed.x + 1, seed.y + 1};
  return floodFromSeed(
      image, seed,
      [&](int y, int x, int count, BYTE* flags) {
        markMatches(pixelsOf(image.row(y)) + x, count, box, flags);
      },
      [&](int y, int left, int right) {
        paint(pixelsOf(image.row(y)) + left, right - left);
        if (bounds != nullptr) extend(*bounds, RECT{left, y, right, y + 1});
      });
}

/// An 8-bit mask placed over an image.
class MaskOver {
 public:
  MaskOver(const View& image, const BITMAPINFOHEADER* dib, const POINT& origin)
      : dib_(dib), mask_(viewOfDepth(dib, 8)), origin_(origin) {
    const auto common = overlapOf<2>(
        {placedBox(image.width(), image.height(), {0, 0}), placedBox(mask_.width(), mask_.height(), origin)});
    left_ = common.start[0].x;
    top_ = common.start[0].y;
    right_ = left_ + common.width;
    bottom_ = top_ + common.height;
  }

  explicit operator bool() const { return static_cast<bool>(mask_); }
  /// The columns of the image that the mask covers.
  int left() const { return left_; }
  int right() const { return right_; }
  bool coversRow(int y) const { return y >= top_ && y < bottom_; }
  /// The mask's byte for a covered pixel of the image.
  const BYTE* at(int x, int y) const {
    return mask_.row(static_cast<int>(std::int64_t{y} - origin_.y)) + (std::int64_t{x} - origin_.x);
  }

  /// The byte at a point's address, computed without a check against the mask's width: beside the mask it is
  /// padding or part of another row. 0 for an address outside the mask's block.
  BYTE byteByAddress(const POINT& point) const {
    const std::int64_t rowsUp = mask_.height() - 1 - (std::int64_t{point.y} - origin_.y);
    if (rowsUp < -maximumDibBytes || rowsUp > maximumDibBytes) return 0;
    const Layout layout = *layoutOf(dib_);
    const std::int64_t offset = layout.bits + rowsUp * mask_.stride() + (std::int64_t{point.x} - origin_.x);
    return offset >= 0 && offset < layout.total ? reinterpret_cast<const BYTE*>(dib_)[offset] : BYTE{0};
  }

 private:
  const BITMAPINFOHEADER* dib_;
  ConstView mask_;
  POINT origin_;
  int left_, top_, right_, bottom_;
};

/// Fills as fillConnected does, but only pixels whose mask byte is not 0.
///
/// A pixel that only the mask excludes is not visited, so each of its neighbours may test it again. One test
/// is enough: neither its mask byte nor, until it is painted, its colour changes, so all tests agree.
/// \param paint called as paint(run, mask bytes, count)
template <class Paint>
BOOL fillConnectedUnderMask(BITMAPINFOHEADER* dib, const POINT seed, const PixelBox& box, Paint paint,
                            const BITMAPINFOHEADER* maskDib, const POINT& maskOrigin) {
  const View image = viewOfDepth(dib, 32);
  const MaskOver mask(image, maskDib, maskOrigin);
  if (!image.contains(seed.x, seed.y) || !mask) return FALSE;
  // Deliberately without a test whether the mask covers the seed: a click beside it uses the byte at that
  // address.
  const BYTE seedMask = mask.byteByAddress(seed);
  return floodFromSeed(
      image, seed,
      [&](int y, int x, int count, BYTE* flags) {
        std::fill_n(flags, count, BYTE{0});
        const int from = std::max(x, mask.left());
        const int covered = std::min(x + count, mask.right()) - from;
        if (covered <= 0 || !mask.coversRow(y)) return;
        markMatches(pixelsOf(image.row(y)) + from, covered, box, flags + (from - x));
        keepUnderMask(mask.at(from, y), covered, flags + (from - x));
      },
      [&](int y, int left, int right) {
        const bool isSeed = y == seed.y && left == seed.x;
        paint(pixelsOf(image.row(y)) + left, isSeed ? &seedMask : mask.at(left, y), right - left);
      });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

// Opacities are passed as int and only their low byte is used, here and in every other fill.

BOOL CDIB32::ExtFillConnectedPixels(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int erase,
                                    int opacity, int tolerance, const POINT& seed, RECT* bounds) {
  const auto box = PixelBox::nearTarget(target, tolerance);
  if (erase != 0) return fillConnected(image, seed, box, SetAlpha(0), bounds);
  CompositeColour paint(fill, lowByte(opacity));
  return fillConnected(image, seed, box, paint, bounds);
}

BOOL CDIB32::ExtFillConnectedPixels_Mask(BITMAPINFOHEADER* image, DWORD target, COLORREF fill, int opacity,
                                         int tolerance, const POINT& seed, BITMAPINFOHEADER* mask,
                                         const CPoint& maskOrigin) {
  return fillConnectedUnderMask(image, seed, PixelBox::nearTarget(target, tolerance),
                                CompositeColour(fill, lowByte(opacity)), mask, maskOrigin);
}

BOOL CDIB32::ExtFillConnectedTransPixels(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                         const POINT& seed) {
  return fillConnected(image, seed, PixelBox::transparent(), PutColour(colour, lowByte(alpha)));
}

BOOL CDIB32::ExtFillConnectedTransPixels_Mask(BITMAPINFOHEADER* image, COLORREF colour, int alpha,
                                              const POINT& seed, BITMAPINFOHEADER* mask,
                                              const CPoint& maskOrigin) {
  return fillConnectedUnderMask(image, seed, PixelBox::transparent(), PutColour(colour, lowByte(alpha)), mask,
                                maskOrigin);
}
