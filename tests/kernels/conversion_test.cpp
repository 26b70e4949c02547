#include "kernels/conversion.h"

#include <cstring>
#include <type_traits>

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
  void (*call)(const Kernels&, const std::uint8_t* from, int width, std::uint8_t* to);
  int bytesFrom, bytesTo;
};

template <auto kernel>
void call(const Kernels& kernels, const std::uint8_t* from, int width, std::uint8_t* to) {
  if constexpr (std::is_same_v<decltype(kernel), Kernels::Row Kernels::*>) {
    (kernels.*kernel)(from, width, to);
  } else {
    (kernels.*kernel)(from, width, 0x5A, to);
  }
}

TEST(Conversion, AgreesWithItsTwinAtEveryWidthAndAlignment) {
  test::Random random(17);
  for (const auto& [convert, bytesFrom, bytesTo] : {Row{call<&Kernels::bgra32ToBgr24>, 4, 3},
                                                    {call<&Kernels::rgb555ToBgr24>, 2, 3},
                                                    {call<&Kernels::bgr24ToRgb555>, 3, 2},
                                                    {call<&Kernels::bgra32ToRgb555>, 4, 2},
                                                    {call<&Kernels::bgr24ToBgra32>, 3, 4},
                                                    {call<&Kernels::bgr24ToReversed32>, 3, 4},
                                                    {call<&Kernels::bgr24ToGray>, 3, 1}}) {
    for (int width = 0; width < 130; ++width) {
      const int offset = width % 4;
      // Both end where the row ends, so that the address sanitizer sees an access beyond it.
      std::vector<std::uint8_t> from(static_cast<std::size_t>(offset + width * bytesFrom));
      for (std::uint8_t& byte : from) byte = static_cast<std::uint8_t>(random());
      std::vector<std::uint8_t> expected(static_cast<std::size_t>(offset + width * bytesTo), 0xCD);
      const std::vector<std::uint8_t> before = expected;
      convert(dibkit::plainKernels<Kernels>(), from.data() + offset, width, expected.data() + offset);
      test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
        std::vector<std::uint8_t> found = before;
        convert(kernels, from.data() + offset, width, found.data() + offset);
        ASSERT_EQ(found, expected) << "width " << width;
      });
    }
  }
}

}  // namespace
