#include <gtest/gtest.h>

#include "frames/frames.h"
#include "platform/surface.h"
#include "support/bitmap_regions.h"

namespace {

using test::GoldenCase;
using test::OwnedDib;

int number(const GoldenCase& recorded, const char* word, std::size_t index = 0) {
  return static_cast<int>(recorded.at(word).numbers().at(index));
}

void expectStroke(const GoldenCase& recorded, const OwnedDib& line) {
  const test::RecordedPixels expected(recorded);
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->biBitCount, 1);
  EXPECT_EQ(line->biWidth, expected.width);
  EXPECT_EQ(test::pixelsOf(line), expected.pixels);
  EXPECT_EQ(test::entriesOf(line), (std::vector<DWORD>{0, 0xFFFFFF}));
}

void recordedLine(const GoldenCase& recorded) {
  const std::vector<POINT> ends = test::pointsOf(recorded.at("line").numbers(), 0);
  std::vector<BYTE> picture = test::recordedDib(recorded, "picture");
  expectStroke(recorded,
               OwnedDib(PaintLineOnPic(picture.empty() ? nullptr : test::dibOf(picture),
                                       test::rectOf(recorded.at("rect").numbers(), 0), ends[0], ends[1],
                                       number(recorded, "pen"), number(recorded, "pen", 1))));
}

void recordedPolyline(const GoldenCase& recorded) {
  std::vector<POINT> points = test::pointsOf(recorded.at("points").numbers(), 1);
  const RECT box = test::rectOf(recorded.at("rect").numbers(), 0);
  POINT position{-99, -99};
  const OwnedDib line(PaintLineOnPic2(test::rectOf(recorded.at("bounds").numbers(), 0), points.data(),
                                      static_cast<int>(points.size()), number(recorded, "pen"),
                                      number(recorded, "pen", 1), &position));
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

/// The recorded surface as the operations hand it back: cut to what is not white, and where it lies.
void expectTrimmed(const GoldenCase& recorded, const OwnedDib& shape, const POINT& position) {
  const test::RecordedPixels drawn(recorded);
  const RECT box = test::rectOf(recorded.at("rect").numbers(), 0);
  const auto at = [&](int x, int y) { return drawn.pixels[static_cast<std::size_t>(y * drawn.width + x)]; };
  const test::Bitmap notWhite(drawn.width, drawn.height, [&](int x, int y) { return at(x, y) != 0xFFFFFF; });
  RECT visible;
  GetRgnBox(notWhite.region().get(), &visible);
  if (visible.right == 0) {
    EXPECT_EQ(shape, nullptr);
    EXPECT_TRUE(position.x == box.left && position.y == box.top);
    return;
  }
  ASSERT_NE(shape, nullptr);
  EXPECT_TRUE(position.x == box.left + visible.left && position.y == box.top + visible.top);
  EXPECT_EQ(shape->biBitCount, 4);
  EXPECT_EQ(shape->biClrUsed, 3u);
  EXPECT_EQ(test::entriesOf(shape), (std::vector<DWORD>{0, 0xFF0000, 0xFFFFFF}));
  ASSERT_EQ(shape->biWidth, visible.right - visible.left);
  ASSERT_EQ(shape->biHeight, visible.bottom - visible.top);
  std::vector<DWORD> indexes;
  for (int y = visible.top; y < visible.bottom; ++y) {
    for (int x = visible.left; x < visible.right; ++x) {
      indexes.push_back(at(x, y) == 0 ? 0 : at(x, y) == 0xFF0000 ? 1 : 2);
    }
  }
  EXPECT_EQ(test::pixelsOf(shape), indexes);
}

int reversedOutOfSight = 0;

void recordedShape(const GoldenCase& recorded) {
  const RECT rect = test::rectOf(recorded.at("shape").numbers(), 0);
  const bool ellipse = recorded.kind == "ellipse";
  const POINT corner = ellipse ? POINT{} : test::pointsOf(recorded.at("corner").numbers(), 0).at(0);
  POINT position{-99, -99};
  const OwnedDib shape(
      PaintShapeOnPic(rect, number(recorded, "pen"), ellipse, number(recorded, "filled"), corner, &position));
  // The box of a rectangle that is reversed by more than its margins is empty, though records show the shape.
  const int margin = 2 * (number(recorded, "pen") / 2 + 10);
  if (rect.right - rect.left + margin <= 0 || rect.bottom - rect.top + margin <= 0) {
    ++reversedOutOfSight;
    EXPECT_EQ(shape, nullptr);
    return;
  }
  const RECT box = test::rectOf(recorded.at("rect").numbers(), 0);
  EXPECT_EQ(box.left, rect.left - margin / 2);
  expectTrimmed(recorded, shape, position);
}

void recordedPolygon(const GoldenCase& recorded) {
  std::vector<POINT> points = test::pointsOf(recorded.at("points").numbers(), 1);
  POINT position{-99, -99};
  const OwnedDib shape(PaintPolygonOnPic(points.data(), static_cast<int>(points.size()),
                                         number(recorded, "pen"), number(recorded, "filled"), &position));
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

}  // namespace
