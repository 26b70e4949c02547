#include "formats/lzw_length.h"

#include <algorithm>
#include <vector>

namespace host {

namespace {

/// The strings that have a code: a code and the index that follows it, packed with the code of the two.
class StringTable {
 public:
  StringTable() : entries_(slots) {}

  void clear() { std::fill(entries_.begin(), entries_.end(), 0U); }
  /// The code of the string, or -1 after the string was entered under `next`.
  int findOrAdd(std::uint32_t prefix, std::uint32_t index, std::uint32_t next) {
    const std::uint32_t key = prefix << 8 | index;
    for (std::uint32_t slot = key * 2654435761U >> 18;; slot = (slot + 1) % slots) {
      std::uint32_t& entry = entries_[slot];
      if (entry == 0) {
        entry = key << 12 | next;
        return -1;
      }
      if (entry >> 12 == key) return static_cast<int>(entry & 4095);
    }
  }

 private:
  // Four times as many as there are codes. No entry is 0, since no new code is.
  static constexpr std::uint32_t slots = 1U << 14;
  std::vector<std::uint32_t> entries_;
};

}  // namespace

std::size_t lzwLength(ByteView indices, int colourBits, std::size_t most) {
  if (indices.empty()) return 0;
  constexpr std::uint32_t mostCodes = 4096;
  const std::uint32_t firstFree = (1U << colourBits) + 2;
  StringTable table;
  std::uint32_t next = firstFree;
  std::size_t width = static_cast<std::size_t>(colourBits) + 1;
  std::size_t bits = 3 * width;  // the clear code, the last string and the end
  std::uint32_t current = indices.front();
  for (const std::uint8_t index : indices.subspan(1)) {
    const int known = table.findOrAdd(current, index, next);
    if (known >= 0) {
      current = static_cast<std::uint32_t>(known);
      continue;
    }
    bits += width;
    current = index;
    if (next >> width != 0) ++width;
    if (++next < mostCodes) continue;
    bits += width;
    if (bits / 8 > most) return most + 1;
    table.clear();
    next = firstFree;
    width = static_cast<std::size_t>(colourBits) + 1;
  }
  const std::size_t bytes = (bits + 7) / 8;
  return bytes + bytes / 255 + 1;  // each block of 255 bytes has one in front
}

}  // namespace host
