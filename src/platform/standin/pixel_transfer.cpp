#include "platform/standin/pixel_transfer.h"

#include <algorithm>
#include <array>

namespace dibkit::standin {

namespace {

bool isVerbatim(const Pixels& from, const Pixels& to) {
  return from.bitCount == to.bitCount && from.sixGreenBits == to.sixGreenBits &&
         std::equal(from.colours.begin(), from.colours.end(), to.colours.begin(), to.colours.end());
}

/// True colours are matched with 256 entries by their top five bits, each channel from the middle of its
/// step.
constexpr Colour coarse(Colour colour) { return (colour & 0xF8F8F8) + 0x040404; }
constexpr std::size_t coarseIndex(Colour colour) {
  return (colour >> 9 & 0x7C00) | (colour >> 6 & 0x03E0) | (colour >> 3 & 0x001F);
}

}  // namespace

PixelTransfer::PixelTransfer(const Pixels& from, const Pixels& to)
    : from_(from), to_(to), verbatim_(isVerbatim(from, to)) {
  if (verbatim_) return;
  if (from.bitCount <= 8) {
    for (const Colour colour : from.colours) indexes_.push_back(to.rawOfColour(colour));
  } else if (to.bitCount == 8) {
    known_.assign(std::size_t{1} << 15, -1);
  }
}

DWORD PixelTransfer::indexOf(Colour colour) {
  int& index = known_[coarseIndex(colour)];
  if (index < 0) index = static_cast<int>(to_.rawOfColour(coarse(colour)));
  return static_cast<DWORD>(index);
}

DWORD PixelTransfer::translated(DWORD raw) {
  if (from_.bitCount <= 8) return indexes_[raw];
  const Colour colour = from_.colourOfRaw(raw);
  return to_.bitCount == 8 ? indexOf(colour) : to_.rawOfColour(colour);
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
