#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <string_view>

#include "effects/stage.h"

/// What holds for every effect, whatever it shows.
namespace {

using namespace test;
using dibkit::Effect;

constexpr int extents[] = {1, 2, 3, 7, 16, 33, 100};

OwnedDib opaquePicture(int w, int h, DWORD seed) {
  OwnedDib dib = image(w, h, 32);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x)
      setPixel(dib, x, y, 0xFF000000 | (seed + static_cast<DWORD>((y * w + x) * 5)));
  }
  return dib;
}

Stage stageAt(const Effect& effect, const OwnedDib& picture, int style, double progress) {
  const auto [a, b] = effect.parameters(progress, {picture->biWidth, picture->biHeight}, style);
  return render(*effect.number, picture, a, b);
}

/// Which pixels of the frame a stage covers.
std::vector<bool> coverage(const Stage& stage, const OwnedDib& picture) {
  const int w = picture->biWidth;
  std::vector<bool> covered(static_cast<std::size_t>(w * picture->biHeight));
  if (!stage.image) return covered;
  for (int y = 0; y < stage.image->biHeight; ++y) {
    for (int x = 0; x < stage.image->biWidth; ++x) {
      const int place = (stage.rect.top + y) * w + stage.rect.left + x;
      covered.at(static_cast<std::size_t>(place)) = pixel(stage.image, x, y) >> 24 != 0;
    }
  }
  return covered;
}

template <class Check>
void forEachStyle(bool wholeFrame, Check&& check) {
  for (const Effect& effect : dibkit::effects()) {
    if (effect.isWholeFrame() != wholeFrame) continue;
    for (int style = 0; style < std::max(1, static_cast<int>(effect.styles.size())); ++style) {
      SCOPED_TRACE(testing::Message() << effect.name << '/' << style);
      check(effect, style);
    }
  }
}

/// Calls check(effect, style, picture) with every size for every effect that makes a piece.
template <class Check>
void forEachPieceEffect(Check&& check) {
  forEachStyle(false, [&](const Effect& effect, int style) {
    for (const int w : extents) {
      for (const int h : extents) {
#if defined(_WIN32)
        if (h >= 2 * w) continue;  // Wine leaves rows of narrow ellipses unset
#endif
        SCOPED_TRACE(testing::Message() << w << 'x' << h);
        check(effect, style, opaquePicture(w, h, 3));
        if (testing::Test::HasFailure()) return;
      }
    }
  });
}

TEST(Laws, PieceLiesInTheFrame) {
  forEachPieceEffect([](const Effect& effect, int style, const OwnedDib& picture) {
    for (int step = 0; step <= 10; ++step) {
      const Stage stage = stageAt(effect, picture, style, step / 10.0);
      if (stage.result == 0) continue;
      ASSERT_NE(stage.image, nullptr);
      EXPECT_LE(stage.image->biWidth, picture->biWidth);
      EXPECT_LE(stage.image->biHeight, picture->biHeight);
      if (effect.number == 1) continue;  // its place is that before clipping
      const RECT& r = stage.rect;
      EXPECT_TRUE(r.left >= 0 && r.top >= 0 && r.right <= picture->biWidth && r.bottom <= picture->biHeight)
          << r << " at " << step;
      if (r.right > r.left && r.bottom > r.top) {
        EXPECT_EQ(stage.image->biWidth, r.right - r.left);
        EXPECT_EQ(stage.image->biHeight, r.bottom - r.top);
      }
    }
  });
}

TEST(Laws, FullAmountShowsTheWholePicture) {
  forEachPieceEffect([](const Effect& effect, int style, const OwnedDib& picture) {
    const Stage stage = stageAt(effect, picture, style, 1.0);
    ASSERT_EQ(stage.result, 1);
    EXPECT_EQ(stage.rect, (RECT{0, 0, picture->biWidth, picture->biHeight}));
    EXPECT_TRUE(pixelsOf(stage.image) == pixelsOf(picture));
  });
}

TEST(Laws, FullAmountIsTheLeastThatShowsTheWholePicture) {
  constexpr int dependOnSize[] = {2, 3, 4, 9, 13};
  forEachPieceEffect([&](const Effect& effect, int style, const OwnedDib& picture) {
    if (std::ranges::find(dependOnSize, *effect.number) == std::end(dependOnSize)) return;
    const auto [a, b] = effect.parameters(1.0, {picture->biWidth, picture->biHeight}, style);
    const long less = effect.styles.empty() ? 0 : 1;
    const std::vector<bool> covered =
        coverage(render(*effect.number, picture, a - 1 + less, b - less), picture);
    EXPECT_TRUE((less != 0 ? b : a) == 0 || std::ranges::count(covered, false) > 0) << a << ' ' << b;
  });
}

TEST(Laws, LargerAmountShowsASuperset) {
  // Without the five-pointed star, whose vertices are truncated one by one: a side may turn by a pixel as it
  // grows. The others left out don't reveal.
  constexpr int exempt[] = {0, 3, 7, 8, 16};
  forEachPieceEffect([&](const Effect& effect, int style, const OwnedDib& picture) {
    if (std::ranges::find(exempt, *effect.number) != std::end(exempt)) return;
    std::vector<bool> before = coverage(stageAt(effect, picture, style, 0.0), picture);
    for (int step = 1; step <= 8; ++step) {
      const std::vector<bool> now = coverage(stageAt(effect, picture, style, step / 8.0), picture);
      for (std::size_t i = 0; i < now.size(); ++i) {
        ASSERT_FALSE(before[i] && !now[i]) << "pixel " << i << " vanishes at " << step;
      }
      before = now;
    }
  });
}

TEST(Laws, AmountsBeyondTheRangeCountAsTheNearerEnd) {
  constexpr int held[] = {4, 5, 6, 8, 9, 12, 14, 15, 17};
  const OwnedDib picture = numberedPicture(119, 133);  // one percent too many is a row too many
  forEachStyle(false, [&](const Effect& effect, int style) {
    if (std::ranges::find(held, *effect.number) == std::end(held)) return;
    const auto at = [&](long amount) {
      return effect.styles.empty() ? render(*effect.number, picture, amount, 0)
                                   : render(*effect.number, picture, style, amount);
    };
    for (const long amount : {-1L, -1000L, LONG_MIN})
      expectStage(at(amount), stageAt(effect, picture, style, 0.0));
    for (const long amount : {2000L, LONG_MAX}) expectStage(at(amount), stageAt(effect, picture, style, 1.0));
  });
}

TEST(Laws, RandomNumbersAreDrawnOnlyWhereTheCatalogueSaysSo) {
  const OwnedDib picture = numberedPicture(60, 50);
  std::srand(5);
  const int undisturbed = std::rand();
  forEachStyle(false, [&](const Effect& effect, int style) {
    std::srand(5);
    stageAt(effect, picture, style, 0.5);
    EXPECT_EQ(std::rand() != undisturbed, effect.drawsRandomNumbers);
  });
}

// What the sanitizers watch over.
TEST(Laws, AnyAmountStaysInMemory) {
  constexpr long amounts[] = {LONG_MIN, -2147483647L, -1000L, -361L, -101L,       -90L,
                              101L,     181L,         361L,   1000L, 2147483647L, LONG_MAX};
  for (const auto& [w, h] : {std::pair{1, 1}, {3, 16}, {33, 7}}) {
    const OwnedDib picture = opaquePicture(w, h, 1);
    for (const long amount : amounts) {
      for (int effect = 0; effect < 18; ++effect) {
        for (long style = -1; style <= 8; ++style) {
          for (const Stage& stage :
               {render(effect, picture, style, amount), render(effect, picture, amount, style)}) {
            EXPECT_EQ(stage.result == 1, stage.image != nullptr);
          }
        }
      }
      const auto percent = static_cast<int>(std::clamp<long>(amount, INT_MIN, INT_MAX));
      EXPECT_NE(OwnedDib(DiamondEffectDIB(picture.get(), nullptr, 0, 1, percent)), nullptr);
    }
  }
}

/// Calls check(effect, style) for all transitions.
template <class Check>
void forEachTransition(Check&& check) {
  forEachStyle(false, check);
  forEachStyle(true, check);
}

TEST(Laws, FramesGoFromOnePictureToTheOther) {
  forEachTransition([](const Effect& effect, int style) {
    for (const int w : extents) {
      for (const int h : extents) {
        SCOPED_TRACE(testing::Message() << w << 'x' << h);
        const OwnedDib in = numberedPicture(w, h);
        const OwnedDib out = opaquePicture(w, h, 0x550000);
        const auto at = [&](double progress) { return effect.frame(in.get(), out.get(), style, progress); };
        for (const double progress : {0.0, std::nan("")}) EXPECT_EQ(pixelsOf(at(progress)), pixelsOf(out));
        EXPECT_EQ(pixelsOf(at(1.0)), pixelsOf(in));
        if (!effect.overshoots) {
          EXPECT_EQ(pixelsOf(at(-0.1)), pixelsOf(out));
          EXPECT_EQ(pixelsOf(at(1.1)), pixelsOf(in));
        }
        for (const double progress : {-3.0, -0.1, 0.1, 0.5, 0.9, 1.1, 3.0}) {
          const OwnedDib frame = at(progress);
          ASSERT_NE(frame, nullptr);
          EXPECT_EQ(frame->biWidth, w);
          EXPECT_EQ(frame->biHeight, h);
        }
        if (testing::Test::HasFailure()) return;
      }
    }
  });
}

TEST(Laws, FramesNeedTwoPicturesThatMatch) {
  const OwnedDib picture = image(4, 4, 32);
  const OwnedDib smaller = image(4, 3, 32);
  const OwnedDib trueColour = image(4, 4, 24);
  const OwnedDib noPixels = image(0, INT_MAX, 32);
  forEachTransition([&](const Effect& effect, int style) {
    for (const double progress : {0.0, 0.5, 1.0, 1.1}) {
      for (const auto& [in, out] : {std::pair{picture.get(), smaller.get()},
                                    {picture.get(), trueColour.get()},
                                    {trueColour.get(), picture.get()},
                                    {noPixels.get(), noPixels.get()}}) {
        EXPECT_EQ(effect.frame(in, out, style, progress), nullptr);
      }
      EXPECT_EQ(effect.frame(nullptr, picture.get(), style, progress), nullptr);
      EXPECT_EQ(effect.frame(picture.get(), nullptr, style, progress), nullptr);
    }
  });
}

/// On or off, as the colour says: a third of opaquePicture's pixels are transparent.
DWORD withOpacity(DWORD colour) { return colour % 3 == 0 ? colour & 0xFFFFFF : colour | 0xFF000000; }

OwnedDib pictureWithHoles(const OwnedDib& opaque) {
  OwnedDib dib = image(opaque->biWidth, opaque->biHeight, 32);
  for (int y = 0; y < opaque->biHeight; ++y) {
    for (int x = 0; x < opaque->biWidth; ++x)
      setPixel(dib, x, y, withOpacity(pixel(opaque, x, y) & 0xFFFFFF));
  }
  return dib;
}

TEST(Laws, TransparentPixelsArriveAndLeaveLikeAllOthers) {
  // Those left out mix colours or change their light.
  const std::set<std::string_view> exempt{"fade", "ripple", "diamonds", "thaw", "film", "roll"};
  const OwnedDib in = opaquePicture(40, 33, 3);
  const OwnedDib out = opaquePicture(40, 33, 0x550000);
  const OwnedDib inWithHoles = pictureWithHoles(in);
  const OwnedDib outWithHoles = pictureWithHoles(out);
  forEachTransition([&](const Effect& effect, int style) {
    if (exempt.contains(effect.name)) return;
    for (int step = -1; step <= 13; ++step) {
      const OwnedDib opaque = effect.frame(in.get(), out.get(), style, step / 12.0);
      const OwnedDib frame = effect.frame(inWithHoles.get(), outWithHoles.get(), style, step / 12.0);
      ASSERT_EQ(pixelsOf(frame), pixelsOf(pictureWithHoles(opaque))) << "step " << step;
    }
  });
}

TEST(Laws, NoStepIsACut) {
  const OwnedDib opaque = opaquePicture(40, 33, 3);
  const OwnedDib nothing = image(40, 33, 32);
  const auto opacityOf = [](const OwnedDib& dib) {
    double sum = 0;
    for (const DWORD pixel : pixelsOf(dib)) sum += pixel >> 24;
    return sum / 255.0 / (40 * 33);
  };
  forEachTransition([&](const Effect& effect, int style) {
    double before = 0;
    for (int step = 0; step <= 20; ++step) {
      const double appeared = opacityOf(effect.frame(opaque.get(), nothing.get(), style, step / 20.0));
      const double left = 1.0 - opacityOf(effect.frame(nothing.get(), opaque.get(), style, step / 20.0));
      EXPECT_NEAR(appeared, left, 0.05) << "step " << step;
      EXPECT_GT(appeared, before - 0.05) << "step " << step;
      EXPECT_LT(appeared, before + 0.25) << "step " << step;
      before = appeared;
    }
  });
}

}  // namespace
