#include <gtest/gtest.h>

#include "dib32/dib32.h"
#include "dib32/placed.h"

namespace {

using dibkit::OwnedDib;
using test::Guarded;
using Pixels = std::vector<DWORD>;

struct Result {
  BOOL made = FALSE;
  OwnedDib dib;
  POINT origin{-7, -7};
};

/// Calls merge(out, outOrigin) with out parameters that show whether they were written.
template <class Merge>
Result resultOf(Merge&& merge) {
  static BITMAPINFOHEADER untouched;
  BITMAPINFOHEADER* out = &untouched;
  Result result;
  result.made = merge(&out, &result.origin);
  if (out != &untouched) {
    result.dib.reset(out);
    EXPECT_EQ(out != nullptr, result.made == TRUE);
  } else {
    EXPECT_FALSE(result.made);
    EXPECT_EQ(result.origin.x, -7);
  }
  return result;
}

/// Placed input of the twins: the pixel at a point of the common space, if it covers it.
struct Layer {
  Guarded image;
  POINT at;
  std::optional<DWORD> pixel(int x, int y) {
    if (!image.has(x - at.x, y - at.y)) return std::nullopt;
    return dibkit::Bgra32::get(image.at(x - at.x, y - at.y), 0);
  }
  RECT rect() { return {at.x, at.y, at.x + image.dib()->biWidth, at.y + image.dib()->biHeight}; }
};

RECT boxOf(const RECT& a, const RECT& b) {
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
          std::max(a.bottom, b.bottom)};
}

/// A canvas over a box, every pixel of it from pixelAt(x, y) of the common space.
template <class PixelAt>
Pixels literally(const RECT& box, PixelAt&& pixelAt) {
  Pixels pixels;
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) pixels.push_back(pixelAt(x, y));
  }
  return pixels;
}

Layer randomLayer(test::Random& random, int limit) {
  const int width = 1 + test::below(random, limit);
  const int height = 1 + test::below(random, limit);
  return {Guarded(width, height, 32, random), test::randomPoint(random, limit)};
}

void expectImage(const Result& result, const RECT& box, const Pixels& pixels) {
  ASSERT_TRUE(result.made);
  EXPECT_EQ(result.origin.x, box.left);
  EXPECT_EQ(result.origin.y, box.top);
  EXPECT_EQ(result.dib->biWidth, box.right - box.left);
  EXPECT_EQ(result.dib->biHeight, box.bottom - box.top);
  EXPECT_EQ(test::pixelsOf(result.dib), pixels);
}

BYTE channel(DWORD pixel, int index) { return static_cast<BYTE>(pixel >> (8 * index)); }

TEST(CombineDIBs, EqualsItsTwin) {
  test::Random random(11);
  for (int round = 0; round < 200; ++round) {
    Layer bottom = randomLayer(random, 25);
    Layer top = randomLayer(random, 25);
    const BYTE bottomReduction = static_cast<BYTE>(round % 3 == 0 ? 0 : test::below(random, 256));
    const BYTE topReduction = static_cast<BYTE>(round % 4 == 0 ? 255 : test::below(random, 256));
    const RECT box = boxOf(bottom.rect(), top.rect());
    const Pixels expected = literally(box, [&](int x, int y) {
      const DWORD below = bottom.pixel(x, y).value_or(0);
      const BYTE ab = static_cast<BYTE>(std::max(channel(below, 3) - bottomReduction, 0));
      const auto above = top.pixel(x, y);
      if (!above) return (below & 0xFFFFFF) | DWORD{ab} << 24;
      const BYTE at = static_cast<BYTE>(std::max(channel(*above, 3) - topReduction, 0));
      const BYTE ao = CDIB32::CalcuOpacity(ab, at);
      DWORD pixel = DWORD{ao} << 24;
      for (int i = 0; i < 3; ++i) {
        pixel |= DWORD{CDIB32::CalcuRGBValue(ab, at, channel(below, i), channel(*above, i), ao)} << (8 * i);
      }
      return pixel;
    });
    const Guarded bottomBefore = bottom.image;
    const Guarded topBefore = top.image;
    const Result result = resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
      return CDIB32::CombineDIBs(bottom.image.dib(), bottom.at, bottomReduction, top.image.dib(), top.at,
                                 topReduction, out, origin);
    });
    expectImage(result, box, expected);
    EXPECT_EQ(bottom.image.block(), bottomBefore.block());
    EXPECT_EQ(top.image.block(), topBefore.block());
    if (HasFailure()) FAIL() << "round " << round;
  }
}

TEST(Merge32DIBs, EqualsItsTwinWithByteTwelve) {
  test::Random random(12);
  for (int round = 0; round < 300; ++round) {
    Layer first = randomLayer(random, round % 3 == 0 ? 2 : 12);
    Layer second = randomLayer(random, round % 3 == 0 ? 2 : 12);
    const RECT box = boxOf(first.rect(), second.rect());
    const int width = box.right - box.left;
    const int height = box.bottom - box.top;
    // Step by step on the raw bytes, bottom row first in memory.
    std::vector<BYTE> bits(static_cast<std::size_t>(width * height) * 4, 0);
    for (int j = 0; j < height; ++j) {
      const std::size_t row = static_cast<std::size_t>((height - 1 - j) * width) * 4;
      for (int i = 0; i < width; ++i) {
        BYTE* pixel = &bits[row + static_cast<std::size_t>(i) * 4];
        bool secondVisible = false;
        for (Layer* layer : {&first, &second}) {
          const auto from = layer->pixel(box.left + i, box.top + j);
          secondVisible = from && *from >> 24 > 0;
          if (!secondVisible) continue;
          std::memcpy(pixel, &*from, 3);
          if (row + 12 < bits.size()) bits[row + 12] = 255;
        }
        if (!secondVisible) pixel[3] = 0;
      }
    }
    const Result result = resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
      return CDIB32::Merge32DIBs(first.image.dib(), first.at, second.image.dib(), second.at, out, origin);
    });
    ASSERT_TRUE(result.made);
    EXPECT_EQ(result.origin.x, box.left);
    EXPECT_EQ(result.origin.y, box.top);
    const std::vector<BYTE> block = test::bytesOf(result.dib);
    ASSERT_EQ(std::vector<BYTE>(block.begin() + 40, block.end()), bits) << "round " << round;
  }
}

TEST(Merge32DIBs, MarksByteTwelve) {
  const auto merged = [](int width, const Pixels& pixels) {
    const OwnedDib image = test::imageOf(width, static_cast<int>(pixels.size()) / width, 32, pixels);
    const OwnedDib empty = test::image(0, 0, 32);
    const Result result = resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
      return CDIB32::Merge32DIBs(image.get(), {0, 0}, empty.get(), {0, 0}, out, origin);
    });
    return test::pixelsOf(result.dib);
  };
  // A visible pixel of any column marks the fourth pixel's blue; colours without opacity are not taken.
  EXPECT_EQ(merged(5, {0x01111111, 0x00222222, 0, 0x00444444, 0}), (Pixels{0x111111, 0, 0, 0x0000FF, 0}));
  EXPECT_EQ(merged(4, {0, 0, 0, 0xFF445566}), (Pixels{0, 0, 0, 0x4455FF}));
  EXPECT_EQ(merged(4, {0, 0, 0, 0x00445566}), Pixels(4, 0));
  // Three columns: the mark of a row lands on the first pixel of the row above, that of the top row nowhere.
  EXPECT_EQ(merged(3, {0, 0xFF101010, 0, 0, 0, 0xFF202020}), (Pixels{0xFF, 0x101010, 0, 0, 0, 0x202020}));
  // Two columns: on the second pixel of the row above. One column: three rows up.
  EXPECT_EQ(merged(2, {0, 0, 0xFF000000, 0}), (Pixels{0, 0xFF, 0, 0}));
  EXPECT_EQ(merged(1, {0xFF000000, 0, 0, 0, 0xFF000000}), (Pixels{0, 0xFF, 0, 0, 0}));
}

TEST(Merge32BitsDIB, EqualsItsTwins) {
  test::Random random(13);
  for (int round = 0; round < 200; ++round) {
    Layer bottom = randomLayer(random, 20);
    Layer top = randomLayer(random, 20);
    const RECT rect = randomLayer(random, 20).rect();
    const auto inside = [&](int x, int y) {
      return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
    };
    RECT box = boxOf(bottom.rect(), top.rect());
    expectImage(resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
                  return CDIB32::Merge32BitsDIB(bottom.image.dib(), bottom.at, top.image.dib(), top.at, out,
                                                origin);
                }),
                box, literally(box, [&](int x, int y) {
                  const DWORD above = top.pixel(x, y).value_or(0);
                  return above >> 24 != 0 ? above : bottom.pixel(x, y).value_or(0);
                }));
    box = boxOf(bottom.rect(), rect);
    expectImage(
        resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
          return CDIB32::Merge32BitsDIB(bottom.image.dib(), bottom.at, rect, out, origin);
        }),
        box, literally(box, [&](int x, int y) { return inside(x, y) ? 0 : bottom.pixel(x, y).value_or(0); }));
    expectImage(resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
                  return CDIB32::Merge32BitsDIB(bottom.image.dib(), bottom.at, 0x00302010, rect, out, origin);
                }),
                box, literally(box, [&](int x, int y) {
                  return bottom.pixel(x, y).value_or(inside(x, y) ? 0xFF102030 : 0);
                }));
    if (HasFailure()) FAIL() << "round " << round;
  }
}

TEST(Merging, SpansTheGapBetweenTwoImages) {
  const OwnedDib left = test::imageOf(1, 1, 32, {0xFF112233});
  const OwnedDib right = test::imageOf(1, 1, 32, {0xFF445566});
  const Result result = resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
    return CDIB32::CombineDIBs(left.get(), {0, 0}, 0, right.get(), {2, 0}, 0, out, origin);
  });
  expectImage(result, {0, 0, 3, 1}, {0xFF112233, 0, 0xFF445566});
}

TEST(Merging, TreatsAnEmptyUnionEachInItsWay) {
  const OwnedDib empty = test::image(0, 0, 32);
  POINT at{4, 5};
  const auto combined = resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
    return CDIB32::CombineDIBs(empty.get(), at, 0, empty.get(), at, 0, out, origin);
  });
  expectImage(combined, {0, 0, 0, 0}, {});
  const auto merged = resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
    return CDIB32::Merge32DIBs(empty.get(), at, empty.get(), at, out, origin);
  });
  expectImage(merged, {0, 0, 0, 0}, {});
  // These three write a null image and the origin of the empty box.
  const RECT none{3, 3, 3, 9};
  const Result results[] = {
      resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
        return CDIB32::Merge32BitsDIB(empty.get(), at, empty.get(), at, out, origin);
      }),
      resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
        return CDIB32::Merge32BitsDIB(empty.get(), at, none, out, origin);
      }),
      resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
        return CDIB32::Merge32BitsDIB(empty.get(), at, 1, none, out, origin);
      }),
  };
  for (const Result& result : results) {
    EXPECT_FALSE(result.made);
    EXPECT_EQ(result.dib, nullptr);
    EXPECT_EQ(result.origin.x, 0);
    EXPECT_EQ(result.origin.y, 0);
  }
}

TEST(Merging, FailsCleanly) {
  const OwnedDib image = test::imageOf(1, 1, 32, {0xFF112233});
  const OwnedDib shallow = test::imageOf(1, 1, 24, {0});
  POINT near{0, 0};
  POINT far{INT32_MAX, INT32_MAX};
  for (BITMAPINFOHEADER* wrong : {static_cast<BITMAPINFOHEADER*>(nullptr), shallow.get()}) {
    EXPECT_FALSE(resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
                   return CDIB32::CombineDIBs(image.get(), near, 0, wrong, near, 0, out, origin);
                 }).made);
    EXPECT_FALSE(resultOf([&](BITMAPINFOHEADER** out, POINT* origin) {
                   return CDIB32::Merge32DIBs(wrong, near, image.get(), near, out, origin);
                 }).made);
    BITMAPINFOHEADER* out = image.get();
    POINT origin{1, 1};
    EXPECT_FALSE(CDIB32::Merge32BitsDIB(image.get(), near, wrong, near, &out, &origin));
    EXPECT_EQ(out, nullptr);
    EXPECT_FALSE(CDIB32::Merge32BitsDIB(wrong, near, RECT{0, 0, 2, 2}, &out, &origin));
    EXPECT_FALSE(CDIB32::Merge32BitsDIB(wrong, near, 7, RECT{0, 0, 2, 2}, &out, &origin));
  }
  // Too large a canvas.
  BITMAPINFOHEADER* out = image.get();
  POINT origin{1, 1};
  EXPECT_FALSE(CDIB32::Merge32BitsDIB(image.get(), near, image.get(), far, &out, &origin));
  EXPECT_EQ(out, nullptr);
  EXPECT_FALSE(CDIB32::Merge32BitsDIB(image.get(), near, RECT{INT32_MIN, 0, INT32_MAX, 1}, &out, &origin));
  EXPECT_FALSE(CDIB32::CombineDIBs(image.get(), near, 0, image.get(), far, 0, &out, &origin));
  EXPECT_FALSE(CDIB32::CombineDIBs(image.get(), near, 0, image.get(), near, 0, nullptr, &origin));
  EXPECT_FALSE(CDIB32::Merge32BitsDIB(image.get(), near, image.get(), near, &out, nullptr));
}

}  // namespace
