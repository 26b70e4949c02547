#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "dib/pixel_format.h"

namespace dibkit {

/// Numbers colours in order of first appearance, at most 256 of them: the exact palette of a picture of few
/// colours. A small open-addressed hash; nothing is allocated. Keys are colours of 24 bits (packRgb).
class ColourIndex {
 public:
  static constexpr int capacity = 256;
  static constexpr int none = -1;

  int size() const { return size_; }
  /// The colour with the given number.
  DWORD operator[](int index) const { return keys_[static_cast<std::size_t>(index)]; }

  /// The colour's number, given now when the colour is new; `none` for a new colour after the 256th.
  int enter(DWORD key) {
    const std::size_t slot = slotOf(key);
    if (tags_[slot] != 0) return indexes_[slot];
    if (size_ == capacity) return none;
    tags_[slot] = key | used;
    indexes_[slot] = static_cast<BYTE>(size_);
    keys_[static_cast<std::size_t>(size_)] = key;
    return size_++;
  }

  /// The colour's number, or `none`.
  int find(DWORD key) const {
    const std::size_t slot = slotOf(key);
    return tags_[slot] != 0 ? indexes_[slot] : none;
  }

 private:
  // So many slots that a colour is nearly always found at the first probe: a second one costs a mispredicted
  // branch, which takes longer than the search.
  static constexpr int slotBits = 12;
  static constexpr DWORD used = 1U << 24;  // distinguishes a slot with black from an empty one

  /// The slot of the key, or the empty one that it would get.
  std::size_t slotOf(DWORD key) const {
    std::size_t slot = (key * 0x9E3779B1U) >> (32 - slotBits);
    while (tags_[slot] != (key | used) && tags_[slot] != 0) {
      slot = (slot + 1) % (std::size_t{1} << slotBits);
    }
    return slot;
  }

  std::array<DWORD, std::size_t{1} << slotBits> tags_{};
  std::array<BYTE, std::size_t{1} << slotBits> indexes_;
  std::array<DWORD, capacity> keys_;
  int size_ = 0;
};

/// Calls use(key, x, count) for the pixels [from, end) of a 24- or 32-bit row from the left: count() pixels
/// from x on have the colour `key`, count being a compile-time 1 or, in flat areas and after a call with the
/// same key, 8.
/// \param use returns false to stop
/// \return false when `use` stopped it
template <class Format, class Use>
bool forEachColour(const BYTE* row, int from, int end, Use&& use) {
  using One = std::integral_constant<int, 1>;
  using Eight = std::integral_constant<int, 8>;
  constexpr std::ptrdiff_t step = Format::bits / 8;
  const auto keyAt = [row](int x) { return packRgb(Format::colour(Format::get(row, x))); };
  const auto eightLikeTheOneBefore = [row](int x) {
    std::uint64_t difference = 0;
    for (std::ptrdiff_t i = 0; i < step; ++i) {
      std::uint64_t here;
      std::uint64_t before;
      std::memcpy(&here, row + x * step + 8 * i, sizeof(here));
      std::memcpy(&before, row + x * step + 8 * i - step, sizeof(before));
      difference |= here ^ before;
    }
    return difference == 0;
  };

  if (from >= end) return true;
  if (!use(keyAt(from), from, One())) return false;
  int x = from + 1;
  for (; end - x >= 8; x += 8) {
    if (eightLikeTheOneBefore(x)) {
      if (!use(keyAt(x), x, Eight())) return false;
      continue;
    }
    for (int i = x; i < x + 8; ++i) {
      if (!use(keyAt(i), i, One())) return false;
    }
  }
  for (; x < end; ++x) {
    if (!use(keyAt(x), x, One())) return false;
  }
  return true;
}

}  // namespace dibkit
