#include "kernels/brush.h"

#include "kernels/compiled.h"

namespace {

using Kernels = dibkit::BrushKernels;
using Bytes = std::vector<std::uint8_t>;

TEST(Brush, DividesEverySumOfABox) {
  for (int n = 1; n <= Kernels::largestBox; ++n) {
    const auto count = static_cast<std::size_t>(n * n + 1), side = static_cast<std::size_t>(n);
    // The sums of n neighbours are 0, 1, 2 ... n n.
    std::vector<std::uint16_t> counts(count + side);
    for (std::size_t i = 0; i < counts.size(); ++i) counts[i] = static_cast<std::uint16_t>(i / side);
    for (int amount = 0; amount < 256; ++amount) {
      Bytes expected(count), found(count);
      for (std::size_t sum = 0; sum < count; ++sum) {
        expected[sum] = static_cast<std::uint8_t>(static_cast<std::size_t>(amount) * sum / (count - 1));
      }
      test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
        kernels.strengths(counts.data(), n, amount, n * n + 1, found.data());
        ASSERT_EQ(found, expected) << n << ", " << amount;
      });
    }
  }
}

TEST(Brush, AgreesWithItsTwinAtEveryWidthAndAlignment) {
  test::Random random(19);
  const auto fill = [&](auto values, unsigned limit) {
    for (auto& value : values) value = static_cast<std::uint8_t>(random() % limit);
    return values;
  };
  for (int count = 0; count < 130; ++count) {
    const auto width = static_cast<std::size_t>(count), offset = width % 4;
    const int n = 1 + count % Kernels::largestBox, amount = test::below(random, 256);
    const Bytes entering = fill(Bytes(offset + width), 3), leaving = fill(Bytes(offset + width), 3);
    const Bytes amounts = fill(Bytes(offset + width), 256), pixels = fill(Bytes(offset + width * 4), 256);
    const auto columns = fill(std::vector<std::uint16_t>(width + static_cast<std::size_t>(n)), 1U + n);
    const auto results = [&](const Kernels& kernels) {
      auto counts = columns;
      Bytes values(width), lower = pixels, raised = pixels;
      kernels.moveCounts(entering.data() + offset, leaving.data() + offset, count, counts.data());
      kernels.strengths(columns.data(), n, amount, count, values.data());
      kernels.lowerAlphas(amounts.data() + offset, count, lower.data() + offset);
      kernels.raiseAlphas(amounts.data() + offset, count, raised.data() + offset);
      return std::tuple(counts, values, lower, raised);
    };
    const auto expected = results(dibkit::plainKernels<Kernels>());
    test::forEachCompiled<Kernels>(
        [&](const Kernels& kernels) { ASSERT_EQ(results(kernels), expected) << "count " << count; });
  }
}

}  // namespace
