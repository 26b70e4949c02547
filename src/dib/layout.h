#pragma once

#include <cstdint>
#include <optional>

#include "dib/dib.h"

/// \file
/// The sizes and offsets of a packed DIB's parts, in 64 bits.

namespace dibkit {

/// The largest block that a packed DIB may be.
constexpr std::int64_t maximumDibBytes = INT32_MAX;

/// Bytes from one row to the next. Both factors are at most 32 bits wide, so nothing overflows.
constexpr std::int64_t strideOf(std::int64_t width, std::int64_t bitCount) {
  return (width * bitCount + 31) / 32 * 4;
}

/// The offsets of a packed DIB's parts, in bytes from its first one.
struct Layout {
  std::int64_t bits = 0;   ///< first byte of the pixel rows
  std::int64_t total = 0;  ///< size of the whole block
};

/// The layout that a header describes. Every operation of the library takes an image only if it has one.

/// \return nothing for a null pointer, a header shorter than a BITMAPINFOHEADER, a negative width or height,
///     or more than maximumDibBytes
inline std::optional<Layout> layoutOf(const BITMAPINFOHEADER* dib) {
  if (dib == nullptr || dib->biSize < sizeof(BITMAPINFOHEADER) || dib->biWidth < 0 || dib->biHeight < 0) {
    return std::nullopt;
  }
  Layout layout;
  layout.bits = dib->biSize;
  if (dib->biCompression == BI_BITFIELDS) layout.bits += 12;
  layout.bits += std::int64_t{GetDIBPaletteSize(dib)} * 4;
  const std::int64_t stride = strideOf(dib->biWidth, dib->biBitCount);
  if (dib->biHeight > 0 && stride > maximumDibBytes / dib->biHeight) return std::nullopt;
  layout.total = layout.bits + stride * dib->biHeight;
  if (layout.total > maximumDibBytes) return std::nullopt;
  return layout;
}

}  // namespace dibkit
