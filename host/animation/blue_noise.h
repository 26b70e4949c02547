#pragma once

#include <cstdint>

namespace host {

/// How many ranks there are: rankAt() gives each of 0 to blueNoiseRanks - 1 once in every tile.
constexpr int blueNoiseRanks = 64 * 64;

/// The rank of a pixel in a tile of 64 x 64 that repeats in both directions. The pixels below any rank are
/// spread evenly without being regular, so that a pattern made by comparing with it shows neither lumps nor a
/// mesh. The same everywhere and at all times.
class BlueNoise {
 public:
  BlueNoise();
  int rankAt(int x, int y) const { return ranks_[(y & 63) * 64 + (x & 63)]; }

 private:
  const std::uint16_t* ranks_;
};

}  // namespace host
