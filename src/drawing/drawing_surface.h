#pragma once

#include <optional>
#include <span>

#include "dib/dib.h"
#include "drawing/device.h"

namespace dibkit {

/// A bitmap that the platform draws on, with the size of a box and in the box's coordinates. Every call says
/// whether it succeeded, since a drawing call that runs out of memory leaves a wrong picture.
class DrawingSurface {
 public:
  /// A surface of black and white pixels, all of one colour. It is unusable for a box without pixels, for one
  /// that is too large for the platform, and when memory runs out.
  DrawingSurface(const RECT& box, COLORREF background);
  /// A surface of up to 16 colours, to draw with no others: its pixels are their indexes, in 4 bits.
  DrawingSurface(const RECT& box, std::span<const RGBQUAD> colours, COLORREF background);

  explicit operator bool() const { return usable_; }
  HDC context() const { return context_.get(); }
  int width() const { return width_; }
  int height() const { return height_; }

  /// Copies a picture to the surface's top left corner; what does not fit is cut off.
  [[nodiscard]] bool put(const BITMAPINFOHEADER* picture) const;
  /// Draws a line through the points, each segment by itself, with round or square caps.
  [[nodiscard]] bool drawLine(const POINT* points, int count, int penWidth, bool roundEnds,
                              COLORREF colour) const;
  /// Reads a surface of black and white into a new image of its size; null when that fails. Up to 8 bits it
  /// has the platform's palette.
  OwnedDib read(int bitCount);
  /// First byte of a row of a surface of indexes, counted from the top.
  const BYTE* row(int y) const;

 private:
  /// Gives the surface its size.
  /// \return false for a box that no surface has
  bool resize(const RECT& box);
  void prepare(HBITMAP bitmap, const RECT& box, COLORREF background);

  MemoryContext context_;
  OwnedBitmap bitmap_;
  std::optional<SelectedObject> selected_;  ///< the bitmap; deselected before it is released
  void* indexes_ = nullptr;
  POINT origin_{};
  int width_ = 0;
  int height_ = 0;
  bool usable_ = false;
};

/// \name Boxes to draw in
/// Sides are clamped to the range of coordinates.
/// @{
RECT widened(const RECT& rect, std::int64_t margin);
/// The bounding box of the points, widened. No points give an empty rectangle.
RECT boxAround(const POINT* points, int count, std::int64_t margin);
/// @}

}  // namespace dibkit
