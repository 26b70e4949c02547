#include "dib/index_rows.h"

#include <gtest/gtest.h>

#include "dib/colour_index.h"
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

TEST(ColourIndex, FindsWhatItHoldsInACrowd) {
  dibkit::ColourIndex colours;
  EXPECT_EQ(colours.find(0), dibkit::ColourIndex::none);  // black is no empty place
  for (int round = 0; round < 2; ++round) {
    for (DWORD i = 0; i < 256; ++i) ASSERT_EQ(colours.enter(i << 16 | i % 2), static_cast<int>(i));
  }
  EXPECT_EQ(colours.enter(0xFFFFFF), dibkit::ColourIndex::none);
  EXPECT_EQ(colours.find(0xFFFFFF), dibkit::ColourIndex::none);
  EXPECT_EQ(colours.size(), 256);
  for (DWORD i = 0; i < 256; ++i) {
    EXPECT_EQ(colours.find(i << 16 | i % 2), static_cast<int>(i));
    EXPECT_EQ(colours[static_cast<int>(i)], i << 16 | i % 2);
  }
}

}  // namespace
