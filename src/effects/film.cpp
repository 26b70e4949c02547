#include <algorithm>
#include <cstring>

#include "dib/view.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

void smearRows(const ConstView& from, const View& to, int front) {
  for (int y = 0; y < to.height(); ++y) {
    std::memcpy(to.row(y), from.row(std::min(y, front)), static_cast<std::size_t>(to.stride()));
  }
}

void smearColumns(const ConstView& from, const View& to, int front) {
  for (int y = 0; y < to.height(); ++y) {
    const BYTE* source = from.row(y);
    BYTE* row = to.row(y);
    std::memcpy(row, source, static_cast<std::size_t>(front) * 4);
    if (front == to.width()) continue;
    const DWORD smeared = Bgra32::get(source, front);
    for (int x = front; x < to.width(); ++x) Bgra32::put(row, x, smeared);
  }
}

}  // namespace

BOOL renderFilm(BITMAPINFOHEADER* source, long style, long amount, EffectOutput& output) {
  const int percent = clampAmount(amount, 0, 100);
  if ((style != 0 && style != 1) || percent == 0) return FALSE;
  const auto [w, h] = sizeOf(source);
  const bool rows = style == 0;
  const int front = static_cast<int>(percentOf(rows ? h : w, percent));
  return paintPiece({0, 0, w, h}, InitialPixels::unwritten, output, [&](const View& piece) {
    (rows ? smearRows : smearColumns)(ConstView(source), piece, front);
  });
}

}  // namespace dibkit
