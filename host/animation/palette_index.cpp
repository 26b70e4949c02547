#include "host/animation/palette_index.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace host {

PaletteIndex::PaletteIndex(std::vector<RGBQUAD> colours) : colours_(std::move(colours)) {
  int index = 0;
  for (const RGBQUAD& colour : colours_)
    byGreen_.push_back({colour.rgbBlue, colour.rgbGreen, colour.rgbRed, index++});
  std::stable_sort(byGreen_.begin(), byGreen_.end(),
                   [](const Entry& a, const Entry& b) { return a.green < b.green; });
}

std::uint8_t PaletteIndex::nearest(int red, int green, int blue) const {
  // The search goes from the nearest green both ways and ends where green alone is too far. Equal distances
  // go to the lower index.
  int best = std::numeric_limits<int>::max();
  int bestIndex = 0;
  const auto tooFar = [&](const Entry& entry) { return colourDistance(0, entry.green - green, 0) > best; };
  const auto look = [&](const Entry& entry) {
    const int distance = colourDistance(entry.red - red, entry.green - green, entry.blue - blue);
    if (distance < best || (distance == best && entry.index < bestIndex)) {
      best = distance;
      bestIndex = entry.index;
    }
  };
  const auto middle = std::lower_bound(byGreen_.begin(), byGreen_.end(), green,
                                       [](const Entry& entry, int value) { return entry.green < value; });
  auto above = middle;
  auto below = std::make_reverse_iterator(middle);
  while (above != byGreen_.end() || below != byGreen_.rend()) {
    if (above != byGreen_.end()) {
      if (tooFar(*above)) {
        above = byGreen_.end();
      } else {
        look(*above++);
      }
    }
    if (below != byGreen_.rend()) {
      if (tooFar(*below)) {
        below = byGreen_.rend();
      } else {
        look(*below++);
      }
    }
  }
  return static_cast<std::uint8_t>(bestIndex);
}

}  // namespace host
