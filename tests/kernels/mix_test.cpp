#include "kernels/mix.h"

#include "kernels/compiled.h"

namespace {

using Kernels = dibkit::MixKernels;

TEST(Mixtures, AreExactForEveryPairAndWeight) {
  std::vector<BYTE> tops(65536), belows(65536), over255(65536), over256(65536), found(65536);
  for (int i = 0; i < 65536; ++i) {
    tops[static_cast<std::size_t>(i)] = static_cast<BYTE>(i);
    belows[static_cast<std::size_t>(i)] = static_cast<BYTE>(i >> 8);
  }
  for (int weight = 0; weight <= 255; ++weight) {
    const int above256 = weight == 77 ? 65535 : weight == 99 ? 300 : weight + 1;
    for (std::size_t i = 0; i < 65536; ++i) {
      over255[i] = static_cast<BYTE>((tops[i] * weight + belows[i] * (255 - weight)) / 255);
      over256[i] = static_cast<BYTE>((tops[i] * above256 + belows[i] * (256 - above256)) >> 8);
    }
    const auto check = [&](const Kernels& kernels) {
      kernels.bytesOver255(tops.data(), belows.data(), 65536, static_cast<WORD>(weight), found.data());
      ASSERT_TRUE(found == over255) << weight;
      kernels.bytesOver256(tops.data(), belows.data(), 65536, static_cast<WORD>(above256), found.data());
      ASSERT_TRUE(found == over256) << above256;
    };
    check(dibkit::plainKernels<Kernels>());
    test::forEachCompiled<Kernels>(check);
    if (HasFatalFailure()) return;
  }
}

/// With rows of pixels that end where their blocks do, some of them opaque.
TEST(Mixtures, AgreeWithTheirTwinsAtEveryWidthAndAlignment) {
  test::Random random(18);
  struct Form {
    Kernels::Row Kernels::*kernel;
    std::size_t from, to;
  };
  for (const auto& [kernel, from, to] : {Form{&Kernels::bytesOver255, 1, 1},
                                         {&Kernels::bytesOver256, 1, 1},
                                         {&Kernels::bgra32ToBgr24Over255, 4, 3},
                                         {&Kernels::bgra32ToBgr24Over256, 4, 3},
                                         {&Kernels::opaqueOver255, 4, 4},
                                         {&Kernels::fade, 4, 4}}) {
    for (std::size_t round = 0; round < 130 * 8; ++round) {
      const std::size_t width = round % 130, offset = random() % 4;
      const auto weight = static_cast<WORD>(random() % 256);
      std::vector<BYTE> top(offset + width * from), below(width * from), expected(offset + width * to, 0xCD);
      for (std::size_t i = 0; i < top.size(); ++i) top[i] = static_cast<BYTE>(random());
      for (std::size_t i = 0; i < below.size(); ++i) below[i] = static_cast<BYTE>(random());
      for (std::size_t i = 3; i < below.size() && random() % 64 != 0; i += 4)
        below[i] = top[offset + i] = 255;
      const std::vector<BYTE> before = expected;
      (dibkit::plainKernels<Kernels>().*kernel)(top.data() + offset, below.data(),
                                                static_cast<std::ptrdiff_t>(width), weight,
                                                expected.data() + offset);
      test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
        std::vector<BYTE> found = before;
        (kernels.*kernel)(top.data() + offset, below.data(), static_cast<std::ptrdiff_t>(width), weight,
                          found.data() + offset);
        ASSERT_TRUE(found == expected) << "width " << width;
      });
      if (HasFatalFailure()) return;
    }
  }
}

}  // namespace
