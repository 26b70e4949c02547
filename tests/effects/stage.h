#pragma once

#include <functional>

#include <gtest/gtest.h>

#include "dibkit.h"
#include "support/images.h"

// RECT lives in the global namespace, where the test framework looks for these.
inline bool operator==(const RECT& a, const RECT& b) { return EqualRect(&a, &b) != FALSE; }
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
  return out << '(' << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ')';
}

/// One stage of a transition, and the plain way of cutting a piece that fast ones are compared with.
namespace test {

using dibkit::OwnedRegion;

struct Stage {
  int result = 0;
  OwnedDib image;
  RECT rect{};
};

inline Stage render(int effect, const OwnedDib& source, long a, long b) {
  Stage stage;
  BITMAPINFOHEADER* image = nullptr;
  stage.result = GeneralEffectFrame(effect, source.get(), a, b, &image, &stage.rect);
  stage.image.reset(image);
  return stage;
}

/// A picture in which no two pixels are alike and every fourth one is not opaque.
inline OwnedDib numberedPicture(int width, int height) {
  OwnedDib dib = image(width, height, 32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const DWORD opacity = (x + y) % 4 == 0 ? 0x40000000 : 0xFF000000;
      setPixel(dib, x, y, opacity | static_cast<DWORD>((y * width + x + 1) * 3));
    }
  }
  return dib;
}

inline OwnedRegion rectangle(int left, int top, int right, int bottom) {
  return OwnedRegion(CreateRectRgn(left, top, right, bottom));
}

/// Joins a piece to a region, which may still be none.
inline void join(OwnedRegion& region, OwnedRegion piece) {
  if (region) {
    CombineRgn(region.get(), region.get(), piece.get(), RGN_OR);
  } else {
    region = std::move(piece);
  }
}

/// Asks the region, clipped to the source, about every pixel of its box.
inline Stage cutPlainly(const OwnedDib& source, const OwnedRegion& region) {
  const OwnedRegion whole = rectangle(0, 0, source->biWidth, source->biHeight);
  CombineRgn(region.get(), region.get(), whole.get(), RGN_AND);
  Stage stage{1, nullptr, {}};
  GetRgnBox(region.get(), &stage.rect);
  const RECT& box = stage.rect;
  stage.image = image(box.right - box.left, box.bottom - box.top, 32);
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) {
      const DWORD colour = pixel(source, x, y);
      const bool inside = PtInRegion(region.get(), x, y) != FALSE;
      setPixel(stage.image, x - box.left, y - box.top, inside ? colour : colour & 0xFFFFFF);
    }
  }
  return stage;
}

/// Whether a stage is the expected one to the byte; an expected result of 0 has nothing else to compare.
inline void expectStage(const Stage& actual, const Stage& expected) {
  ASSERT_EQ(actual.result, expected.result);
  if (expected.result == 0) return;
  EXPECT_EQ(actual.rect, expected.rect);
  ASSERT_NE(actual.image, nullptr);
  EXPECT_TRUE(bytesOf(actual.image) == bytesOf(expected.image));
}

/// Compares an effect with its plain twin, twin(picture, style, amount), at every size, style and amount.
template <class Twin>
void expectTwin(int effect, const std::vector<SIZE>& sizes, const std::vector<long>& styles,
                const std::vector<long>& amounts, Twin&& twin) {
  for (const auto& [w, h] : sizes) {
    const OwnedDib picture = numberedPicture(w, h);
    for (const long style : styles) {
      for (const long amount : amounts) {
        SCOPED_TRACE(testing::Message()
                     << effect << '/' << style << ' ' << w << 'x' << h << " at " << amount);
        expectStage(render(effect, picture, style, amount), twin(picture, style, amount));
      }
    }
  }
}

}  // namespace test
