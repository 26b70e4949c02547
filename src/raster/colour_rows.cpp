#include "raster/colour_rows.h"

#include "dib/pixel_format.h"

namespace dibkit {
namespace {

/// Writes colourAt(i), a palette entry read as a number, for every i. Each store but the last writes four
/// bytes, the fourth of which the next pixel overwrites, so a pixel takes one store instead of three.
template <class ColourAt>
void writeTriples(int count, BYTE* bgr, ColourAt&& colourAt) {
  for (int i = 0; i + 1 < count; ++i) {
    const DWORD colour = colourAt(i);
    std::memcpy(bgr + std::ptrdiff_t{i} * 3, &colour, 4);
  }
  if (count > 0) {
    const DWORD colour = colourAt(count - 1);
    std::memcpy(bgr + std::ptrdiff_t{count - 1} * 3, &colour, 3);
  }
}

}  // namespace

void decodeBgrRow(int bitCount, const BYTE* row, int x, int count, const PaletteTable& palette, BYTE* bgr) {
  const auto entry = [&](std::size_t index) {
    DWORD colour;
    std::memcpy(&colour, &palette[index], sizeof(colour));
    return colour;
  };
  const bool known = withFormat(bitCount, [&](auto format) {
    using Format = decltype(format);
    if constexpr (Format::bits == 24) {
      std::memcpy(bgr, row + std::ptrdiff_t{x} * 3, static_cast<std::size_t>(count) * 3);
    } else if constexpr (Format::bits <= 8) {
      writeTriples(count, bgr, [&](int i) { return entry(Format::get(row, x + i)); });
    } else {
      writeTriples(count, bgr,
                   [&](int i) { return packRgb(Format::colour(Format::get(row, x + i), palette)); });
    }
    return true;
  });
  if (!known) writeTriples(count, bgr, [&](int) { return bitCount <= 8 ? entry(0) : DWORD{0}; });
}

}  // namespace dibkit
