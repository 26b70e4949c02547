#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

#include "journey.h"

namespace {

using namespace journey;

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t blue = 0xFF0000FF;
constexpr std::uint32_t green = 0xFF00FF00;

/// Two flat pictures of 8 x 6, and what a transition between them shows.
class Transition : public testing::Test {
 protected:
  void SetUp() override {
    writePng(folder_ / "a.png", flat(8, 6, red));
    writePng(folder_ / "b.png", flat(8, 6, blue));
  }

  Shown make(std::vector<std::string> options, const std::string& b = "b.png") {
    std::vector<std::string> arguments{"transition", folder_ / "a.png", folder_ / b, "-o",
                                       folder_ / "out.gif"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Ended ended = run(arguments);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.err, "");
    return play(folder_ / "out.gif");
  }

  /// The first `columns` columns blue, the rest red.
  static Image blueUpTo(int columns) {
    return imageBy(8, 6, [columns](int x, int) { return x < columns ? blue : red; });
  }

  Folder folder_;
};

TEST_F(Transition, SlidesInWithExactColoursAndTimes) {
  const Shown shown = make({"--effect", "slide", "--style", "left", "--frames", "4"});
  // A quarter of 8 columns a step, and nothing but the incoming picture at the end.
  EXPECT_EQ(shown.frames,
            (std::vector<Image>{blueUpTo(0), blueUpTo(2), blueUpTo(4), blueUpTo(6), blueUpTo(8)}));
  EXPECT_EQ(shown.delays, (std::vector<int>{80, 5, 5, 5, 80}));
  EXPECT_EQ(shown.loops, 0);
  // Of each frame only the two new columns are stored.
  EXPECT_EQ(shown.storedPixels, (std::vector<long>{48, 12, 12, 12, 12}));
}

TEST_F(Transition, MergesFramesThatShowTheSameAndAddsTheirTimes) {
  const Shown shown = make({"--effect", "slide", "--style", "left", "--frames", "80", "--delay", "20"});
  ASSERT_EQ(shown.frames.size(), 9u);
  EXPECT_EQ(std::accumulate(shown.delays.begin(), shown.delays.end(), 0), 80 + 79 * 2 + 80);
  for (int columns = 0; columns <= 8; ++columns) {
    EXPECT_EQ(shown.frames[static_cast<std::size_t>(columns)], blueUpTo(columns));
  }
}

TEST_F(Transition, PlaysOnceWhenAskedTo) { EXPECT_EQ(make({"--frames", "1", "--once"}).loops, std::nullopt); }

TEST_F(Transition, CarriesRoundingForwardAndNeverGoesBelowTwoHundredths) {
  const std::vector<std::string> slide{"--effect", "slide", "--style", "left",
                                       "--frames", "4",     "--hold",  "100"};
  auto with = [&slide](const std::string& delay) {
    std::vector<std::string> options = slide;
    options.insert(options.end(), {"--quiet", "--delay", delay});
    return options;
  };
  // 100, 33, 33, 33, 100 ms: 10, 3.3, 6.6, 9.9, 19.9 hundredths from the start.
  EXPECT_EQ(make(with("33")).delays, (std::vector<int>{10, 3, 4, 3, 10}));
  EXPECT_EQ(make(with("1")).delays[1], 2);
}

TEST_F(Transition, PlaysBackAndInReverse) {
  const Shown back = make({"--effect", "slide", "--style", "left", "--frames", "2", "--back", "--loop", "3"});
  const Image half = imageBy(8, 6, [](int x, int) { return x < 4 ? red : blue; });
  EXPECT_EQ(back.frames, (std::vector<Image>{blueUpTo(0), blueUpTo(4), blueUpTo(8), half}));
  EXPECT_EQ(back.loops, 3);
  // The red picture leaves to the left, where it would have come from.
  const Shown reverse = make({"--effect", "slide", "--style", "left", "--frames", "2", "--reverse"});
  EXPECT_EQ(reverse.frames, (std::vector<Image>{blueUpTo(0), half, blueUpTo(8)}));
}

TEST_F(Transition, GoesFromEachPictureToTheNext) {
  writePng(folder_ / "c.png", flat(8, 6, green));
  const Shown shown = make({folder_ / "c.png", "--effect", "slide", "--style", "left", "--frames", "1"});
  EXPECT_EQ(shown.frames, (std::vector<Image>{flat(8, 6, red), flat(8, 6, blue), flat(8, 6, green)}));
}

TEST_F(Transition, EasesAndGoesBeyondTheEndsAndBack) {
  const auto middle = [this](const std::string& easing, const std::string& effect) {
    return make({"--effect", effect, "--frames", "2", "--easing", easing}).frames.at(1);
  };
  // A fade has nothing beyond its end and rebounds: 255 x 0.9123 is 233.
  EXPECT_EQ(middle("back", "fade"), flat(8, 6, 0xFF1600E9));
  const auto column = [](int x, std::uint32_t colour) { return colour | static_cast<std::uint32_t>(x) << 8; };
  writePng(folder_ / "a.png", imageBy(100, 2, [&](int x, int) { return column(x, red); }));
  writePng(folder_ / "b.png", imageBy(100, 2, [&](int x, int) { return column(x, blue); }));
  // What has come in from the left after half of the time, of 100 columns.
  struct Case {
    const char* easing;
    int columns;
  };
  for (const Case& c : {Case{"linear", 50},
                        {"ease-in", 25},
                        {"ease-out", 75},
                        {"ease-in-out", 50},
                        {"back", 109},  // 1 - 2.70158 / 8 + 1.70158 / 4
                        {"cubic-bezier(0.2,0.2,0.7,0.7)", 50},
                        {"cubic-bezier(0.42, 0, 1, 1)", 32},        // 0.31536 in every browser
                        {"cubic-bezier(0, 0, .58, 1)", 68},         // its mirror image
                        {"cubic-bezier(0.5, -1, 0.5, 0)", -25}}) {  // 3 / 8 * -1 + 1 / 8
    SCOPED_TRACE(c.easing);
    // Beyond an end the picture that is there moves on, and its mirror image follows.
    const auto shown = [&](int x, bool pushes) {
      if (c.columns > 100)
        return column(x < c.columns - 100 ? c.columns - 101 - x : x - (c.columns - 100), blue);
      if (c.columns < 0) return column(x < 100 + c.columns ? x - c.columns : 199 + c.columns - x, red);
      return x < c.columns ? column(100 - c.columns + x, blue) : column(pushes ? x - c.columns : x, red);
    };
    for (const char* effect : {"slide", "push"}) {
      EXPECT_EQ(middle(c.easing, effect),
                imageBy(100, 2, [&](int x, int) { return shown(x, effect == std::string("push")); }));
    }
  }
}

TEST_F(Transition, BringsTransparentPixelsInLikeAllOthers) {
  const Image ring = imageBy(8, 6, [](int x, int y) { return x > 1 && x < 6 && y > 1 && y < 4 ? 0U : blue; });
  writePng(folder_ / "ring.png", ring);
  const Shown shown = make({"--effect", "slide", "--style", "left", "--frames", "2"}, "ring.png");
  const Image half = imageBy(8, 6, [&ring](int x, int y) { return x < 4 ? ring.at(x + 4, y) : red; });
  EXPECT_EQ(shown.frames, (std::vector<Image>{flat(8, 6, red), half, ring}));

  const Shown matte = make({"--effect", "slide", "--frames", "2", "--matte", "#00ff00"}, "ring.png");
  EXPECT_EQ(matte.frames.back(),
            imageBy(8, 6, [&ring](int x, int y) { return ring.at(x, y) == 0 ? green : blue; }));
}

std::ptrdiff_t opaquePixels(const Image& image) {
  return std::ranges::count_if(image.pixels, [](std::uint32_t pixel) { return pixel != 0; });
}

TEST_F(Transition, ShowsHalfTransparentPixelsAsDots) {
  // Of every 8 x 8 pixels as many as the opacity says; where that is the edge of something, all or nothing.
  for (const auto& [opacity, dots] :
       {std::pair{0U, 0}, {1U, 0}, {64U, 16}, {128U, 32}, {192U, 48}, {254U, 64}}) {
    writePng(folder_ / "soft.png", flat(16, 8, opacity << 24 | 0xFF));
    writePng(folder_ / "edge.png", imageBy(16, 8, [o = opacity](int x, int) {
               return x < 8 ? blue : x == 8 ? o << 24 | 0xFF : 0U;
             }));
    const auto stillOf = [this](const char* name) {
      return make({"--frames", "1", "--size", "16x8", "--effect", "slide"}, name).frames.back();
    };
    EXPECT_EQ(opaquePixels(stillOf("soft.png")), 2 * dots) << opacity;
    EXPECT_EQ(opaquePixels(stillOf("edge.png")), opacity < 128 ? 64 : 72) << opacity;
  }
}

TEST_F(Transition, FadesFromTransparentByDotsThatStay) {
  writePng(folder_ / "a.png", flat(16, 8, 0));
  writePng(folder_ / "b.png", flat(16, 8, blue));
  const Shown shown = make({"--frames", "16"});
  ASSERT_EQ(shown.frames.size(), 17u);
  for (std::size_t k = 0; k <= 16; ++k) {
    EXPECT_EQ(opaquePixels(shown.frames[k]), static_cast<long>(8 * k));
    for (std::size_t i = 0; k > 0 && i < 128; ++i) {
      EXPECT_TRUE(shown.frames[k].pixels[i] != 0 || shown.frames[k - 1].pixels[i] == 0) << k << ' ' << i;
    }
  }
}

TEST_F(Transition, RipplesWhatIsTransparentToo) {
  // The colour of what is transparent would show if the water moved it without its opacity.
  writePng(folder_ / "disc.png", imageBy(60, 60, [](int x, int y) {
             return (x - 30) * (x - 30) + (y - 30) * (y - 30) < 400 ? red : green & 0xFFFFFF;
           }));
  ASSERT_EQ(run({"ripple", folder_ / "disc.png", "-o", folder_ / "out.gif", "--frames", "12"}).status, 0);
  const Shown shown = play(folder_ / "out.gif");
  ASSERT_GT(shown.frames.size(), 6u);
  int moved = 0;
  for (const Image& frame : shown.frames) {
    for (std::size_t i = 0; i < frame.pixels.size(); ++i) {
      moved += (frame.pixels[i] == 0) != (shown.frames[0].pixels[i] == 0) ? 1 : 0;
      // Light makes red lighter, equally in green and blue.
      EXPECT_EQ(frame.pixels[i] >> 8 & 255, frame.pixels[i] & 255);
    }
  }
  EXPECT_GT(moved, 50);
}

TEST_F(Transition, FitsPicturesOfAnotherShape) {
  writePng(folder_ / "tall.png", flat(3, 12, blue));
  // 12 lines become 6, so 3 columns become 1.5, rounded to 2: in the middle of 8 from column 3 on.
  const Image bars = imageBy(8, 6, [](int x, int) { return x == 3 || x == 4 ? blue : green; });
  EXPECT_EQ(make({"--frames", "1", "--background", "#0f0"}, "tall.png").frames.back(), bars);
  EXPECT_EQ(make({"--frames", "1", "--fit", "stretch"}, "tall.png").frames.back(), flat(8, 6, blue));
  EXPECT_EQ(make({"--frames", "1", "--fit", "cover"}, "tall.png").frames.back(), flat(8, 6, blue));
  const Shown sized = make({"--frames", "1", "--size", "4x3"});
  EXPECT_EQ(sized.frames, (std::vector<Image>{flat(4, 3, red), flat(4, 3, blue)}));
}

TEST_F(Transition, HalvesAPictureToTheMeansOfItsPixels) {
  // Columns of 0 and 200 in pairs: where a pair becomes one pixel, its neighbours have a share of 1/8 each
  // side.
  writePng(folder_ / "stripes.png",
           imageBy(8, 2, [](int x, int) { return x % 2 != 0 ? 0xFFC8C8C8U : 0xFF000000U; }));
  const Shown shown = make({"--frames", "1", "--size", "4x1", "--fit", "stretch"}, "stripes.png");
  EXPECT_EQ(shown.frames.back().at(1, 0), 0xFF646464U);
  EXPECT_EQ(shown.frames.back().at(2, 0), 0xFF646464U);
}

TEST_F(Transition, ReadsAndWritesStandardStreams) {
  const Ended ended =
      run({"transition", "-", folder_ / "b.png", "-o", "-", "--frames", "1"}, {folder_ / "a.png"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  write(folder_ / "piped.gif", Bytes(ended.out.begin(), ended.out.end()));
  EXPECT_EQ(play(folder_ / "piped.gif").frames, (std::vector<Image>{flat(8, 6, red), flat(8, 6, blue)}));
}

/// A picture of many colours: every pixel its own.
Image manyColours(int width, int height, unsigned start) {
  return imageBy(width, height, [=](int x, int y) {
    return 0xFF000000U | static_cast<unsigned>(x * 255 / width) << 16 |
           static_cast<unsigned>(y * 255 / height) << 8 | start;
  });
}

TEST_F(Transition, OfManyColoursUsesOnePaletteAndTheSameBytesEachTime) {
  writePng(folder_ / "a.png", manyColours(64, 48, 40));
  writePng(folder_ / "b.png", manyColours(64, 48, 220));
  const Shown shown = make({"--effect", "fade", "--frames", "6"});
  const Bytes first = read(folder_ / "out.gif");
  ASSERT_EQ(shown.frames.size(), 7u);
  // No pixel is far from its own colour.
  const Image wanted = manyColours(64, 48, 220);
  for (std::size_t i = 0; i < wanted.pixels.size(); ++i) {
    for (const int shift : {0, 8, 16}) {
      const int difference = static_cast<int>(wanted.pixels[i] >> shift & 255) -
                             static_cast<int>(shown.frames.back().pixels[i] >> shift & 255);
      ASSERT_LE(std::abs(difference), 48) << "pixel " << i;
    }
  }
  make({"--effect", "fade", "--frames", "6"});
  EXPECT_EQ(read(folder_ / "out.gif"), first);
}

TEST_F(Transition, OfRandomStripsGrowsWithoutFlicker) {
  const Shown shown = make({"--effect", "strips", "--frames", "8"});
  ASSERT_EQ(shown.frames.size(), 9u);
  for (std::size_t i = 1; i < shown.frames.size(); ++i) {
    for (std::size_t p = 0; p < 48; ++p) {
      ASSERT_TRUE(shown.frames[i - 1].pixels[p] != blue || shown.frames[i].pixels[p] == blue);
    }
  }
}

}  // namespace
