#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string_view>

#include "effects/stage.h"

/// What every effect has to keep to.
namespace {

using namespace test;
using dibkit::Effect;
using Names = std::set<std::string_view>;

constexpr int extents[] = {1, 2, 3, 7, 16, 33, 100};

Stage stageAt(const Effect& effect, const OwnedDib& picture, int style, double progress) {
  const auto [a, b] = effect.parameters(progress, {picture->biWidth, picture->biHeight}, style);
  return render(*effect.number, picture, a, b);
}

/// The pixels of the frame that a stage covers, 1 for each.
std::vector<BYTE> coverage(const Stage& stage, const OwnedDib& picture) {
  const int w = picture->biWidth;
  std::vector<BYTE> covered(static_cast<std::size_t>(w * picture->biHeight));
  for (int y = 0; stage.image && y < stage.image->biHeight; ++y) {
    const auto* row = reinterpret_cast<const DWORD*>(rowOf(stage.image.get(), y));
    BYTE* to = covered.data() + (stage.rect.top + y) * w + stage.rect.left;
    for (int x = 0; x < stage.image->biWidth; ++x) to[x] = row[x] >> 24 != 0;
  }
  return covered;
}

bool samePixels(const OwnedDib& a, const OwnedDib& b) {
  if (!a || !b || a->biWidth != b->biWidth || a->biHeight != b->biHeight) return false;
  return std::memcmp(GetDIBBits(a.get()), GetDIBBits(b.get()), std::size_t{4} * a->biWidth * a->biHeight) ==
         0;
}

/// Calls check(effect, style) for the transitions with a number, or for all.
template <class Check>
void forEachStyle(bool numbered, Check&& check) {
  for (const Effect& effect : dibkit::effects()) {
    if (numbered && !effect.number) continue;
    for (int style = 0; style < std::max(1, static_cast<int>(effect.styles.size())); ++style) {
      SCOPED_TRACE(testing::Message() << effect.name << '/' << style);
      check(effect, style);
    }
  }
}

/// The same with the width and height of every picture, as check(effect, style, width, height).
template <class Check>
void forEachSize(bool numbered, Check&& check) {
  forEachStyle(numbered, [&](const Effect& effect, int style) {
    for (const int w : extents) {
      for (const int h : extents) {
        SCOPED_TRACE(testing::Message() << w << 'x' << h);
        check(effect, style, w, h);
        if (testing::Test::HasFailure()) return;
      }
    }
  });
}

TEST(Laws, PiecesGrowInTheFrameToTheWholePicture) {
  // These do not reveal, or not only: and the vertices of the star are truncated one by one, so that a side
  // may turn by a pixel as it grows.
  const Names notGrowing{"gate", "spin", "film", "thaw", "star"};
  const Names amountDependsOnSize{"clocks", "spiral", "star", "iris", "spread"};
  forEachSize(true, [&](const Effect& effect, int style, int w, int h) {
#if defined(_WIN32)
    if (h >= 2 * w) return;  // Wine leaves rows of narrow ellipses unset
#endif
    const OwnedDib picture = opaquePicture(w, h, 3);
    std::vector<BYTE> before(static_cast<std::size_t>(w * h));
    for (int step = 0; step <= 8; ++step) {
      SCOPED_TRACE(step);
      const Stage stage = stageAt(effect, picture, style, step / 8.0);
      const RECT& r = stage.rect;
      ASSERT_EQ(stage.result == 1, stage.image != nullptr);
      // The piece is in the frame, as large as its place; that of the clock is the one before clipping.
      if (stage.image) {
        const int pieceWidth = stage.image->biWidth, pieceHeight = stage.image->biHeight;
        ASSERT_TRUE(r.left >= 0 && r.top >= 0 && r.left + pieceWidth <= w && r.top + pieceHeight <= h) << r;
        if (effect.number != 1 && pieceWidth * pieceHeight > 0) {
          ASSERT_EQ(r, (RECT{r.left, r.top, r.left + pieceWidth, r.top + pieceHeight}));
        }
      }
      // A larger amount shows all that a smaller one does.
      const std::vector<BYTE> now = coverage(stage, picture);
      ASSERT_TRUE(notGrowing.contains(effect.name) || std::ranges::equal(before, now, std::less_equal()));
      before = now;
      // The full amount shows the whole picture.
      if (step < 8) continue;
      ASSERT_EQ(r, (RECT{0, 0, w, h}));
      ASSERT_TRUE(samePixels(stage.image, picture));
    }
    // And no smaller amount does.
    if (!amountDependsOnSize.contains(effect.name)) return;
    auto [a, b] = effect.parameters(1.0, {w, h}, style);
    long& amount = effect.styles.empty() ? a : b;
    if (amount-- == 0) return;
    ASSERT_TRUE(std::ranges::count(coverage(render(*effect.number, picture, a, b), picture), BYTE{0}) > 0);
  });
}

TEST(Laws, AmountsBeyondTheRangeCountAsTheNearerEnd) {
  const Names held{"spiral", "mosaic", "mosaic-sweep", "film", "iris", "slide", "strips", "blinds", "roll"};
  const OwnedDib picture = numberedPicture(119, 133);  // one percent too many is a row too many
  forEachStyle(true, [&](const Effect& effect, int style) {
    if (!held.contains(effect.name)) return;
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
  forEachStyle(true, [&](const Effect& effect, int style) {
    std::srand(5);
    stageAt(effect, picture, style, 0.5);
    EXPECT_EQ(std::rand() != undisturbed, effect.drawsRandomNumbers);
  });
}

// What the sanitizers watch over.
TEST(Laws, AnyAmountStaysInMemory) {
  constexpr long amounts[] = {LONG_MIN, -2147483647L, -1000L, -361L, -101L,       -90L,
                              101L,     181L,         361L,   1000L, 2147483647L, LONG_MAX};
  for (const auto& [w, h] : {SIZE{1, 1}, {3, 16}, {33, 7}}) {
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

TEST(Laws, FramesGoFromOnePictureToTheOther) {
  forEachSize(false, [](const Effect& effect, int style, int w, int h) {
    const OwnedDib in = numberedPicture(w, h), out = opaquePicture(w, h, 0x550000);
    const auto at = [&](double progress) { return effect.frame(in.get(), out.get(), style, progress); };
    ASSERT_TRUE(samePixels(at(0.0), out) && samePixels(at(std::nan("")), out) && samePixels(at(1.0), in));
    ASSERT_TRUE(effect.overshoots || (samePixels(at(-0.1), out) && samePixels(at(1.1), in)));
    for (const double progress : {-3.0, -0.1, 0.5, 1.1, 3.0}) {
      const OwnedDib frame = at(progress);
      ASSERT_TRUE(frame && frame->biWidth == w && frame->biHeight == h) << progress;
    }
    ASSERT_EQ(effect.frame(in.get(), image(w, h + 1, 32).get(), style, 0.5), nullptr);
  });
}

/// On or off, as the colour says: a third of opaquePicture's pixels are transparent.
OwnedDib withHoles(const OwnedDib& dib) {
  return drawn(dib->biWidth, dib->biHeight, 32, [&](int x, int y) {
    const DWORD colour = pixel(dib, x, y) & 0xFFFFFF;
    return colour % 3 == 0 ? colour : colour | 0xFF000000;
  });
}

TEST(Laws, TransparentPixelsArriveAndLeaveLikeAllOthers) {
  // Those left out mix colours or change their light.
  const Names exempt{"fade", "ripple", "diamonds", "thaw", "film", "roll"};
  const OwnedDib in = opaquePicture(40, 33, 3), out = opaquePicture(40, 33, 0x550000);
  const OwnedDib inWithHoles = withHoles(in), outWithHoles = withHoles(out);
  forEachStyle(false, [&](const Effect& effect, int style) {
    for (int step = -1; step <= 13 && !exempt.contains(effect.name); ++step) {
      const OwnedDib opaque = effect.frame(in.get(), out.get(), style, step / 12.0);
      const OwnedDib frame = effect.frame(inWithHoles.get(), outWithHoles.get(), style, step / 12.0);
      ASSERT_TRUE(samePixels(frame, withHoles(opaque))) << "step " << step;
    }
  });
}

TEST(Laws, NoStepIsACut) {
  const OwnedDib opaque = opaquePicture(40, 33, 3), nothing = image(40, 33, 32);
  const auto opacityOf = [](const OwnedDib& dib) {
    double sum = 0;
    for (const DWORD pixel : pixelsOf(dib)) sum += pixel >> 24;
    return sum / 255.0 / (40 * 33);
  };
  forEachStyle(false, [&](const Effect& effect, int style) {
    double before = 0;
    for (int step = 0; step <= 20; ++step) {
      SCOPED_TRACE(step);
      const double appeared = opacityOf(effect.frame(opaque.get(), nothing.get(), style, step / 20.0));
      const double left = 1.0 - opacityOf(effect.frame(nothing.get(), opaque.get(), style, step / 20.0));
      EXPECT_NEAR(appeared, left, 0.05);
      EXPECT_GT(appeared, before - 0.05);
      EXPECT_LT(appeared, before + 0.25);
      before = appeared;
    }
  });
}

}  // namespace
