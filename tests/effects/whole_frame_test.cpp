#include "effects/stage.h"

/// The transitions that make whole frames of two pictures.
namespace {

using namespace test;

/// Diamonds about the centre, each a tenth of the picture larger than the one before: the first, and what the
/// third, fifth, ... have more than the one before it.
OwnedRegion bands(int w, int h) {
  const int sx = std::max(1, w / 10), sy = std::max(1, h / 10);
  const auto diamond = [&](int k) {
    return polygon(
        {{w / 2, h / 2 - k * sy}, {w / 2 + k * sx, h / 2}, {w / 2, h / 2 + k * sy}, {w / 2 - k * sx, h / 2}});
  };
  OwnedRegion region = diamond(1);
  for (int k = 3; k * sx < 2 * w && k * sy < 2 * h; k += 2) {
    OwnedRegion band = diamond(k);
    CombineRgn(band.get(), band.get(), diamond(k - 1).get(), RGN_DIFF);
    join(region, std::move(band));
  }
  return region;
}

/// (o a + s (256 - (a + 1))) / 255 for each channel, with the low byte of the weight a.
DWORD mix(DWORD out, DWORD in, int a) {
  DWORD mixed = 0xFF000000;
  for (const int shift : {0, 8, 16}) {
    const int o = static_cast<int>(out >> shift & 255), s = static_cast<int>(in >> shift & 255);
    mixed |= static_cast<DWORD>((o * a + s * 256 - s * (a + 1)) / 255) << shift;
  }
  return mixed;
}

/// Up to 50 percent the bands fade from the outgoing picture or the colour, then the rest follows.
OwnedDib diamonds(const OwnedDib& in, const OwnedDib* out, DWORD colour, int percent) {
  const OwnedRegion inBands = bands(in->biWidth, in->biHeight);
  const int a = ((percent > 50 ? 100 - percent : 50 - percent) * 255 / 50) & 255;
  return drawn(in->biWidth, in->biHeight, 32, [&](int x, int y) {
    const DWORD s = pixel(in, x, y) | 0xFF000000;
    const DWORD o = out != nullptr ? pixel(*out, x, y) | 0xFF000000 : colour;
    const bool fades = (PtInRegion(inBands.get(), x, y) != FALSE) == (percent <= 50);
    return fades ? mix(o, s, a) : percent <= 50 ? o : s;
  });
}

TEST(Diamonds, MatchTheirPlainTwin) {
  Random random(8);
  for (const auto& [w, h] : {SIZE{1, 1}, {5, 3}, {9, 40}, {33, 16}, {101, 99}, {10, 200}}) {
    const OwnedDib in = randomImage(w, h, 32, random), out = randomImage(w, h, 32, random);
    for (const int percent : {-10, 0, 1, 25, 50, 51, 80, 100, 130}) {
      SCOPED_TRACE(testing::Message() << w << 'x' << h << ' ' << percent);
      const OwnedDib frame(DiamondEffectDIB(in.get(), out.get(), 0, 0, percent));
      EXPECT_TRUE(bytesOf(frame) == bytesOf(diamonds(in, &out, 0, percent)));
      const OwnedDib fromColour(DiamondEffectDIB(in.get(), nullptr, 0x00204060, 1, percent));
      EXPECT_TRUE(bytesOf(fromColour) == bytesOf(diamonds(in, nullptr, 0xFF604020, percent)));
    }
  }
}

TEST(Diamonds, ReadTheOutgoingPictureAtTheIncomingSize) {
  // 4 x 2 pixels read as 2 x 2: the two lowest rows in memory are one row of four.
  const OwnedDib in = image(2, 2, 32), out = imageOf(4, 2, 32, {5, 6, 7, 8, 1, 2, 3, 4});
  const OwnedDib frame(DiamondEffectDIB(in.get(), out.get(), 0, 0, 0));
  EXPECT_EQ(pixelsOf(frame), (std::vector<DWORD>{0xFF000003, 0xFF000004, 0xFF000001, 0xFF000002}));
}

TEST(Fade, WeighsColoursByOpacity) {
  // Progress 0.4 is a weight of 102 of 255: 100 + 0.4 * 100; the transparent white does not stain, and the
  // opacity is 0.4 * 255.
  const OwnedDib in = imageOf(3, 1, 32, {0xFF0000C8, 0xFF112233, 0x00FFFFFF});
  const OwnedDib out = imageOf(3, 1, 32, {0xFF000064, 0x00FFFFFF, 0x00112233});
  EXPECT_EQ(pixelsOf(dibkit::findEffect("fade")->frame(in.get(), out.get(), 0, 0.4)),
            (std::vector<DWORD>{0xFF00008C, 0x66112233, 0}));
}

// A row that is wholly opaque goes another way than one with a transparent pixel in it.
TEST(Fade, OpaqueRowsComeOutLikeMixedOnes) {
  Random random(3);
  OwnedDib pictures[] = {randomImage(50, 2, 32, random), randomImage(50, 2, 32, random)};
  for (OwnedDib& dib : pictures) {
    dib = drawn(50, 2, 32,
                [&](int x, int y) { return x == 49 && y == 0 ? 0x33445566 : pixel(dib, x, 0) | 0xFF000000; });
  }
  for (int step = 1; step < 20; ++step) {
    const OwnedDib frame =
        dibkit::findEffect("fade")->frame(pictures[0].get(), pictures[1].get(), 0, step / 20.0);
    for (int x = 0; x < 49; ++x) ASSERT_EQ(pixel(frame, x, 0), pixel(frame, x, 1));
  }
}

TEST(Ripple, IsThatOfAnAnimationHalfWay) {
  // 32 steps of the water, four of which are a round, at full height and through a picture that fades into
  // itself.
  const OwnedDib picture = opaquePicture(120, 90, 3);
  CRippleEffect water(picture.get(), 0);
  water.StartToRipple();
  OwnedDib expected;
  for (int round = 0; round < 8; ++round) expected.reset(water.NextToRipple());
  water.EndToRipple();
  const OwnedDib frame = dibkit::findEffect("ripple")->frame(picture.get(), picture.get(), 0, 0.5);
  EXPECT_TRUE(bytesOf(frame) == bytesOf(expected));
}

}  // namespace
