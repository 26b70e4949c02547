#include "effects/stage.h"

namespace {

using namespace test;

DWORD mix(DWORD out, DWORD in, int a) {
  DWORD mixed = 0xFF000000;
  for (const int shift : {0, 8, 16}) {
    const int o = static_cast<int>(out >> shift & 255);
    const int s = static_cast<int>(in >> shift & 255);
    mixed |= static_cast<DWORD>((o * a + s * 256 - s * (a + 1)) / 255) << shift;
  }
  return mixed;
}

OwnedRegion bandsPlainly(int w, int h) {
  const int sx = std::max(1, w / 10);
  const int sy = std::max(1, h / 10);
  const auto diamond = [&](int k) {
    const POINT points[] = {
        {w / 2, h / 2 - k * sy}, {w / 2 + k * sx, h / 2}, {w / 2, h / 2 + k * sy}, {w / 2 - k * sx, h / 2}};
    return OwnedRegion(CreatePolygonRgn(points, 4, ALTERNATE));
  };
  OwnedRegion region = diamond(1);
  const OwnedRegion band = rectangle(0, 0, 1, 1);
  for (int k = 3; k * sx < 2 * w && k * sy < 2 * h; k += 2) {
    CombineRgn(band.get(), diamond(k).get(), diamond(k - 1).get(), RGN_DIFF);
    CombineRgn(region.get(), region.get(), band.get(), RGN_OR);
  }
  return region;
}

OwnedDib diamondPlainly(const OwnedDib& in, const OwnedDib* out, DWORD colour, int percent) {
  const int w = in->biWidth;
  const int h = in->biHeight;
  const OwnedRegion bands = bandsPlainly(w, h);
  const int a = ((percent > 50 ? 100 - percent : 50 - percent) * 255 / 50) & 255;
  OwnedDib frame = image(w, h, 32);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const DWORD s = pixel(in, x, y) | 0xFF000000;
      const DWORD o = out != nullptr ? pixel(*out, x, y) | 0xFF000000 : colour;
      const bool inside = PtInRegion(bands.get(), x, y) != FALSE;
      setPixel(frame, x, y, percent <= 50 ? (inside ? mix(o, s, a) : o) : (inside ? s : mix(o, s, a)));
    }
  }
  return frame;
}

TEST(Diamond, MatchesItsPlainTwin) {
  Random random(8);
  for (const auto& [w, h] : {std::pair{1, 1}, {5, 3}, {9, 40}, {33, 16}, {100, 60}, {101, 99}, {10, 200}}) {
    const OwnedDib in = randomImage(w, h, 32, random);
    const OwnedDib out = randomImage(w, h, 32, random);
    for (const int percent : {-10, 0, 1, 25, 50, 51, 80, 100, 130}) {
      SCOPED_TRACE(testing::Message() << w << 'x' << h << ' ' << percent);
      const OwnedDib frame(DiamondEffectDIB(in.get(), out.get(), 0, 0, percent));
      EXPECT_TRUE(bytesOf(frame) == bytesOf(diamondPlainly(in, &out, 0, percent)));
      const OwnedDib fromColour(DiamondEffectDIB(in.get(), nullptr, 0x00204060, 1, percent));
      EXPECT_TRUE(bytesOf(fromColour) == bytesOf(diamondPlainly(in, nullptr, 0xFF604020, percent)));
    }
  }
}

TEST(Diamond, WeighsByTheLowByte) {
  const OwnedDib black = imageOf(1, 1, 32, {0});
  const OwnedDib white = imageOf(1, 1, 32, {0x00FFFFFF});
  const auto grayAt = [&](int percent) {
    const OwnedDib frame(DiamondEffectDIB(black.get(), white.get(), 0, 0, percent));
    return pixel(frame, 0, 0);
  };
  EXPECT_EQ(grayAt(0), 0xFFFFFFFFU);
  EXPECT_EQ(grayAt(-10), 0xFF323232U);  // 60 * 255 / 50 = 306 = 256 + 50
  EXPECT_EQ(grayAt(100), 0xFF000000U);
  const OwnedDib red(DiamondEffectDIB(black.get(), nullptr, 0xFF, 1, 0));
  EXPECT_EQ(pixel(red, 0, 0), 0xFFFF0000U);
}

TEST(Diamond, ReadsTheOutgoingPictureAtTheIncomingSize) {
  // 4 x 2 pixels read as 2 x 2: the two lowest rows in memory are one row of four.
  const OwnedDib in = image(2, 2, 32);
  const OwnedDib out = imageOf(4, 2, 32, {5, 6, 7, 8, 1, 2, 3, 4});
  const OwnedDib frame(DiamondEffectDIB(in.get(), out.get(), 0, 0, 0));
  EXPECT_EQ(pixelsOf(frame), (std::vector<DWORD>{0xFF000003, 0xFF000004, 0xFF000001, 0xFF000002}));
}

TEST(Push, EveryPixelIsOneOfAPictures) {
  constexpr int dx[] = {-1, -1, 0, 1, 1, 1, 0, -1};  // the side that the incoming picture comes from
  constexpr int dy[] = {0, -1, -1, -1, 0, 1, 1, 1};
  Random random(9);
  for (const auto& [w, h] : {std::pair{1, 1}, {7, 5}, {33, 16}}) {
    const OwnedDib in = randomImage(w, h, 32, random);
    const OwnedDib out = randomImage(w, h, 32, random);
    for (int direction = 0; direction < 8; ++direction) {
      for (const int percent : {0, 1, 30, 50, 99, 100}) {
        SCOPED_TRACE(testing::Message() << w << 'x' << h << " direction " << direction << " at " << percent);
        const OwnedDib frame(GenerateRunPushEffect(in.get(), out.get(), direction, percent));
        ASSERT_NE(frame, nullptr);
        const Stage slid = render(12, in, direction, percent);
        for (int y = 0; y < h; ++y) {
          for (int x = 0; x < w; ++x) {
            const bool besideX = dx[direction] == 0 || (x >= slid.rect.left && x < slid.rect.right);
            const bool besideY = dy[direction] == 0 || (y >= slid.rect.top && y < slid.rect.bottom);
            DWORD expected;
            if (besideX && besideY) {
              expected = pixel(slid.image, x - slid.rect.left, y - slid.rect.top);
            } else {
              // Places of the pushed picture; beyond its edge they count back.
              const auto mirrored = [](int place, int extent) {
                return place < 0 ? -1 - place : place >= extent ? 2 * extent - 1 - place : place;
              };
              const int fromX = mirrored(x + dx[direction] * (w * percent / 100), w);
              const int fromY = mirrored(y + dy[direction] * (h * percent / 100), h);
              expected = pixel(out, fromX, fromY);
            }
            ASSERT_EQ(pixel(frame, x, y), expected) << x << ' ' << y;
          }
        }
      }
    }
  }
}

TEST(Push, HoldsThePercentage) {
  const OwnedDib in = numberedPicture(6, 5);
  const OwnedDib out = image(6, 5, 32);
  EXPECT_EQ(pixelsOf(OwnedDib(GenerateRunPushEffect(in.get(), out.get(), 3, LONG_MAX))), pixelsOf(in));
  EXPECT_EQ(pixelsOf(OwnedDib(GenerateRunPushEffect(in.get(), out.get(), 3, LONG_MIN))), pixelsOf(out));
}

TEST(Fade, WeighsColoursByOpacity) {
  const OwnedDib in = imageOf(3, 1, 32, {0xFF0000C8, 0xFF112233, 0x00FFFFFF});
  const OwnedDib out = imageOf(3, 1, 32, {0xFF000064, 0x00FFFFFF, 0x00112233});
  // Progress 0.4 is a weight of 102 of 255.
  const OwnedDib frame = dibkit::findEffect("fade")->frame(in.get(), out.get(), 0, 0.4);
  EXPECT_EQ(pixel(frame, 0, 0), 0xFF00008CU);  // 100 + 0.4 * 100
  EXPECT_EQ(pixel(frame, 1, 0), 0x66112233U);  // the transparent white doesn't stain; opacity 0.4 * 255
  EXPECT_EQ(pixel(frame, 2, 0), 0U);
}

// A row that is wholly opaque goes another way than one with a transparent pixel in it.
TEST(Fade, OpaqueRowsComeOutLikeMixedOnes) {
  Random random(3);
  const OwnedDib in = randomImage(50, 2, 32, random);
  const OwnedDib out = randomImage(50, 2, 32, random);
  for (const OwnedDib* dib : {&in, &out}) {
    for (int x = 0; x < 50; ++x) {
      const DWORD opaque = pixel(*dib, x, 0) | 0xFF000000;
      setPixel(*dib, x, 0, x == 49 ? 0x33445566 : opaque);
      setPixel(*dib, x, 1, opaque);
    }
  }
  for (int step = 1; step < 20; ++step) {
    const OwnedDib frame = dibkit::findEffect("fade")->frame(in.get(), out.get(), 0, step / 20.0);
    for (int x = 0; x < 49; ++x) ASSERT_EQ(pixel(frame, x, 0), pixel(frame, x, 1));
  }
}

TEST(Ripple, IsThatOfAnAnimationHalfWay) {
  // 32 steps of the water, four of which are a round, at full height and through a picture that fades into
  // itself.
  Random random(10);
  const OwnedDib picture = randomImage(120, 90, 32, random);
  CDIB32::MakeAllPixelsSameOpacity(picture.get(), 255);
  CRippleEffect water(picture.get(), 0);
  water.StartToRipple();
  OwnedDib expected;
  for (int round = 0; round < 8; ++round) expected.reset(water.NextToRipple());
  water.EndToRipple();
  const OwnedDib frame = dibkit::findEffect("ripple")->frame(picture.get(), picture.get(), 0, 0.5);
  EXPECT_TRUE(bytesOf(frame) == bytesOf(expected));
}

}  // namespace
