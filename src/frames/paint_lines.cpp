#include "dib/view.h"
#include "drawing/drawing_surface.h"
#include "frames/frames.h"
#include "frames/painted.h"

namespace dibkit {
namespace {

OwnedDib whiteLine(const BITMAPINFOHEADER* picture, const RECT& box, const POINT& from, const POINT& to,
                   int penWidth, bool roundEnds) {
  if (picture != nullptr && !viewOfDepth(picture, 1)) return nullptr;
  DrawingSurface surface(box, black);
  if (!surface) return nullptr;
  if (picture != nullptr && !surface.put(picture)) return nullptr;
  const POINT ends[] = {from, to};
  return surface.drawLine(ends, 2, penWidth, roundEnds, white) ? surface.read(1) : nullptr;
}

OwnedDib blackPolyline(const RECT& bounds, const POINT* points, int count, int penWidth, bool roundEnds,
                       POINT& position) {
  const RECT around = boxAround(points, count, paintMargin(penWidth));
  RECT box;
  IntersectRect(&box, &around, &bounds);
  position = {box.left, box.top};
  DrawingSurface surface(box, white);
  if (!surface) return nullptr;
  return surface.drawLine(points, count, penWidth, roundEnds, black) ? surface.read(1) : nullptr;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* PaintLineOnPic(BITMAPINFOHEADER* picture, const RECT& box, const POINT& from,
                                 const POINT& to, int penWidth, int roundEnds) {
  return whiteLine(picture, box, from, to, penWidth, roundEnds != 0).release();
}

BITMAPINFOHEADER* PaintLineOnPic2(const RECT& bounds, POINT* points, int count, int penWidth, int roundEnds,
                                  POINT* position) {
  POINT corner{};
  OwnedDib line = blackPolyline(bounds, points, count, penWidth, roundEnds != 0, corner);
  if (position != nullptr) *position = corner;
  return line.release();
}
