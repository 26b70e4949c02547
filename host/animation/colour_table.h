#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include <dibkit.h>

namespace host {

/// Up to 256 colours in order of first appearance, and the index of each. A colour is a pixel as it is in
/// memory.
class ColourTable {
 public:
  /// Nothing for a colour that is not there.
  std::optional<std::uint8_t> find(std::uint32_t colour) const {
    const Slot& slot = slots_[slotOf(colour)];
    return slot.taken ? std::optional(slot.index) : std::nullopt;
  }
  /// Nothing for a new colour when there is no room for it.
  std::optional<std::uint8_t> findOrAdd(std::uint32_t colour) {
    Slot& slot = slots_[slotOf(colour)];
    if (slot.taken) return slot.index;
    if (palette_.size() == maximumColours) return std::nullopt;
    slot = {colour, static_cast<std::uint8_t>(palette_.size()), true};
    RGBQUAD entry{};
    std::memcpy(&entry, &colour, sizeof(entry));
    entry.rgbReserved = 0;
    palette_.push_back(entry);
    return slot.index;
  }
  const std::vector<RGBQUAD>& palette() const { return palette_; }

 private:
  struct Slot {
    std::uint32_t colour = 0;
    std::uint8_t index = 0;
    bool taken = false;
  };
  static constexpr std::size_t maximumColours = 256;
  static constexpr std::size_t slotCount = 4 * maximumColours;

  /// Where the colour is, or would be.
  std::size_t slotOf(std::uint32_t colour) const {
    std::size_t slot = colour * 2654435761U >> 22;
    while (slots_[slot].taken && slots_[slot].colour != colour) slot = (slot + 1) % slotCount;
    return slot;
  }

  std::array<Slot, slotCount> slots_{};
  std::vector<RGBQUAD> palette_;
};

}  // namespace host
