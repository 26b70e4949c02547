#pragma once

#include <array>
#include <vector>

#include "host/bytes.h"
#include "host/formats/diagnostics.h"
#include "host/picture.h"

namespace host {

enum class BmpCompression { none = 0, runs8 = 1, runs4 = 2, masks = 3 };

/// What a BMP file says about its pixels, checked: the size is usable, the depth and compression go together.
struct BmpHeader {
  Size size;
  bool topDown = false;
  int bitCount = 0;
  BmpCompression compression = BmpCompression::none;
  std::array<std::uint32_t, 4> masks{};  ///< red, green, blue, alpha of pixels above 8 bits
  std::vector<RGBQUAD> palette;
  std::size_t pixelOffset = 0;

  /// Black for an index beyond the palette.
  Pixel colourOf(std::uint32_t index) const {
    const RGBQUAD colour = index < palette.size() ? palette[index] : RGBQUAD{};
    return {colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 255};
  }
  std::size_t stride() const {
    return (static_cast<std::size_t>(size.width) * static_cast<std::size_t>(bitCount) + 31) / 32 * 4;
  }
  /// Where line y from the top starts in the file.
  std::size_t offsetOfLine(int y) const {
    return pixelOffset + static_cast<std::size_t>(topDown ? y : size.height - 1 - y) * stride();
  }
};

/// Reads the headers of every generation: 12 bytes, 16 to 64 of which the start is that of the longer ones,
/// 40 with masks after it, 52 to 124 with masks inside.
BmpHeader readBmpHeader(ByteView bytes);

/// Reads pixels that are run lengths. What can be decoded of damaged ones is in the picture.
Picture readBmpRuns(const BmpHeader& header, ByteView bytes, Diagnostics& diagnostics);

}  // namespace host
