#include <algorithm>
#include <cstring>
#include <iterator>

#include "dib/allocate.h"
#include "dib/view.h"
#include "drawing/drawing_surface.h"
#include "frames/frames.h"
#include "frames/painted.h"
#include "frames/trim.h"
#include "platform/guard.h"
#include "raster/mask_rows.h"

namespace dibkit {
namespace {

constexpr COLORREF red = RGB(255, 0, 0);

/// Indexes of the picture.
enum Index : BYTE { outline, interior, background };
constexpr RGBQUAD palette[] = {{0, 0, 0, 0}, {0, 0, 255, 0}, {255, 255, 255, 0}};

/// Sixteen pixels of the background.
constexpr std::uint64_t blankWord = 0x1111111111111111U * background;

std::uint64_t wordAt(const BYTE* row, int x) {
  std::uint64_t word;
  std::memcpy(&word, row + x / 2, sizeof(word));
  return word;
}

/// The first pixel of [0, end) that is drawn, or `end`.
int firstDrawn(const BYTE* row, int end) {
  int x = 0;
  while (x + 16 <= end && wordAt(row, x) == blankWord) x += 16;
  while (x < end && Get4BitPixel(row, x) == background) ++x;
  return x;
}

/// The pixel after the last one of [begin, end) that is drawn, or `begin`.
int drawnEnd(const BYTE* row, int begin, int end) {
  int x = end;
  while (x > begin && x % 16 != 0 && Get4BitPixel(row, x - 1) == background) --x;
  if (x % 16 == 0) {
    while (x - 16 >= begin && wordAt(row, x - 16) == blankWord) x -= 16;
  }
  while (x > begin && Get4BitPixel(row, x - 1) == background) --x;
  return x;
}

/// The box of what is drawn; nothing is drawn if it is empty.
RECT drawnBox(const DrawingSurface& surface) {
  const int width = surface.width();
  const auto isBlank = [&](int y) { return firstDrawn(surface.row(y), width) == width; };
  int top = 0;
  int bottom = surface.height();
  while (top < bottom && isBlank(top)) ++top;
  while (top < bottom && isBlank(bottom - 1)) --bottom;
  int left = width;
  int right = 0;
  for (int y = top; y < bottom; ++y) {
    left = firstDrawn(surface.row(y), left);
    right = drawnEnd(surface.row(y), right, width);
  }
  return {left, top, right, bottom};
}

/// The drawn part of a surface as an image; null when nothing is drawn. The region that has always remained
/// after each trimmed picture remains here too (keepRegionForGood).
/// \param position of the surface; receives that of the image
OwnedDib trimmed(const DrawingSurface& surface, POINT& position) {
  const RECT box = drawnBox(surface);
  if (IsRectEmpty(&box)) return nullptr;
  position = {position.x + box.left, position.y + box.top};
  const int width = static_cast<int>(box.right - box.left);
  const int height = static_cast<int>(box.bottom - box.top);
  if (HRGN kept; !keepRegionForGood(box, kept)) return nullptr;
  OwnedDib piece = createDib(width, height, Index4::bits, std::size(palette), InitialPixels::unwritten);
  if (!piece) return nullptr;
  std::copy(std::begin(palette), std::end(palette), paletteOf(piece.get()));
  const View rows(piece.get());
  for (int y = 0; y < height; ++y) {
    copyPixels(Index4::bits, surface.row(static_cast<int>(box.top) + y), static_cast<int>(box.left), width,
               rows.row(y), 0);
  }
  return piece;
}

/// Whether a picture of the box's size could have 32 bits a pixel: the limit of these operations.
bool isPossible(const RECT& box) {
  const std::int64_t width = std::int64_t{box.right} - box.left;
  const std::int64_t height = std::int64_t{box.bottom} - box.top;
  return width > 0 && height > 0 && width <= maximumDibBytes / 4 / height;
}

/// Makes a shape picture. draw(context) draws on a white surface with the pen and the brush selected and
/// returns whether it succeeded.
/// \param position receives the canvas coordinates of the picture's top-left pixel
template <class Draw>
OwnedDib paintedShape(const RECT& box, int penWidth, bool filled, POINT& position, Draw&& draw) {
  position = {box.left, box.top};
  if (!isPossible(box)) return nullptr;
  DrawingSurface surface(box, palette, white);
  const OwnedGraphicsObject pen(penWidth < 1 ? GetStockObject(NULL_PEN)
                                             : CreatePen(PS_SOLID, penWidth, black));
  const OwnedGraphicsObject brush(filled ? CreateSolidBrush(red) : GetStockObject(NULL_BRUSH));
  if (!surface || !pen || !brush) return nullptr;
  {
    const SelectedObject selectedPen(surface.context(), pen.get());
    const SelectedObject selectedBrush(surface.context(), brush.get());
    if (!draw(surface.context())) return nullptr;
  }
  GdiFlush();
  return trimmed(surface, position);
}

/// Runs paint(position), which returns a picture; the caller's position may be null.
template <class Paint>
BITMAPINFOHEADER* withPosition(POINT* outPosition, Paint&& paint) {
  POINT position{};
  OwnedDib picture = catchOutOfMemory([&] { return paint(position); });
  if (outPosition != nullptr) *outPosition = position;
  return picture.release();
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* PaintShapeOnPic(const RECT& shape, int penWidth, int ellipse, int filled,
                                  const POINT& corner, POINT* position) {
  return withPosition(position, [&](POINT& place) {
    const RECT box = widened(shape, paintMargin(penWidth));
    return paintedShape(box, penWidth, filled != 0, place, [&](HDC context) {
      const auto& [left, top, right, bottom] = shape;
      return ellipse != 0 ? Ellipse(context, left, top, right, bottom)
                          : RoundRect(context, left, top, right, bottom, corner.x, corner.y);
    });
  });
}

BITMAPINFOHEADER* PaintPolygonOnPic(POINT* points, int count, int penWidth, int filled, POINT* position) {
  return withPosition(position, [&](POINT& place) {
    const RECT box = boxAround(points, count, paintMargin(penWidth));
    return paintedShape(box, penWidth, filled != 0, place,
                        [&](HDC context) { return Polygon(context, points, count); });
  });
}
