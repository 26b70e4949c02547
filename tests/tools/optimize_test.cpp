#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "gif_parts.h"
#include "journey.h"

namespace {

using namespace journey;

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

/// Animations of all kinds, each of few or many colours in all.
class RandomAnimation {
 public:
  explicit RandomAnimation(unsigned seed) : random_(seed) {
    const int colours = oneOf({1, 2, 3, 16, 17, 64, 255, 256, 257, 257, 300, 600});
    for (int i = 0; i < colours; ++i) colours_.push_back(static_cast<std::uint32_t>(random_() & 0xFFFFFF));
    width = 1 + below(40);
    height = 1 + below(40);
    screen = palette();
    parts.resize(static_cast<std::size_t>(1 + below(6)));
    for (Part& part : parts) fill(part);
  }

  int width;
  int height;
  Colours screen;
  std::vector<Part> parts;

 private:
  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  int oneOf(std::vector<int> values) { return values[random_() % values.size()]; }

  Colours palette() {
    Colours entries(static_cast<std::size_t>(oneOf({2, 4, 8, 16, 32, 64, 128, 256, 256, 256})));
    std::size_t next = random_();
    for (std::uint32_t& entry : entries) entry = colours_[next++ % colours_.size()];
    return entries;
  }

  void fill(Part& part) {
    if (below(3) == 0) part.palette = palette();
    const auto entries = static_cast<int>(part.palette.empty() ? screen.size() : part.palette.size());
    part.left = below(4) == 0 ? below(width + 2) : 0;
    part.top = below(4) == 0 ? below(height + 2) : 0;
    part.width = below(2) == 0 ? width : 1 + below(width + 3);
    part.height = below(2) == 0 ? height : 1 + below(height + 3);
    const int usual = below(entries);
    const int kind = below(3);
    for (int i = 0; i < part.width * part.height; ++i) {
      const int index = kind == 0 ? i % entries : kind == 1 || below(3) == 0 ? below(entries) : usual;
      part.indices.push_back(static_cast<std::uint8_t>(index));
    }
    if (kind == 0) std::shuffle(part.indices.begin(), part.indices.end(), random_);
    if (below(2) == 0) part.transparent = below(entries);
    part.disposal = below(4);
    part.delay = oneOf({0, 1, 2, 7});
    part.interlaced = below(4) == 0;
  }

  std::mt19937 random_;
  Colours colours_{};
};

TEST_F(Optimize, KeepsWhatRandomAnimationsShow) {
  for (unsigned round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    const RandomAnimation animation(round);
    writeGif(folder_ / "in.gif", animation.width, animation.height, animation.screen, animation.parts);
    optimized();
  }
}

const Colours grays{0x000000, 0xFFFFFF, 0x636363, 0x010203};

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
  for (int i = 0; i < 4; ++i) parts.push_back({3 * i, 2, 3, 3, Bytes(9, 1), {}, 3, toBackground});
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
  changed.disposal = toBackground;
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
    for (int c = 0; c < 256; ++c) part.palette.push_back(unsigned(c << 16 | i * 90 << 8 | (255 - c)));
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
