#include <limits>

#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "platform/surface.h"

namespace {

using test::below;
using test::OwnedDib;

constexpr DWORD alphaBits = 0xFF000000;
constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

OwnedDib randomCanvas(int width, int height, test::Random& random) {
  return test::randomImage(width, height, 32, random);
}

/// A canvas whose pixels came out as `colourAt(x, y, before)` says, opacities untouched.
template <class ColourAt>
void expectPainted(const OwnedDib& before, const OwnedDib& after, ColourAt&& colourAt) {
  for (int y = 0; y < before->biHeight; ++y) {
    for (int x = 0; x < before->biWidth; ++x) {
      const DWORD old = test::pixel(before, x, y);
      const DWORD expected = (old & alphaBits) | colourAt(x, y, old & ~alphaBits);
      ASSERT_EQ(test::pixel(after, x, y), expected) << x << ", " << y;
    }
  }
}

TEST(Init32DIBBackground, FollowsItsFormulaForOffsetsOfEverySign) {
  test::Random random(41);
  for (const int xOffset : {0, 1, 7, 8, 9, 16, 1000003, -1, -7, -8, -9, -30, highest, lowest}) {
    for (const int yOffset : {0, 5, 8, 15, -3, -8, -17, highest, lowest}) {
      SCOPED_TRACE(std::to_string(xOffset) + " " + std::to_string(yOffset));
      const OwnedDib before = randomCanvas(33, 29, random);
      const OwnedDib canvas(CBitmapCreator::Clone(before.get()));
      CDIB32::Init32DIBBackground(canvas.get(), 1, 2, 3, 250, 251, 252, xOffset, yOffset);
      expectPainted(before, canvas, [&](int x, int y, DWORD) -> DWORD {
        const long long kindX = (x + static_cast<long long>(xOffset)) / 8 % 2;
        const long long kindY = (y + static_cast<long long>(yOffset)) / 8 % 2;
        return kindX == kindY ? 0x010203 : 0xFAFBFC;
      });
    }
  }
}

TEST(Init32DIBWithHatedLines, CountsOnFromTheOffsetsRemainders) {
  test::Random random(42);
  for (const int xOffset : {0, 3, 8, 15, -1, -5, -8, -13, highest, lowest}) {
    for (const int yOffset : {0, 6, 9, -2, -7, -16, highest, lowest}) {
      SCOPED_TRACE(std::to_string(xOffset) + " " + std::to_string(yOffset));
      const OwnedDib before = randomCanvas(31, 18, random);
      const OwnedDib canvas(CBitmapCreator::Clone(before.get()));
      CDIB32::Init32DIBWithHatedLines(canvas.get(), CPoint(xOffset, yOffset), RGB(9, 8, 7));
      int py = yOffset % 8 - 1;
      int lastY = -1, px = 0;
      expectPainted(before, canvas, [&](int x, int y, DWORD old) -> DWORD {
        if (y != lastY) {
          lastY = y;
          if (++py == 8) py = 0;
          px = xOffset % 8 - 1;
        }
        if (++px == 8) px = 0;
        static_cast<void>(x);
        return px == py || px + py == 7 ? 0x090807 : old;
      });
    }
  }
}

TEST(Init32DIBWithHatedLines, CrossesInEveryCell) {
  const OwnedDib canvas = test::image(8, 8, 32);
  CDIB32::Init32DIBWithHatedLines(canvas.get(), CPoint(0, 0), RGB(255, 0, 0));
  for (const POINT& point : {POINT{0, 0}, {7, 0}, {3, 4}, {1, 1}})
    EXPECT_EQ(test::pixel(canvas, point.x, point.y), 0xFF0000u);
  EXPECT_EQ(test::pixel(canvas, 1, 0), 0u);
}

using DrawSide = int (*)(BITMAPINFOHEADER*, const POINT&, int, int, int, BYTE, BYTE, BYTE, BYTE, BYTE, BYTE,
                         int);
constexpr DWORD colour1 = 0x112233, colour2 = 0x445566;

int draw(DrawSide side, const OwnedDib& canvas, const POINT& origin, int a, int b, int fixed, int phase) {
  return side(canvas.get(), origin, a, b, fixed, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, phase);
}

/// Draws a side pixel by pixel in the order of its walk, the dashes counted from the unclipped end.
struct PlainSide {
  DrawSide draw;
  bool horizontal;
  bool forward;

  int operator()(const OwnedDib& canvas, const POINT& origin, int a, int b, int fixed, int phase) const {
    const int size = horizontal ? canvas->biWidth : canvas->biHeight;
    const int low = horizontal ? origin.x : origin.y;
    const int across = horizontal ? fixed - origin.y : fixed - origin.x;
    if (across < 0 || across >= (horizontal ? canvas->biHeight : canvas->biWidth)) return (phase - 1) % 6;
    std::vector<int> walk;
    if (forward) {
      for (int i = horizontal ? a : a + 1; i <= b; ++i) walk.push_back(i);
    } else {
      for (int i = b; i >= (horizontal ? a : a + 1); --i) walk.push_back(i);
    }
    int drawn = 0;
    std::vector<std::pair<int, int>> pixels;
    for (std::size_t k = 0; k < walk.size(); ++k) {
      // Walking back leaves out the corner, and the last pixel before an edge that cuts the side.
      const int limit = forward ? low + size : std::min(b + 1, low + size) - 1;
      if (walk[k] < low || walk[k] >= limit) continue;
      if (!horizontal && !forward && walk[k] <= low) continue;
      pixels.emplace_back(walk[k] - low, (static_cast<int>(k) + phase) % 6);
      ++drawn;
    }
    const int start = std::min(b + 1, low + size) - 2;
    if (drawn == 0 || (!forward && start <= std::max(a, low))) return 0;
    for (const auto& [along, position] : pixels) {
      const int x = horizontal ? along : across, y = horizontal ? across : along;
      const DWORD colour = position / 3 == 1 ? colour1 : colour2;
      test::setPixel(canvas, x, y, (test::pixel(canvas, x, y) & alphaBits) | colour);
    }
    return pixels.back().second;
  }
};

constexpr PlainSide sides[] = {{CDIB32::DrawTopHatchedLine, true, true},
                               {CDIB32::DrawRightHatchedLine, false, true},
                               {CDIB32::DrawBottomHatchedLine, true, false},
                               {CDIB32::DrawLeftHatchedLine, false, false}};

TEST(DashedSides, EqualTheWalkPixelByPixel) {
  test::Random random(43);
  for (int round = 0; round < 4000; ++round) {
    const PlainSide& side = sides[round % 4];
    const OwnedDib expected = randomCanvas(1 + below(random, 20), 1 + below(random, 20), random);
    const OwnedDib canvas(CBitmapCreator::Clone(expected.get()));
    const POINT origin{below(random, 11) - 5, below(random, 11) - 5};
    const int a = below(random, 40) - 12, b = a - 2 + below(random, 30);
    const int fixed = below(random, 30) - 8, phase = below(random, 6);
    SCOPED_TRACE(std::to_string(round) + ": " + std::to_string(a) + " to " + std::to_string(b));
    const int next = side(expected, origin, a, b, fixed, phase);
    ASSERT_EQ(draw(side.draw, canvas, origin, a, b, fixed, phase), next);
    ASSERT_EQ(test::pixelsOf(canvas), test::pixelsOf(expected));
  }
}

TEST(DashedSides, StartWithThreePixelsOfTheSecondColour) {
  const OwnedDib canvas = test::image(12, 1, 32);
  EXPECT_EQ(draw(CDIB32::DrawTopHatchedLine, canvas, {0, 0}, 0, 11, 0, 0), 5);
  const std::vector<DWORD> dashes{colour2, colour2, colour2, colour1, colour1, colour1};
  std::vector<DWORD> row = dashes;
  row.insert(row.end(), dashes.begin(), dashes.end());
  EXPECT_EQ(test::pixelsOf(canvas), row);
}

TEST(DashedSides, KeepTheSignOfANegativePhase) {
  // Positions -4 to -1 give the colour2 colour even where the pattern, wrapped, would give the first.
  const OwnedDib canvas = test::image(8, 1, 32);
  EXPECT_EQ(draw(CDIB32::DrawTopHatchedLine, canvas, {0, 0}, 0, 7, 0, -4), 3);
  EXPECT_EQ(test::pixelsOf(canvas),
            (std::vector<DWORD>{colour2, colour2, colour2, colour2, colour2, colour2, colour2, colour1}));
  EXPECT_EQ(draw(CDIB32::DrawTopHatchedLine, canvas, {0, 0}, 0, 7, -1, 0), -1);  // above the canvas
  EXPECT_EQ(draw(CDIB32::DrawTopHatchedLine, canvas, {0, 0}, 9, 7, -1, 0), -1);  // and empty
  EXPECT_EQ(draw(CDIB32::DrawTopHatchedLine, canvas, {0, 0}, 9, 7, 0, 3), 0);    // empty alone
  EXPECT_EQ(draw(CDIB32::DrawBottomHatchedLine, canvas, {0, 0}, 3, 4, 0, 3),
            0);  // one pixel backwards is none
}

TEST(DrawSelectedFlag, GoesRoundWithoutABreak) {
  // 4 x 4 around the middle of 6 x 6: twelve pixels, from the top left corner clockwise. The bottom side
  // stops at its last column but one, the corner being the right side's.
  const OwnedDib canvas = test::image(6, 6, 32);
  CDIB32::Make32BitsSimpleColorDIB(canvas.get(), RGB(128, 128, 128));
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

TEST(Overlays, TakeAnyArgument) {
  const OwnedDib gray = test::image(4, 4, 8), empty = test::image(0, 0, 32), canvas = test::image(3, 3, 32);
  for (BITMAPINFOHEADER* image :
       {static_cast<BITMAPINFOHEADER*>(nullptr), gray.get(), empty.get(), canvas.get()}) {
    CDIB32::Init32DIBBackground(image, 1, 2, 3, 4, 5, 6, lowest, highest);
    CDIB32::Init32DIBWithHatedLines(image, CPoint(lowest, highest), 0);
    for (const POINT& origin : {POINT{lowest, lowest}, {highest, highest}, {0, 0}}) {
      CDIB32::DrawSelectedFlag(image, origin, {lowest, lowest, highest, highest}, lowest);
      CDIB32::DrawSelectedFlag(image, origin, {highest, highest, lowest, lowest}, highest);
      CDIB32::DrawSelectedFlag(image, origin, {0, 0, 1, 1}, highest);
    }
  }
  EXPECT_EQ(test::pixelsOf(gray), std::vector<DWORD>(16, 0));
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
  if (clip) {
    EXPECT_TRUE(EqualRgn(clip.get(), copy.get()));
  }
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
  const std::vector<std::int64_t> palette = test::paletteOf(line.get());
  ASSERT_EQ(palette.size(), 256u);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(palette[static_cast<std::size_t>(i)], i * 0x010101);
}

TEST(GenerateLine, EqualsEveryRecordedCase) {
  const auto elsewhere = [](const test::GoldenCase&) {};  // what frames/ paints
  const std::map<std::string, int> expected{{"line1", 759}, {"line2", 116}, {"genline", 122}};
  EXPECT_EQ(test::checkRecorded("pens.txt",
                                {{"genline", recordedLine}, {"line1", elsewhere}, {"line2", elsewhere}}),
            expected);
}

TEST(GenerateLine, TakesAnyArgument) {
  const RECT area{0, 0, 20, 20}, reversed{20, 20, 0, 0};
  const test::OwnedRegion nothing(CreateRectRgn(0, 0, 0, 0)),
      all(CreateRectRgn(lowest, lowest, highest, highest));
  POINT origin{5, 5};
  EXPECT_EQ(CDIB32::GenerateLine(reversed, {1, 1}, {9, 9}, 3, 0, 1, nullptr, &origin), nullptr);
  EXPECT_TRUE(origin.x == 0 && origin.y == 0);
  EXPECT_EQ(CDIB32::GenerateLine(area, {1, 1}, {9, 9}, 3, 0, 1, nothing.get(), nullptr), nullptr);
  EXPECT_EQ(
      CDIB32::GenerateLine(area, {lowest, lowest}, {lowest, lowest}, lowest, lowest, 1, nullptr, &origin),
      nullptr);
  // A pen and a line without end still cover the area, and no more.
  const OwnedDib covered(
      CDIB32::GenerateLine(area, {lowest, 10}, {highest, 10}, 400, highest, 0, nullptr, &origin));
  ASSERT_NE(covered, nullptr);
#if !defined(_WIN32)  // the system's own drawing may overflow
  EXPECT_EQ(test::pixelsOf(covered), std::vector<DWORD>(400, 255));
#endif
  const OwnedDib tooWide(CDIB32::GenerateLine(area, {1, 1}, {9, 8}, highest, 0, 1, nullptr, &origin));
  const OwnedDib clipped(CDIB32::GenerateLine(area, {1, 1}, {9, 9}, 1, 0, 1, all.get(), &origin));
  // Two pixels are kept around the line even without a margin; the box that misses the line is all 0.
  const test::OwnedRegion corner(CreateRectRgn(0, 0, 2, 2));
  const OwnedDib missed(CDIB32::GenerateLine(area, {4, 4}, {9, 9}, 1, 0, 1, corner.get(), &origin));
  ASSERT_NE(missed, nullptr);
  EXPECT_TRUE(origin.x == 1 && origin.y == 1);
  EXPECT_EQ(test::pixelsOf(missed), std::vector<DWORD>(1, 0));
}

}  // namespace
