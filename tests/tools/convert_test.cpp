#include <filesystem>

#include <gtest/gtest.h>

#include "journey.h"

namespace {

using namespace journey;

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t blue = 0xFF0000FF;
constexpr std::uint32_t white = 0xFFFFFFFF;

std::uint32_t number(const Bytes& bytes, std::size_t offset, int count) {
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i)
    value |= std::uint32_t{bytes.at(offset + static_cast<std::size_t>(i))} << 8 * i;
  return value;
}

/// A BMP as it is stored.
struct StoredBmp {
  std::uint32_t bits;
  std::vector<std::uint32_t> palette;
  Bytes pixels;

  explicit StoredBmp(const Bytes& file) : bits(number(file, 28, 2)) {
    const std::uint32_t start = number(file, 10, 4);
    for (std::uint32_t offset = 14 + number(file, 14, 4); bits <= 8 && offset < start; offset += 4) {
      palette.push_back(number(file, offset, 4));
    }
    pixels.assign(file.begin() + start, file.end());
  }
};

class Convert : public testing::Test {
 protected:
  StoredBmp converted(const Image& image, std::vector<std::string> options) {
    writePng(folder_ / "in.png", image);
    std::vector<std::string> arguments{"convert", folder_ / "in.png", "-o", folder_ / "out.bmp", "--quiet"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Ended ended = run(arguments);
    EXPECT_EQ(ended.status, 0) << ended.err;
    return StoredBmp(read(folder_ / "out.bmp"));
  }

  Folder folder_;
};

TEST_F(Convert, ChoosesTheSmallestDepthThatKeepsTheColours) {
  const StoredBmp two = converted({2, 1, {blue, red}}, {});
  EXPECT_EQ(two.bits, 1u);
  EXPECT_EQ(two.palette, (std::vector<std::uint32_t>{0x0000FF, 0xFF0000}));
  EXPECT_EQ(two.pixels, (Bytes{0x40, 0, 0, 0}));
  EXPECT_EQ(converted({3, 1, {blue, red, green}}, {}).bits, 4u);
  EXPECT_EQ(converted(imageBy(17, 1, [](int x, int) { return 0xFF000000U + unsigned(x); }), {}).bits, 8u);
  EXPECT_EQ(converted(imageBy(257, 1, [](int x, int) { return 0xFF000000U + unsigned(x); }), {}).bits, 24u);
}

TEST_F(Convert, KeepsFewColoursExactlyAtTheAskedDepth) {
  const StoredBmp four = converted({3, 1, {green, blue, green}}, {"--bits", "4"});
  EXPECT_EQ(four.bits, 4u);
  EXPECT_EQ(four.palette, (std::vector<std::uint32_t>{0x00FF00, 0x0000FF}));
  EXPECT_EQ(four.pixels, (Bytes{0x01, 0x00, 0, 0}));
  // 5-5-5: red is the highest field.
  EXPECT_EQ(converted({2, 1, {red, white}}, {"--bits", "16"}).pixels, (Bytes{0x00, 0x7C, 0xFF, 0x7F}));
  EXPECT_EQ(converted({1, 1, {0xFF123456}}, {"--bits", "24"}).pixels, (Bytes{0x56, 0x34, 0x12, 0}));
}

TEST_F(Convert, ReducesManyColoursToTheDepth) {
  const Image image =
      imageBy(40, 40, [](int x, int y) { return 0xFF000000U | unsigned(x * 6) << 16 | unsigned(y * 6); });
  const StoredBmp sixteen = converted(image, {"--bits", "4"});
  EXPECT_EQ(sixteen.bits, 4u);
  EXPECT_GE(sixteen.palette.size(), 12u);
  // The corners are as far from each other as can be, so they do not share an entry.
  EXPECT_NE(sixteen.pixels.front() >> 4, sixteen.pixels[19] & 15);
}

TEST_F(Convert, ToGraysAndToBlackAndWhite) {
  // 0.299, 0.587 and 0.114 of 255, truncated: 76, 149, 29.
  const Image colours{4, 1, {red, green, blue, white}};
  EXPECT_EQ(converted(colours, {"--gray"}).pixels, (Bytes{76, 149, 29, 255}));
  EXPECT_EQ(converted(colours, {"--threshold", "76"}).pixels[0], 0xD0);
  EXPECT_EQ(converted(colours, {"--threshold", "77"}).pixels[0], 0x50);
  const Image twoGrays = imageBy(8, 8, [](int x, int) { return x < 4 ? 0xFF141414U : 0xFFC8C8C8U; });
  EXPECT_EQ(converted(twoGrays, {"--threshold", "auto"}).pixels[0], 0x0F);
}

TEST_F(Convert, UsesThePaletteOfAnotherPicture) {
  writePng(folder_ / "palette.png", {3, 1, {white, 0xFFE00000, 0xFF0000E0}});
  const StoredBmp bmp = converted({2, 1, {blue, red}}, {"--palette", folder_ / "palette.png"});
  EXPECT_EQ(bmp.bits, 4u);
  EXPECT_EQ(bmp.palette, (std::vector<std::uint32_t>{0xFFFFFF, 0xE00000, 0x0000E0}));
  EXPECT_EQ(bmp.pixels[0], 0x21);
}

TEST_F(Convert, SharesOnePaletteBetweenPictures) {
  writePng(folder_ / "a.png", {2, 1, {red, green}});
  writePng(folder_ / "b.png", {2, 1, {blue, green}});
  const Ended ended = run({"convert", folder_ / "a.png", folder_ / "b.png", "--shared-palette", "--bits", "4",
                           "--format", "bmp", "-o", folder_ / "both"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  const StoredBmp a(read(folder_ / "both/a.bmp"));
  const StoredBmp b(read(folder_ / "both/b.bmp"));
  EXPECT_EQ(a.palette, (std::vector<std::uint32_t>{0xFF0000, 0x00FF00, 0x0000FF}));
  EXPECT_EQ(b.palette, a.palette);
  EXPECT_EQ(a.pixels[0], 0x01);
  EXPECT_EQ(b.pixels[0], 0x21);
}

TEST_F(Convert, KeepsTransparencyInBothFormatsOf32Bits) {
  const Image image{2, 2, {0x80FF0000, green, 0x00123456, white}};
  writePng(folder_ / "in.png", image);
  for (const char* name : {"out.bmp", "out.png"}) {
    ASSERT_EQ(run({"convert", folder_ / "in.png", "--bits", "32", "-o", folder_ / name}).status, 0);
    EXPECT_NE(run({"info", folder_ / name}).out.find("translucent pixels"), std::string::npos) << name;
  }
  EXPECT_EQ(StoredBmp(read(folder_ / "out.bmp")).pixels,
            (Bytes{0x56, 0x34, 0x12, 0, 255, 255, 255, 255, 0, 0, 255, 0x80, 0, 255, 0, 255}));
  // Depths without opacity get the matte below it: half red on white.
  EXPECT_EQ(converted({1, 1, {0x80FF0000}}, {"--bits", "24"}).pixels, (Bytes{127, 127, 255, 0}));
}

TEST_F(Convert, WritesPngOfEachPaletteDepth) {
  writePng(folder_ / "in.png", {2, 1, {red, green}});
  for (const int bits : {1, 4, 8}) {
    ASSERT_EQ(run({"convert", folder_ / "in.png", "--bits", std::to_string(bits), "-o", folder_ / "out.png"})
                  .status,
              0);
    const Bytes png = read(folder_ / "out.png");
    EXPECT_EQ(png[24], bits);
    EXPECT_EQ(png[25], 3) << "colour type palette";
  }
}

TEST_F(Convert, RefusesWhatCannotBe) {
  writePng(folder_ / "in.png", {2, 1, {red, green}});
  const std::vector<std::vector<std::string>> wrong{
      {"--bits", "5"},
      {"--threshold", "dark"},
      {"--threshold", "9", "--gray"},
      {"--threshold", "9", "--bits", "8"},
      {"--palette", folder_ / "in.png", "--bits", "24"},
      {"--palette", folder_ / "in.png", "--gray"},
      {"--format", "jpg"},
      {"--dither", "ordered"},
      {"--dither", "ordered", "--bits", "24"},
      {"--dither", "ordered", "--threshold", "9"},
      {"--dither", "noise", "--bits", "8"},
  };
  for (const std::vector<std::string>& options : wrong) {
    std::vector<std::string> arguments{"convert", folder_ / "in.png", "-o", folder_ / "out.png"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run(arguments).status, 2) << options[0] << ' ' << options[1];
  }
  EXPECT_EQ(run({"convert", folder_ / "in.png", "-o", folder_ / "out.gif"}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out.png"));
}

}  // namespace
