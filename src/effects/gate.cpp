#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "dib/view.h"
#include "effects/angles.h"
#include "effects/numbered.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

/// The edge that stays fixed.
enum Hinge : long { left, top, right, bottom };

/// A number rounded to single precision. The store is a workaround: without it the SLP vectoriser of GCC 12.2
/// (-ftree-slp-vectorize, on at -O2) drops the rounding of two neighbouring values used as doubles again.
float single(double value) {
  const volatile float rounded = static_cast<float>(value);
  return rounded;
}

/// A door of w x h, opened. Sine, cosine, `t` and the projected corners have single precision, everything
/// else double; some halves are whole numbers, others keep their fraction. All that is deliberate: it decides
/// which pixels the edges fall on.
struct Door {
  long hinge;
  int w;
  int h;
  double s;         ///< sine of the angle
  double c;         ///< its cosine
  double distance;  ///< of the viewer: the extent across which the door opens
};

struct Projected {
  float x;
  float y;  ///< upward from the centre
};

/// The projection of a point of the picture.
Projected project(const Door& door, int x, int y) {
  const auto [hinge, w, h, s, c, distance] = door;
  double z = 0;
  double turnedX = 0;
  double turnedY = 0;
  switch (hinge) {
    case left:
      z = -x * s;
      turnedX = -w / 2.0 + x * c;
      turnedY = h / 2.0 - y;
      break;
    case top:
      z = -y * s;
      turnedX = x - w / 2.0;
      turnedY = h / 2.0 - y * c;
      break;
    case right:
      z = -(w - x) * s;
      turnedX = w / 2.0 - (w - x) * c;
      turnedY = h / 2.0 - y;
      break;
    default:
      z = -(h - y) * s;
      turnedX = x - w / 2;
      turnedY = (h - y) * c - h / 2.0;
      break;
  }
  return {single(turnedX / (1 - z / distance)), single(turnedY / (1 - z / distance))};
}

/// The bounding box of the projected door in the frame.
struct Outline {
  double left;
  double top;
  int width;
  int height;
};

/// Maximum number of pixels of an opened door, as a multiple of the picture's. A door that opens away from
/// the viewer gets smaller; one that opens toward the viewer, at a negative angle, grows without limit.
constexpr std::int64_t maximumGrowth = 64;

/// Nothing for a door that comes too close to the viewer.
std::optional<Outline> outlineOf(const Door& door) {
  const std::array<Projected, 4> corners = {project(door, 0, 0), project(door, door.w, 0),
                                            project(door, door.w, door.h), project(door, 0, door.h)};
  const auto byX = [](const Projected& a, const Projected& b) { return a.x < b.x; };
  const auto byY = [](const Projected& a, const Projected& b) { return a.y < b.y; };
  const auto [minimumX, maximumX] = std::minmax_element(corners.begin(), corners.end(), byX);
  const auto [minimumY, maximumY] = std::minmax_element(corners.begin(), corners.end(), byY);
  const double boxLeft = door.w / 2.0 + minimumX->x;
  const double boxRight = door.w / 2.0 + maximumX->x;
  const double boxTop = door.h / 2.0 - maximumY->y;
  const double boxBottom = door.h / 2.0 - minimumY->y;
  for (const double side : {boxLeft, boxRight, boxTop, boxBottom}) {
    if (!(std::abs(side) < 1 << 29)) return std::nullopt;
  }
  const auto extent = [](double from, double to) {
    const int length = static_cast<int>(to) - static_cast<int>(from);
    return length == 0 ? 1 : length;
  };
  const Outline box{boxLeft, boxTop, extent(boxLeft, boxRight), extent(boxTop, boxBottom)};
  const std::int64_t maximum = maximumGrowth * door.w * door.h;
  return box.width <= maximum / box.height ? std::optional(box) : std::nullopt;
}

/// The inverse projection of a line of the piece that is parallel to the hinge.
struct LineMap {
  double source;  ///< the source line that it shows
  double factor;  ///< from distances along the line, counted from its middle, to those in the source
};

/// \param position the line's distance from the frame's centre: to the right for vertical lines, upward for
///        horizontal ones
LineMap lineMap(const Door& door, double position) {
  const auto [hinge, w, h, s, c, distance] = door;
  float t = 0;
  double source = 0;
  switch (hinge) {
    case left:
      t = single((w / 2.0 + position) / (position / distance - c / s));
      source = -t / s;
      break;
    case top:
      t = single((position - h / 2.0) / (position / distance + c / s));
      source = -t / s;
      break;
    case right:
      t = single((position - w / 2) / (c / s + position / distance));
      source = t / s + w;
      break;
    default:
      t = single((h / 2 + position) / (position / distance - c / s));
      source = t / s + h;
      break;
  }
  return {source, 1 - t / distance};
}

/// A coordinate truncated and clamped to -1 and `limit`; -1 for one that is not a number.
int truncated(double coordinate, int limit) {
  return static_cast<int>(std::max(-1.0, std::min<double>(coordinate, limit)));
}

bool columnExists(int x, int width) { return x >= 0 && x < width; }

/// Excludes the picture's top row, which this effect never shows, on purpose.
bool rowExists(int y, int height) { return y > 0 && y < height; }

/// Every column of the piece shows one column of the source.
void swingAboutVertical(const Door& door, const Outline& box, const ConstView& from, const View& to) {
  const auto columns = static_cast<std::size_t>(to.width());
  std::vector<int> sourceX(columns);
  std::vector<double> factor(columns);
  for (std::size_t i = 0; i < columns; ++i) {
    const LineMap map = lineMap(door, static_cast<double>(i) + box.left - door.w / 2.0);
    const int x = truncated(map.source, door.w);
    const bool shows = columnExists(x, door.w);
    sourceX[i] = shows ? x : 0;
    factor[i] = shows ? map.factor : std::numeric_limits<double>::quiet_NaN();  // gives no row
  }
  std::vector<int> sourceY(columns);
  for (int j = 0; j < to.height(); ++j) {
    const double y = door.h / 2.0 - j - box.top;
    for (std::size_t i = 0; i < columns; ++i) sourceY[i] = truncated(door.h / 2.0 - factor[i] * y, door.h);
    BYTE* row = to.row(j);
    for (std::size_t i = 0; i < columns; ++i) {
      if (!rowExists(sourceY[i], door.h)) continue;
      Bgra32::put(row, static_cast<int>(i), Bgra32::get(from.row(sourceY[i]), sourceX[i]));
    }
  }
}

/// Every row of the piece shows one row of the source.
void swingAboutHorizontal(const Door& door, const Outline& box, const ConstView& from, const View& to) {
  const auto columns = static_cast<std::size_t>(to.width());
  std::vector<double> x(columns);
  for (std::size_t i = 0; i < columns; ++i) x[i] = static_cast<double>(i) + box.left - door.w / 2.0;
  std::vector<int> sourceX(columns);
  for (int j = 0; j < to.height(); ++j) {
    const LineMap map = lineMap(door, door.h / 2.0 - j - box.top);
    const int y = truncated(map.source, door.h);
    if (!rowExists(y, door.h)) continue;
    for (std::size_t i = 0; i < columns; ++i)
      sourceX[i] = truncated(door.w / 2.0 + map.factor * x[i], door.w);
    const BYTE* source = from.row(y);
    BYTE* row = to.row(j);
    for (std::size_t i = 0; i < columns; ++i) {
      if (columnExists(sourceX[i], door.w))
        Bgra32::put(row, static_cast<int>(i), Bgra32::get(source, sourceX[i]));
    }
  }
}

}  // namespace

BOOL renderGate(BITMAPINFOHEADER* source, long hinge, long angle, EffectOutput& output) {
  if (hinge < left || hinge > bottom) return FALSE;
  const auto [w, h] = sizeOf(source);
  const bool vertical = hinge == left || hinge == right;
  const double turned = radians(static_cast<double>(angle));
  const float sine = single(std::sin(turned));
  const float cosine = single(std::cos(turned));
  if (sine == 0) {
    // The inverse projection divides by the sine. A shut door shows the picture as it is.
    output = {copyOf(source).release(), {0, 0, w, h}};
    return output.image != nullptr ? TRUE : FALSE;
  }
  const Door door{hinge, w, h, sine, cosine, static_cast<double>(vertical ? w : h)};
  const std::optional<Outline> box = outlineOf(door);
  if (!box) return FALSE;
  const LONG x = hinge == right ? w - box->width : 0;
  const LONG y = hinge == bottom ? h - box->height : 0;
  const RECT place{x, y, x + box->width, y + box->height};
  return paintPiece(place, InitialPixels::cleared, output, [&](const View& piece) {
    (vertical ? swingAboutVertical : swingAboutHorizontal)(door, *box, ConstView(source), piece);
  });
}

}  // namespace dibkit
