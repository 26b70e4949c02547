#include <algorithm>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "gif_parts.h"
#include "journey.h"

namespace {

using namespace journey;

/// The numbers of colours at which a depth is just full, has one entry left, or has no more room.
constexpr int counts[] = {1, 2, 3, 15, 16, 17, 255, 256, 257};
constexpr int anyNumber = 1 << 24;

/// A multiple of an odd number: no two of the 2^24 are the same.
constexpr std::uint32_t colourNumber(int i) {
  return 0xFF000000U | (static_cast<std::uint32_t>(i + 1) * 0x35C9A7U & 0xFFFFFFU);
}
constexpr std::uint32_t grayNumber(int i) {
  return 0xFF000000U | static_cast<std::uint32_t>(i % 256) * 0x010101U;
}

/// A picture with exactly so many colours, each in two pixels or more and all in disorder.
/// \param hole whether its last pixel is transparent
Image picture(int colours, bool hole, std::uint32_t (*colour)(int), unsigned seed, int height = 24) {
  int next = 0;
  Image image = imageBy(552 / height, height, [&](int, int) { return colour(next++ % colours); });
  std::shuffle(image.pixels.begin(), image.pixels.end() - 1, std::mt19937(seed));
  if (hole) image.pixels.back() = 0;
  return image;
}

int coloursOf(const Image& image) {
  return static_cast<int>(std::set<std::uint32_t>(image.pixels.begin(), image.pixels.end()).size());
}

/// Each count of colours, with and without a transparent pixel.
template <class Test>
void forEachCount(Test test) {
  for (const int colours : counts) {
    for (const bool hole : {false, true}) {
      SCOPED_TRACE(std::to_string(colours) + (hole ? " colours and a transparent pixel" : " colours"));
      test(colours, hole);
    }
  }
}

class ExactColours : public testing::Test {
 protected:
  void runs(std::vector<std::string> arguments, const std::vector<std::string>& options) {
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Ended ended = run(arguments);
    EXPECT_EQ(ended.status, 0) << ended.err;
  }

  Folder folder_;
};

TEST_F(ExactColours, OfConvertedPictures) {
  struct Way {
    std::vector<std::string> options;
    int room;            ///< for so many colours
    bool opaque = true;  ///< transparent pixels become white
    std::uint32_t (*colour)(int) = colourNumber;
  };
  const std::string palette = folder_ / "palette.png";
  const Way ways[] = {
      {{}, anyNumber, false},
      {{}, anyNumber, false, grayNumber},
      {{"--bits", "1"}, 2},
      {{"--bits", "4"}, 16},
      {{"--bits", "8"}, 256},
      {{"--bits", "8"}, 256, true, grayNumber},
      {{"--shared-palette"}, 256},
      {{"--shared-palette", "--bits", "4"}, 16},
      {{"--palette", palette}, 256},
      {{"--gray", "--bits", "1"}, 2, true, grayNumber},
      {{"--gray", "--bits", "4"}, 16, true, grayNumber},
      {{"--gray"}, 256, true, grayNumber},
  };
  for (const Way& way : ways) {
    SCOPED_TRACE(testing::PrintToString(way.options));
    const bool ownPalette = std::count(way.options.begin(), way.options.end(), palette) > 0;
    forEachCount([&](int colours, bool hole) {
      std::vector<std::string> arguments{"convert", "--quiet", "-o", folder_ / "out"};
      std::vector<Image> expected;
      for (const char* name : {"a.png", "b.png"}) {
        Image image = picture(colours, hole, way.colour, static_cast<unsigned>(expected.size()));
        writePng(folder_ / name, image);
        arguments.push_back(folder_ / name);
        if (way.opaque && hole) image.pixels.back() = 0xFFFFFFFF;
        expected.push_back(image);
      }
      writePng(palette, expected[0]);
      const int shown = coloursOf(expected[0]);
      if (ownPalette && shown > way.room) return;
      runs(arguments, way.options);
      for (std::size_t i = 0; i < expected.size(); ++i) {
        const std::string path = folder_ / (i == 0 ? "out/a.png" : "out/b.png");
        const Image result = readPng(path);
        if (shown <= way.room) {
          EXPECT_TRUE(result == expected[i]) << path;
        } else {
          EXPECT_LE(coloursOf(result), way.room);
        }
        if (!way.options.empty() || hole) continue;
        const int depth = shown <= 2 ? 1 : shown <= 16 ? 4 : 8;
        EXPECT_EQ(read(path)[24], depth);
        EXPECT_EQ(read(path)[25], shown <= 256 ? 3 : 2) << "palette or true colour";
      }
    });
  }
}

TEST_F(ExactColours, OfAnimationsOfPictures) {
  forEachCount([&](int colours, bool hole) {
    const bool exact = colours + (hole ? 1 : 0) <= 256;
    std::vector<Image> pictures;
    for (const char* name : {"a.png", "b.png"}) {
      pictures.push_back(picture(colours, hole, colourNumber, static_cast<unsigned>(pictures.size())));
      writePng(folder_ / name, pictures.back());
    }
    // What shows the same for longer is one frame.
    pictures.erase(std::unique(pictures.begin(), pictures.end()), pictures.end());
    for (const char* dither : {"none", "ordered"}) {
      runs({"transition", folder_ / "a.png", folder_ / "b.png", "-o", folder_ / "out.gif"},
           {"--frames", "1", "--dither", dither});
      EXPECT_TRUE(!exact || play(folder_ / "out.gif").frames == pictures) << dither;
    }
    // Water leaves the outermost lines as they are, and two lines have no others.
    const Image flat = picture(colours, hole, colourNumber, 2, 2);
    writePng(folder_ / "flat.png", flat);
    runs({"ripple", folder_ / "flat.png", "-o", folder_ / "out.gif"}, {"--frames", "1"});
    EXPECT_TRUE(!exact || play(folder_ / "out.gif").frames == std::vector<Image>{flat});
  });
}

Colours paletteFrom(int first, int colours) {
  Colours palette;
  for (int i = 0; i < colours; ++i) palette.push_back(colourNumber(first + i));
  return palette;
}

TEST_F(ExactColours, OfOptimizedAnimations) {
  forEachCount([&](int colours, bool hole) {
    const int entries = colours + (hole ? 1 : 0);
    if (entries > 256) return;
    for (const bool ownPalettes : {false, true}) {
      SCOPED_TRACE(ownPalettes ? "palettes of the frames" : "one palette");
      std::vector<Part> parts;
      for (int i = 0; i < 3; ++i) {
        Part part{0, 0, 23, 24, {}, {}};
        for (int p = 0; p < 552; ++p) part.indices.push_back(static_cast<std::uint8_t>(p % colours));
        std::shuffle(part.indices.begin(), part.indices.end(), std::mt19937(unsigned(i)));
        if (hole) part.indices[551] = static_cast<std::uint8_t>(part.transparent = colours);
        if (ownPalettes) part.palette = paletteFrom(i * 256, entries);
        parts.push_back(part);
      }
      writeGif(folder_ / "in.gif", 23, 24, paletteFrom(0, entries), parts);
      runs({"optimize", folder_ / "in.gif", "-o", folder_ / "out.gif"}, {});
      std::vector<Image> shown = play(folder_ / "in.gif").frames;
      shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
      EXPECT_TRUE(play(folder_ / "out.gif").frames == shown);
    }
  });
}

}  // namespace
