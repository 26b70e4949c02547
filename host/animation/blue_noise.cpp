#include "host/animation/blue_noise.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>

namespace host {

namespace {

constexpr int side = 64;
static_assert(side * side == blueNoiseRanks);

using Ranks = std::array<std::uint16_t, blueNoiseRanks>;

/// Points in a tile, and how crowded each place of the tile is by them: the sum of a bell around each point.
class Points {
 public:
  bool has(int place) const { return present_[static_cast<std::size_t>(place)]; }
  void add(int place) { change(place, 1); }
  void remove(int place) { change(place, -1); }

  /// The point with the closest neighbours.
  int tightestCluster() const {
    return best(
        [this](int place, int than) { return has(place) && (than < 0 || crowd(place) > crowd(than)); });
  }
  /// The place without a point that is farthest from all of them.
  int largestVoid() const {
    return best(
        [this](int place, int than) { return !has(place) && (than < 0 || crowd(place) < crowd(than)); });
  }

 private:
  int crowd(int place) const { return crowd_[static_cast<std::size_t>(place)]; }

  template <class Better>
  static int best(Better better) {
    int found = -1;
    for (int place = 0; place < blueNoiseRanks; ++place) {
      if (better(place, found)) found = place;
    }
    return found;
  }

  void change(int place, int sign) {
    // A bell of standard deviation 1.9, in 256ths: whole numbers, so that every machine makes the same tile.
    constexpr std::array<int, 7> bell{256, 223, 147, 74, 28, 8, 2};
    constexpr int reach = static_cast<int>(bell.size()) - 1;
    present_[static_cast<std::size_t>(place)] = sign > 0;
    for (int dy = -reach; dy <= reach; ++dy) {
      for (int dx = -reach; dx <= reach; ++dx) {
        const int x = (place + dx) & (side - 1);
        const int y = (place / side + dy) & (side - 1);
        crowd_[static_cast<std::size_t>(y * side + x)] += sign *
                                                          bell[static_cast<std::size_t>(std::abs(dx))] *
                                                          bell[static_cast<std::size_t>(std::abs(dy))];
      }
    }
  }

  std::array<bool, blueNoiseRanks> present_{};
  std::array<int, blueNoiseRanks> crowd_{};
};

/// A tenth of the places, moved from where they crowd to where they lack until none gains by it.
Points evenlySpread() {
  Points points;
  std::minstd_rand random;
  for (int count = 0; count < blueNoiseRanks / 10;) {
    const int place = static_cast<int>(random() % blueNoiseRanks);
    if (points.has(place)) continue;
    points.add(place);
    ++count;
  }
  for (;;) {
    const int from = points.tightestCluster();
    points.remove(from);
    const int to = points.largestVoid();
    points.add(to);
    if (to == from) return points;
  }
}

/// Void and cluster: the first points rank by the order in which they would be missed least, all others by
/// the order in which they fill the gaps best.
Ranks voidAndCluster() {
  Ranks ranks{};
  const Points first = evenlySpread();
  Points points = first;
  constexpr int firstCount = blueNoiseRanks / 10;
  for (int rank = firstCount - 1; rank >= 0; --rank) {
    const int place = points.tightestCluster();
    points.remove(place);
    ranks[static_cast<std::size_t>(place)] = static_cast<std::uint16_t>(rank);
  }
  points = first;
  for (int rank = firstCount; rank < blueNoiseRanks; ++rank) {
    const int place = points.largestVoid();
    points.add(place);
    ranks[static_cast<std::size_t>(place)] = static_cast<std::uint16_t>(rank);
  }
  return ranks;
}

}  // namespace

BlueNoise::BlueNoise() {
  static const Ranks ranks = voidAndCluster();
  ranks_ = ranks.data();
}

}  // namespace host
