#pragma once

#include <algorithm>
#include <cstdint>

#include "dib/allocate.h"
#include "dib/view.h"
#include "effects/effects.h"

/// What the effects that make a piece of the incoming frame share.
namespace dibkit {

/// `percent` of an extent, truncated toward zero. No percentage overflows: the host's numbers may be
/// anything.
inline std::int64_t percentOf(std::int64_t extent, long percent) {
  return extent * std::clamp<std::int64_t>(percent, INT32_MIN, INT32_MAX) / 100;
}

/// An amount held to the range in which the effect moves; beyond it nothing would change any more.
inline int clampAmount(long amount, int minimum, int maximum) {
  return static_cast<int>(std::clamp<long>(amount, minimum, maximum));
}

inline SIZE sizeOf(const BITMAPINFOHEADER* dib) { return {dib->biWidth, dib->biHeight}; }

/// The length of a picture's diagonal.
double diagonalOf(const SIZE& picture);

/// The picture's pixels as a new plain 32-bit image; null when memory runs out.
OwnedDib copyOf(const BITMAPINFOHEADER* picture);

/// Cuts what a region shows of the picture into the record, placed at the box of it. The region loses what of
/// it lies outside the picture.
/// \return FALSE for a region that was never made, with the record untouched, and for a cut that failed
BOOL cutPiece(BITMAPINFOHEADER* source, const OwnedRegion& region, EffectOutput& output);

/// Makes a piece of the place's size, has paint(view) paint it, and puts it into the record.
/// \return FALSE for a place of negative size and when memory runs out, with the record untouched
template <class Paint>
BOOL paintPiece(const RECT& place, InitialPixels pixels, EffectOutput& output, Paint&& paint) {
  OwnedDib piece = createDib(place.right - place.left, place.bottom - place.top, 32, 0, pixels);
  if (!piece) return FALSE;
  paint(View(piece.get()));
  output = {piece.release(), place};
  return TRUE;
}

}  // namespace dibkit
