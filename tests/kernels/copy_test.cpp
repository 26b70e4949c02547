#include "kernels/copy.h"

#include "kernels/compiled.h"

namespace {

using Kernels = dibkit::CopyKernels;

/// The results of all kernels on rows that end where their blocks do; two of them overlap.
std::vector<std::vector<BYTE>> results(const Kernels& kernels, const std::vector<BYTE>& from, int count,
                                       std::size_t offset, std::size_t distance, BYTE reduction) {
  const auto bytes = static_cast<std::size_t>(count) * 4;
  std::vector<BYTE> lowered = from, alphas = from, doubled(offset + 2 * bytes), halved;
  kernels.lowered(lowered.data() + offset + distance, lowered.data() + offset, count, reduction);
  kernels.alphas(alphas.data() + offset + distance, alphas.data() + offset, count);
  kernels.doubled(from.data() + offset, count, doubled.data() + offset);
  // Of an odd count the last pixel of the block is the last one that is copied.
  std::vector<BYTE> row(from.begin() + static_cast<std::ptrdiff_t>(offset),
                        from.begin() + static_cast<std::ptrdiff_t>(offset + bytes));
  halved.resize(offset + static_cast<std::size_t>(count + 1) / 2 * 4);
  kernels.everySecond(row.data(), (count + 1) / 2, halved.data() + offset);
  const std::uint32_t common = kernels.commonBits(row.data(), count);
  std::vector<BYTE> bits(4);
  std::memcpy(bits.data(), &common, 4);
  return {lowered, alphas, doubled, halved, bits};
}

TEST(Copies, AgreeWithTheirTwinsAtEveryWidthAlignmentAndOverlap) {
  test::Random random(19);
  for (int round = 0; round < 130 * 20; ++round) {
    const int count = round % 130;
    const std::size_t offset = random() % 4, distance = random() % 24 * 4;
    std::vector<BYTE> from(offset + distance + static_cast<std::size_t>(count) * 4);
    for (BYTE& byte : from) byte = static_cast<BYTE>(random() | (random() % 4 != 0 ? 0x3C : 0));
    const auto reduction = static_cast<BYTE>(round % 3 == 0 ? 0 : random());
    const auto expected = results(dibkit::plainKernels<Kernels>(), from, count, offset, distance, reduction);
    test::forEachCompiled<Kernels>([&](const Kernels& kernels) {
      ASSERT_TRUE(results(kernels, from, count, offset, distance, reduction) == expected)
          << "width " << count;
    });
    if (HasFatalFailure()) return;
  }
}

}  // namespace
