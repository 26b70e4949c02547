#include <gtest/gtest.h>

#include "dib32/blend.h"
#include "dib32/blend_kernels.h"
#include "dib32/dib32.h"
#include "dib32/literal_rules.h"
#include "support/images.h"

namespace {

using dibkit::OwnedDib;
using test::byteOf;

TEST(CalcuOpacity, IsExactForEveryPair) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      ASSERT_EQ(CDIB32::CalcuOpacity(byteOf(a), byteOf(b)), 255 - (255 - a) * (255 - b) / 255);
    }
  }
  EXPECT_EQ(CDIB32::CalcuOpacity(128, 128), 192);
}

TEST(CalcuRGBValue, TakesAnyOpacityOfTheResult) {
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 128, 0, 255, CDIB32::CalcuOpacity(255, 128)), 128);
  // Undivided for 0, and clamped whenever the divisor is smaller than the opacities would give.
  EXPECT_EQ(CDIB32::CalcuRGBValue(0, 0, 200, 200, 0), 0);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 1, 0, 77, 0), 77);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 255, 255, 255, 0), 255);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 10, 0, 30, 1), 255);
  EXPECT_EQ(CDIB32::CalcuRGBValue(255, 10, 0, 20, 1), 200);
}

#if defined(DIBKIT_AVX2)
TEST(BlendKernels, GiveTheSameBytesForEveryInstructionSet) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "only the plain ones run here";
  test::Random random(31);
  const std::vector<BYTE> mask = test::bytesOf(test::randomImage(100, 100, 8, random));
  const auto expectEqual = [&](const char* name, auto plainKernel, auto avx2Kernel) {
    for (int round = 0; round < 500; ++round) {
      const OwnedDib plain = test::randomImage(300, 1, 32, random);
      const OwnedDib avx2(CBitmapCreator::Clone(plain.get()));
      const int count = 1 + test::below(random, 130);
      // Often within 40 pixels, where a row reads what it has written.
      const int at = 85 + test::below(random, 40), from = round % 2 == 0 ? at - 40 + round % 81 : 0;
      const dibkit::LayerOpacity opacity{byteOf(round % 3 == 0 ? test::below(random, 256) : 0),
                                         byteOf(round % 5 == 0 ? test::below(random, 256) : 255)};
      const BYTE* maskBytes = round % 7 < 3 ? nullptr : mask.data() + test::below(random, 5000);
      const auto run = [&](const OwnedDib& image, auto kernel) {
        dibkit::Bgra* row = dibkit::pixelsOf(test::rowOf(image.get(), 0));
        kernel(row + at, row + from, count, opacity, maskBytes);
      };
      run(plain, plainKernel);
      run(avx2, avx2Kernel);
      ASSERT_EQ(test::pixelsOf(avx2), test::pixelsOf(plain)) << name << ", round " << round;
    }
  };
  const dibkit::BlendKernels &plain = dibkit::BlendKernels::plain, &avx2 = dibkit::BlendKernels::avx2;
  expectEqual("over", plain.over, avx2.over);
  expectEqual("plainOver", plain.plainOver, avx2.plainOver);
  expectEqual("linearMix", plain.linearMix, avx2.linearMix);
  expectEqual("evenMix", plain.evenMix, avx2.evenMix);
  expectEqual("copyOrShade", plain.copyOrShade, avx2.copyOrShade);
}
#endif

constexpr int levels[] = {0, 1, 2, 17, 51, 84, 85, 100, 127, 128, 170, 200, 240, 253, 254, 255};

TEST(OverRow, IsExactForEveryAlphaPair) {
  // One row per pair of opacities: every pair of 16 channel levels, three pairs a pixel.
  constexpr int count = (256 + 2) / 3;
  std::vector<dibkit::Bgra> below(count);
  std::vector<dibkit::Bgra> above(count);
  for (int i = 0; i < count; ++i) {
    const auto level = [i](int channel, int divisor) {
      return byteOf(levels[((3 * i + channel) % 256 / divisor) % 16]);
    };
    below[static_cast<std::size_t>(i)] = {level(0, 1), level(1, 1), level(2, 1), 0};
    above[static_cast<std::size_t>(i)] = {level(0, 16), level(1, 16), level(2, 16), 0};
  }
  std::vector<dibkit::Bgra> result;
  for (int ad = 0; ad < 256; ++ad) {
    for (dibkit::Bgra& pixel : below) pixel.alpha = byteOf(ad);
    for (int as = 0; as < 256; ++as) {
      for (dibkit::Bgra& pixel : above) pixel.alpha = byteOf(as);
      result = below;
      dibkit::overRow(result.data(), above.data(), count, {});
      for (std::size_t i = 0; i < count; ++i) {
        dibkit::Bgra expected = below[i];
        test::combine(reinterpret_cast<BYTE*>(&expected), reinterpret_cast<BYTE*>(&above[i]), 0);
        if (result[i] != expected) FAIL() << ad << " " << as << " " << i;
        if (i < 2 && dibkit::over(below[i], above[i]) != expected) FAIL() << ad << " " << as << " " << i;
      }
    }
  }
}

TEST(OverRow, DividesExactlyByMultiplying) {
  // What the row kernel does in place of a division, for every sum and every opacity.
  for (int alpha = 1; alpha < 256; ++alpha) {
    const float reciprocal = 1.0F / static_cast<float>(alpha);
    for (int sum = 0; sum <= 65025; ++sum) {
      if (static_cast<int>((static_cast<float>(sum) + 0.5F) * reciprocal) != sum / alpha) {
        FAIL() << sum << " / " << alpha;
      }
    }
  }
}

}  // namespace
