#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "dib/view.h"

/// Small images for tests, and access to single pixels. Coordinates count from the top-left pixel. An image
/// is passed as a pointer or as its owner.
namespace test {

using dibkit::OwnedDib;

/// Calls use(x, y) for the pixels of a rectangle in reading order.
template <class Use>
void forEachPixel(const RECT& box, Use&& use) {
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) use(x, y);
  }
}
inline RECT boundsOf(const auto& dib) { return {0, 0, dib->biWidth, dib->biHeight}; }

/// An image as the library makes it; ends the test program when there is no memory.
inline OwnedDib image(int width, int height, int bitCount, const std::vector<DWORD>& palette = {}) {
  OwnedDib dib(CBitmapCreator::CreateDibImage(width, height, bitCount, static_cast<int>(palette.size())));
  if (!dib) throw std::bad_alloc();
  if (!palette.empty())
    std::memcpy(dibkit::paletteOf(dib.get()), palette.data(), palette.size() * sizeof(DWORD));
  return dib;
}
inline OwnedDib copyOf(const auto& dib) { return OwnedDib(dib ? CBitmapCreator::Clone(&*dib) : nullptr); }

inline BYTE* rowOf(BITMAPINFOHEADER* dib, int y) { return dibkit::View(dib).row(y); }
inline const BYTE* rowOf(const BITMAPINFOHEADER* dib, int y) { return dibkit::ConstView(dib).row(y); }

/// A pixel as it is stored, by the file format: an index, a 16-bit word, 0xRRGGBB, or 0xAARRGGBB.
inline DWORD pixel(const auto& dib, int x, int y) {
  const int bits = dib->biBitCount;
  const BYTE* first = rowOf(&*dib, y) + x * bits / 8;
  if (bits < 8) return DWORD{*first} >> (8 - bits - x * bits % 8) & ((1U << bits) - 1);
  DWORD value = 0;
  std::memcpy(&value, first, static_cast<std::size_t>(bits) / 8);
  return value;
}

/// Any value but 0 sets a pixel of one bit.
inline void setPixel(const auto& dib, int x, int y, DWORD value) {
  const int bits = dib->biBitCount;
  BYTE* first = rowOf(&*dib, y) + x * bits / 8;
  if (bits >= 8) {
    std::memcpy(first, &value, static_cast<std::size_t>(bits) / 8);
  } else {
    const int shift = 8 - bits - x * bits % 8;
    const DWORD mask = ((1U << bits) - 1) << shift, stored = bits == 1 ? DWORD{value != 0} : value;
    *first = static_cast<BYTE>((*first & ~mask) | (stored << shift & mask));
  }
}

/// An image whose pixel at (x, y) is stored as rule(x, y), called in reading order.
template <class Rule>
OwnedDib drawn(int width, int height, int bitCount, Rule&& rule, const std::vector<DWORD>& palette = {}) {
  OwnedDib dib = image(width, height, bitCount, palette);
  forEachPixel(boundsOf(dib), [&](int x, int y) { setPixel(dib, x, y, rule(x, y)); });
  return dib;
}

/// An image from its stored pixels, top row first.
inline OwnedDib imageOf(int width, int height, int bitCount, const std::vector<DWORD>& pixels,
                        const std::vector<DWORD>& palette = {}) {
  const auto rule = [&](int x, int y) { return pixels.at(static_cast<std::size_t>(y * width + x)); };
  return drawn(width, height, bitCount, rule, palette);
}

/// The stored pixels, top row first.
inline std::vector<DWORD> pixelsOf(const auto& dib) {
  std::vector<DWORD> pixels;
  forEachPixel(boundsOf(dib), [&](int x, int y) { pixels.push_back(pixel(dib, x, y)); });
  return pixels;
}

/// Bytes of a whole block, for comparing images to the byte. None for no image.
inline std::vector<BYTE> bytesOf(const auto& dib) {
  if (!dib) return {};
  const auto* bytes = reinterpret_cast<const BYTE*>(&*dib);
  return {bytes, bytes + dibkit::layoutOf(&*dib)->total};
}

using Random = std::mt19937;
inline int below(Random& random, int limit) {
  return static_cast<int>(random() % static_cast<unsigned>(limit));
}
/// One of the values of an array or list.
template <class Values>
auto oneOf(Random& random, const Values& values) {
  return *(std::begin(values) + below(random, static_cast<int>(std::size(values))));
}
template <class Value>
Value oneOf(Random& random, std::initializer_list<Value> values) {
  return *(values.begin() + below(random, static_cast<int>(values.size())));
}

/// Random pixels, with bytes biased to 0 and 255, where arithmetic breaks; padding stays 0.
inline OwnedDib randomImage(int width, int height, int bitCount, Random& random,
                            const std::vector<DWORD>& palette = {}) {
  const auto byte = [&]() -> DWORD {
    const auto draw = random();
    return draw % 4 == 0 ? 0 : draw % 4 == 1 ? 255 : draw >> 8 & 255;
  };
  const auto rule = [&](int, int) {
    const DWORD value = byte() << 24 | byte() << 16 | byte() << 8 | byte();
    return bitCount == 4 ? value & 15 : value;
  };
  return drawn(width, height, bitCount, rule, palette);
}

/// Keeps every reported fraction; cancels during the report with the given number (0 for the first).
class Progress : public CQorCommonProgress {
 public:
  explicit Progress(int cancelAt = -1) : cancelAt_(cancelAt) {}
  float SetProgress(float fraction) override {
    if (static_cast<int>(fractions.size()) == cancelAt_) m_bCancel = 1;
    fractions.push_back(fraction);
    return 0;
  }
  std::vector<float> fractions;

 private:
  int cancelAt_;
};

}  // namespace test
