#pragma once

#include <algorithm>
#include <cstdint>

#include "dib/view.h"
#include "effects/effects.h"

/// What the effects that cut a region out of the incoming frame share.
namespace dibkit {

/// `percent` of an extent, truncated toward zero. No percentage overflows: the host's numbers may be
/// anything.
inline std::int64_t percentOf(std::int64_t extent, long percent) {
  return extent * std::clamp<std::int64_t>(percent, INT32_MIN, INT32_MAX) / 100;
}

/// An amount held to the range in which the effect moves; beyond it nothing would change any more.
inline int clampAmount(long amount, int least, int greatest) {
  return static_cast<int>(std::clamp<long>(amount, least, greatest));
}

inline SIZE sizeOf(const BITMAPINFOHEADER* dib) { return {dib->biWidth, dib->biHeight}; }

/// The picture's pixels as a new plain 32-bit image; null when memory runs out.
OwnedDib copyOf(const BITMAPINFOHEADER* picture);

/// Takes away what of a region lies outside the picture.
void clipToPicture(const OwnedRegion& region, const SIZE& picture);

/// Cuts what a region shows into the record, placed at the region's box.
/// \return FALSE for a region that was never made, with the record untouched, and for a cut that failed
BOOL cutPiece(BITMAPINFOHEADER* source, const OwnedRegion& region, EffectOutput& output);

}  // namespace dibkit
