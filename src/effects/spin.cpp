#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "dib/view.h"
#include "effects/angles.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

/// The source row or column that one of the squashed picture shows.
int sourceOf(int position, double squash, int extent) {
  return static_cast<int>(std::clamp<double>(position / squash, 0, extent - 1));
}

/// Turned about the horizontal centre line: rows are left out.
void squashRows(const ConstView& from, const View& to, double squash) {
  for (int y = 0; y < to.height(); ++y) {
    std::memcpy(to.row(y), from.row(sourceOf(y, squash, from.height())),
                static_cast<std::size_t>(to.stride()));
  }
}

/// Turned about the vertical centre line: columns are left out.
void squashColumns(const ConstView& from, const View& to, double squash) {
  std::vector<int> column(static_cast<std::size_t>(to.width()));
  for (int x = 0; x < to.width(); ++x)
    column[static_cast<std::size_t>(x)] = sourceOf(x, squash, from.width());
  for (int y = 0; y < to.height(); ++y) {
    const BYTE* source = from.row(y);
    BYTE* row = to.row(y);
    for (int x = 0; x < to.width(); ++x)
      Bgra32::put(row, x, Bgra32::get(source, column[static_cast<std::size_t>(x)]));
  }
}

}  // namespace

BOOL renderSpin(BITMAPINFOHEADER* source, long axis, long angle, EffectOutput& output) {
  if (axis != 0 && axis != 1) return FALSE;
  const auto [w, h] = sizeOf(source);
  const bool rows = axis == 0;
  const int extent = rows ? h : w;
  const double squash = std::cos(radians(static_cast<double>(angle)));
  // Between 90 and 270 degrees the size is negative, so paintPiece fails.
  const auto size = static_cast<int>(extent * squash);
  const int margin = (extent - size) / 2;
  const RECT place = rows ? RECT{0, margin, w, margin + size} : RECT{margin, 0, margin + size, h};
  return paintPiece(place, InitialPixels::unwritten, output, [&](const View& piece) {
    (rows ? squashRows : squashColumns)(ConstView(source), piece, squash);
  });
}

}  // namespace dibkit
