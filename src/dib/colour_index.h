#pragma once

#include <array>
#include <cstdint>
#include <cstring>

#include "dib/pixel_format.h"

namespace dibkit {

/// Numbers colours in order of first appearance, at most 256 of them: the palette that a picture of few
/// colours makes by itself. A small open-addressed hash; nothing is allocated. Keys are colours of 24 bits
/// (entryKey).
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
    if (tags_[slot] == 0) {
      if (size_ == capacity) return none;
      tags_[slot] = key | used;
      indexes_[slot] = static_cast<BYTE>(size_);
      keys_[static_cast<std::size_t>(size_++)] = key;
    }
    return indexes_[slot];
  }

  /// The colour's number, or `none`.
  int find(DWORD key) const {
    const std::size_t slot = slotOf(key);
    return tags_[slot] == 0 ? none : indexes_[slot];
  }

 private:
  static constexpr int slotBits = 10;
  static constexpr DWORD used = 1U << 24;  // tells a slot that holds black from an empty one

  /// The slot that holds the key, or the empty one where it belongs. At least three slots in four are empty.
  std::size_t slotOf(DWORD key) const {
    std::size_t slot = (key * 0x9E3779B1U) >> (32 - slotBits);
    while (tags_[slot] != 0 && tags_[slot] != (key | used)) slot = (slot + 1) % (std::size_t{1} << slotBits);
    return slot;
  }

  std::array<DWORD, std::size_t{1} << slotBits> tags_{};
  std::array<BYTE, std::size_t{1} << slotBits> indexes_;
  std::array<DWORD, capacity> keys_;
  int size_ = 0;
};

/// Calls use(key, left, right) for the pixels [from, end) of a 24- or 32-bit row from the left, in runs of
/// one colour; a run may come in several pieces. Flat areas go by eight pixels at a time. \param use returns
/// false to stop \return false when `use` stopped the walk
template <class Format, class Use>
bool forEachColourRun(const BYTE* row, int from, int end, Use&& use) {
  constexpr std::ptrdiff_t step = Format::bits / 8;
  const auto sameAsLeft = [row](int x) {
    std::uint64_t here[step];
    std::uint64_t left[step];
    std::memcpy(here, row + x * step, sizeof(here));
    std::memcpy(left, row + x * step - step, sizeof(left));
    for (int i = 0; i < step; ++i) {
      if (here[i] != left[i]) return false;
    }
    return true;
  };
  for (int x = from; x < end;) {
    const int left = x++;
    while (x + 8 <= end && sameAsLeft(x)) x += 8;
    if (!use(entryKey(Format::colour(Format::get(row, left))), left, x)) return false;
  }
  return true;
}

}  // namespace dibkit
