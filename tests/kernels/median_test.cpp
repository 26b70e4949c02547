#include "kernels/median.h"

#include <algorithm>
#include <array>

#include "kernels/compiled.h"

namespace {

using Kernels = dibkit::MedianKernels;
using Bytes = std::vector<std::uint8_t>;

Bytes randomBytes(std::size_t count, unsigned levels, test::Random& random) {
  Bytes bytes(count);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() % levels * (255 / (levels - 1)));
  return bytes;
}

TEST(Median, OfBytesSortsEveryNineZerosAndOnes) {
  // Minima and maxima that sort zeros and ones sort anything.
  Bytes rows[3], expected;
  for (int bits = 0; bits < 512; ++bits) {
    int ones = 0;
    for (int i = 0; i < 9; ++i) {
      rows[i % 3].insert(rows[i % 3].end(), 3, static_cast<std::uint8_t>(bits >> i & 1));
      ones += bits >> i & 1;
    }
    expected.push_back(ones > 4);
  }
  test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
    Bytes found(rows[0].size() - 6);
    kernels.ofBytes(&rows[0][3], &rows[1][3], &rows[2][3], static_cast<int>(found.size()), found.data());
    for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(found[i * 9], expected[i]) << i;
  });
}

TEST(Median, AgreesWithItsTwinAtEveryWidthAndAlignment) {
  test::Random random(18);
  const Kernels& twin = dibkit::plainKernels<Kernels>();
  for (int count = 0; count < 130; ++count) {
    const auto width = static_cast<std::size_t>(count), offset = width % 4;
    const unsigned levels = count % 3 == 0 ? 2 : 256;
    Bytes bytes[3], lumas[3], pixels[3];
    for (int i = 0; i < 3; ++i) {
      bytes[i] = randomBytes(offset + width + 6, levels, random);
      lumas[i] = randomBytes(width + 2, levels, random);  // few levels: many equal ones
      pixels[i] = randomBytes(width * 4 + 8, 256, random);
    }
    const auto results = [&](const Kernels& kernels) {
      std::array<Bytes, 3> out{Bytes(width), Bytes(width), Bytes(width * 4)};
      const auto row = [&](int i) { return Kernels::Row{lumas[i].data(), pixels[i].data()}; };
      kernels.ofBytes(&bytes[0][offset + 3], &bytes[1][offset + 3], &bytes[2][offset + 3], count,
                      out[0].data());
      kernels.luminances(pixels[0].data(), count, out[1].data());
      kernels.ofPixels(row(0), row(1), row(2), count, out[2].data());
      return out;
    };
    const auto expected = results(twin);
    test::forEachCompiled<Kernels>(
        [&](const Kernels& kernels) { ASSERT_EQ(results(kernels), expected) << "count " << count; });
  }
}

}  // namespace
