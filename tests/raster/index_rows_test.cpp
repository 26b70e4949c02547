#include "raster/index_rows.h"

#include <gtest/gtest.h>

#include "raster/colour_rows.h"
#include "support/images.h"

namespace {

/// Rows as a plain loop over the pixel helpers reads and writes them.
template <class Format>
class IndexRows : public testing::Test {};
using Formats = testing::Types<dibkit::Index1, dibkit::Index4, dibkit::Index8>;
TYPED_TEST_SUITE(IndexRows, Formats);

TYPED_TEST(IndexRows, ReadAndWriteLikeThePixelHelpers) {
  test::Random random(23);
  for (int count = 0; count <= 200; ++count) {
    std::vector<BYTE> row(300);
    for (BYTE& byte : row) byte = static_cast<BYTE>(random());
    const int left = 8 * test::below(random, 10);
    BYTE buffer[dibkit::indexChunk];
    const BYTE* indexes = dibkit::indexesAt<TypeParam>(row.data(), left, count, buffer);
    for (int x = 0; x < count; ++x) ASSERT_EQ(indexes[x], TypeParam::get(row.data(), left + x)) << x;

    std::vector<BYTE> values(static_cast<std::size_t>(count) + 1);
    for (BYTE& value : values) value = static_cast<BYTE>(random() % 3 == 0 ? 0 : random());  // also above 15
    std::vector<BYTE> expected = row;
    for (int x = 0; x < count; ++x)
      TypeParam::put(expected.data(), left + x, values[static_cast<std::size_t>(x)]);
    dibkit::storeIndexes<TypeParam>(values.data(), left, count, row.data());
    ASSERT_EQ(row, expected) << count;
  }
}

// Images of a depth that no format has are shown all the same.
TEST(ColourRows, ShowTheFirstEntryOrBlackForUnknownDepths) {
  const auto dib = test::image(2, 1, 4, {0x102030, 0x405060});
  const dibkit::PaletteTable palette(dib.get());
  const std::vector<BYTE> row(8, 0x11), entry{0x30, 0x20, 0x10, 0x30, 0x20, 0x10}, black(6);
  std::vector<BYTE> bgr(6);
  for (const int bitCount : {2, 7, 12, 64}) {
    dibkit::decodeBgrRow(bitCount, row.data(), 0, 2, palette, bgr.data());
    EXPECT_EQ(bgr, bitCount < 8 ? entry : black) << bitCount;
  }
}

}  // namespace
