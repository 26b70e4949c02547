#include "host/formats/orientation.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/errors.h"
#include "host/formats/byte_reader.h"

namespace host {

namespace {

/// The numbers of a TIFF block, whose first bytes say which byte order it has.
class TiffReader {
 public:
  explicit TiffReader(ByteView bytes) : bytes_(bytes), bigEndian_(bytes_.u8(0) == 'M') {}

  std::uint32_t u16(std::size_t offset) const {
    const std::uint32_t value = bytes_.u16(offset);
    return bigEndian_ ? (value & 255) << 8 | value >> 8 : value;
  }
  std::uint32_t u32(std::size_t offset) const {
    return bigEndian_ ? u16(offset) << 16 | u16(offset + 2) : u16(offset) | u16(offset + 2) << 16;
  }

 private:
  ByteReader bytes_;
  bool bigEndian_;
};

/// The first directory holds what is true of the main picture.
int orientationInTiff(const TiffReader& tiff) {
  constexpr std::uint32_t orientationTag = 0x0112;
  constexpr std::size_t entryBytes = 12;
  const std::size_t directory = tiff.u32(4);
  const std::size_t entries = tiff.u16(directory);
  for (std::size_t i = 0; i < entries; ++i) {
    const std::size_t entry = directory + 2 + i * entryBytes;
    if (tiff.u16(entry) != orientationTag) continue;
    const std::uint32_t value = tiff.u16(entry + 8);
    return value >= 1 && value <= 8 ? static_cast<int>(value) : uprightAlready;
  }
  return uprightAlready;
}

/// Whether the upright picture's width is the stored one's height.
bool exchangesSides(int orientation) { return orientation >= 5; }

}  // namespace

int orientationOf(ByteView exif) {
  constexpr std::size_t markBytes = 6;
  const bool marked = exif.size() >= markBytes && std::memcmp(exif.data(), "Exif\0", markBytes) == 0;
  try {
    return orientationInTiff(TiffReader(marked ? exif.subspan(markBytes) : exif));
  } catch (const FormatError&) {
    return uprightAlready;
  }
}

std::optional<Size> asStored(const std::optional<Size>& upright, int orientation) {
  if (!upright || !exchangesSides(orientation)) return upright;
  return Size{upright->height, upright->width};
}

Picture upright(Picture picture, int orientation) {
  if (orientation == uprightAlready) return picture;
  // Maps column x and line y of the upright picture to the stored one: exchanged from 5 on, then counted
  // from the other side.
  const bool exchanged = exchangesSides(orientation);
  const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  Picture result(exchanged ? Size{picture.height(), picture.width()} : picture.size());
  for (int y = 0; y < result.height(); ++y) {
    Pixel* row = result.row(y);
    for (int x = 0; x < result.width(); ++x) {
      const int column = exchanged ? y : x;
      const int line = exchanged ? x : y;
      row[x] = picture.row(fromBottom ? picture.height() - 1 - line
                                      : line)[fromRight ? picture.width() - 1 - column : column];
    }
  }
  return result;
}

}  // namespace host
