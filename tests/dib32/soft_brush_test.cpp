#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "support/bitmap_regions.h"

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;
using test::below;
using test::oneOf;
using test::pixel;

/// A 32-bit sum, difference or product as a register gives it.
int wrapped(std::int64_t value) { return static_cast<int>(static_cast<std::uint32_t>(value)); }

struct Touch {
  OwnedDib mask, reference;
  POINT position;
  int amount, size;
  HRGN clip;
  bool fill, referred;

  /// The share of the pixels in the box around (x, y) of the mask, off centre to the top left for an even
  /// size, whose byte is not 0: in n x n parts, also where the mask cuts the box off.
  int strengthAt(int x, int y) const {
    const int width = mask->biWidth, height = mask->biHeight, n = std::min({size, width, height});
    const int left = x - n / 2, top = y - n / 2;
    int count = 0;
    test::forEachPixel(
        {std::max(left, 0), std::max(top, 0), std::min(left + n, width), std::min(top + n, height)},
        [&](int mx, int my) { count += pixel(mask, mx, my) != 0; });
    return wrapped(std::int64_t{fill ? wrapped(255LL - amount) : amount} * count) / (n * n);
  }
  /// The pixel of an image after the touch: its alpha less the strength, or more by it.
  DWORD after(const OwnedDib& image, int x, int y) const {
    const DWORD value = pixel(image, x, y);
    const int mx = x - position.x, my = y - position.y, alpha = static_cast<int>(value >> 24);
    if (mx < 0 || my < 0 || mx >= mask->biWidth || my >= mask->biHeight) return value;
    if (clip != nullptr && !PtInRegion(clip, x, y)) return value;
    if (referred && (y >= reference->biHeight || pixel(reference, x, y) >> 24 == 0)) return value;
    const std::int64_t strength = strengthAt(mx, my);
    const int result =
        fill ? std::min(wrapped(alpha + strength), 255) : std::max(wrapped(alpha - strength), 0);
    return (value & 0xFFFFFF) | static_cast<DWORD>(result & 255) << 24;
  }
  void apply(const OwnedDib& image) const {
    if (referred) {
      CDIB32::SmoothFillBlock(image.get(), mask.get(), reference.get(), position, amount, size, clip);
    } else if (fill) {
      CDIB32::SmoothFillBlock(image.get(), mask.get(), position, amount, size, clip);
    } else {
      CDIB32::SmoothBlock(image.get(), mask.get(), position, amount, size, clip);
    }
  }
};

TEST(SoftBrushes, EqualBoxesCountedOneByOne) {
  test::Random random(61);
  constexpr int amounts[] = {0, 1, 60, 128, 254, 255};
  constexpr int oddAmounts[] = {256, 1000, -1, -255, 0x40000001, INT32_MAX, INT32_MIN, -0x7FFFFF00};
  for (int round = 0; round < 1200; ++round) {
    const int width = 1 + below(random, 34), height = 1 + below(random, 20);
    const OwnedDib image = test::randomImage(width, height, 32, random), before = test::copyOf(image);
    const OwnedRegion clip = test::ellipse(below(random, 9) - 4, below(random, 9) - 4, 5 + below(random, 30),
                                           5 + below(random, 20));
    const Touch touch{test::randomImage(1 + below(random, 20), 1 + below(random, 16), 8, random),
                      test::randomImage(width, 1 + below(random, 24), 32, random),
                      {below(random, 40) - 15, below(random, 30) - 12},
                      round % 4 == 0 ? oneOf(random, oddAmounts) : oneOf(random, amounts),
                      round % 7 == 0 ? INT32_MAX : 1 + below(random, 12),
                      round % 2 == 0 ? clip.get() : nullptr,
                      round % 3 != 0,
                      round % 3 == 2};
    touch.apply(image);
    const OwnedDib expected =
        test::drawn(width, height, 32, [&](int x, int y) { return touch.after(before, x, y); });
    ASSERT_EQ(test::bytesOf(image), test::bytesOf(expected)) << "round " << round;
  }
}

}  // namespace
