#include <algorithm>
#include <cstring>

#include "dib/view.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

constexpr int barThickness = 4;

/// The visible pixels [begin, end) of a line; position p shows source position p + shift. Positions may be
/// outside the line: visible ones are clipped to it, source positions clamped.
struct Arrival {
  std::int64_t begin;
  std::int64_t end;
  std::int64_t shift;
};

/// The last `d` of `extent` positions show the source's first ones.
Arrival fromFarEnd(std::int64_t extent, std::int64_t d) { return {extent - d, extent, d - extent}; }

/// The first `d` positions show the source's last ones.
Arrival fromNearEnd(std::int64_t extent, std::int64_t d) { return {0, d, extent - d}; }

/// The same with one more position, on purpose: position d repeats the source's last one, so that the two
/// halves meet without a gap. The bars have no such extra position.
Arrival fromNearEndInclusive(std::int64_t extent, std::int64_t d) { return {0, d + 1, extent - d}; }

bool shows(const Arrival& arrival, int position) {
  return position >= arrival.begin && position < arrival.end;
}
int sourceOf(const Arrival& arrival, int position, int extent) {
  return static_cast<int>(std::clamp<std::int64_t>(position + arrival.shift, 0, extent - 1));
}

/// Writes the visible pixels of a row and leaves the others alone.
void writeArrival(BYTE* to, const BYTE* from, int width, const Arrival& arrival) {
  const auto begin = static_cast<int>(std::clamp<std::int64_t>(arrival.begin, 0, width));
  const auto end = static_cast<int>(std::clamp<std::int64_t>(arrival.end, begin, width));
  // Source columns are clamped to 0 before `first` and to width - 1 from `last` on.
  const auto first = static_cast<int>(std::clamp<std::int64_t>(-arrival.shift, begin, end));
  const auto last = static_cast<int>(std::clamp<std::int64_t>(width - arrival.shift, first, end));
  for (int x = begin; x < first; ++x) Bgra32::put(to, x, Bgra32::get(from, 0));
  if (first < last) {
    const BYTE* source = from + (first + arrival.shift) * 4;
    std::memcpy(to + std::ptrdiff_t{first} * 4, source, static_cast<std::size_t>(last - first) * 4);
  }
  for (int x = last; x < end; ++x) Bgra32::put(to, x, Bgra32::get(from, width - 1));
}

/// Rows slide sideways; arrivalOf(y) gives the visible pixels of row y.
template <class ArrivalOf>
void slideRows(const ConstView& from, const View& to, ArrivalOf&& arrivalOf) {
  for (int y = 0; y < to.height(); ++y) writeArrival(to.row(y), from.row(y), to.width(), arrivalOf(y));
}

/// Two sets of columns slide up and down. copyFirst(to, from) and copySecond(to, from) copy one row of each.
template <class CopyFirst, class CopySecond>
void slideColumns(const ConstView& from, const View& to, const Arrival& first, CopyFirst&& copyFirst,
                  const Arrival& second, CopySecond&& copySecond) {
  const int h = to.height();
  for (int y = 0; y < h; ++y) {
    if (shows(first, y)) copyFirst(to.row(y), from.row(sourceOf(first, y, h)));
    if (shows(second, y)) copySecond(to.row(y), from.row(sourceOf(second, y, h)));
  }
}

void copyColumns(BYTE* to, const BYTE* from, int left, int right) {
  const std::ptrdiff_t offset = std::ptrdiff_t{left} * 4;
  std::memcpy(to + offset, from + offset, static_cast<std::size_t>(right - left) * 4);
}

/// Copies every other bar from the one that starts at column `start` on.
void copyBars(BYTE* to, const BYTE* from, int start, int width) {
  constexpr std::ptrdiff_t barBytes = barThickness * 4;
  const std::ptrdiff_t rowBytes = std::ptrdiff_t{width} * 4;
  std::ptrdiff_t offset = std::ptrdiff_t{start} * 4;
  for (; offset + barBytes <= rowBytes; offset += 2 * barBytes) {
    std::memcpy(to + offset, from + offset, barBytes);
  }
  if (offset < rowBytes) std::memcpy(to + offset, from + offset, static_cast<std::size_t>(rowBytes - offset));
}

void slideHalves(const ConstView& from, const View& to, bool vertically, long percent) {
  const int w = to.width();
  const int h = to.height();
  if (!vertically) {
    const std::int64_t d = percentOf(w, percent);
    slideRows(from, to, [&](int y) { return y < h / 2 ? fromFarEnd(w, d) : fromNearEndInclusive(w, d); });
    return;
  }
  const std::int64_t d = percentOf(h, percent);
  slideColumns(
      from, to, fromFarEnd(h, d), [&](BYTE* row, const BYTE* source) { copyColumns(row, source, 0, w / 2); },
      fromNearEndInclusive(h, d), [&](BYTE* row, const BYTE* source) { copyColumns(row, source, w / 2, w); });
}

void slideBars(const ConstView& from, const View& to, bool vertically, long percent) {
  const int w = to.width();
  const int h = to.height();
  const auto isSecond = [](int position) { return position / barThickness % 2 == 1; };
  if (!vertically) {
    const std::int64_t d = percentOf(w, percent);
    slideRows(from, to, [&](int y) { return isSecond(y) ? fromFarEnd(w, d) : fromNearEnd(w, d); });
    return;
  }
  const std::int64_t d = percentOf(h, percent);
  slideColumns(
      from, to, fromFarEnd(h, d),
      [&](BYTE* row, const BYTE* source) { copyBars(row, source, barThickness, w); }, fromNearEnd(h, d),
      [&](BYTE* row, const BYTE* source) { copyBars(row, source, 0, w); });
}

/// Both effects make a piece of the frame's size, transparent where no source pixel is visible yet.
template <class Slide>
BOOL slideIn(const BITMAPINFOHEADER* source, long style, EffectOutput& output, Slide&& slide) {
  if (style != 0 && style != 1) return FALSE;
  const auto [w, h] = sizeOf(source);
  return paintPiece({0, 0, w, h}, InitialPixels::cleared, output,
                    [&](const View& piece) { slide(ConstView(source), piece, style == 1); });
}

}  // namespace

BOOL renderHalves(BITMAPINFOHEADER* source, long style, long percent, EffectOutput& output) {
  return slideIn(source, style, output, [percent](const ConstView& from, const View& to, bool vertically) {
    slideHalves(from, to, vertically, percent);
  });
}

BOOL renderBars(BITMAPINFOHEADER* source, long style, long percent, EffectOutput& output) {
  return slideIn(source, style, output, [percent](const ConstView& from, const View& to, bool vertically) {
    slideBars(from, to, vertically, percent);
  });
}

}  // namespace dibkit
