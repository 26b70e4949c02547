#pragma once

#include <optional>

#include "dib/dib.h"
#include "drawing/device.h"

namespace dibkit {

/// A bitmap that the platform draws on, with the size of a box and in the box's coordinates.
class DrawingSurface {
 public:
  enum class Colours { blackAndWhite, screen };

  /// A surface of one colour; unusable for a box without pixels and for one that is too large for the
  /// platform.
  DrawingSurface(const RECT& box, Colours colours, COLORREF background);

  explicit operator bool() const { return bitmap_ != nullptr; }
  HDC context() const { return context_.get(); }
  int width() const { return width_; }
  int height() const { return height_; }

  /// Copies a picture to the surface's top left corner; what does not fit is cut off.
  void put(const BITMAPINFOHEADER* picture) const;
  /// Draws a line through the points, each segment by itself, with round or square caps.
  void drawLine(const POINT* points, int count, int penWidth, bool roundEnds, COLORREF colour) const;
  /// Reads the surface into a new image of its size; null when that fails. Up to 8 bits it has the platform's
  /// palette.
  OwnedDib read(int bitCount);

 private:
  MemoryContext context_;
  OwnedBitmap bitmap_;
  std::optional<SelectedObject> selected_;  ///< the bitmap; deselected before it is released
  POINT origin_{};
  int width_ = 0;
  int height_ = 0;
};

/// \name Boxes to draw in
/// Sides are clamped to the range of coordinates.
/// @{
RECT widened(const RECT& rect, std::int64_t margin);
/// The bounding box of the points, widened. No points give an empty rectangle.
RECT boxAround(const POINT* points, int count, std::int64_t margin);
/// @}

}  // namespace dibkit
