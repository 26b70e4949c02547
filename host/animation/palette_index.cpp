#include "host/animation/palette_index.h"

#include <algorithm>
#include <array>
#include <limits>
#include <tuple>

namespace host {

namespace {

constexpr int side = ColourCube<std::uint8_t>::side;

/// How far a channel of an entry is from a block's range of that channel.
struct Reach {
  int nearest;   ///< to the closest value of the range, 0 inside of it
  int farthest;  ///< to the other end
};

Reach reachOf(int value, int first) {
  const int last = first + side - 1;
  return {std::max({first - value, value - last, 0}), std::max(last - value, value - first)};
}

/// An entry of the palette, and how far it is from the colours of a block.
struct Candidate {
  int nearest;   ///< a lower bound of its distances
  int farthest;  ///< an upper bound
  int index;
};

/// A distance and an entry's index in one number: of the smallest distances the smallest index is the
/// smallest.
constexpr int indexBits = 8;
static_assert(colourDistance(255, 255, 255) < std::numeric_limits<int>::max() >> indexBits);

}  // namespace

/// Finds the nearest entry of every colour in the block of the given one.
void PaletteIndex::findNearest(int red, int green, int blue, Block& block) const {
  const int firstRed = red - red % side;
  const int firstGreen = green - green % side;
  const int firstBlue = blue - blue % side;
  std::vector<Candidate> candidates;
  int bound = std::numeric_limits<int>::max();
  int index = 0;
  for (const RGBQUAD& colour : colours_) {
    const Reach inRed = reachOf(colour.rgbRed, firstRed);
    const Reach inGreen = reachOf(colour.rgbGreen, firstGreen);
    const Reach inBlue = reachOf(colour.rgbBlue, firstBlue);
    candidates.push_back({colourDistance(inRed.nearest, inGreen.nearest, inBlue.nearest),
                          colourDistance(inRed.farthest, inGreen.farthest, inBlue.farthest), index++});
    bound = std::min(bound, candidates.back().farthest);
  }
  std::array<int, std::tuple_size_v<Block>> best;
  best.fill(std::numeric_limits<int>::max());
  for (const Candidate& candidate : candidates) {
    // Another entry is nearer to every colour of the block.
    if (candidate.nearest > bound) continue;
    const RGBQUAD& colour = colours_[static_cast<std::size_t>(candidate.index)];
    int* next = best.data();
    for (int r = firstRed - colour.rgbRed; r < firstRed - colour.rgbRed + side; ++r) {
      for (int g = firstGreen - colour.rgbGreen; g < firstGreen - colour.rgbGreen + side; ++g) {
        const int part = colourDistance(r, g, 0) << indexBits | candidate.index;
        for (int b = 0; b < side; ++b, ++next) {
          const int key = part + (colourDistance(0, 0, firstBlue - colour.rgbBlue + b) << indexBits);
          *next = std::min(*next, key);
        }
      }
    }
  }
  std::transform(best.begin(), best.end(), block.begin(),
                 [](int key) { return static_cast<std::uint8_t>(key & ((1 << indexBits) - 1)); });
}

}  // namespace host
