#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::pixel;

using Wand = HRGN (*)(BITMAPINFOHEADER*, POINT, int);

/// Which pixels of a frame a region holds, row by row, and whether it holds any other.
std::vector<bool> pixelsIn(const OwnedRegion& region, int width, int height) {
  RECT box{};
  GetRgnBox(region.get(), &box);
  EXPECT_TRUE(box.left >= 0 && box.top >= 0 && box.right <= width && box.bottom <= height);
  std::vector<bool> in;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) in.push_back(PtInRegion(region.get(), x, y) != FALSE);
  }
  return in;
}

/// The selection as it is defined, one pixel at a time.
std::vector<bool> plainSelection(const BITMAPINFOHEADER* image, POINT seed, std::int64_t tolerance,
                                 bool connected) {
  const int width = image->biWidth;
  const int height = image->biHeight;
  seed = {std::clamp<LONG>(seed.x, 0, width - 1), std::clamp<LONG>(seed.y, 0, height - 1)};
  const DWORD from = pixel(image, seed.x, seed.y);
  const auto similar = [&](int x, int y) {
    const DWORD value = pixel(image, x, y);
    if ((value >> 24 >= 128) != (from >> 24 >= 128)) return false;
    for (const int shift : {0, 8, 16}) {
      const int difference = static_cast<int>(value >> shift & 255) - static_cast<int>(from >> shift & 255);
      if (std::abs(difference) > tolerance) return false;
    }
    return true;
  };
  std::vector<bool> selected(static_cast<std::size_t>(width * height));
  const auto at = [&](int x, int y) { return static_cast<std::size_t>(y * width + x); };
  if (!connected) {
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) selected[at(x, y)] = similar(x, y);
    }
    return selected;
  }
  std::vector<POINT> stack{seed};
  selected[at(seed.x, seed.y)] = true;
  while (!stack.empty()) {
    const POINT p = stack.back();
    stack.pop_back();
    for (const POINT& q :
         {POINT{p.x, p.y + 1}, POINT{p.x + 1, p.y}, POINT{p.x, p.y - 1}, POINT{p.x - 1, p.y}}) {
      if (q.x < 0 || q.x >= width || q.y < 0 || q.y >= height) continue;
      if (selected[at(q.x, q.y)] || !similar(q.x, q.y)) continue;
      selected[at(q.x, q.y)] = true;
      stack.push_back(q);
    }
  }
  return selected;
}

TEST(MagicWands, SelectWhatALookAtEachPixelSelects) {
  test::Random random(31);
  constexpr int widths[] = {1, 4, 7, 8, 9, 15, 33, 66, 130};
  constexpr int tolerances[] = {0, 1, 3, 255, INT32_MAX};
  for (int round = 0; round < 800; ++round) {
    const int width = widths[test::below(random, 9)];
    const int height = 1 + test::below(random, 12);
    const OwnedDib image = test::image(width, height, 32);
    const DWORD palette[] = {0xFF505050, 0xFF505050, 0x80505152, 0x7F505050, 0x00545050, 0xFF50FF50};
    const int colours = 1 + test::below(random, 6);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) test::setPixel(image, x, y, palette[test::below(random, colours)]);
    }
    const POINT seed{test::below(random, width + 4) - 2, test::below(random, height + 4) - 2};
    const int tolerance = tolerances[test::below(random, 5)];
    const std::vector<BYTE> before = test::bytesOf(image);
    const OwnedRegion area(CDIB32::MagicWandRegion(image.get(), seed, tolerance));
    const OwnedRegion all(CDIB32::MagicWandRegion2(image.get(), seed, tolerance));
    ASSERT_TRUE(area && all);
    ASSERT_EQ(pixelsIn(area, width, height), plainSelection(image.get(), seed, tolerance, true)) << round;
    ASSERT_EQ(pixelsIn(all, width, height), plainSelection(image.get(), seed, tolerance, false)) << round;
    ASSERT_EQ(test::bytesOf(image), before);
  }
}

TEST(MagicWands, TellOpaqueFromTransparentAtHalf) {
  // Connected are 255 and 128; 127 and 0 are of the other class, whatever their colour.
  const OwnedDib image =
      test::imageOf(6, 1, 32, {0xFF123456, 0x80123456, 0x7F123456, 0x00123456, 0x00123457, 0x90123456});
  struct Case {
    int seed, tolerance;
    std::vector<bool> area, all;
  };
  const Case cases[] = {
      {0, 0, {1, 1, 0, 0, 0, 0}, {1, 1, 0, 0, 0, 1}},
      {3, 0, {0, 0, 1, 1, 0, 0}, {0, 0, 1, 1, 0, 0}},
      {3, 1, {0, 0, 1, 1, 1, 0}, {0, 0, 1, 1, 1, 0}},
      {9999, 0, {0, 0, 0, 0, 0, 1}, {1, 1, 0, 0, 0, 1}},
  };
  for (const Case& c : cases) {
    const OwnedRegion area(CDIB32::MagicWandRegion(image.get(), {c.seed, -9999}, c.tolerance));
    const OwnedRegion all(CDIB32::MagicWandRegion2(image.get(), {c.seed, 9999}, c.tolerance));
    EXPECT_EQ(pixelsIn(area, 6, 1), c.area) << c.seed;
    EXPECT_EQ(pixelsIn(all, 6, 1), c.all) << c.seed;
  }
}

TEST(MagicWands, SelectAUniformPictureAsOneRectangle) {
  const OwnedDib image(CDIB32::CreateSimple32BitsDIB(300, 200, RGB(1, 2, 3), 255));
  for (const Wand wand : {&CDIB32::MagicWandRegion, &CDIB32::MagicWandRegion2}) {
    const OwnedRegion region(wand(image.get(), {150, 100}, 0));
    const OwnedRegion whole(CreateRectRgn(0, 0, 300, 200));
    EXPECT_TRUE(EqualRgn(region.get(), whole.get()));
  }
}

TEST(MagicWands, HandleANegativeToleranceAndWrongArguments) {
  const OwnedDib image(CDIB32::CreateSimple32BitsDIB(3, 3, RGB(1, 2, 3), 255));
  const OwnedRegion seed(CDIB32::MagicWandRegion(image.get(), {1, 1}, -1));
  EXPECT_EQ(pixelsIn(seed, 3, 3), (std::vector<bool>{0, 0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(CDIB32::MagicWandRegion2(image.get(), {1, 1}, -1), nullptr);
  EXPECT_EQ(CDIB32::MagicWandRegion2(image.get(), {1, 1}, INT32_MIN), nullptr);

  const OwnedDib shallow = test::image(3, 3, 24);
  const OwnedDib flat = test::image(3, 0, 32);
  const OwnedDib thin = test::image(0, 3, 32);
  for (BITMAPINFOHEADER* wrong :
       {static_cast<BITMAPINFOHEADER*>(nullptr), shallow.get(), flat.get(), thin.get()}) {
    EXPECT_EQ(CDIB32::MagicWandRegion(wrong, {0, 0}, 5), nullptr);
    EXPECT_EQ(CDIB32::MagicWandRegion2(wrong, {0, 0}, 5), nullptr);
  }
}

}  // namespace
