#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

#include "dib/view.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

constexpr int fullLight = 255;
constexpr int edgeLight = 64;

/// A line of the carpet, parallel to its roll.
struct CarpetLine {
  int source;  ///< the source line that it shows
  int light;   ///< its brightness, 0 to fullLight
};

/// All visible lines from the side that the carpet starts at: first the flat ones, then those of the roll.
/// The carpet leaves the floor below the roll's axis, half a roll further, goes up the far side, over the top
/// and down again, so that the roll shows it backwards.
std::vector<CarpetLine> carpetLines(int extent, int percent) {
  const auto flat = static_cast<int>(std::int64_t{extent} * percent / 100);
  const auto roll = static_cast<int>((std::int64_t{extent} * (100 - percent) + 999) / 1000);
  std::vector<CarpetLine> lines(static_cast<std::size_t>(flat) + static_cast<std::size_t>(roll));
  for (int i = 0; i < flat; ++i) lines[static_cast<std::size_t>(i)] = {i, fullLight};
  for (int k = 0; k < roll; ++k) {
    const double v = (2.0 * k + 1.0 - roll) / roll;
    const double wound = roll / 2.0 * (1.0 + std::numbers::pi - std::asin(v));
    const auto source = flat + static_cast<std::int64_t>(wound);
    const int light = edgeLight + static_cast<int>((fullLight - edgeLight) * std::sqrt(1.0 - v * v));
    lines[static_cast<std::size_t>(flat) + static_cast<std::size_t>(k)] = {
        static_cast<int>(std::min<std::int64_t>(source, extent - 1)), light};
  }
  return lines;
}

/// Colours times light / 255, truncated; alpha is unchanged.
void putLit(BYTE* to, const BYTE* from, int light) {
  if (light == fullLight) return Bgra32::put(to, 0, Bgra32::get(from, 0));
  for (int i = 0; i < 3; ++i) to[i] = static_cast<BYTE>(from[i] * light / fullLight);
  to[3] = from[3];
}

/// The lines are columns.
void unrollColumns(const ConstView& from, const View& to, const std::vector<CarpetLine>& lines) {
  for (int y = 0; y < to.height(); ++y) {
    const BYTE* source = from.row(y);
    BYTE* pixel = to.row(y);
    for (const CarpetLine& line : lines) {
      putLit(pixel, source + std::ptrdiff_t{line.source} * 4, line.light);
      pixel += 4;
    }
  }
}

/// The lines are rows.
void unrollRows(const ConstView& from, const View& to, const std::vector<CarpetLine>& lines) {
  for (int y = 0; y < to.height(); ++y) {
    const CarpetLine& line = lines[static_cast<std::size_t>(y)];
    const BYTE* source = from.row(line.source);
    BYTE* row = to.row(y);
    if (line.light == fullLight) {
      std::memcpy(row, source, static_cast<std::size_t>(to.stride()));
      continue;
    }
    for (std::ptrdiff_t x = 0; x < to.stride(); x += 4) putLit(row + x, source + x, line.light);
  }
}

}  // namespace

BOOL renderRoll(BITMAPINFOHEADER* source, long side, long percent, EffectOutput& output) {
  if (side < 0 || side > 3) return FALSE;
  const auto [w, h] = sizeOf(source);
  const bool columns = side == 0 || side == 2;
  const bool fromFarSide = side >= 2;
  const int extent = columns ? w : h;
  std::vector<CarpetLine> lines = carpetLines(extent, clampAmount(percent, 0, 100));
  const auto visible = static_cast<int>(lines.size());
  if (fromFarSide) {
    std::reverse(lines.begin(), lines.end());
    for (CarpetLine& line : lines) line.source = extent - 1 - line.source;
  }
  const int start = fromFarSide ? extent - visible : 0;
  const RECT place = columns ? RECT{start, 0, start + visible, h} : RECT{0, start, w, start + visible};
  return paintPiece(place, InitialPixels::unwritten, output, [&](const View& piece) {
    (columns ? unrollColumns : unrollRows)(ConstView(source), piece, lines);
  });
}

}  // namespace dibkit
