#include <gtest/gtest.h>

#include "platform/surface.h"

namespace {

using test::GoldenCase;
using test::Surface;

constexpr COLORREF white = RGB(255, 255, 255);

void clear(const Surface& surface, int width, int height) {
  surface.fill({0, 0, width, height}, RGB(0, 0, 0));
}

template <bool colour>
void fill(const GoldenCase& recorded) {
  const std::vector<std::int64_t> size = recorded.at("size").numbers(), origin = recorded.at("org").numbers();
  const Surface surface(static_cast<int>(size[0]), static_cast<int>(size[1]), colour);
  clear(surface, static_cast<int>(size[0]), static_cast<int>(size[1]));
  surface.origin(origin[0], origin[1]);
  for (const test::GoldenLine& line : recorded.lines) {
    if (line.word != "fill") continue;
    std::istringstream in(line.rest);
    RECT rect;
    std::string value;
    int result = 0;
    in >> rect.left >> rect.top >> rect.right >> rect.bottom >> value >> result;
    const test::OwnedObject brush(CreateSolidBrush(static_cast<COLORREF>(std::stoul(value, nullptr, 16))));
    EXPECT_EQ(FillRect(surface.context(), &rect, static_cast<HBRUSH>(brush.get())), result);
  }
  test::expectSurface(test::RecordedPixels(recorded), surface);
  if (recorded.find("lines") != nullptr) test::expectRead(recorded, surface);
}

void blit(const Surface& surface, const std::vector<std::int64_t>& at) {
  const auto number = [&](std::size_t i) { return static_cast<int>(at[i]); };
  const Surface from(64, 64, false);
  from.fill({0, 0, 64, 64}, white);
  EXPECT_TRUE(
      BitBlt(surface.context(), number(0), number(1), number(2), number(3), from.context(), 0, 0, SRCCOPY));
}

void clip(const GoldenCase& recorded) {
  const std::vector<std::int64_t> size = recorded.at("size").numbers(), origin = recorded.at("org").numbers();
  const Surface surface(static_cast<int>(size[0]), static_cast<int>(size[1]), false);
  clear(surface, static_cast<int>(size[0]), static_cast<int>(size[1]));
  surface.origin(origin[0], origin[1]);
  const test::OwnedRegion region = test::shapeOf(recorded.at("clip").rest);
  EXPECT_EQ(SelectClipRgn(surface.context(), region.get()), recorded.at("ret").numbers()[0]);
  const std::string& text = recorded.at("do").rest;
  const auto space = text.find(' ');
  const std::string what = text.substr(0, space);
  const std::vector<std::int64_t> numbers = test::GoldenLine{what, text.substr(space + 1)}.numbers();
  if (what == "fill") {
    surface.fill(test::rectOf(numbers, 0), white);
  } else if (what == "blt") {
    blit(surface, numbers);
  } else {
    ASSERT_EQ(what, "line");
    test::drawLine(surface, test::pointsOf({numbers.begin(), numbers.begin() + 4}, 0), white, numbers[4],
                   numbers[5]);
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
  for (int y = 0; y < before.height; ++y) {
    for (int x = 0; x < before.width; ++x) {
      const bool set = before.pixels[static_cast<std::size_t>(y * before.width + x)] != 0;
      SetPixel(surface.context(), x, y, set ? white : RGB(0, 0, 0));
    }
  }
  test::expectSurface(before, surface);
  std::vector<BYTE> dib = test::recordedDib(recorded, "dib");
  EXPECT_EQ(put(surface, test::dibOf(dib)), recorded.at("ret").numbers()[0]);
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
  const std::map<std::string, void (*)(const GoldenCase&)> checks{
      {"fill1", fill<false>}, {"fill24", fill<true>}, {"clip", clip},
      {"setdib", putDib},     {"getdib1", getDib},    {"mono-colour", ditheredColour},
  };
  const std::map<std::string, int> expected{{"fill1", 24},   {"fill24", 26},  {"clip", 66},
                                            {"setdib", 100}, {"getdib1", 25}, {"mono-colour", 33}};
  EXPECT_EQ(test::checkRecorded("surfaces.txt", checks), expected);
}

// The recorded cases copy from the first pixel on, and from surfaces whose origin has not moved.
TEST(Surfaces, ShowPartsOfPictures) {
  const test::OwnedDib picture = test::image(4, 3, 24);
  for (int i = 0; i < 12; ++i) test::setPixel(picture, i % 4, i / 4, static_cast<DWORD>(i + 1));
  const Surface from(4, 3, true), to(6, 5, true);
  put(from, picture.get());
  clear(to, 6, 5);
  from.origin(1, -1);
  to.origin(2, 1);
  BitBlt(to.context(), 1, 0, 2, 2, from.context(), 0, 2, SRCCOPY);
  // The picture's rows count from its lowest one: two rows from the first on are the lower two.
  SetDIBitsToDevice(to.context(), -2, 1, 3, 2, 1, 0, 0, 3, GetDIBBits(picture.get()),
                    reinterpret_cast<const BITMAPINFO*>(picture.get()), DIB_RGB_COLORS);
  const std::vector<DWORD> expected{0,  0,  0,  0,  0,  0,  //
                                    0,  0,  0,  6,  7,  0,  //
                                    6,  7,  8,  10, 11, 0,  //
                                    10, 11, 12, 0,  0,  0,  //
                                    0,  0,  0,  0,  0,  0};
  EXPECT_EQ(test::pixelsOf(to.read(24)), expected);
}

}  // namespace
