#include "platform/standin/bitmaps/pixel_transfer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "platform/bit_rows.h"

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
    inverts_ = from.bitCount == 1 && to.bitCount == 1 && indexes_[0] == 1 && indexes_[1] == 0;
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

/// Pixels of one bit to indexes of 8 bits, eight at a time.
void PixelTransfer::expandBits(int fromX, int fromY, int toX, int toY, int count) const {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  const BYTE* from = from_.row(fromY);
  BYTE* to = to_.row(toY) + toX;
  const std::uint64_t zero = ones * indexes_[0];
  const std::uint64_t differing = zero ^ ones * indexes_[1];
  const auto eight = [&](int byte) {
    // Byte i gets bit 7 - i alone, then 1 if that is set: the sum has its high bit then.
    const std::uint64_t bits = (from[byte] * ones) & 0x0102040810204080U;
    const std::uint64_t set = (bits + 0x7F * ones) >> 7 & ones;
    return zero ^ (set * 0xFF & differing);
  };
  int i = 0;
  while (i < count) {
    const int skipped = (fromX + i) % 8;
    const std::uint64_t pixels = eight((fromX + i) / 8) >> 8 * skipped;
    const int taken = std::min(8 - skipped, count - i);
    std::memcpy(to + i, &pixels, static_cast<std::size_t>(taken));
    i += taken;
  }
}

void PixelTransfer::copy(int fromX, int fromY, int toX, int toY, int count) {
  if (verbatim_ || inverts_) {
    const std::int64_t bits = from_.bitCount;
    copyBits(from_.row(fromY), fromX * bits, to_.row(toY), toX * bits, count * bits, inverts_ ? 0xFF : 0);
    return;
  }
  if (from_.bitCount == 1 && to_.bitCount == 8) {
    expandBits(fromX, fromY, toX, toY, count);
    return;
  }
  std::array<DWORD, 256> buffer;
  while (count > 0) {
    const int step = std::min(count, static_cast<int>(buffer.size()));
    const auto pixels = std::span(buffer).first(static_cast<std::size_t>(step));
    from_.read(fromX, fromY, pixels);
    for (DWORD& pixel : pixels) pixel = translated(pixel);
    to_.write(toX, toY, pixels);
    fromX += step;
    toX += step;
    count -= step;
  }
}

}  // namespace dibkit::standin
