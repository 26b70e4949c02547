#include <gtest/gtest.h>

#include "host/errors.h"
#include "host/formats/limits.h"
#include "host/formats/row_sink.h"

namespace {

using host::Size;

TEST(Reduced, ByAsMuchAsLeavesTwiceTheSizeOrFitsTheLimit) {
  struct Case {
    Size stored;
    std::optional<Size> enough;
    int factor;  ///< 0 for too many pixels
  };
  const Case cases[] = {
      {{4000, 3000}, std::nullopt, 1},
      {{4000, 3000}, Size{1000, 1000}, 1},   // goes 3 times into the height
      {{4000, 3000}, Size{500, 500}, 3},     // 6 times
      {{4000, 3000}, Size{0, 500}, 3},       // the width follows
      {{4000, 3000}, Size{100, 0}, 20},      // the height follows
      {{4000, 3000}, Size{0, 0}, 1},         // neither is known
      {{4000, 3000}, Size{8000, 10}, 1},     // wider than it is
      {{12000, 8400}, Size{640, 360}, 9},    // 18 times into the width
      {{12000, 8400}, Size{5000, 4000}, 2},  // goes twice: more than half of it is to go for the limit
      {{12000, 8400}, Size{7000, 4000}, 0},  // goes once, and whole it is too large
      {{12000, 8400}, std::nullopt, 0},
      {{16384, 16384}, Size{8192, 8192}, 2},  // the largest that is read
      {{16385, 16384}, Size{10, 10}, 0},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(toString(one.stored) + " for " + toString(one.enough.value_or(Size{})));
    if (one.factor == 0) {
      EXPECT_THROW(host::reductionFor(one.stored, one.enough), host::TooManyPixels);
    } else {
      EXPECT_EQ(host::reductionFor(one.stored, one.enough), one.factor);
    }
  }
  EXPECT_THROW(host::reductionFor({0, 5}, Size{1, 1}), host::FormatError);
  EXPECT_EQ(host::reduced({9, 8}, 4), (Size{3, 2}));
}

TEST(Reduced, ToTheMeansOfItsBoxes) {
  const host::Pixel clear{};
  const host::Pixel white{255, 255, 255, 255};
  const host::Pixel faint{255, 0, 0, 85};
  // Boxes of 2 x 2, and what is left at the right and at the bottom. A third of opacity is a third of the
  // weight.
  const std::vector<host::Pixel> lines[] = {{white, white, faint, clear, white},
                                            {white, white, clear, white, clear},
                                            {white, clear, clear, clear, faint}};
  const std::vector<host::Pixel> expected[] = {{white, {255, 191, 191, 85}, {255, 255, 255, 128}},
                                               {{255, 255, 255, 128}, clear, faint}};
  for (const auto order : {host::RowSink::Order::byLine, host::RowSink::Order::any}) {
    host::RowSink sink({5, 3}, 2, order);
    // In any order the odd columns may come first.
    for (int y = 0; y < 3; ++y) {
      const std::vector<host::Pixel>& line = lines[y];
      if (order == host::RowSink::Order::byLine) {
        sink.put(y, line);
      } else {
        sink.put(y, std::vector{line[1], line[3]}, 1, 2);
        sink.put(y, std::vector{line[0], line[2], line[4]}, 0, 2);
      }
    }
    const host::Picture picture = std::move(sink).take();
    ASSERT_EQ(picture.size(), (Size{3, 2}));
    for (int y = 0; y < 2; ++y) {
      EXPECT_EQ(std::vector(picture.row(y), picture.row(y) + 3), expected[y]) << "line " << y;
    }
  }
}

}  // namespace
