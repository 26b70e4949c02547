#pragma once

#include <functional>

#include <gtest/gtest.h>

#include "dibkit.h"
#include "platform/recorded.h"
#include "support/images.h"

/// Stages of transitions, and the plain way to make them.
namespace test {

using dibkit::OwnedRegion;

/// What GeneralEffectFrame gives.
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

/// No two pixels are alike, and every fourth one is not opaque.
inline OwnedDib numberedPicture(int width, int height) {
  return drawn(width, height, 32, [width](int x, int y) {
    return ((x + y) % 4 == 0 ? 0x40000000 : 0xFF000000) | static_cast<DWORD>((y * width + x + 1) * 3);
  });
}
inline OwnedDib opaquePicture(int width, int height, DWORD seed) {
  return drawn(width, height, 32,
               [=](int x, int y) { return 0xFF000000 | (seed + static_cast<DWORD>((y * width + x) * 5)); });
}

inline OwnedRegion rectangle(int left, int top, int right, int bottom) {
  return OwnedRegion(CreateRectRgn(left, top, right, bottom));
}
inline OwnedRegion polygon(const std::vector<POINT>& points) {
  return OwnedRegion(CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE));
}
/// Adds a piece to a region, which is null before the first one.
inline void join(OwnedRegion& region, OwnedRegion piece) {
  if (region) CombineRgn(region.get(), region.get(), piece.get(), RGN_OR);
  if (!region) region = std::move(piece);
}

/// The piece that a region cuts out of the picture: opacity 0 outside the region. No region, no piece.
inline Stage cut(const OwnedDib& source, const OwnedRegion& region) {
  if (!region) return {};
  CombineRgn(region.get(), region.get(), rectangle(0, 0, source->biWidth, source->biHeight).get(), RGN_AND);
  RECT box;
  GetRgnBox(region.get(), &box);
  return {1,
          drawn(box.right - box.left, box.bottom - box.top, 32,
                [&](int x, int y) {
                  const DWORD inside = PtInRegion(region.get(), box.left + x, box.top + y) ? ~0U : 0xFFFFFF;
                  return pixel(source, box.left + x, box.top + y) & inside;
                }),
          box};
}

/// Compares to the byte; a result of 0 has nothing else to compare.
inline void expectStage(const Stage& actual, const Stage& expected) {
  ASSERT_EQ(actual.result, expected.result);
  if (expected.result == 0) return;
  EXPECT_EQ(actual.rect, expected.rect);
  ASSERT_NE(actual.image, nullptr);
  EXPECT_TRUE(bytesOf(actual.image) == bytesOf(expected.image));
}

/// Compares an effect with its plain twin, twin(picture, style, amount), at every style and amount, over
/// pictures of all kinds: smaller than a cell or a slat, multiples of 10 and 100 and just beside them.
template <class Twin>
void expectTwin(int effect, const std::vector<long>& styles, const std::vector<long>& amounts, Twin&& twin) {
  constexpr SIZE sizes[] = {{1, 1},   {2, 9},   {7, 5},   {8, 8},    {10, 10},  {16, 33},
                            {19, 40}, {33, 15}, {40, 95}, {101, 47}, {110, 64}, {100, 200}};
  for (const auto& [w, h] : sizes) {
    const OwnedDib picture = numberedPicture(w, h);
    for (const long style : styles) {
      for (const long amount : amounts) {
        SCOPED_TRACE(testing::Message()
                     << effect << '/' << style << ' ' << w << 'x' << h << " at " << amount);
        expectStage(render(effect, picture, style, amount), twin(picture, style, amount));
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

}  // namespace test
