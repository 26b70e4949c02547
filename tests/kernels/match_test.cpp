#include "kernels/match.h"

#include "kernels/compiled.h"

namespace {

using Kernels = dibkit::MatchKernels;
using Bytes = std::vector<std::uint8_t>;

TEST(Match, FindsTheBytesInEveryRange) {
  Bytes bytes;
  for (int value = 0; value < 256; ++value) bytes.insert(bytes.end(), 4, static_cast<std::uint8_t>(value));
  test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
    for (int low = 0; low < 256; ++low) {
      for (const int high : {0, low - 1, low, low + 1, 255}) {
        Kernels::Box box;
        box.low.fill(static_cast<std::uint8_t>(low));
        box.high.fill(static_cast<std::uint8_t>(high));
        Bytes flags(256);
        kernels.inside32(bytes.data(), 256, box, flags.data());
        for (int value = 0; value < 256; ++value) {
          const bool in = value >= low && value <= box.high[0];
          ASSERT_EQ(flags[static_cast<std::size_t>(value)], in) << low << " to " << high << ": " << value;
        }
      }
    }
  });
}

TEST(Match, AgreesWithItsTwinAtEveryWidthAndAlignment) {
  test::Random random(20);
  for (int count = 0; count < 130; ++count) {
    const auto width = static_cast<std::size_t>(count), offset = width % 4;
    Bytes pixels(offset + width * 4);
    for (std::uint8_t& byte : pixels) byte = static_cast<std::uint8_t>(random());
    const Kernels::Box box{{10, 0, 60, 1}, {250, 200, 255, 255}};
    const auto results = [&](const Kernels& kernels) {
      std::array<Bytes, 3> out{Bytes(width), Bytes(width), Bytes(width / 8)};
      // Each ends where the row ends, so that the address sanitizer sees an access beyond it.
      const Bytes triples(pixels.end() - static_cast<std::ptrdiff_t>(width * 3), pixels.end());
      kernels.inside24(triples.data(), count, box, out[0].data());
      kernels.inside32(pixels.data() + offset, count, box, out[1].data());
      kernels.atLeast(pixels.data() + offset, count / 8 * 8, box.low[2], out[2].data());
      return out;
    };
    const auto expected = results(dibkit::plainKernels<Kernels>());
    test::forEachCompiled<Kernels>(
        [&](const Kernels& kernels) { ASSERT_EQ(results(kernels), expected) << "count " << count; });
  }
}

}  // namespace
