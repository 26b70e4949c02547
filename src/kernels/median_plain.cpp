#include <cstddef>
#include <cstring>

#include "kernels/median.h"
#include "kernels/sorted_column.h"

namespace dibkit {
namespace {

void ofBytes(const std::uint8_t* above, const std::uint8_t* row, const std::uint8_t* below, int count,
             std::uint8_t* out) {
  using Column = SortedColumn<std::uint8_t>;
  const auto columnAt = [&](int i) { return Column(above[i], row[i], below[i]); };
  for (int i = 0; i < count; ++i) {
    out[i] = Column::medianOfNine(columnAt(i - 3), columnAt(i), columnAt(i + 3));
  }
}

void luminances(const std::uint8_t* pixels, int count, std::uint8_t* lumas) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const std::uint8_t* pixel = pixels + 4 * i;
    lumas[i] = static_cast<std::uint8_t>((117 * pixel[0] + 601 * pixel[1] + 306 * pixel[2]) >> 10);
  }
}

void ofPixels(const MedianKernels::Row& top, const MedianKernels::Row& centre,
              const MedianKernels::Row& bottom, int count, std::uint8_t* out) {
  using Column = SortedColumn<std::uint8_t>;
  const MedianKernels::Row rows[3] = {top, centre, bottom};
  for (int x = 0; x < count; ++x) {
    const auto luma = [&](int row, int column) { return rows[row].lumas[x + column]; };
    const auto columnAt = [&](int column) {
      return Column(luma(0, column), luma(1, column), luma(2, column));
    };
    const int median = Column::medianOfNine(columnAt(0), columnAt(1), columnAt(2));
    for (int row = 0; row < 3; ++row) {
      for (int column = 0; column < 3; ++column) {
        if (luma(row, column) != median) continue;
        std::memcpy(out + std::ptrdiff_t{x} * 4, rows[row].pixels + std::ptrdiff_t{x + column} * 4, 4);
      }
    }
  }
}

}  // namespace

template <>
const MedianKernels& plainKernels() {
  static constexpr MedianKernels plain{ofBytes, luminances, ofPixels};
  return plain;
}

}  // namespace dibkit
