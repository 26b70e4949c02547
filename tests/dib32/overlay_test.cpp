#include <limits>

#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "platform/surface.h"

namespace {

using test::OwnedDib;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

using DrawSide = int (*)(BITMAPINFOHEADER*, const POINT&, int, int, int, BYTE, BYTE, BYTE, BYTE, BYTE, BYTE,
                         int);
constexpr DrawSide top = CDIB32::DrawTopHatchedLine, right = CDIB32::DrawRightHatchedLine,
                   bottom = CDIB32::DrawBottomHatchedLine, left = CDIB32::DrawLeftHatchedLine;

TEST(DashedSides, CountFromTheirFirstPixelWhereverTheCanvasCutsThem) {
  struct Case {
    DrawSide draw;
    int a, b, phase;
    std::string dashes;  // on a canvas of one row or column: 1 or 2 for a colour, a dot for no change
    int next;
    int fixed = 5;   // the canvas has only this row or column
    int origin = 0;  // where it begins along the side
  };
  const std::string nothing(12, '.');
  const Case cases[] = {
      {top, 0, 11, 0, "222111222111", 5},
      {top, 2, 9, 0, "..22211122..", 1},
      {top, 12, 19, 4, "..11222111..", 5, 5, 10},
      {top, -4, 3, 0, "1122........", 1},
      {top, 9, 30, 3, ".........111", 5},
      {right, 2, 9, 0, "...2221112..", 0},
      {right, -4, 3, 0, "1112........", 0},
      {right, 9, 30, 0, "..........22", 1},
      // Going back they count from b and leave the corner to the side before, and one pixel more where the
      // canvas cuts them. The left one leaves its last pixel too: to the top one, or at the canvas's edge.
      {bottom, 2, 9, 0, "..2211122...", 1},
      {bottom, 2, 30, 0, "..112221112.", 4},
      {bottom, -4, 3, 0, "122.........", 3},
      {left, 2, 9, 0, "...211122...", 0},
      {left, 2, 30, 0, "...12221112.", 3},
      {left, -4, 3, 0, ".22.........", 2},
      // Going back, a side of one pixel is dropped.
      {bottom, 3, 4, 3, nothing, 0},
      {left, 3, 5, 3, "....1.......", 4},
      {left, 3, 4, 3, nothing, 0},
      {top, 9, 7, 3, nothing, 0},
      {right, 12, 20, 3, nothing, 0},
      {bottom, 12, 20, 3, nothing, 0},
      {left, -9, -2, 3, nothing, 0},
      // Beside the canvas nothing counts, not even that the side has no pixels.
      {top, 0, 11, 3, nothing, 2, 4},
      {right, 0, 11, 0, nothing, -1, 6},
      {bottom, 9, 7, 0, nothing, -1, 4},
      {left, 0, 11, lowest, nothing, -3, 6},
      // Positions -4 to -1 have the second colour, even where the pattern, wrapped, would have the first.
      {top, 0, 7, -4, "22222221....", 3},
  };
  for (const Case& c : cases) {
    const bool horizontal = c.draw == top || c.draw == bottom;
    const OwnedDib canvas(CDIB32::CreateSimple32BitsDIB(horizontal ? 12 : 1, horizontal ? 1 : 12, 0, 7));
    const POINT origin = horizontal ? POINT{c.origin, 5} : POINT{5, c.origin};
    const int next =
        c.draw(canvas.get(), origin, c.a, c.b, c.fixed, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, c.phase);
    std::string dashes;
    for (const DWORD pixel : test::pixelsOf(canvas)) {
      dashes += pixel == 0x07112233 ? '1' : pixel == 0x07445566 ? '2' : pixel == 0x07000000 ? '.' : '?';
    }
    EXPECT_EQ(dashes, c.dashes) << c.a << " to " << c.b;
    EXPECT_EQ(next, c.next) << c.a << " to " << c.b;
  }
}

TEST(DrawSelectedFlag, GoesRoundWithoutABreak) {
  // 4 x 4 around the middle of 6 x 6: twelve pixels, from the top left corner clockwise. The bottom side
  // stops at its last column but one, the corner being the right side's.
  const OwnedDib canvas(CDIB32::CreateSimple32BitsDIB(6, 6, RGB(128, 128, 128), 0));
  CDIB32::DrawSelectedFlag(canvas.get(), {10, 20}, {11, 21, 15, 25}, 0);
  constexpr DWORD white = 0xFFFFFF, black = 0, gray = 0x808080;
  // Top: phases 0 to 3, returns 3. Right starts at 3: 3, 4, 5, returns 5. Bottom's counter starts at 1, so it
  // goes on at 6: 0, 1, 2, returns 2. Left: 3, 4, that is, black.
  const std::vector<DWORD> expected{
      gray, gray,  gray,  gray,  gray,  gray,  //
      gray, white, white, white, black, gray,  //
      gray, black, gray,  gray,  black, gray,  //
      gray, black, gray,  gray,  black, gray,  //
      gray, white, white, white, black, gray,  //
      gray, gray,  gray,  gray,  gray,  gray,
  };
  EXPECT_EQ(test::pixelsOf(canvas), expected);
}

void recordedLine(const test::GoldenCase& recorded) {
  const std::vector<POINT> ends = test::pointsOf(recorded.at("line").numbers(), 0);
  const std::vector<std::int64_t> pen = recorded.at("pen").numbers();
  test::OwnedRegion clip, copy(CreateRectRgn(0, 0, 1, 1));
  if (const test::GoldenLine* shape = recorded.find("clip")) clip = test::shapeOf(shape->rest);
  if (clip) CombineRgn(copy.get(), clip.get(), clip.get(), RGN_OR);
  POINT origin{-7, -7};
  const OwnedDib line(CDIB32::GenerateLine(
      test::rectOf(recorded.at("area").numbers(), 0), ends[0], ends[1], static_cast<int>(pen[0]),
      static_cast<int>(recorded.at("margin").numbers()[0]), static_cast<int>(pen[1]), clip.get(), &origin));
  EXPECT_TRUE(!clip || EqualRgn(clip.get(), copy.get()));
  ASSERT_EQ(line == nullptr, recorded.find("null") != nullptr);
  if (!line) {
    EXPECT_TRUE(origin.x == 0 && origin.y == 0);
    return;
  }
  const std::vector<std::int64_t> corner = recorded.at("origin").numbers();
  EXPECT_TRUE(origin.x == corner[0] && origin.y == corner[1]);
  const test::RecordedPixels expected(recorded);
  ASSERT_EQ(line->biWidth, expected.width);
  ASSERT_EQ(line->biHeight, expected.height);
  EXPECT_EQ(test::pixelsOf(line), expected.pixels);
  if (const test::GoldenLine* header = recorded.find("header")) {
    EXPECT_EQ(test::headerOf(line.get()), header->numbers());
  }
  // The records hold the platform's palette; the operation puts its gray one back.
  std::vector<DWORD> gray;
  for (DWORD i = 0; i < 256; ++i) gray.push_back(i * 0x010101);
  EXPECT_EQ(test::entriesOf(line), gray);
}

TEST(GenerateLine, EqualsEveryRecordedCase) {
  const auto elsewhere = [](const test::GoldenCase&) {};  // what frames/ paints
  const std::map<std::string, int> expected{{"line1", 759}, {"line2", 116}, {"genline", 122}};
  EXPECT_EQ(test::checkRecorded("pens.txt",
                                {{"genline", recordedLine}, {"line1", elsewhere}, {"line2", elsewhere}}),
            expected);
}

TEST(GenerateLine, StaysInTheBoxOfItsAreaAndClip) {
  const RECT area{0, 0, 20, 20};
#if !defined(_WIN32)  // the system's own drawing may overflow
  // A pen and a line of any length cover the area, and no more.
  const OwnedDib covered(
      CDIB32::GenerateLine(area, {lowest, 10}, {highest, 10}, 400, highest, 0, nullptr, nullptr));
  ASSERT_NE(covered, nullptr);
  EXPECT_EQ(test::pixelsOf(covered), std::vector<DWORD>(400, 255));
#endif
  // Two pixels are kept around the line even without a margin; a box beside the line is all 0.
  POINT origin{5, 5};
  const test::OwnedRegion corner(CreateRectRgn(0, 0, 2, 2));
  const OwnedDib missed(CDIB32::GenerateLine(area, {4, 4}, {9, 9}, 1, 0, 1, corner.get(), &origin));
  ASSERT_NE(missed, nullptr);
  EXPECT_TRUE(origin.x == 1 && origin.y == 1);
  EXPECT_EQ(test::pixelsOf(missed), std::vector<DWORD>(1, 0));
}

}  // namespace
