#include "host/formats/lzw_encoder.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace host {

namespace {

/// Packs codes into bytes.
class CodeBits {
 public:
  void put(std::uint32_t code, int width) {
    bits_ |= std::uint64_t{code} << bitCount_;
    bitCount_ += width;
    if (bitCount_ < 32) return;
    const auto low = static_cast<std::uint32_t>(bits_);
    bytes_.insert(bytes_.end(), {static_cast<std::uint8_t>(low), static_cast<std::uint8_t>(low >> 8),
                                 static_cast<std::uint8_t>(low >> 16), static_cast<std::uint8_t>(low >> 24)});
    bits_ >>= 32;
    bitCount_ -= 32;
  }
  /// How many bytes there will be at least.
  std::size_t size() const { return bytes_.size(); }
  Bytes finish() {
    for (; bitCount_ > 0; bitCount_ -= 8, bits_ >>= 8) bytes_.push_back(static_cast<std::uint8_t>(bits_));
    return std::move(bytes_);
  }

 private:
  Bytes bytes_;
  std::uint64_t bits_ = 0;
  int bitCount_ = 0;
};

constexpr std::size_t blockBytes = 255;

/// What a number of bytes takes as blocks, the index bits before them and the empty block after them
/// included.
constexpr std::size_t sizeInBlocks(std::size_t bytes) {
  return 1 + bytes + (bytes + blockBytes - 1) / blockBytes + 1;
}

Bytes inBlocks(int indexBits, ByteView bytes) {
  Bytes blocks;
  blocks.reserve(sizeInBlocks(bytes.size()));
  blocks.push_back(static_cast<std::uint8_t>(indexBits));
  while (!bytes.empty()) {
    const ByteView block = bytes.first(std::min(bytes.size(), blockBytes));
    blocks.push_back(static_cast<std::uint8_t>(block.size()));
    blocks.insert(blocks.end(), block.begin(), block.end());
    bytes = bytes.subspan(block.size());
  }
  blocks.push_back(0);
  return blocks;
}

}  // namespace

/// The code of a string; adds a new string as `next` and returns 0.
inline std::uint32_t LzwEncoder::findOrAdd(std::uint32_t prefix, std::uint32_t index, std::uint32_t next) {
  std::uint32_t& first = firstStrings_[prefix];
  if (first >> codeBits == index && first != 0) return first % maximumCodes;
  if (first == 0) {
    first = index << codeBits | next;
    return 0;
  }
  const std::uint32_t key = prefix << 8 | index;
  for (std::uint32_t slot = key * 2654435761U >> (32 - slotBits);; slot = (slot + 1) % slots) {
    std::uint32_t& entry = otherStrings_[slot];
    if (entry == 0) {
      entry = key << codeBits | next;
      usedSlots_[used_++] = static_cast<std::uint16_t>(slot);
      return 0;
    }
    if (entry >> codeBits == key) return entry % maximumCodes;
  }
}

Bytes LzwEncoder::encode(ByteView indices, std::size_t maximumBytes) {
  // Codes may be as short as the indices allow, even where the palette has more entries.
  std::uint8_t usedBits = 0;
  for (const std::uint8_t index : indices) usedBits |= index;
  const int indexBits = std::max(2, static_cast<int>(std::bit_width(usedBits)));
  const std::uint32_t clearCode = 1U << indexBits;
  CodeBits bits;
  int width = indexBits + 1;
  std::uint32_t next = clearCode + 2;
  clear();
  bits.put(clearCode, width);
  std::uint32_t current = indices.empty() ? clearCode + 1 : indices.front();
  for (const std::uint8_t index : indices.subspan(std::min<std::size_t>(1, indices.size()))) {
    const std::uint32_t known = findOrAdd(current, index, next);
    if (known != 0) {
      current = known;
      continue;
    }
    bits.put(current, width);
    current = index;
    if (next >> width != 0) ++width;
    if (++next < maximumCodes) continue;
    bits.put(clearCode, width);
    if (sizeInBlocks(bits.size()) > maximumBytes) return {};
    clear();
    next = clearCode + 2;
    width = indexBits + 1;
  }
  bits.put(current, width);
  if (current != clearCode + 1) {
    bits.put(clearCode + 1, next >> width != 0 ? width + 1 : width);
  }
  const Bytes bytes = bits.finish();
  return sizeInBlocks(bytes.size()) > maximumBytes ? Bytes() : inBlocks(indexBits, bytes);
}

void LzwEncoder::clear() {
  firstStrings_.fill(0);
  for (; used_ > 0; --used_) otherStrings_[usedSlots_[used_ - 1]] = 0;
}

}  // namespace host
