#include <algorithm>
#include <cstdlib>
#include <vector>

#include "effects/numbered.h"
#include "effects/ordered_pool.h"
#include "effects/piece.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// A sweep draws among this many strips of the pool.
constexpr int sweepDepth = 32;
constexpr int slatPitch = 8;

struct StripStyle {
  bool columns;     ///< strips are columns, not rows
  bool fromFarEnd;  ///< the sweep starts at the right or bottom
  bool sweeps;      ///< draws are limited to the first strips of the pool
};

StripStyle stripStyle(long style) {
  return {style == 0 || style == 2 || style == 3, style == 3 || style == 5, style >= 2};
}

/// Marks the strips that show. The seed depends on the number of strips only, so a larger count marks all
/// that a smaller one does.
std::vector<bool> drawStrips(int strips, std::int64_t count, const StripStyle& style) {
  std::vector<bool> shown(static_cast<std::size_t>(strips));
  OrderedPool pool(strips);
  std::srand(static_cast<unsigned>(strips));
  for (std::int64_t i = 0; i < count && pool.left() > 0; ++i) {
    const int span = style.sweeps ? std::min(sweepDepth, pool.left()) : pool.left();
    const int taken = pool.take(std::rand() % span);
    shown[static_cast<std::size_t>(style.fromFarEnd ? strips - 1 - taken : taken)] = true;
  }
  return shown;
}

/// The rectangle of columns, or of rows, [begin, end) of the picture.
RECT acrossPicture(const SIZE& picture, bool columns, int begin, int end) {
  return columns ? RECT{begin, 0, end, picture.cy} : RECT{0, begin, picture.cx, end};
}

OwnedRegion stripRegion(const SIZE& picture, long styleNumber, long percent) {
  const StripStyle style = stripStyle(styleNumber);
  const int strips = style.columns ? picture.cx : picture.cy;
  const std::int64_t count = percentOf(strips, percent);
  // Also for a count of 0, because drawing seeds the generator.
  const std::vector<bool> shown = drawStrips(strips, count, style);
  if (count <= 0) return nullptr;

  std::vector<RECT> runs;
  for (auto begin = std::find(shown.begin(), shown.end(), true); begin != shown.end();) {
    const auto end = std::find(begin, shown.end(), false);
    runs.push_back(acrossPicture(picture, style.columns, static_cast<int>(begin - shown.begin()),
                                 static_cast<int>(end - shown.begin())));
    begin = std::find(end, shown.end(), true);
  }
  return regionOfRectangles(runs);
}

OwnedRegion slatRegion(const SIZE& picture, bool columns, long percent) {
  const int extent = columns ? picture.cx : picture.cy;
  const int pitch = std::min(slatPitch, extent);
  const int opening = pitch * clampAmount(percent, 0, 100) / 100;
  std::vector<RECT> open;
  for (std::int64_t start = 0; start < extent; start += pitch) {
    const auto begin = static_cast<int>(start);
    open.push_back(acrossPicture(picture, columns, begin, std::min(begin + opening, extent)));
  }
  return regionOfRectangles(open);
}

}  // namespace

BOOL renderStrips(BITMAPINFOHEADER* source, long style, long amount, EffectOutput& output) {
  return cutPiece(source, stripRegion(sizeOf(source), style, amount), output);
}

BOOL renderBlinds(BITMAPINFOHEADER* source, long style, long amount, EffectOutput& output) {
  return cutPiece(source, slatRegion(sizeOf(source), style == 0, amount), output);
}

}  // namespace dibkit
