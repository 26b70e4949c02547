#include "kernels/blend.h"

#include <cmath>

#include "kernels/compiled.h"
#include "support/blends.h"

namespace {

using Kernels = dibkit::BlendKernels;
using Run = void (*)(const Kernels&, BYTE* to, BYTE* from, int count, dibkit::LayerOpacity, const BYTE* mask);
template <auto blend>
void run(const Kernels& kernels, BYTE* to, BYTE* from, int count, dibkit::LayerOpacity opacity,
         const BYTE* mask) {
  (kernels.*blend)(to, from, count, opacity, mask);
}

struct Blend {
  const char* name;
  Run run;
  void (*rule)(BYTE* d, BYTE* s, int a);
};
constexpr Blend blends[] = {{"over", run<&Kernels::over>, test::blends::over},
                            {"plainOver", run<&Kernels::plainOver>, test::blends::stepwiseOver},
                            {"linearMix", run<&Kernels::linearMix>, test::blends::linearMix},
                            {"evenMix", run<&Kernels::evenMix>, test::blends::evenMix},
                            {"copyOrShade", run<&Kernels::copyOrShade>, test::blends::copyOrShade}};

/// Two rows in one block, and a mask. All three end where their blocks do, so that the address sanitizer sees
/// an access beyond them.
struct Rows {
  std::vector<BYTE> block, mask;
  std::size_t to = 0, from = 0;
  int count = 0;
  bool masked = false;
  dibkit::LayerOpacity opacity;
};

/// One pixel after the other by the rule, with the twin and every compiled set against it.
void expectRule(const Blend& blend, const Rows& rows) {
  std::vector<BYTE> expected = rows.block;
  for (std::size_t x = 0; x < static_cast<std::size_t>(rows.count); ++x) {
    BYTE* source = &expected[rows.from + 4 * x];
    const int alpha = std::max(source[3] - rows.opacity.reduction, 0) * rows.opacity.scale / 255;
    blend.rule(&expected[rows.to + 4 * x], source, rows.masked ? alpha * rows.mask[x] / 255 : alpha);
  }
  const auto check = [&](const Kernels& kernels) {
    std::vector<BYTE> found = rows.block;
    blend.run(kernels, found.data() + rows.to, found.data() + rows.from, rows.count, rows.opacity,
              rows.masked ? rows.mask.data() : nullptr);
    // Compared without gtest's report, which would list thousands of bytes.
    ASSERT_TRUE(found == expected) << blend.name;
  };
  check(dibkit::plainKernels<Kernels>());
  test::forEachCompiled<Kernels>(check);
}

std::vector<BYTE> randomBytes(test::Random& random, std::size_t count) {
  std::vector<BYTE> bytes(count);
  for (BYTE& byte : bytes) byte = static_cast<BYTE>(random());
  return bytes;
}

TEST(Blends, FollowTheirRulesAtEveryWidthAlignmentAndOverlap) {
  test::Random random(9);
  constexpr BYTE amounts[] = {0, 0, 1, 100, 254, 255};
  for (int round = 0; round < 130 * 5 * 10; ++round) {
    Rows rows;
    rows.count = round % 130;
    const auto bytes = static_cast<std::size_t>(rows.count) * 4;
    const auto distance = static_cast<std::size_t>(test::below(random, round % 2 == 0 ? 20 : 200)) * 4;
    const auto offset = static_cast<std::size_t>(test::below(random, 4));
    rows.to = rows.from = offset;
    (round % 3 == 0 ? rows.from : rows.to) += distance;
    rows.block = randomBytes(random, offset + distance + bytes);
    rows.mask = randomBytes(random, static_cast<std::size_t>(rows.count));
    rows.masked = round % 4 == 0;
    rows.opacity = {static_cast<BYTE>(255 - test::oneOf(random, amounts)), test::oneOf(random, amounts)};
    if (round % 7 < 4) rows.opacity = {test::oneOf(random, amounts), 255};
    for (std::size_t i = offset + 3; i < rows.block.size(); i += 4) {
      // Stretches of equal alphas, as pictures have them.
      if (random() % 32 != 0 && i >= 7 && round % 5 > 2) rows.block[i] = rows.block[i - 4] > 127 ? 255 : 0;
    }
    SCOPED_TRACE(testing::Message() << "round " << round);
    expectRule(blends[round / 130 % std::size(blends)], rows);
    if (HasFatalFailure()) return;
  }
}

TEST(Blends, AreExactForEveryPairOfAlphas) {
  test::Random random(8);
  for (const Blend& blend : blends) {
    // The exact rule also divides by every alpha: many colours for each pair.
    for (int round = blend.rule == test::blends::over ? 2560 : 512; round > 0; --round) {
      Rows rows;
      rows.count = 256;
      rows.from = 1024;
      rows.block = randomBytes(random, 2048);
      for (std::size_t i = 0; i < 256; ++i) {
        // Each alpha fills whole rows of each image in turn.
        const auto byRow = static_cast<BYTE>(round), byColumn = static_cast<BYTE>(i);
        rows.block[rows.to + 4 * i + 3] = round / 256 % 2 == 0 ? byRow : byColumn;
        rows.block[rows.from + 4 * i + 3] = round / 256 % 2 == 0 ? byColumn : byRow;
      }
      expectRule(blend, rows);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(Blends, DivideExactlyByMultiplying) {
  // What the vectors compute in place of a quotient, with and without a fused multiplication.
  for (int alpha = 1; alpha < 256; ++alpha) {
    const float reciprocal = 1.0F / static_cast<float>(alpha), offset = reciprocal * 0.5F + 512.0F;
    for (int sum = 0; sum < std::min(256 * alpha, 65026); ++sum) {
      const float value = static_cast<float>(sum), product = value * reciprocal;
      for (const float quotient : {std::fma(value, reciprocal, offset), product + offset}) {
        if (static_cast<int>(quotient - 512.0F) != sum / alpha) FAIL() << sum << " / " << alpha;
      }
    }
  }
}

}  // namespace
