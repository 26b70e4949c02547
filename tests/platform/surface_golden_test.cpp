#include <gtest/gtest.h>

#include "platform/surface.h"

namespace {

using test::GoldenCase;
using test::Surface;

constexpr COLORREF white = RGB(255, 255, 255);

/// A black surface of the recorded size, with the recorded origin.
class RecordedSurface : public Surface {
 public:
  RecordedSurface(const GoldenCase& recorded, bool colour)
      : Surface(test::numberOf(recorded, "size"), test::numberOf(recorded, "size", 1), colour) {
    fill({0, 0, 1000, 1000}, RGB(0, 0, 0));
    origin(test::numberOf(recorded, "org"), test::numberOf(recorded, "org", 1));
  }
};

template <bool colour>
void fill(const GoldenCase& recorded) {
  const RecordedSurface surface(recorded, colour);
  for (const test::GoldenLine& line : recorded.lines) {
    if (line.word != "fill") continue;
    std::istringstream in(line.rest);
    RECT rect;
    COLORREF value = 0;
    int result = 0;
    in >> rect.left >> rect.top >> rect.right >> rect.bottom >> std::hex >> value >> result;
    const test::OwnedObject brush(CreateSolidBrush(value));
    EXPECT_EQ(FillRect(surface.context(), &rect, static_cast<HBRUSH>(brush.get())), result);
  }
  test::expectSurface(test::RecordedPixels(recorded), surface);
  if (recorded.find("lines") != nullptr) test::expectRead(recorded, surface);
}

void clip(const GoldenCase& recorded) {
  const RecordedSurface surface(recorded, false);
  const test::OwnedRegion region = test::shapeOf(recorded.at("clip").rest);
  EXPECT_EQ(SelectClipRgn(surface.context(), region.get()), test::numberOf(recorded, "ret"));
  const std::string& text = recorded.at("do").rest;
  const std::string what = text.substr(0, text.find(' '));
  const std::vector<std::int64_t> numbers = test::GoldenLine{what, text.substr(what.size())}.numbers();
  const auto at = [&](std::size_t i) { return static_cast<int>(numbers.at(i)); };
  if (what == "fill") {
    surface.fill(test::rectOf(numbers), white);
  } else if (what == "blt") {
    const Surface from(64, 64, false);
    from.fill({0, 0, 64, 64}, white);
    EXPECT_TRUE(BitBlt(surface.context(), at(0), at(1), at(2), at(3), from.context(), 0, 0, SRCCOPY));
  } else {
    ASSERT_EQ(what, "line");
    test::drawLine(surface, test::pointsOf({numbers.begin(), numbers.begin() + 4}), white, at(4), at(5));
  }
  SelectClipRgn(surface.context(), nullptr);
  test::expectSurface(test::RecordedPixels(recorded), surface);
}

int put(const Surface& surface, const BITMAPINFOHEADER* dib) {
  return SetDIBitsToDevice(surface.context(), 0, 0, static_cast<DWORD>(dib->biWidth),
                           static_cast<DWORD>(dib->biHeight), 0, 0, 0, static_cast<UINT>(dib->biHeight),
                           GetDIBBits(dib), reinterpret_cast<const BITMAPINFO*>(dib), DIB_RGB_COLORS);
}

void putDib(const GoldenCase& recorded) {
  const test::RecordedPixels before(recorded);
  const Surface surface(before.width, before.height, false);
  for (int i = 0; i < before.width * before.height; ++i) {
    const bool set = before.pixels[static_cast<std::size_t>(i)] != 0;
    SetPixel(surface.context(), i % before.width, i / before.width, set ? white : RGB(0, 0, 0));
  }
  test::expectSurface(before, surface);
  std::vector<BYTE> dib = test::recordedDib(recorded, "dib");
  EXPECT_EQ(put(surface, test::dibOf(dib)), test::numberOf(recorded, "ret"));
  test::expectSurface(test::RecordedPixels(recorded, 1), surface);
}

void getDib(const GoldenCase& recorded) {
  std::vector<BYTE> block = test::recordedDib(recorded, "dib");
  const BITMAPINFOHEADER* dib = test::dibOf(block);
  const Surface surface(dib->biWidth, dib->biHeight, false);
  put(surface, dib);
  test::expectRead(recorded, surface);
}

/// Colours other than black and white are dithered on a 1-bit surface, by no rule that anybody found; nothing
/// here draws with them.
void ditheredColour(const GoldenCase&) {}

TEST(RecordedSurfaces, AllExactButDitheredColours) {
  const std::map<std::string, int> expected{{"fill1", 24},   {"fill24", 26},  {"clip", 66},
                                            {"setdib", 100}, {"getdib1", 25}, {"mono-colour", 33}};
  EXPECT_EQ(test::checkRecorded("surfaces.txt", {{"fill1", fill<false>},
                                                 {"fill24", fill<true>},
                                                 {"clip", clip},
                                                 {"setdib", putDib},
                                                 {"getdib1", getDib},
                                                 {"mono-colour", ditheredColour}}),
            expected);
}

/// 1 to 12, from the top row down.
test::OwnedDib numberedPicture() { return test::imageOf(4, 3, 24, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}); }

// The recorded cases copy from the first pixel on, and from surfaces whose origin has not moved.
TEST(Surfaces, ShowPartsOfOthers) {
  const Surface from(4, 3, true), to(5, 4, true);
  put(from, numberedPicture().get());
  to.fill({0, 0, 5, 4}, RGB(0, 0, 0));
  from.origin(1, -1);
  to.origin(2, 1);
  BitBlt(to.context(), 1, 0, 2, 2, from.context(), 0, 2, SRCCOPY);
  EXPECT_EQ(test::pixelsOf(to.read(24)), (std::vector<DWORD>{0, 0, 0, 0,  0,  //
                                                             0, 0, 0, 6,  7,  //
                                                             0, 0, 0, 10, 11, 0, 0, 0, 0, 0}));
}

TEST(Surfaces, ShowPartsOfPictures) {
  // Scan lines and places in the picture count from its lowest row. Of the rows from `fromY` on those are
  // shown that are among the `lines` scan lines from `start` on, which the block holds.
  struct Case {
    UINT start, lines;
    int fromX, fromY;
    DWORD width, height;
    std::vector<DWORD> expected;  ///< on a black surface of 4 x 3
  };
  const Case cases[] = {
      {0, 3, 0, 0, 4, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
      {0, 3, 1, 0, 3, 2, {6, 7, 8, 0, 10, 11, 12, 0, 0, 0, 0, 0}},
      {1, 1, 0, 0, 4, 3, {0, 0, 0, 0, 5, 6, 7, 8, 0, 0, 0, 0}},
      {1, 1, 0, 1, 4, 2, {0, 0, 0, 0, 5, 6, 7, 8, 0, 0, 0, 0}},
      {0, 1, 0, 0, 4, 3, {0, 0, 0, 0, 0, 0, 0, 0, 9, 10, 11, 12}},
      {2, 5, 0, 0, 4, 3, {1, 2, 3, 4, 0, 0, 0, 0, 0, 0, 0, 0}},
      {1, 2, 0, 1, 4, 1, {5, 6, 7, 8, 0, 0, 0, 0, 0, 0, 0, 0}},
  };
  const test::OwnedDib picture = numberedPicture();
  for (const Case& c : cases) {
    const Surface surface(4, 3, true);
    surface.fill({0, 0, 4, 3}, RGB(0, 0, 0));
    surface.origin(1, -1);
    SetDIBitsToDevice(surface.context(), -1, 1, c.width, c.height, c.fromX, c.fromY, c.start, c.lines,
                      GetDIBBits(picture.get()) + 12 * c.start,
                      reinterpret_cast<const BITMAPINFO*>(picture.get()), DIB_RGB_COLORS);
    EXPECT_EQ(test::pixelsOf(surface.read(24)), c.expected) << c.lines << " lines from " << c.start;
  }
}

}  // namespace
