#pragma once

#include <algorithm>
#include <cstdint>

#include "dib/allocate.h"
#include "dib/view.h"
#include "effects/effects.h"

/// \file
/// What the functions of the effects share.
namespace dibkit {

/// The alpha of an opaque pixel of 32 bits, in its place.
constexpr DWORD opaqueAlpha = 0xFF000000;

/// `percent` of an extent, truncated toward zero. It cannot overflow, since a percentage beyond 32 bits
/// counts as the nearest number of 32 bits.
inline std::int64_t percentOf(std::int64_t extent, long percent) {
  return extent * std::clamp<std::int64_t>(percent, INT32_MIN, INT32_MAX) / 100;
}

/// An amount limited to the range in which it changes the result.
inline int clampAmount(long amount, int minimum, int maximum) {
  return static_cast<int>(std::clamp<long>(amount, minimum, maximum));
}

inline SIZE sizeOf(const BITMAPINFOHEADER* dib) { return {dib->biWidth, dib->biHeight}; }

/// The length of a picture's diagonal.
double diagonalOf(const SIZE& picture);

/// A new 32-bit image of a picture's size; putRow(row, y) writes each row. Null when memory runs out.
template <class PutRow>
OwnedDib makeRows(const ConstView& picture, PutRow&& putRow) {
  return makeImage(picture.width(), picture.height(), 32, putRow);
}

/// The picture's pixels as a new 32-bit image; null when memory runs out.
OwnedDib copyOf(const BITMAPINFOHEADER* picture);

/// Cuts a region out of the picture; the piece's rectangle is the region's bounding box. The region itself is
/// clipped to the picture.
/// \return FALSE for a null region, with `output` untouched, and when memory runs out
BOOL cutPiece(BITMAPINFOHEADER* source, const OwnedRegion& region, EffectOutput& output);

/// Makes a piece of the size of its rectangle, whose pixels paint(view) writes.
/// \return FALSE for a rectangle of negative size and when memory runs out, with `output` untouched
template <class Paint>
BOOL paintPiece(const RECT& rect, InitialPixels pixels, EffectOutput& output, Paint&& paint) {
  OwnedDib piece = createDib(rect.right - rect.left, rect.bottom - rect.top, 32, 0, pixels);
  if (!piece) return FALSE;
  paint(View(piece.get()));
  output = {piece.release(), rect};
  return TRUE;
}

}  // namespace dibkit
