#pragma once

namespace host {

/// Bayer's ordered dithering matrix of order 8, repeated over the plane: a rank from 0 to 63. The bits of
/// x ^ y and y interleaved, from the lowest place to the highest.
constexpr int bayerRank(int x, int y) {
  const int mixed = x ^ y;
  return (mixed & 1) << 5 | (y & 1) << 4 | (mixed & 2) << 2 | (y & 2) << 1 | (mixed & 4) >> 1 | (y & 4) >> 2;
}

}  // namespace host
