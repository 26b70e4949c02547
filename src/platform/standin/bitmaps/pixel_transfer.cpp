#include "platform/standin/bitmaps/pixel_transfer.h"

#include <algorithm>
#include <array>

namespace dibkit::standin {

namespace {

bool isVerbatim(const Pixels& from, const Pixels& to) {
  return from.bitCount == to.bitCount && from.sixGreenBits == to.sixGreenBits &&
         std::equal(from.colours.begin(), from.colours.end(), to.colours.begin(), to.colours.end());
}

/// True colours are matched with 256 entries by the top five bits of each channel, taken as the middle of the
/// values that share them.
constexpr Colour coarse(Colour colour) { return (colour & 0xF8F8F8) + 0x040404; }
constexpr std::size_t coarseSlot(Colour colour) {
  return (colour >> 9 & 0x7C00) | (colour >> 6 & 0x03E0) | (colour >> 3 & 0x001F);
}

/// Sixteen entries are matched with exact colours, several of which share a slot of the cache.
constexpr std::size_t exactSlot(Colour colour) { return colour * 0x9E3779B1U >> 17; }

/// Comparing with two entries is faster than a cache.
constexpr bool cachesIndexes(int bitCount) { return bitCount == 4 || bitCount == 8; }

}  // namespace

PixelTransfer::PixelTransfer(const Pixels& from, const Pixels& to)
    : from_(from), to_(to), verbatim_(isVerbatim(from, to)) {
  if (verbatim_) return;
  if (from.bitCount <= 8) {
    for (const Colour colour : from.colours) indexes_.push_back(to.rawOfColour(colour));
  } else if (cachesIndexes(to.bitCount)) {
    known_.assign(std::size_t{1} << 15, 0);
    // An empty slot looks like one with black, so black is entered from the start.
    known_[exactSlot(black)] = to.rawOfColour(black);
  }
}

DWORD PixelTransfer::indexOf(Colour colour) {
  const bool isCoarse = to_.bitCount == 8;
  if (isCoarse) colour = coarse(colour);
  DWORD& known = known_[isCoarse ? coarseSlot(colour) : exactSlot(colour)];
  if (known >> 8 != colour) known = colour << 8 | to_.rawOfColour(colour);
  return known & 0xFF;
}

DWORD PixelTransfer::translated(DWORD raw) {
  if (from_.bitCount <= 8) return indexes_[raw];
  const Colour colour = from_.colourOfRaw(raw);
  return cachesIndexes(to_.bitCount) ? indexOf(colour) : to_.rawOfColour(colour);
}

void PixelTransfer::copy(int fromX, int fromY, int toX, int toY, int count) {
  std::array<DWORD, 256> buffer;
  while (count > 0) {
    const int step = std::min(count, static_cast<int>(buffer.size()));
    const auto pixels = std::span(buffer).first(static_cast<std::size_t>(step));
    from_.read(fromX, fromY, pixels);
    if (!verbatim_) {
      for (DWORD& pixel : pixels) pixel = translated(pixel);
    }
    to_.write(toX, toY, pixels);
    fromX += step;
    toX += step;
    count -= step;
  }
}

}  // namespace dibkit::standin
