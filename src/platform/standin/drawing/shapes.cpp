#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <utility>
#include <vector>

#include "platform/guard.h"
#include "platform/standin/drawing/context_painter.h"
#include "platform/standin/geometry.h"
#include "platform/standin/regions/ellipse_corner.h"

namespace dibkit::standin {

namespace {

POINT placed(const DeviceContext& context, const POINT& point) {
  return {clampedToInt(std::int64_t{point.x} + context.origin.x),
          clampedToInt(std::int64_t{point.y} + context.origin.y)};
}

/// Draws a closed line with the context's pen.
void drawOutline(const DeviceContext& context, std::span<const POINT> corners) {
  const PenObject& pen = context.pen();
  if (pen.null) return;
  ContextPainter painter(context, pen.colour);
  context.nib().drawOutline(painter, corners);
}

/// An ellipse or rounded rectangle as it is drawn: unlike the region of that shape it fills its rectangle.
struct RoundedShape {
  RECT rect;
  int cornerWidth;
  int cornerHeight;

  RoundedRectangle area() const { return {rect, cornerWidth, cornerHeight}; }
  /// The corners of its outline as a polygon, clockwise from the left side.
  std::vector<POINT> path() const;
};

std::vector<POINT> RoundedShape::path() const {
  std::vector<POINT> corner;
  for (EllipseCorner curve(cornerWidth, cornerHeight); !curve.done(); curve.step()) {
    corner.push_back({curve.column(), curve.row()});
  }
  // In a narrow box the curve meets its mirror image below the top; from there the outline is vertical.
  if (corner.back().y > 0) corner.push_back({(cornerWidth - 1) / 2, 0});
  std::vector<POINT> points;
  points.reserve(4 * corner.size());
  const auto add = [&](const POINT& step, bool mirrorX, bool mirrorY) {
    points.push_back({mirrorX ? rect.right - 1 - step.x : rect.left + step.x,
                      mirrorY ? rect.bottom - 1 - step.y : rect.top + step.y});
  };
  for (auto step = corner.begin(); step != corner.end(); ++step) add(*step, false, false);
  for (auto step = corner.rbegin(); step != corner.rend(); ++step) add(*step, true, false);
  for (auto step = corner.begin(); step != corner.end(); ++step) add(*step, true, true);
  for (auto step = corner.rbegin(); step != corner.rend(); ++step) add(*step, false, true);
  return points;
}

void fillRows(Painter& painter, const RoundedRectangle& area) {
  const RECT& bounds = painter.bounds();
  for (int y = bounds.top; y < bounds.bottom; ++y) {
    const RoundedRectangle::Span span = area.row(y);
    painter.paintRow(y, span.left, span.right);
  }
}

/// Paints the pixels of an area that have a neighbour outside it.
void paintEdge(Painter& painter, const RoundedRectangle& area) {
  const RECT& bounds = painter.bounds();
  for (std::int64_t y = bounds.top; y < bounds.bottom; ++y) {
    const RoundedRectangle::Span span = area.row(y);
    const RoundedRectangle::Span above = area.row(y - 1);
    const RoundedRectangle::Span below = area.row(y + 1);
    const int left = std::max({span.left + 1, above.left, below.left});
    const int right = std::min({span.right - 1, above.right, below.right});
    if (above.empty() || below.empty() || left >= right) {
      painter.paintRow(y, span.left, span.right);
    } else {
      painter.paintRow(y, span.left, left);
      painter.paintRow(y, right, span.right);
    }
  }
}

/// The shape for corners of at most two pixels. With a null pen it is one pixel narrower and lower.
void drawRectangle(const DeviceContext& context, const RECT& rect) {
  const int less = context.pen().null ? 1 : 0;
  if (!context.brush().null) {
    ContextPainter(context, context.brush().colour)
        .paintRectangle(rect.left, rect.top, rect.right - less, rect.bottom - less);
  }
  const int rightmost = rect.right - 1;
  const int lowest = rect.bottom - 1;
  drawOutline(context, std::array<POINT, 4>{POINT{rect.left, rect.top}, POINT{rightmost, rect.top},
                                            POINT{rightmost, lowest}, POINT{rect.left, lowest}});
}

void drawRounded(const DeviceContext& context, const POINT& corner, const POINT& opposite,
                 std::int64_t cornerWidth, std::int64_t cornerHeight) {
  const POINT a = placed(context, corner);
  const POINT b = placed(context, opposite);
  const RECT rect{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
  if (IsRectEmpty(&rect)) return;
  const RoundedShape shape{
      rect, clampedToInt(std::min(std::abs(cornerWidth), std::int64_t{rect.right} - rect.left)),
      clampedToInt(std::min(std::abs(cornerHeight), std::int64_t{rect.bottom} - rect.top))};
  if (shape.cornerWidth <= 2 || shape.cornerHeight <= 2) {
    drawRectangle(context, rect);
    return;
  }
  const RoundedRectangle area = shape.area();
  if (!context.brush().null) {
    ContextPainter painter(context, context.brush().colour);
    fillRows(painter, area);
  }
  if (context.pen().null) return;
  if (context.pen().width <= 1) {
    ContextPainter painter(context, context.pen().colour);
    paintEdge(painter, area);
  } else {
    drawOutline(context, shape.path());
  }
}

}  // namespace

}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

int FillRect(HDC handle, const RECT* rect, HBRUSH brushHandle) {
  const auto* context = objectOf<DeviceContext>(handle);
  const auto* brush = objectOf<BrushObject>(brushHandle);
  if (context == nullptr || rect == nullptr || brush == nullptr) return 0;
  if (brush->null) return 1;
  // A rectangle with reversed sides includes the pixels at both of them.
  const auto ordered = [](std::int64_t low, std::int64_t high) {
    return low <= high ? std::pair{low, high} : std::pair{high + 1, low + 1};
  };
  const auto [left, right] = ordered(rect->left, rect->right);
  const auto [top, bottom] = ordered(rect->top, rect->bottom);
  const POINT& origin = context->origin;
  const RECT area = clampedRect(left + origin.x, top + origin.y, right + origin.x, bottom + origin.y);
  ContextPainter(*context, brush->colour).paintRectangle(area.left, area.top, area.right, area.bottom);
  return 1;
}

BOOL MoveToEx(HDC handle, int x, int y, POINT* before) {
  return exchangePoint(handle, &DeviceContext::position, {x, y}, before);
}

BOOL LineTo(HDC handle, int x, int y) {
  auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr) return FALSE;
  const POINT from = std::exchange(context->position, POINT{x, y});
  return catchOutOfMemory([&] {
    const PenObject& pen = context->pen();
    if (pen.null) return TRUE;
    ContextPainter painter(*context, pen.colour);
    context->nib().drawSegment(painter, placed(*context, from), placed(*context, {x, y}));
    return TRUE;
  });
}

BOOL Polygon(HDC handle, const POINT* points, int count) {
  const auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr || points == nullptr || count < 2) return FALSE;
  return catchOutOfMemory([&] {
    std::vector<POINT> corners(points, points + count);
    for (POINT& corner : corners) corner = placed(*context, corner);
    if (!context->brush().null) {
      ContextPainter painter(*context, context->brush().colour);
      paintPolygon(painter, corners);
    }
    drawOutline(*context, corners);
    return TRUE;
  });
}

BOOL Ellipse(HDC handle, int left, int top, int right, int bottom) {
  return RoundRect(handle, left, top, right, bottom, INT32_MAX, INT32_MAX);
}

BOOL RoundRect(HDC handle, int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight) {
  const auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr) return FALSE;
  return catchOutOfMemory([&] {
    drawRounded(*context, {left, top}, {right, bottom}, ellipseWidth, ellipseHeight);
    return TRUE;
  });
}
