#include "effects/film.h"

#include <algorithm>
#include <cstring>

#include "dib/allocate.h"
#include "dib/pixel_format.h"
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
}  // namespace dibkit

BOOL CProgressiveFilm::GenerateFrame(EffectOutput* output) {
  using namespace dibkit;
  const int percent = clampAmount(m_nAmount, 0, 100);
  if ((m_nStyle != 0 && m_nStyle != 1) || percent == 0) return FALSE;
  const auto [w, h] = sizeOf(m_pSrcDib);
  OwnedDib piece = createDib(w, h, 32, 0, Pixels::unwritten);
  if (!piece) return FALSE;
  const bool rows = m_nStyle == 0;
  const int front = static_cast<int>(percentOf(rows ? h : w, percent));
  (rows ? smearRows : smearColumns)(ConstView(m_pSrcDib), View(piece.get()), front);
  output->image = piece.release();
  output->rect = {0, 0, w, h};
  return TRUE;
}
