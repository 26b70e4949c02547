#include <algorithm>
#include <string>

#include "errors.h"
#include "formats/bmp.h"
#include "formats/byte_reader.h"

namespace host {

namespace {

constexpr std::size_t infoOffset = 14;
constexpr std::uint32_t coreHeaderBytes = 12;
constexpr std::uint32_t infoHeaderBytes = 40;
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
  requireUsableSize(header.size.width, header.topDown ? -height : height);
  header.size.height = static_cast<int>(header.topDown ? -height : height);
}

void readCompression(const ByteReader& reader, BmpHeader& header) {
  constexpr std::uint32_t masksWithAlpha = 6;
  const std::uint32_t compression = reader.u32(infoOffset + 16);
  if (compression > 3 && compression != masksWithAlpha) unsupported("this compression");
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
      (header.compression == BmpCompression::runs8 && header.bitCount == 8 && !header.topDown) ||
      (header.compression == BmpCompression::runs4 && header.bitCount == 4 && !header.topDown) ||
      (header.compression == BmpCompression::masks && (header.bitCount == 16 || header.bitCount == 32));
  if (!fits) unsupported("this compression at " + std::to_string(header.bitCount) + " bits");
}

/// Returns the bytes that the masks take behind the header.
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

void readPalette(const ByteReader& reader, std::size_t offset, bool core, BmpHeader& header) {
  if (header.bitCount > 8) return;
  const std::size_t most = std::size_t{1} << header.bitCount;
  const std::size_t entryBytes = core ? 3 : 4;
  const std::size_t used = core ? 0 : reader.u32(infoOffset + 32);
  // A core header's palette may be cut short by the pixels; others say how long theirs is.
  const std::size_t room = header.pixelOffset > offset ? (header.pixelOffset - offset) / entryBytes : 0;
  const std::size_t count = std::min({used != 0 ? used : most, most, room});
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
  // Headers of 16 to 64 bytes of another system are the start of the longer ones, with other compressions.
  if (!core && headerBytes < infoHeaderBytes) unsupported("this header");
  readSize(reader, core, header);
  if (!core) readCompression(reader, header);
  requireKnownCombination(header);
  const std::size_t masksBehind = readMasks(reader, headerBytes, header);
  readPalette(reader, infoOffset + headerBytes + masksBehind, core, header);
  return header;
}

}  // namespace host
