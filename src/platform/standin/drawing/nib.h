#pragma once

#include <span>

#include "platform/standin/drawing/painter.h"
#include "platform/standin/regions/ellipse_corner.h"

namespace dibkit::standin {

/// The tip of a pen, which draws lines. A wide line is a polygon, with a dot at both ends if the caps are
/// round; the larger half of an odd width is on the right and below. What a line costs depends on the rows
/// and columns of it that are visible, not on its length or width.
class Nib {
 public:
  /// \param width up to 1 for lines of single pixels
  /// Throws std::bad_alloc when there is no memory for the shape of the caps.
  Nib(int width, bool squareCaps);

  /// Draws one segment with its caps.
  void drawSegment(Painter& painter, const POINT& from, const POINT& to) const;
  /// Draws the closed line through the corners, of which there is at least one.
  void drawOutline(Painter& painter, std::span<const POINT> corners) const;

 private:
  bool single() const { return width_ <= 1; }
  bool round() const { return !single() && !squareCaps_; }
  void drawWithoutDots(Painter& painter, const POINT& from, const POINT& to) const;
  void drawBody(Painter& painter, const POINT& from, const POINT& to) const;
  void drawSlantedBody(Painter& painter, POINT from, POINT to) const;
  void drawDot(Painter& painter, const POINT& centre) const;

  int width_;
  bool squareCaps_;
  RowInsets dot_;
};

/// Paints the pixels inside a polygon, by the rule of PolygonScan, whose exceptions it passes on.
void paintPolygon(Painter& painter, std::span<const POINT> corners);

}  // namespace dibkit::standin
