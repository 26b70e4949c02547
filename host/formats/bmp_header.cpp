#include <algorithm>
#include <limits>
#include <string>

#include "host/errors.h"
#include "host/formats/bmp.h"
#include "host/formats/byte_reader.h"

namespace host {

namespace {

constexpr std::size_t infoOffset = 14;
constexpr std::uint32_t coreHeaderBytes = 12;
constexpr std::uint32_t infoHeaderBytes = 40;
/// Headers may end anywhere after the depth.
constexpr std::uint32_t shortestInfoHeaderBytes = 16;
/// From this size on the header itself holds the alpha mask.
constexpr std::uint32_t headerBytesWithAlpha = 56;

[[noreturn]] void unsupported(const std::string& what) {
  throw FormatError("BMP: " + what + " is not supported");
}

void readSize(const ByteReader& reader, bool core, BmpHeader& header) {
  std::int64_t height = 0;
  if (core) {
    header.size.width = static_cast<int>(reader.u16(infoOffset + 4));
    height = reader.u16(infoOffset + 6);
    header.bitCount = static_cast<int>(reader.u16(infoOffset + 10));
  } else {
    header.size.width = reader.i32(infoOffset + 4);
    height = reader.i32(infoOffset + 8);
    header.bitCount = static_cast<int>(reader.u16(infoOffset + 14));
  }
  header.topDown = height < 0;
  if (header.topDown) height = -height;
  if (height > std::numeric_limits<int>::max()) requireUsableSize(header.size.width, height);
  header.size.height = static_cast<int>(height);
}

/// A field of 32 bits, 0 when the header is too short for it. \param offset in the header
std::uint32_t field(const ByteReader& reader, std::uint32_t headerBytes, std::size_t offset) {
  return offset + 4 <= headerBytes ? reader.u32(infoOffset + offset) : 0;
}

void readCompression(const ByteReader& reader, std::uint32_t headerBytes, BmpHeader& header) {
  constexpr std::uint32_t masks = 3, masksWithAlpha = 6;
  const std::uint32_t compression = field(reader, headerBytes, 16);
  // Another system's shorter headers number other compressions from 3 on.
  const bool known = compression < masks || (headerBytes >= infoHeaderBytes &&
                                             (compression == masks || compression == masksWithAlpha));
  if (!known) unsupported("this compression");
  header.compression =
      compression == masksWithAlpha ? BmpCompression::masks : static_cast<BmpCompression>(compression);
}

void requireKnownCombination(const BmpHeader& header) {
  constexpr std::array<int, 7> depths{1, 2, 4, 8, 16, 24, 32};
  if (std::find(depths.begin(), depths.end(), header.bitCount) == depths.end()) {
    unsupported("a depth of " + std::to_string(header.bitCount) + " bits");
  }
  const bool fits =
      header.compression == BmpCompression::none ||
      (header.compression == BmpCompression::runs8 && header.bitCount == 8) ||
      (header.compression == BmpCompression::runs4 && header.bitCount == 4) ||
      (header.compression == BmpCompression::masks && (header.bitCount == 16 || header.bitCount == 32));
  if (!fits) unsupported("this compression of " + std::to_string(header.bitCount) + "-bit pixels");
}

/// Returns the number of bytes of the masks after the header.
std::size_t readMasks(const ByteReader& reader, std::uint32_t headerBytes, BmpHeader& header) {
  if (header.compression != BmpCompression::masks) {
    header.masks = header.bitCount == 16 ? std::array<std::uint32_t, 4>{0x7C00, 0x03E0, 0x001F, 0}
                                         : std::array<std::uint32_t, 4>{0xFF0000, 0x00FF00, 0x0000FF, 0};
    return 0;
  }
  constexpr std::uint32_t alphaMasks = 6;
  const bool behindWithAlpha = headerBytes == infoHeaderBytes && reader.u32(infoOffset + 16) == alphaMasks;
  const std::size_t count = headerBytes >= headerBytesWithAlpha || behindWithAlpha ? 4 : 3;
  for (std::size_t i = 0; i < count; ++i) header.masks[i] = reader.u32(infoOffset + infoHeaderBytes + 4 * i);
  return headerBytes == infoHeaderBytes ? 4 * count : 0;
}

void readPalette(const ByteReader& reader, std::uint32_t headerBytes, std::size_t offset, BmpHeader& header) {
  if (header.bitCount > 8) return;
  const std::size_t maximum = std::size_t{1} << header.bitCount;
  const std::size_t entryBytes = headerBytes == coreHeaderBytes ? 3 : 4;
  const std::size_t used = field(reader, headerBytes, 32);
  // A core header's palette may be cut short by the pixels; others say how long theirs is.
  const std::size_t room = header.pixelOffset > offset ? (header.pixelOffset - offset) / entryBytes : 0;
  const std::size_t count = std::min({used != 0 ? used : maximum, maximum, room});
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t* entry = reader.at(offset + i * entryBytes, entryBytes);
    header.palette.push_back(RGBQUAD{entry[0], entry[1], entry[2], 0});
  }
}

}  // namespace

BmpHeader readBmpHeader(ByteView bytes) {
  const ByteReader reader(bytes);
  BmpHeader header;
  header.pixelOffset = reader.u32(10);
  const std::uint32_t headerBytes = reader.u32(infoOffset);
  const bool core = headerBytes == coreHeaderBytes;
  if (!core && headerBytes < shortestInfoHeaderBytes) unsupported("this header");
  readSize(reader, core, header);
  readCompression(reader, headerBytes, header);
  requireKnownCombination(header);
  const std::size_t masksBehind = readMasks(reader, headerBytes, header);
  readPalette(reader, headerBytes, infoOffset + headerBytes + masksBehind, header);
  return header;
}

}  // namespace host
