#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

#include "dib/layout.h"

/// \file
/// The palette of a packed DIB.

namespace dibkit {

/// The first palette entry, biSize bytes from the start of the block.
/// \param dib not null
inline RGBQUAD* paletteOf(BITMAPINFOHEADER* dib) {
  return reinterpret_cast<RGBQUAD*>(reinterpret_cast<BYTE*>(dib) + dib->biSize);
}
inline const RGBQUAD* paletteOf(const BITMAPINFOHEADER* dib) {
  return paletteOf(const_cast<BITMAPINFOHEADER*>(dib));
}

/// A copy of an image's palette with 256 entries, so that no index needs a check. Entries beyond the palette
/// are the bytes that follow it in the block, pixel rows included: operations give these colours, and hosts
/// rely on them. Entries outside the block are black.
class PaletteTable {
 public:
  PaletteTable() = default;
  /// The palette that starts `offset` bytes from the start of the block; black for an unusable header.
  PaletteTable(const BITMAPINFOHEADER* dib, std::int64_t offset) {
    const std::optional<Layout> layout = layoutOf(dib);
    if (!layout || offset < 0 || offset >= layout->total) return;
    const std::int64_t readable = std::min<std::int64_t>(sizeof(entries_), layout->total - offset);
    std::memcpy(entries_.data(), reinterpret_cast<const BYTE*>(dib) + offset,
                static_cast<std::size_t>(readable));
  }
  /// The palette that follows the header.
  explicit PaletteTable(const BITMAPINFOHEADER* dib) : PaletteTable(dib, dib != nullptr ? dib->biSize : 0) {}

  const RGBQUAD& operator[](std::size_t index) const { return entries_[index]; }
  const RGBQUAD* data() const { return entries_.data(); }

 private:
  std::array<RGBQUAD, 256> entries_{};
};

}  // namespace dibkit
