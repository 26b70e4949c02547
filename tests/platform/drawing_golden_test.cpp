#include <gtest/gtest.h>

#include "platform/surface.h"

namespace {

using test::GoldenCase;
using test::Surface;

constexpr COLORREF black = RGB(0, 0, 0);
constexpr COLORREF white = RGB(255, 255, 255);
constexpr COLORREF red = RGB(255, 0, 0);

/// A surface of the size of the recorded box, in one colour, with the origin moved to the box's corner.
class BoxSurface : public Surface {
 public:
  BoxSurface(const RECT& box, bool colour, COLORREF background)
      : Surface(box.right - box.left, box.bottom - box.top, colour) {
    fill({0, 0, box.right - box.left, box.bottom - box.top}, background);
    origin(-box.left, -box.top);
  }
};

template <class Draw>
void drawShape(const GoldenCase& recorded, Draw&& draw) {
  const BoxSurface surface(test::rectOf(recorded.at("rect").numbers(), 0), true, white);
  const int width = static_cast<int>(recorded.at("pen").numbers()[0]);
  const test::OwnedObject pen(width < 1 ? GetStockObject(NULL_PEN) : CreatePen(PS_SOLID, width, black));
  const bool filled = recorded.at("filled").numbers()[0] != 0;
  const test::OwnedObject brush(filled ? CreateSolidBrush(red) : GetStockObject(NULL_BRUSH));
  const HGDIOBJ penBefore = SelectObject(surface.context(), pen.get());
  const HGDIOBJ brushBefore = SelectObject(surface.context(), brush.get());
  draw(surface.context());
  SelectObject(surface.context(), penBefore);
  SelectObject(surface.context(), brushBefore);
  test::expectSurface(test::RecordedPixels(recorded), surface);
}

void ellipse(const GoldenCase& recorded) {
  const RECT rect = test::rectOf(recorded.at("shape").numbers(), 0);
  drawShape(recorded, [&](HDC context) { Ellipse(context, rect.left, rect.top, rect.right, rect.bottom); });
}

void roundRect(const GoldenCase& recorded) {
  const RECT rect = test::rectOf(recorded.at("shape").numbers(), 0);
  const POINT corner = test::pointsOf(recorded.at("corner").numbers(), 0).at(0);
  drawShape(recorded, [&](HDC context) {
    RoundRect(context, rect.left, rect.top, rect.right, rect.bottom, corner.x, corner.y);
  });
}

void polygon(const GoldenCase& recorded) {
  const std::vector<POINT> points = test::pointsOf(recorded.at("points").numbers(), 1);
  drawShape(recorded, [&](HDC context) { Polygon(context, points.data(), static_cast<int>(points.size())); });
}

// The recorded pens are compared where the library draws with them: by the tests of dib32/ and frames/.
TEST(RecordedShapes, AllExact) {
  const std::map<std::string, void (*)(const GoldenCase&)> checks{
      {"ellipse", ellipse}, {"roundrect", roundRect}, {"polygon", polygon}};
  const std::map<std::string, int> expected{{"ellipse", 296}, {"roundrect", 319}, {"polygon", 189}};
  EXPECT_EQ(test::checkRecorded("shapes.txt", checks), expected);
}

}  // namespace
