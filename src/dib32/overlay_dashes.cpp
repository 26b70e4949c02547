#include <algorithm>
#include <cstdint>

#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"

namespace dibkit {
namespace {

constexpr std::int64_t period = 6;
constexpr std::int64_t dash = 3;

/// Two colours that alternate along an outline, and the phase at its start.
struct Dashes {
  Rgb colour1;
  Rgb colour2;
  std::int64_t phase;

  /// Remainders deliberately keep the dividend's sign: hosts pass the phase that a previous side returned,
  /// and that may be negative where the side was outside the canvas.
  std::int64_t positionAt(std::int64_t counter) const { return (counter + phase) % period; }
  Rgb colourAt(std::int64_t counter) const { return positionAt(counter) / dash == 1 ? colour1 : colour2; }
};

/// The side of a rectangle from `a` to `b`, both inclusive, on the row or column `fixed`.
struct Segment {
  std::int64_t a;
  std::int64_t b;
  std::int64_t fixed;
};

/// The canvas along one axis of the common space.
struct Interval {
  std::int64_t begin;
  std::int64_t end;
  Interval(LONG origin, int size) : begin(origin), end(std::int64_t{origin} + size) {}
};

/// Pixels of a side in drawing order.
struct DashRun {
  std::int64_t first;
  std::int64_t count;    ///< none when not positive
  std::int64_t counter;  ///< the dashes' counter at the first
};

/// The sides in drawing order: the corner where one ends is drawn by the next one.
enum class Side { top, right, bottom, left };

DashRun dashRunOf(Side side, const Segment& segment, const Interval& canvas) {
  if (side == Side::top || side == Side::right) {
    const std::int64_t start = side == Side::top ? segment.a : segment.a + 1;
    const std::int64_t first = std::max(start, canvas.begin);
    return {first, std::min(segment.b + 1, canvas.end) - first, (first - start) % period};
  }
  // The sides drawn backwards count from b, and leave one pixel more free at the canvas's edge than
  // necessary. The left one also stops before the top one's corner. Runs of one pixel are dropped.
  const std::int64_t first = std::min(segment.b + 1, canvas.end) - 2;
  const std::int64_t last = std::max(segment.a, canvas.begin);
  const std::int64_t count = first - last + (side == Side::bottom ? 1 : 0);
  return {first, first <= last ? 0 : count, (segment.b - first) % period};
}

/// \return the phase for the next side
int drawSide(Side side, BITMAPINFOHEADER* dib, const POINT& origin, const Segment& segment,
             const Dashes& dashes) {
  const View canvas = viewOfDepth(dib, 32);
  if (!canvas) return 0;
  const bool horizontal = side == Side::top || side == Side::bottom;
  const Interval columns(origin.x, canvas.width());
  const Interval rows(origin.y, canvas.height());
  const Interval& across = horizontal ? rows : columns;
  if (segment.fixed < across.begin || segment.fixed >= across.end) {
    return static_cast<int>(dashes.positionAt(-1));
  }
  const DashRun run = dashRunOf(side, segment, horizontal ? columns : rows);
  if (run.count <= 0) return 0;
  const int step = side == Side::top || side == Side::right ? 1 : -1;
  for (std::int64_t i = 0; i < run.count; ++i) {
    const std::int64_t along = run.first + step * i;
    const auto x = static_cast<int>((horizontal ? along : segment.fixed) - origin.x);
    const auto y = static_cast<int>((horizontal ? segment.fixed : along) - origin.y);
    Bgra& pixel = pixelsOf(canvas.row(y))[x];
    pixel = withAlpha(dashes.colourAt(run.counter + i), pixel.alpha);
  }
  return static_cast<int>(dashes.positionAt(run.counter + run.count - 1));
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CDIB32::DrawTopHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b, int fixed,
                               BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2, BYTE blue2,
                               int phase) {
  return drawSide(Side::top, canvas, canvasOrigin, {a, b, fixed},
                  {{red1, green1, blue1}, {red2, green2, blue2}, phase});
}

int CDIB32::DrawRightHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b, int fixed,
                                 BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2, BYTE blue2,
                                 int phase) {
  return drawSide(Side::right, canvas, canvasOrigin, {a, b, fixed},
                  {{red1, green1, blue1}, {red2, green2, blue2}, phase});
}

int CDIB32::DrawBottomHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b,
                                  int fixed, BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2,
                                  BYTE blue2, int phase) {
  return drawSide(Side::bottom, canvas, canvasOrigin, {a, b, fixed},
                  {{red1, green1, blue1}, {red2, green2, blue2}, phase});
}

int CDIB32::DrawLeftHatchedLine(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, int a, int b, int fixed,
                                BYTE red1, BYTE green1, BYTE blue1, BYTE red2, BYTE green2, BYTE blue2,
                                int phase) {
  return drawSide(Side::left, canvas, canvasOrigin, {a, b, fixed},
                  {{red1, green1, blue1}, {red2, green2, blue2}, phase});
}

void CDIB32::DrawSelectedFlag(BITMAPINFOHEADER* canvas, const POINT& canvasOrigin, const RECT& selection,
                              int phase) {
  const std::int64_t right = std::int64_t{selection.right} - 1;
  const std::int64_t bottom = std::int64_t{selection.bottom} - 1;
  const struct {
    Side side;
    Segment segment;
  } sides[] = {{Side::top, {selection.left, right, selection.top}},
               {Side::right, {selection.top, bottom, right}},
               {Side::bottom, {selection.left, right, bottom}},
               {Side::left, {selection.top, bottom, selection.left}}};
  for (const auto& [side, segment] : sides) {
    phase = drawSide(side, canvas, canvasOrigin, segment, {{0, 0, 0}, {255, 255, 255}, phase});
  }
}
