#pragma once

#include <optional>

#include "dib/dib.h"
#include "drawing/device.h"

namespace dibkit {

/// A picture that the platform draws on: the size of a box, with the box's coordinates.
class DrawingSurface {
 public:
  enum class Colours { blackAndWhite, screen };

  /// A surface in one colour. Boxes without pixels and boxes too large for the platform give an unusable one.
  DrawingSurface(const RECT& box, Colours colours, COLORREF background);

  explicit operator bool() const { return bitmap_ != nullptr; }
  HDC context() const { return context_.get(); }
  int width() const { return width_; }
  int height() const { return height_; }

  /// Copies a picture to the surface's top left corner, as far as it fits.
  void put(const BITMAPINFOHEADER* picture) const;
  /// Draws through the points in order, each segment by itself. The ends are round or square.
  void drawLine(const POINT* points, int count, int penWidth, bool roundEnds, COLORREF colour) const;
  /// Reads the surface into a new image of its size; null when that fails. Up to 8 bits the palette is
  /// the platform's.
  OwnedDib read(int bitCount);

 private:
  MemoryContext context_;
  OwnedBitmap bitmap_;
  std::optional<SelectedObject> selected_;  ///< the bitmap; let go of before it is released
  POINT origin_{};
  int width_ = 0;
  int height_ = 0;
};

/// \name Boxes to draw in
/// Sides that would leave the range of coordinates stop at its end.
/// @{
RECT widened(const RECT& rect, std::int64_t margin);
/// From the least to the largest coordinates of the points, widened. No points give an empty rectangle.
RECT boxAround(const POINT* points, int count, std::int64_t margin);
/// @}

}  // namespace dibkit
