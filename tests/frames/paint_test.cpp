#include <ctime>
#include <functional>

#include <gtest/gtest.h>

#include "plain.h"
#include "platform/surface.h"

namespace {

using test::GoldenCase;
using test::OwnedDib;

using test::numberOf;

void expectStroke(const GoldenCase& recorded, const OwnedDib& line) {
  const test::RecordedPixels expected(recorded);
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->biBitCount, 1);
  EXPECT_EQ(line->biWidth, expected.width);
  EXPECT_EQ(test::pixelsOf(line), expected.pixels);
  EXPECT_EQ(test::entriesOf(line), (std::vector<DWORD>{0, 0xFFFFFF}));
}

void recordedLine(const GoldenCase& recorded) {
  const std::vector<POINT> ends = test::pointsOf(recorded.at("line").numbers());
  std::vector<BYTE> picture = test::recordedDib(recorded, "picture");
  expectStroke(recorded,
               OwnedDib(PaintLineOnPic(picture.empty() ? nullptr : test::dibOf(picture),
                                       test::rectOf(recorded.at("rect").numbers()), ends[0], ends[1],
                                       numberOf(recorded, "pen"), numberOf(recorded, "pen", 1))));
}

void recordedPolyline(const GoldenCase& recorded) {
  std::vector<POINT> points = test::pointsOf(recorded.at("points").numbers(), 1);
  const RECT box = test::rectOf(recorded.at("rect").numbers());
  POINT position{-99, -99};
  const OwnedDib line(PaintLineOnPic2(test::rectOf(recorded.at("bounds").numbers()), points.data(),
                                      static_cast<int>(points.size()), numberOf(recorded, "pen"),
                                      numberOf(recorded, "pen", 1), &position));
  // A box outside the bounds was not drawn: there is no surface to compare.
  if (recorded.find("surface") == nullptr) {
    EXPECT_EQ(line, nullptr);
    return;
  }
  EXPECT_TRUE(position.x == box.left && position.y == box.top);
  expectStroke(recorded, line);
}

TEST(PaintLineOnPic, EqualsEveryRecordedCase) {
  const std::map<std::string, int> expected{{"line1", 759}, {"line2", 116}, {"genline", 122}};
  EXPECT_EQ(test::checkRecorded("pens.txt", {{"line1", recordedLine},
                                             {"line2", recordedPolyline},
                                             {"genline", [](const GoldenCase&) {}}}),  // what dib32/ draws
            expected);
}

/// The recorded surface as the operations hand it back: cut to what is not white, and where that is.
void expectTrimmed(const GoldenCase& recorded, const OwnedDib& shape, const POINT& position) {
  const test::RecordedPixels drawn(recorded);
  const RECT box = test::rectOf(recorded.at("rect").numbers());
  const auto at = [&](int x, int y) { return drawn.pixels[static_cast<std::size_t>(y * drawn.width + x)]; };
  const test::Bitmap notWhite(drawn.width, drawn.height, [&](int x, int y) { return at(x, y) != 0xFFFFFF; });
  RECT visible;
  GetRgnBox(notWhite.region().get(), &visible);
  EXPECT_TRUE(position.x == box.left + visible.left && position.y == box.top + visible.top);
  ASSERT_EQ(shape != nullptr, visible.right != 0);
  if (!shape) return;
  EXPECT_EQ(shape->biClrUsed, 3u);
  const OwnedDib expected =
      test::image(visible.right - visible.left, visible.bottom - visible.top, 4, {0, 0xFF0000, 0xFFFFFF});
  test::forEachPixel(test::boundsOf(expected), [&](int x, int y) {
    const DWORD colour = at(visible.left + x, visible.top + y);
    test::setPixel(expected, x, y, colour == 0 ? 0 : colour == 0xFF0000 ? 1 : 2);
  });
  EXPECT_TRUE(test::same(shape, expected));
}

int reversedOutOfSight = 0;

void recordedShape(const GoldenCase& recorded) {
  const RECT rect = test::rectOf(recorded.at("shape").numbers());
  const bool ellipse = recorded.kind == "ellipse";
  const POINT corner = ellipse ? POINT{} : test::pointsOf(recorded.at("corner").numbers()).at(0);
  POINT position{-99, -99};
  const OwnedDib shape(PaintShapeOnPic(rect, numberOf(recorded, "pen"), ellipse, numberOf(recorded, "filled"),
                                       corner, &position));
  // The box of a rectangle that is reversed by more than its margins is empty, though records show the shape.
  const int margin = 2 * (numberOf(recorded, "pen") / 2 + 10);
  if (rect.right - rect.left + margin <= 0 || rect.bottom - rect.top + margin <= 0) {
    ++reversedOutOfSight;
    EXPECT_EQ(shape, nullptr);
    return;
  }
  const RECT box = test::rectOf(recorded.at("rect").numbers());
  EXPECT_EQ(box.left, rect.left - margin / 2);
  expectTrimmed(recorded, shape, position);
}

void recordedPolygon(const GoldenCase& recorded) {
  std::vector<POINT> points = test::pointsOf(recorded.at("points").numbers(), 1);
  POINT position{-99, -99};
  const OwnedDib shape(PaintPolygonOnPic(points.data(), static_cast<int>(points.size()),
                                         numberOf(recorded, "pen"), numberOf(recorded, "filled"), &position));
  expectTrimmed(recorded, shape, position);
}

TEST(PaintShapeOnPic, EqualsEveryRecordedCase) {
  reversedOutOfSight = 0;
  const std::map<std::string, int> expected{{"ellipse", 296}, {"roundrect", 319}, {"polygon", 189}};
  EXPECT_EQ(test::checkRecorded(
                "shapes.txt",
                {{"ellipse", recordedShape}, {"roundrect", recordedShape}, {"polygon", recordedPolygon}}),
            expected);
  EXPECT_EQ(reversedOutOfSight, 21);
}

#if !defined(_WIN32)  // the system's own drawing takes its time
#if defined(__SANITIZE_ADDRESS__)
constexpr double longest = 30;  // seconds
#else
constexpr double longest = 3;
#endif
/// What cannot be seen costs nothing, and many points no more than their number.
TEST(PaintLineOnPic, CostsWhatCanBeSeen) {
  std::vector<POINT> wide, dense;
  for (int i = 0; i < 2000; ++i) wide.push_back({i % 50, i * 7919 % 50});
  for (int i = 0; i < 200'000; ++i) dense.push_back({i * 7919 % 301, i % 2 * 15});
  const RECT box{0, 0, 50, 50};
  const auto at = [](int size) { return RECT{0, 0, size, size}; };
  const struct {
    std::function<BITMAPINFOHEADER*()> draw;
    int width, height;
  } cases[] = {
      {[&] { return PaintLineOnPic2(box, wide.data(), 2000, 1 << 19, 1, nullptr); }, 50, 50},
      {[&] { return PaintLineOnPic2(box, wide.data(), 2000, 1 << 30, 1, nullptr); }, 50, 50},
      {[&] {
         return PaintLineOnPic(nullptr, box, {-(1 << 30), 3}, {1 << 30, 40}, 1, 0);
       },
       50, 50},
      {[&] { return PaintPolygonOnPic(dense.data(), 200'000, 1, 1, nullptr); }, 301, 16},
      // The outline is that of columns 0 to 999, and 500 pixels to the left of it, 499 to the right.
      {[&] { return PaintShapeOnPic(at(1000), 1000, 1, 1, {}, nullptr); }, 1999, 1999},
  };
  for (const auto& [draw, width, height] : cases) {
    const std::clock_t begin = std::clock();
    const OwnedDib picture(draw());
    const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->biWidth, width);
    EXPECT_EQ(picture->biHeight, height);
    EXPECT_LT(seconds, longest) << width << " x " << height;
  }
}
#endif

}  // namespace
