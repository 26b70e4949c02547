#pragma once

#include "frames/frames.h"
#include "support/images.h"

/// Random frames, and the plain way to look at them.
namespace test {

constexpr int allDepths[] = {1, 4, 8, 16, 24, 32};

/// `colours` random opaque entries.
inline std::vector<DWORD> randomPalette(int colours, Random& random) {
  std::vector<DWORD> palette;
  for (int i = 0; i < colours; ++i) palette.push_back(random() & 0xFFFFFF);
  return palette;
}

/// A frame of any depth. Its palette is sometimes shorter than its depth allows; its pixels then stay inside
/// it.
inline OwnedDib randomFrame(int width, int height, int bitCount, Random& random) {
  if (bitCount > 8) return randomImage(width, height, bitCount, random);
  const int full = 1 << bitCount;
  const int colours = below(random, 2) == 0 ? full : 1 + below(random, full);
  OwnedDib dib = image(width, height, bitCount, randomPalette(colours, random));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) setPixel(dib, x, y, static_cast<DWORD>(below(random, colours)));
  }
  return dib;
}

/// A frame of few colours in flat areas, as cartoons have them.
inline OwnedDib flatFrame(int width, int height, int bitCount, int colours, Random& random) {
  OwnedDib dib =
      image(width, height, bitCount,
            bitCount <= 8 ? randomPalette(std::min(colours, 1 << bitCount), random) : std::vector<DWORD>{});
  const std::vector<DWORD> pixels = randomPalette(colours, random);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int pick = (x / 3 + y / 2) % colours;
      setPixel(dib, x, y,
               bitCount <= 8 ? static_cast<DWORD>(pick % (1 << bitCount))
                             : pixels[static_cast<std::size_t>(pick)]);
    }
  }
  return dib;
}

/// A frame mask with about `percent` of its pixels transparent.
inline OwnedDib randomMask(int width, int height, int percent, Random& random) {
  OwnedDib mask = image(width, height, 1, {0, 0xFFFFFF});
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) setPixel(mask, x, y, below(random, 100) < percent ? 1 : 0);
  }
  return mask;
}

/// Null one time in three, else a mask of any density.
inline OwnedDib maybeMask(int width, int height, Random& random) {
  if (below(random, 3) == 0) return nullptr;
  return randomMask(width, height, below(random, 3) * 40 + 5, random);
}

inline bool transparentAt(const BITMAPINFOHEADER* mask, int x, int y) {
  return mask != nullptr && pixel(mask, x, y) != 0;
}

/// The colour of a frame's pixel, 0xRRGGBB.
inline DWORD colourAt(BITMAPINFOHEADER* dib, int x, int y) {
  BYTE red = 0;
  BYTE green = 0;
  BYTE blue = 0;
  GetPixelRGB(rowOf(dib, y), x, dib->biBitCount, reinterpret_cast<RGBQUAD*>(dib + 1), &red, &green, &blue);
  return DWORD{red} << 16 | DWORD{green} << 8 | blue;
}

constexpr int channel(DWORD colour, int shift) { return static_cast<int>(colour >> shift & 255); }

}  // namespace test
