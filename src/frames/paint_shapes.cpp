#include "convert/convert.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "drawing/drawing_surface.h"
#include "frames/frames.h"
#include "frames/painted.h"
#include "frames/trim.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

constexpr COLORREF red = RGB(255, 0, 0);

/// Indexes of the finished picture.
enum Index : BYTE { outline, interior, background };

/// The drawn colours as a palette picture.
OwnedDib reduced(BITMAPINFOHEADER* drawn) {
  CMap<DWORD, DWORD&, int, int&> indexes;
  const auto add = [&](COLORREF colour, int index) {
    DWORD key = packRgb(fromColorRef(colour));
    indexes.SetAt(key, index);
  };
  add(black, outline);
  add(red, interior);
  add(white, background);
  return OwnedDib(Convert24BitsDIBToLowerBitsDIB(drawn, indexes));
}

/// A frame mask of a 4-bit picture whose background is transparent.
OwnedDib maskOf(const BITMAPINFOHEADER* picture) {
  const ConstView from(picture);
  OwnedDib mask = createDib(from.width(), from.height(), 1, 0);
  if (!mask) return nullptr;
  const View to(mask.get());
  for (int y = 0; y < from.height(); ++y) {
    const BYTE* row = from.row(y);
    BYTE* bits = to.row(y);
    for (int x = 0; x < from.width(); ++x) Set1BitPixel(bits, Get4BitPixel(row, x) >= background, x);
  }
  return mask;
}

/// Cuts off the background at the edges and moves the position accordingly; null when nothing is drawn.
OwnedDib trimmed(OwnedDib picture, POINT& position) {
  const OwnedDib mask = maskOf(picture.get());
  if (!mask) return nullptr;
  const TransparentEdges edges = transparentEdges(ConstView(mask.get()));
  if (!edges.any()) return picture;
  if (edges.left == picture->biWidth) return nullptr;
  position = {position.x + edges.left, position.y + edges.top};
  BITMAPINFOHEADER* piece = nullptr;
  BITMAPINFOHEADER* noMask = nullptr;  // there is none for a rectangle inside the picture
  cropLeakingRegion(picture.get(), nullptr, edges, &piece, &noMask);
  return OwnedDib(piece);
}

/// Makes a shape picture. draw(context) draws on a white surface with the pen and the brush selected.
/// \param position receives the canvas coordinates of the picture's top-left pixel
template <class Draw>
OwnedDib paintedShape(const RECT& box, int penWidth, bool filled, POINT& position, Draw&& draw) {
  position = {box.left, box.top};
  DrawingSurface surface(box, DrawingSurface::Colours::screen, white);
  if (!surface) return nullptr;
  {
    const OwnedGraphicsObject pen(penWidth < 1 ? GetStockObject(NULL_PEN)
                                               : CreatePen(PS_SOLID, penWidth, black));
    const OwnedGraphicsObject brush(filled ? CreateSolidBrush(red) : GetStockObject(NULL_BRUSH));
    const SelectedObject selectedPen(surface.context(), pen.get());
    const SelectedObject selectedBrush(surface.context(), brush.get());
    draw(surface.context());
  }
  const OwnedDib drawn = surface.read(24);
  OwnedDib picture = drawn ? reduced(drawn.get()) : nullptr;
  return picture ? trimmed(std::move(picture), position) : nullptr;
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
      if (ellipse != 0) {
        Ellipse(context, left, top, right, bottom);
      } else {
        RoundRect(context, left, top, right, bottom, corner.x, corner.y);
      }
    });
  });
}

BITMAPINFOHEADER* PaintPolygonOnPic(POINT* points, int count, int penWidth, int filled, POINT* position) {
  return withPosition(position, [&](POINT& place) {
    const RECT box = boxAround(points, count, paintMargin(penWidth));
    return paintedShape(box, penWidth, filled != 0, place,
                        [&](HDC context) { Polygon(context, points, count); });
  });
}
