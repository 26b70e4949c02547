#include <gtest/gtest.h>

#include "convert/convert.h"
#include "convert/row_kernels.h"
#include "support/images.h"

namespace {

using test::OwnedDib;

std::vector<const dibkit::RowKernels*> everyKernel() {
  std::vector<const dibkit::RowKernels*> kernels{&dibkit::RowKernels::plain};
  if (&dibkit::rowKernels() != kernels[0]) kernels.push_back(&dibkit::rowKernels());
  return kernels;
}

TEST(Gray, IsTheDoubleSumForEveryColour) {
  constexpr int width = 0x10000;
  std::vector<BYTE> colours(std::size_t{width} * 3);
  std::vector<BYTE> grays(width);
  for (const dibkit::RowKernels* kernels : everyKernel()) {
    long wrong = 0;
    for (int red = 0; red < 256; ++red) {
      for (int i = 0; i < width; ++i) {
        colours[static_cast<std::size_t>(i) * 3] = static_cast<BYTE>(i & 255);
        colours[static_cast<std::size_t>(i) * 3 + 1] = static_cast<BYTE>(i >> 8);
        colours[static_cast<std::size_t>(i) * 3 + 2] = static_cast<BYTE>(red);
      }
      kernels->bgr24ToGray(colours.data(), width, grays.data());
      for (int i = 0; i < width; ++i) {
        // Each product and sum is rounded by itself: volatile keeps them apart whatever the target can fuse.
        const volatile double redPart = red * 0.299;
        const volatile double greenPart = (i >> 8) * 0.587;
        const volatile double bluePart = (i & 255) * 0.114;
        const volatile double first = redPart + greenPart;
        wrong += grays[static_cast<std::size_t>(i)] != static_cast<BYTE>(first + bluePart);
      }
    }
    EXPECT_EQ(wrong, 0);
  }
}

TEST(RowKernels, AgreeAtEveryWidth) {
  test::Random random(17);
  std::vector<BYTE> from(4 * 300);
  for (BYTE& byte : from) byte = static_cast<BYTE>(random());
  using Row = dibkit::RowKernels::Row;
  for (Row dibkit::RowKernels::*row :
       {&dibkit::RowKernels::bgra32ToBgr24, &dibkit::RowKernels::rgb555ToBgr24,
        &dibkit::RowKernels::bgr24ToRgb555, &dibkit::RowKernels::bgra32ToRgb555,
        &dibkit::RowKernels::bgr24ToReversed32, &dibkit::RowKernels::bgr24ToGray}) {
    for (int width = 0; width <= 300; ++width) {
      std::vector<BYTE> plain(4 * 300 + 16, 0xCD);
      std::vector<BYTE> chosen = plain;
      (dibkit::RowKernels::plain.*row)(from.data(), width, plain.data());
      (dibkit::rowKernels().*row)(from.data(), width, chosen.data());
      ASSERT_EQ(chosen, plain) << width;
    }
  }
}

TEST(Convert24BitsDIBTo256GraysDIB, GivesTheRampAndItsIndexes) {
  // 0.299 x 255 = 76.245, 0.587 x 255 = 149.685, 0.114 x 255 = 29.07
  const OwnedDib source = test::imageOf(5, 1, 24, {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF, 0});
  const OwnedDib result(CBitmapConverter::Convert24BitsDIBTo256GraysDIB(source.get(), nullptr));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->biClrUsed, 0U);
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{76, 149, 29, 255, 0}));
  for (int i = 0; i < 256; ++i) {
    DWORD entry = 0;
    std::memcpy(&entry, reinterpret_cast<const BYTE*>(result.get()) + 40 + 4 * i, 4);
    EXPECT_EQ(entry, static_cast<DWORD>(i * 0x010101));
  }
}

/// Shows one bar for all stages, as hosts do.
class Bar : public test::Progress {
 public:
  using Progress::Progress;
  float SetProgress(float fraction) override {
    shown.push_back(ScaledFraction(fraction));
    return Progress::SetProgress(fraction);
  }
  std::vector<float> shown;
};

TEST(ConvertDIBTo256Grays, ReportsTwoHalves) {
  const OwnedDib indexed = test::imageOf(3, 2, 8, {0, 1, 2, 2, 1, 0}, {0xFF0000, 0x00FF00, 0x0000FF});
  Bar bar;
  const OwnedDib result(CBitmapConverter::ConvertDIBTo256Grays(indexed.get(), &bar));
  EXPECT_EQ(test::pixelsOf(result.get()), (std::vector<DWORD>{76, 149, 29, 29, 149, 76}));
  EXPECT_EQ(bar.shown, (std::vector<float>{0.25F, 0.5F, 0.75F, 1.0F}));

  // What has 24 bits already is cloned in the first half, without a word.
  Bar second;
  EXPECT_TRUE(OwnedDib(CBitmapConverter::ConvertDIBTo256Grays(test::image(3, 2, 24).get(), &second)));
  EXPECT_EQ(second.shown, (std::vector<float>{0.75F, 1.0F}));

  for (int cancelAt = 0; cancelAt < 4; ++cancelAt) {
    Bar cancelling(cancelAt);
    EXPECT_EQ(CBitmapConverter::ConvertDIBTo256Grays(indexed.get(), &cancelling), nullptr);
    EXPECT_EQ(cancelling.fractions.size(), static_cast<std::size_t>(cancelAt) + 1);
    EXPECT_FLOAT_EQ(cancelling.ScaledFraction(0.0F), 1.0F);  // both halves are closed all the same
  }
  Bar refused;
  EXPECT_EQ(CBitmapConverter::ConvertDIBTo256Grays(nullptr, &refused), nullptr);
  EXPECT_FLOAT_EQ(refused.ScaledFraction(0.0F), 1.0F);
}

TEST(Convert8BitsGrayDibTo1BitsDib, ComparesRawBytesAtEveryWidth) {
  test::Random random(19);
  for (const int threshold : {INT32_MIN, -1, 0, 1, 100, 127, 128, 255, 256, INT32_MAX}) {
    for (const int width : {1, 7, 8, 9, 63, 64, 65, 72, 1100}) {
      SCOPED_TRACE(testing::Message() << threshold << ", width " << width);
      const OwnedDib source = test::randomImage(width, 2, 8, random);  // its all-black palette does not count
      OwnedDib expected = test::image(width, 2, 1, {0, 0xFFFFFF});
      expected->biClrUsed = 0;
      for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < width; ++x) {
          // Every third pixel lies at the threshold or just below it.
          const DWORD level = static_cast<DWORD>(threshold) - static_cast<DWORD>(x % 2);
          if (x % 3 == 0) test::setPixel(source, x, y, level & 255);
          test::setPixel(expected, x, y, static_cast<std::int64_t>(test::pixel(source, x, y)) >= threshold);
        }
      }
      const OwnedDib result(
          CBitmapConverter::Convert8BitsGrayDibTo1BitsDib(source.get(), threshold, nullptr));
      EXPECT_EQ(test::bytesOf(result), test::bytesOf(expected));
    }
  }
}

}  // namespace
