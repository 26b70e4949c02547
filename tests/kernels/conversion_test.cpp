#include "kernels/conversion.h"

#include <cstring>

#include "kernels/compiled.h"

namespace {

using Kernels = dibkit::ConversionKernels;

TEST(Conversion, GivesTheGrayOfEveryColour) {
  constexpr int width = 0x10000;
  std::vector<std::uint8_t> colours(std::size_t{width} * 3), expected(width), grays(width);
  long wrong = 0;
  for (std::uint32_t red = 0; red < 256; ++red) {
    for (std::uint32_t i = 0; i < width; ++i) {
      const std::uint8_t pixel[] = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8),
                                    static_cast<std::uint8_t>(red)};
      std::memcpy(&colours[std::size_t{i} * 3], pixel, sizeof(pixel));
      expected[i] = static_cast<std::uint8_t>(pixel[2] * 0.299 + pixel[1] * 0.587 + pixel[0] * 0.114);
    }
    test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
      kernels.bgr24ToGray(colours.data(), width, grays.data());
      wrong += grays != expected;
    });
  }
  EXPECT_EQ(wrong, 0);
}

struct Row {
  Kernels::Row Kernels::*kernel;
  int bytesFrom, bytesTo;
};

TEST(Conversion, AgreesWithItsTwinAtEveryWidthAndAlignment) {
  test::Random random(17);
  for (const auto& [kernel, bytesFrom, bytesTo] : {Row{&Kernels::bgra32ToBgr24, 4, 3},
                                                   {&Kernels::rgb555ToBgr24, 2, 3},
                                                   {&Kernels::bgr24ToRgb555, 3, 2},
                                                   {&Kernels::bgra32ToRgb555, 4, 2},
                                                   {&Kernels::bgr24ToReversed32, 3, 4},
                                                   {&Kernels::bgr24ToGray, 3, 1}}) {
    for (int width = 0; width < 130; ++width) {
      const int offset = width % 4;
      // Both end where the row ends, so that the address sanitizer sees an access beyond it.
      std::vector<std::uint8_t> from(static_cast<std::size_t>(offset + width * bytesFrom));
      for (std::uint8_t& byte : from) byte = static_cast<std::uint8_t>(random());
      std::vector<std::uint8_t> expected(static_cast<std::size_t>(offset + width * bytesTo), 0xCD);
      const std::vector<std::uint8_t> before = expected;
      (dibkit::plainKernels<Kernels>().*kernel)(from.data() + offset, width, expected.data() + offset);
      test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
        std::vector<std::uint8_t> found = before;
        (kernels.*kernel)(from.data() + offset, width, found.data() + offset);
        ASSERT_EQ(found, expected) << "width " << width;
      });
    }
  }
}

}  // namespace
