#include "gif_parts.h"

#include <algorithm>
#include <bit>

namespace journey {

namespace {

void put(Bytes& bytes, std::initializer_list<int> values) {
  for (const int value : values) bytes.push_back(static_cast<std::uint8_t>(value));
}

void putWords(Bytes& bytes, std::initializer_list<int> values) {
  for (const int value : values) put(bytes, {value & 255, value >> 8});
}

/// Entries are 2 to the power of one more than this.
int sizeField(const Colours& palette) {
  return static_cast<int>(std::bit_width(std::max<std::size_t>(2, palette.size()) - 1)) - 1;
}

void putPalette(Bytes& bytes, Colours palette) {
  if (palette.empty()) return;
  palette.resize(std::size_t{2} << sizeField(palette), palette.front());
  for (const std::uint32_t colour : palette)
    put(bytes, {int(colour >> 16 & 255), int(colour >> 8 & 255), int(colour & 255)});
}

/// Codes that stand for one index each. Another "clear" comes before their width would grow.
Bytes codesOf(const Bytes& indices, int symbolBits) {
  Bytes bytes;
  int room = 0;
  const auto putCode = [&](int code) {
    for (int i = 0; i <= symbolBits; ++i) {
      if (room-- == 0) {
        bytes.push_back(0);
        room = 7;
      }
      bytes.back() = static_cast<std::uint8_t>(bytes.back() | (code >> i & 1) << (7 - room));
    }
  };
  const int clear = 1 << symbolBits;
  for (std::size_t i = 0; i < indices.size(); ++i) {
    if (i % static_cast<std::size_t>(clear - 2) == 0) putCode(clear);
    putCode(indices[i]);
  }
  putCode(clear + 1);
  return bytes;
}

void putBlocks(Bytes& bytes, const Bytes& content) {
  for (std::size_t at = 0; at < content.size(); at += 255) {
    const std::size_t size = std::min<std::size_t>(255, content.size() - at);
    put(bytes, {int(size)});
    bytes.insert(bytes.end(), content.begin() + std::ptrdiff_t(at),
                 content.begin() + std::ptrdiff_t(at + size));
  }
  put(bytes, {0});
}

void putPart(Bytes& bytes, const Part& part) {
  put(bytes, {0x21, 0xF9, 4, part.disposal << 2 | (part.transparent >= 0 ? 1 : 0)});
  putWords(bytes, {part.delay});
  put(bytes, {std::max(0, part.transparent), 0, 0x2C});
  putWords(bytes, {part.left, part.top, part.width, part.height});
  put(bytes, {(part.palette.empty() ? 0 : 0x80 | sizeField(part.palette)) | (part.interlaced ? 0x40 : 0)});
  putPalette(bytes, part.palette);
  Bytes indices;
  for (const int y : lineOrder(part.height, part.interlaced)) {
    const auto line = part.indices.begin() + std::ptrdiff_t{y} * part.width;
    indices.insert(indices.end(), line, line + part.width);
  }
  constexpr int symbolBits = 8;
  put(bytes, {symbolBits});
  putBlocks(bytes, codesOf(indices, symbolBits));
}

}  // namespace

std::vector<int> lineOrder(int height, bool interlaced) {
  std::vector<int> order;
  for (const auto& [first, step] : {std::pair(0, 8), std::pair(4, 8), std::pair(2, 4), std::pair(1, 2)}) {
    for (int y = first; interlaced && y < height; y += step) order.push_back(y);
  }
  for (int y = 0; !interlaced && y < height; ++y) order.push_back(y);
  return order;
}

void writeGif(const std::string& path, int width, int height, const Colours& palette,
              const std::vector<Part>& parts) {
  Bytes bytes{'G', 'I', 'F', '8', '9', 'a'};
  putWords(bytes, {width, height});
  put(bytes, {palette.empty() ? 0 : 0x80 | sizeField(palette), 0, 0});
  putPalette(bytes, palette);
  for (const Part& part : parts) putPart(bytes, part);
  put(bytes, {0x3B});
  write(path, bytes);
}

}  // namespace journey
