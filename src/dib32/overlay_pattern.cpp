#include <algorithm>
#include <array>
#include <vector>

#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

constexpr int cell = 8;

/// Which of the two kinds a column or row of the checkerboard has. The division deliberately truncates: to
/// the left of the origin there is a cell of 15 pixels, then kinds 0 and -1 alternate.
constexpr int kindOf(std::int64_t position) { return static_cast<int>(position / cell % 2); }

void checkerboard(const View& canvas, DWORD colour1, DWORD colour2, int xOffset, int yOffset) {
  // A row's colours depend only on its kind, so three rows are enough for all: -1, 0 and 1.
  std::array<std::vector<DWORD>, 3> patterns;
  const auto patternOf = [&](int kind) -> const std::vector<DWORD>& {
    std::vector<DWORD>& pattern = patterns[static_cast<std::size_t>(kind + 1)];
    if (pattern.empty()) {
      for (int x = 0; x < canvas.width(); ++x) {
        pattern.push_back(kindOf(std::int64_t{x} + xOffset) == kind ? colour1 : colour2);
      }
    }
    return pattern;
  };
  for (int y = 0; y < canvas.lines(); ++y) {
    const DWORD* pattern = patternOf(kindOf(std::int64_t{y} + yOffset)).data();
    Bgra* row = pixelsOf(canvas.row(y));
    for (int x = 0; x < canvas.width(); ++x) putWord(row, x, (wordAt(row, x) & ~colourBits) | pattern[x]);
  }
}

/// The position of a column or row in the hatch, counted from the remainder of the offset. The remainder has
/// the sign of the offset, and the count restarts at 0 only after it has reached 8.
struct HatchAxis {
  explicit HatchAxis(std::int64_t offset) : first(static_cast<int>(offset % cell)) {}

  int positionAt(int index) const {
    const std::int64_t position = std::int64_t{first} + index;
    return static_cast<int>(position < 0 ? position : position % cell);
  }
  /// Calls use(index) for each index below `count` at the position.
  template <class Use>
  void forEachAt(int position, int count, Use&& use) const {
    int index = position - first;
    if (position >= 0 && index < 0) index += cell;
    // Positions below 0 occur once, before the count reaches 0.
    const int step = position < 0 ? count : cell;
    if (index < 0) return;
    for (std::int64_t i = index; i < count; i += step) use(static_cast<int>(i));
  }

  int first;
};

void hatch(const View& canvas, const POINT& offset, Rgb colour) {
  const HatchAxis columns(offset.x);
  const HatchAxis rows(offset.y);
  for (int y = 0; y < canvas.lines(); ++y) {
    Bgra* row = pixelsOf(canvas.row(y));
    const auto paint = [&](int x) { row[x] = withAlpha(colour, row[x].alpha); };
    const int position = rows.positionAt(y);
    columns.forEachAt(position, canvas.width(), paint);
    if (position >= 0) columns.forEachAt(cell - 1 - position, canvas.width(), paint);
  }
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CDIB32::Init32DIBBackground(BITMAPINFOHEADER* canvas, BYTE red1, BYTE green1, BYTE blue1, BYTE red2,
                                 BYTE green2, BYTE blue2, int xOffset, int yOffset) {
  const View view = viewOfDepth(canvas, 32);
  if (!view) return;
  catchOutOfMemory([&] {
    checkerboard(view, packRgb({red1, green1, blue1}), packRgb({red2, green2, blue2}), xOffset, yOffset);
  });
}

void CDIB32::Init32DIBWithHatedLines(BITMAPINFOHEADER* canvas, const CPoint& offset, COLORREF colour) {
  const View view = viewOfDepth(canvas, 32);
  if (view) hatch(view, offset, fromColorRef(colour));
}
