#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

#include "journey.h"

namespace {

using namespace journey;

constexpr std::uint32_t black = 0xFF000000;
constexpr std::uint32_t white = 0xFFFFFFFF;
constexpr std::uint32_t red = 0xFFFF0000;

constexpr std::uint32_t gray(int level) { return black | static_cast<std::uint32_t>(level) * 0x010101U; }

class Dither : public testing::Test {
 protected:
  /// The picture in black and white.
  Image dithered(const Image& image, const std::string& dither) {
    writePng(folder_ / "palette.png", {2, 1, {black, white}});
    writePng(folder_ / "in.png", image);
    const Ended ended = run({"convert", folder_ / "in.png", "--palette", folder_ / "palette.png", "--dither",
                             dither, "-o", folder_ / "out.png"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    return readPng(folder_ / "out.png");
  }

  Folder folder_;
};

TEST_F(Dither, OrderedMixesTwoColoursEvenlyByTheirDistances) {
  // Black and white are 585225 = 9 * 255^2 apart in weighted squares, so noise costs
  // c = 1/2 * 585225 / (585225 + 9 * 8^2) * 9 * 128^2 / (585225 + 9 * 128^2) = 0.10053.
  // A gray at u of the way from the nearer one has (u - c/2) / (1 - c) of the other, in 4096ths:
  // 10: u = 10/255, less than c/2; 32: 0.08363; 64: 0.22315; 100: 0.38010; 128: 0.49782 of black.
  const std::pair<int, int> whiteOfLevel[] = {{0, 0},    {10, 0},     {32, 343},
                                              {64, 914}, {100, 1557}, {128, 2057}};
  for (const auto& [level, expected] : whiteOfLevel) {
    SCOPED_TRACE(level);
    const Image result = dithered(flat(64, 64, gray(level)), "ordered");
    EXPECT_EQ(std::count(result.pixels.begin(), result.pixels.end(), white), expected);
    for (int block = 0; block < 64; ++block) {
      int whites = 0;
      for (int i = 0; i < 64; ++i)
        whites += result.at(block % 8 * 8 + i % 8, block / 8 * 8 + i / 8) == white ? 1 : 0;
      EXPECT_NEAR(whites, expected / 64.0, 5) << "block " << block;
    }
  }
}

TEST_F(Dither, DiffusionPassesTheErrorOnInBothDirections) {
  // Errors go on by 7/20 ahead and 3, 5 and 1/20 below, from behind to ahead. First line: 100 is black; 100 +
  // 35 is white, 120 too much; 100 - 42 is black. Below arrive 140, -326 and 170 twentieths. Second line,
  // from its end: 100 + 9 is black; 100 + (7 * 109 - 326)/20 = 122 is black; 100 + (7 * 122 + 140)/20 = 150
  // is white.
  const Image expected{3, 2, {black, white, black, white, black, black}};
  EXPECT_EQ(dithered(flat(3, 2, gray(100)), "diffusion"), expected);
}

TEST_F(Dither, LeavesWhatStandsStillAndColoursOfThePalette) {
  // Red fills so much that it is sure of its place in the palette; the right half of the rest changes.
  const auto frame = [](unsigned right) {
    return imageBy(60, 60, [right](int x, int y) {
      if (x == 0) return 0U;
      const unsigned change = x < 30 ? 0 : right;
      return y < 30 ? red : black | change << 16 | unsigned(x * 4) << 8 | unsigned(y * 4);
    });
  };
  writePng(folder_ / "a.png", frame(40));
  writePng(folder_ / "b.png", frame(90));
  for (const char* dither : {"none", "ordered", "diffusion"}) {
    SCOPED_TRACE(dither);
    const Ended ended = run({"transition", folder_ / "a.png", folder_ / "b.png", "-o", folder_ / "out.gif",
                             "--frames", "1", "--dither", dither});
    ASSERT_EQ(ended.status, 0) << ended.err;
    const Shown shown = play(folder_ / "out.gif");
    ASSERT_EQ(shown.frames.size(), 2u);
    int changed = 0;
    for (int y = 0; y < 60; ++y) {
      for (int x = 0; x < 60; ++x) {
        SCOPED_TRACE(std::to_string(x) + ", " + std::to_string(y));
        const std::uint32_t first = shown.frames[0].at(x, y);
        const std::uint32_t second = shown.frames[1].at(x, y);
        EXPECT_TRUE(x > 0 || first == 0);
        EXPECT_TRUE(x == 0 || y >= 30 || first == red);
        EXPECT_TRUE((x >= 30 && y >= 30) || first == second);
        changed += first != second ? 1 : 0;
      }
    }
    EXPECT_GT(changed, 800);
  }
}

}  // namespace
