#include <algorithm>
#include <random>

#include <gif_lib.h>
#include <gtest/gtest.h>

#include "journey.h"

namespace {

using namespace journey;

/// A frame of a GIF to be written: everything that writers do.
struct Part {
  int left = 0;
  int top = 0;
  int width = 1;
  int height = 1;
  Bytes indices;
  std::vector<GifColorType> palette;  ///< empty for the one of the screen
  int transparent = NO_TRANSPARENT_COLOR;
  int disposal = DISPOSAL_UNSPECIFIED;
  int delay = 5;
  bool interlaced = false;
};

ColorMapObject* mapOf(const std::vector<GifColorType>& colours) {
  return colours.empty() ? nullptr : GifMakeMapObject(static_cast<int>(colours.size()), colours.data());
}

void putLines(GifFileType* gif, const Part& part) {
  Bytes indices = part.indices;
  const auto line = [&](int y) { EGifPutLine(gif, indices.data() + y * part.width, part.width); };
  if (!part.interlaced) {
    for (int y = 0; y < part.height; ++y) line(y);
    return;
  }
  for (const auto& [first, step] : {std::pair(0, 8), std::pair(4, 8), std::pair(2, 4), std::pair(1, 2)}) {
    for (int y = first; y < part.height; y += step) line(y);
  }
}

void writeGif(const std::string& path, int width, int height, const std::vector<GifColorType>& palette,
              const std::vector<Part>& parts) {
  GifFileType* gif = EGifOpenFileName(path.c_str(), false, nullptr);
  EGifSetGifVersion(gif, true);
  ColorMapObject* screen = mapOf(palette);
  EGifPutScreenDesc(gif, width, height, 8, 0, screen);
  GifFreeMapObject(screen);
  for (const Part& part : parts) {
    const GraphicsControlBlock control{part.disposal, false, part.delay, part.transparent};
    GifByteType bytes[4];
    EGifGCBToExtension(&control, bytes);
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, bytes);
    ColorMapObject* own = mapOf(part.palette);
    EGifPutImageDesc(gif, part.left, part.top, part.width, part.height, part.interlaced, own);
    GifFreeMapObject(own);
    putLines(gif, part);
    // giflib forgets a frame's palette when the next frame has none.
    GifFreeMapObject(gif->Image.ColorMap);
    gif->Image.ColorMap = nullptr;
  }
  EGifCloseFile(gif, nullptr);
}

/// What a viewer shows with frames that show the same for a known time taken together.
std::vector<std::pair<Image, int>> timeline(const Shown& shown) {
  std::vector<std::pair<Image, int>> times;
  for (std::size_t i = 0; i < shown.frames.size(); ++i) {
    const bool same = !times.empty() && times.back().first == shown.frames[i] && times.back().second >= 2 &&
                      shown.delays[i] >= 2;
    if (same) {
      times.back().second += shown.delays[i];
    } else {
      times.emplace_back(shown.frames[i], shown.delays[i]);
    }
  }
  return times;
}

class Optimize : public testing::Test {
 protected:
  /// Optimizes the file and expects that nothing of what shows has changed.
  Shown optimized() {
    const Ended ended = run({"optimize", folder_ / "in.gif", "-o", folder_ / "out.gif"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    const Shown before = play(folder_ / "in.gif");
    const Shown after = play(folder_ / "out.gif");
    EXPECT_TRUE(timeline(before) == timeline(after));
    EXPECT_EQ(before.loops, after.loops);
    EXPECT_LE(read(folder_ / "out.gif").size(), read(folder_ / "in.gif").size());
    return after;
  }

  Folder folder_;
};

GifColorType randomColour(std::mt19937& random) {
  const auto byte = [&random] { return static_cast<GifByteType>(random() % 4 * 85); };
  return {byte(), byte(), byte()};
}

std::vector<GifColorType> randomPalette(std::mt19937& random) {
  std::vector<GifColorType> palette(std::size_t{2} << random() % 4);
  for (GifColorType& colour : palette) colour = randomColour(random);
  return palette;
}

TEST_F(Optimize, KeepsWhatRandomAnimationsShow) {
  std::mt19937 random(5);
  const auto below = [&random](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    const int width = 1 + below(20);
    const int height = 1 + below(12);
    const std::vector<GifColorType> screen = randomPalette(random);
    std::vector<Part> parts(static_cast<std::size_t>(1 + below(6)));
    for (Part& part : parts) {
      if (below(3) == 0) part.palette = randomPalette(random);
      const int colours = static_cast<int>(part.palette.empty() ? screen.size() : part.palette.size());
      part.left = below(width + 2);
      part.top = below(height + 2);
      part.width = 1 + below(width + 3);
      part.height = 1 + below(height + 3);
      const int usual = below(colours);
      for (int i = 0; i < part.width * part.height; ++i) {
        part.indices.push_back(static_cast<std::uint8_t>(below(3) == 0 ? below(colours) : usual));
      }
      if (below(2) == 0) part.transparent = below(colours);
      part.disposal = below(4);
      part.delay = std::vector<int>{0, 1, 2, 7}[static_cast<std::size_t>(below(4))];
      part.interlaced = below(4) == 0;
    }
    writeGif(folder_ / "in.gif", width, height, screen, parts);
    optimized();
  }
}

const std::vector<GifColorType> grays{{0, 0, 0}, {255, 255, 255}, {99, 99, 99}, {1, 2, 3}};

TEST_F(Optimize, StoresOnlyTheChangedRectangle) {
  // Whole frames of 40 x 30 in which one pixel walks along a line.
  std::vector<Part> parts;
  for (int i = 0; i < 5; ++i) {
    Part part{0, 0, 40, 30, Bytes(40 * 30, 2), {}};
    part.indices[static_cast<std::size_t>(7 * 40 + 10 + i)] = 1;
    parts.push_back(part);
  }
  writeGif(folder_ / "in.gif", 40, 30, grays, parts);
  EXPECT_EQ(optimized().storedPixels, (std::vector<long>{1200, 2, 2, 2, 2}));
}

TEST_F(Optimize, TakesAFrameAwayWhereItsPixelsBecomeTransparent) {
  std::vector<Part> parts;
  for (int i = 0; i < 4; ++i) parts.push_back({3 * i, 2, 3, 3, Bytes(9, 1), {}, 3, DISPOSE_BACKGROUND});
  writeGif(folder_ / "in.gif", 12, 8, grays, parts);
  const Shown shown = optimized();
  EXPECT_EQ(shown.frames[3].at(0, 2), 0u);
  EXPECT_EQ(shown.frames[3].at(9, 2), 0xFFFFFFFFu);
}

TEST_F(Optimize, TakesAwayMoreThanItDraws) {
  // Noise that cannot be packed. One pixel changes, then the opposite corner becomes transparent: the frame
  // before has to cover all of it, and is still stored for its one pixel only.
  std::mt19937 random(8);
  Part noise{0, 0, 64, 64, Bytes(64 * 64), {}, 3};
  for (std::uint8_t& index : noise.indices) index = static_cast<std::uint8_t>(random() % 3);
  writeGif(folder_ / "in.gif", 64, 64, grays, {noise});
  optimized();
  const std::size_t once = read(folder_ / "out.gif").size();
  Part changed = noise;
  changed.indices.front() = static_cast<std::uint8_t>((changed.indices.front() + 1) % 3);
  changed.disposal = DISPOSE_BACKGROUND;
  Part cut = changed;
  cut.indices.back() = 3;
  writeGif(folder_ / "in.gif", 64, 64, grays, {noise, changed, cut});
  const Shown shown = optimized();
  EXPECT_EQ(shown.frames[2].at(63, 63), 0u);
  EXPECT_LT(2 * read(folder_ / "out.gif").size(), 5 * once);
}

TEST_F(Optimize, GivesFramesPalettesOfTheirOwnAboveColours256) {
  // Two frames with 200 colours each, none in common, the second one over a part of the first.
  std::vector<Part> parts;
  for (int i = 0; i < 2; ++i) {
    Part part{0, 0, 20, 10 + 10 * (1 - i), {}, {}};
    for (int c = 0; c < 256; ++c)
      part.palette.push_back({GifByteType(c), GifByteType(i * 90), GifByteType(255 - c)});
    for (int p = 0; p < part.width * part.height; ++p)
      part.indices.push_back(static_cast<std::uint8_t>(p % 200));
    parts.push_back(part);
  }
  // A third one repeats the second with one change, at the size of the whole canvas of 400 colours.
  Part third = parts[1];
  third.indices[5] = 250;
  parts.push_back(third);
  writeGif(folder_ / "in.gif", 20, 20, grays, parts);
  const Shown shown = optimized();
  EXPECT_EQ(shown.storedPixels.back(), 1);
}

TEST_F(Optimize, NeverMakesAFileLarger) {
  const Bytes small{'G', 'I',  'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 255,  255,  255, 0,   0,
                    0,   0x2C, 0,   0,   0,   0,   1, 0, 1, 0, 0,    2, 2, 0x44, 0x01, 0,   0x3B};
  write(folder_ / "in.gif", small);
  optimized();
  EXPECT_EQ(read(folder_ / "out.gif"), small);
}

TEST_F(Optimize, RefusesWhatIsNoGif) {
  writePng(folder_ / "in.gif", flat(2, 2, 0xFFFFFFFF));
  const Ended ended = run({"optimize", folder_ / "in.gif", "-o", folder_ / "out.gif"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "dibkit: " + (folder_ / "in.gif") + ": not a GIF file but PNG\n");
}

TEST(Ripple, StartsWithThePictureAndRepeatsForASeed) {
  const Folder folder;
  const Image picture = imageBy(60, 50, [](int x, int y) {
    return x < 4 && y < 4 ? 0U : 0xFF000000U | unsigned(x / 6 * 25) << 16 | unsigned(y / 10 * 50);
  });
  writePng(folder / "in.png", picture);
  const auto rippled = [&folder](const std::string& seed) {
    const Ended ended =
        run({"ripple", folder / "in.png", "-o", folder / "out.gif", "--frames", "4", "--seed", seed});
    EXPECT_EQ(ended.status, 0) << ended.err;
    return read(folder / "out.gif");
  };
  const Bytes first = rippled("7");
  const Shown shown = play(folder / "out.gif");
  ASSERT_EQ(shown.frames.size(), 5u);
  EXPECT_EQ(shown.frames[1].at(1, 1), 0u) << "water where the picture is transparent";
  EXPECT_NE(shown.frames[2], shown.frames[0]);
  const std::string text(first.begin(), first.end());
  EXPECT_NE(text.find("--seed 7"), std::string::npos) << "the seed is not recorded";
  EXPECT_EQ(rippled("7"), first);
  EXPECT_NE(rippled("8"), first);
}

}  // namespace
