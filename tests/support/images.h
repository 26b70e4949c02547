#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "dib/view.h"

/// Small images for tests, and a way to look at single pixels. Coordinates count from the top-left pixel.
namespace test {

using dibkit::OwnedDib;

/// An image of the library's own making; fails the test program loudly when it cannot be had.
inline OwnedDib image(int width, int height, int bitCount, const std::vector<DWORD>& palette = {}) {
  OwnedDib dib(CBitmapCreator::CreateDibImage(width, height, bitCount, static_cast<int>(palette.size())));
  if (!dib) throw std::bad_alloc();
  if (!palette.empty())
    std::memcpy(dibkit::paletteOf(dib.get()), palette.data(), palette.size() * sizeof(DWORD));
  return dib;
}

inline BYTE* rowOf(BITMAPINFOHEADER* dib, int y) { return dibkit::View(dib).row(y); }
inline const BYTE* rowOf(const BITMAPINFOHEADER* dib, int y) { return dibkit::ConstView(dib).row(y); }

/// A pixel as it is stored: an index, a 16-bit word, 0xRRGGBB, or 0xAARRGGBB.
inline DWORD pixel(const BITMAPINFOHEADER* dib, int x, int y) {
  const BYTE* row = rowOf(dib, y);
  if (!dibkit::hasFormat(dib->biBitCount)) return 0xDEAD;
  return dibkit::withFormat(dib->biBitCount, [&](auto format) -> DWORD {
    const auto raw = decltype(format)::get(row, x);
    if constexpr (std::is_same_v<std::remove_const_t<decltype(raw)>, dibkit::Rgb>) {
      return dibkit::packRgb(raw);
    } else {
      return raw;
    }
  });
}
inline DWORD pixel(const OwnedDib& dib, int x, int y) { return pixel(dib.get(), x, y); }

inline void setPixel(BITMAPINFOHEADER* dib, int x, int y, DWORD value) {
  BYTE* row = rowOf(dib, y);
  dibkit::withFormat(dib->biBitCount, [&](auto format) {
    using Format = decltype(format);
    if constexpr (std::is_same_v<typename Format::Raw, dibkit::Rgb>) {
      Format::put(row, x, dibkit::Rgb{BYTE(value >> 16 & 255), BYTE(value >> 8 & 255), BYTE(value & 255)});
    } else {
      Format::put(row, x, static_cast<typename Format::Raw>(value));
    }
  });
}
inline void setPixel(const OwnedDib& dib, int x, int y, DWORD value) { setPixel(dib.get(), x, y, value); }

/// An image from its stored pixels, top row first.
inline OwnedDib imageOf(int width, int height, int bitCount, const std::vector<DWORD>& pixels,
                        const std::vector<DWORD>& palette = {}) {
  OwnedDib dib = image(width, height, bitCount, palette);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) setPixel(dib, x, y, pixels.at(static_cast<std::size_t>(y * width + x)));
  }
  return dib;
}

/// The stored pixels, top row first.
inline std::vector<DWORD> pixelsOf(const BITMAPINFOHEADER* dib) {
  std::vector<DWORD> pixels;
  for (int y = 0; y < dib->biHeight; ++y) {
    for (int x = 0; x < dib->biWidth; ++x) pixels.push_back(pixel(dib, x, y));
  }
  return pixels;
}
inline std::vector<DWORD> pixelsOf(const OwnedDib& dib) { return pixelsOf(dib.get()); }

/// Bytes of a whole block, for comparing images to the byte.
inline std::vector<BYTE> bytesOf(const BITMAPINFOHEADER* dib) {
  const auto* bytes = reinterpret_cast<const BYTE*>(dib);
  return {bytes, bytes + dibkit::layoutOf(dib)->total};
}
inline std::vector<BYTE> bytesOf(const OwnedDib& dib) { return bytesOf(dib.get()); }

using Random = std::mt19937;
inline int below(Random& random, int limit) {
  return static_cast<int>(random() % static_cast<unsigned>(limit));
}

/// Fills rows with random pixels, bytes biased to 0 and 255 where arithmetic breaks; padding stays 0.
inline void fillRandom(BITMAPINFOHEADER* dib, Random& random) {
  const auto byte = [&]() -> DWORD {
    const auto draw = random();
    return draw % 4 == 0 ? 0 : draw % 4 == 1 ? 255 : draw >> 8 & 255;
  };
  for (int y = 0; y < dib->biHeight; ++y) {
    for (int x = 0; x < dib->biWidth; ++x) {
      const DWORD value = byte() << 24 | byte() << 16 | byte() << 8 | byte();
      setPixel(dib, x, y, dib->biBitCount == 4 ? value & 15 : value);
    }
  }
}
inline OwnedDib randomImage(int width, int height, int bitCount, Random& random,
                            const std::vector<DWORD>& palette = {}) {
  OwnedDib dib = image(width, height, bitCount, palette);
  fillRandom(dib.get(), random);
  return dib;
}

/// Keeps every fraction that it is told; cancels during the report with the given number (0 for the first).
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
