#include "host/formats/lzw_encoder.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace host {

namespace {

/// Packs codes into blocks of up to 255 bytes.
class CodeBlocks {
 public:
  explicit CodeBlocks(int indexBits) : bytes_{static_cast<std::uint8_t>(indexBits), 0} {}

  void put(std::uint32_t code, int width) {
    bits_ |= code << bitCount_;
    bitCount_ += width;
    for (; bitCount_ >= 8; bitCount_ -= 8, bits_ >>= 8) putByte(static_cast<std::uint8_t>(bits_));
  }
  std::size_t size() const { return bytes_.size(); }
  Bytes finish() {
    if (bitCount_ > 0) putByte(static_cast<std::uint8_t>(bits_));
    if (bytes_[block_] != 0) bytes_.push_back(0);
    return std::move(bytes_);
  }

 private:
  void putByte(std::uint8_t byte) {
    bytes_.push_back(byte);
    if (++bytes_[block_] < 255) return;
    block_ = bytes_.size();
    bytes_.push_back(0);
  }

  Bytes bytes_;
  std::size_t block_ = 1;  ///< where the length of the last block is
  std::uint32_t bits_ = 0;
  int bitCount_ = 0;
};

}  // namespace

Bytes LzwEncoder::encode(ByteView indices, std::size_t maximumBytes) {
  // Codes may be as short as the indices allow, even where the palette has more entries.
  std::uint8_t usedBits = 0;
  for (const std::uint8_t index : indices) usedBits |= index;
  const int indexBits = std::max(2, static_cast<int>(std::bit_width(usedBits)));
  const std::uint32_t clearCode = 1U << indexBits;
  CodeBlocks blocks(indexBits);
  int width = indexBits + 1;
  std::uint32_t next = clearCode + 2;
  clear();
  blocks.put(clearCode, width);
  std::uint32_t current = indices.empty() ? clearCode + 1 : indices.front();
  for (const std::uint8_t index : indices.subspan(std::min<std::size_t>(1, indices.size()))) {
    const int known = findOrAdd(current, index, next);
    if (known > 0) {
      current = static_cast<std::uint32_t>(known);
      continue;
    }
    blocks.put(current, width);
    current = index;
    if (next >> width != 0) ++width;
    if (++next < maximumCodes) continue;
    blocks.put(clearCode, width);
    if (blocks.size() > maximumBytes) return {};
    clear();
    next = clearCode + 2;
    width = indexBits + 1;
  }
  blocks.put(current, width);
  if (current != clearCode + 1) {
    blocks.put(clearCode + 1, next >> width != 0 ? width + 1 : width);
  }
  Bytes bytes = blocks.finish();
  return bytes.size() > maximumBytes ? Bytes() : std::move(bytes);
}

/// The code of a string; adds a new string as `next` and returns 0.
int LzwEncoder::findOrAdd(std::uint32_t prefix, std::uint32_t index, std::uint32_t next) {
  const std::uint32_t key = prefix << 8 | index;
  for (std::uint32_t slot = key * 2654435761U >> 18;; slot = (slot + 1) % slots) {
    std::uint32_t& entry = strings_[slot];
    if (entry == 0) {
      entry = key << 12 | next;
      usedSlots_[used_++] = static_cast<std::uint16_t>(slot);
      return 0;
    }
    if (entry >> 12 == key) return static_cast<int>(entry & (maximumCodes - 1));
  }
}

void LzwEncoder::clear() {
  for (; used_ > 0; --used_) strings_[usedSlots_[used_ - 1]] = 0;
}

}  // namespace host
