#pragma once

#include <cstddef>
#include <cstring>
#include <random>

#include "convert/convert.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "dib32/dib32.h"

/// The pictures that operations are measured on. Equal arguments give equal pictures.
namespace bench {

using dibkit::OwnedDib;

/// A new 32-bit image of pixel(x, y), each 0xAARRGGBB.
template <class Pixel>
OwnedDib draw32(int width, int height, Pixel&& pixel) {
  OwnedDib dib = dibkit::createDib(width, height, 32, 0);
  dibkit::fillPixels<dibkit::Bgra32>(dibkit::View(dib.get()), pixel);
  return dib;
}

/// Gradients with noise, alpha over the whole range.
inline OwnedDib photo(int width, int height) {
  std::mt19937 random(1);
  const auto noisy = [&](int level) {
    return static_cast<DWORD>(level + static_cast<int>(random() % 9)) & 255U;
  };
  return draw32(width, height, [&](int x, int y) {
    const DWORD blue = noisy(x * 255 / width);
    const DWORD green = noisy(y * 255 / height);
    const DWORD red = noisy((x + y) / 8);
    return static_cast<DWORD>(random() & 255U) << 24 | red << 16 | green << 8 | blue;
  });
}

/// The same, opaque.
inline OwnedDib opaquePhoto(int width, int height) {
  OwnedDib dib = photo(width, height);
  CDIB32::MakeAllPixelsSameOpacity(dib.get(), 255);
  return dib;
}

/// 24 flat colours in blocks of 40 x 30 pixels, opaque but for one colour.
inline OwnedDib cartoon(int width, int height) {
  return draw32(width, height, [](int x, int y) {
    const unsigned colour = static_cast<unsigned>(x / 40 * 7 + y / 30 * 5) % 24;
    return (colour == 0 ? 0U : 0xFF000000U) | colour * 0x0A0C0B;
  });
}

/// One flat, opaque colour.
inline OwnedDib flat(int width, int height) {
  return OwnedDib(CDIB32::CreateSimple32BitsDIB(width, height, RGB(40, 90, 160), 255));
}

/// Discs of 23 colours on a flat ground, which is connected around them: most fills of a drawing. Opaque.
inline OwnedDib discs(int width, int height) {
  return draw32(width, height, [](int x, int y) {
    const int dx = x % 64 - 32;
    const int dy = y % 64 - 32;
    const int radius = 12 + (x / 64 * 5 + y / 64 * 3) % 17;
    const auto colour = static_cast<unsigned>(1 + (x / 64 * 7 + y / 64 * 5) % 23);
    return 0xFF000000U | (dx * dx + dy * dy < radius * radius ? colour * 0x0A0C0B : 0x285AA0U);
  });
}

/// A perfect maze: corridors and walls of one pixel, every corridor connected with every other. Each cell is
/// opened to the one above or to the left of it, at random.
inline OwnedDib maze(int width, int height) {
  constexpr DWORD wall = 0xFF000000;
  OwnedDib dib = draw32(width, height, [](int, int) { return wall; });
  const dibkit::View view(dib.get());
  std::mt19937 random(2);
  const auto open = [&](int x, int y) { dibkit::Bgra32::put(view.row(y), x, 0xFF285AA0); };
  for (int y = 0; y < height; y += 2) {
    for (int x = 0; x < width; x += 2) {
      open(x, y);
      if (x == 0 && y == 0) continue;
      const bool upward = x == 0 || (y != 0 && random() % 2 == 0);
      open(upward ? x : x - 1, upward ? y - 1 : y);
    }
  }
  return dib;
}

/// One corridor that winds up and down between walls, each of one pixel: every row is cut into many runs.
inline OwnedDib fence(int width, int height) {
  return draw32(width, height, [height](int x, int y) {
    const bool gap = x % 4 == 1 ? y == 0 : y == height - 1;
    return x % 2 == 0 || gap ? 0xFF285AA0U : 0xFF000000U;
  });
}

/// A picture's colours in 24 bits.
inline OwnedDib at24(const OwnedDib& picture) {
  return OwnedDib(CBitmapConverter::Convert32BitsTo24Bits(picture.get(), nullptr));
}
inline OwnedDib photo24(int width, int height) { return at24(photo(width, height)); }
inline OwnedDib cartoon24(int width, int height) { return at24(cartoon(width, height)); }
inline OwnedDib flat24(int width, int height) { return at24(flat(width, height)); }
inline OwnedDib discs24(int width, int height) { return at24(discs(width, height)); }
inline OwnedDib maze24(int width, int height) { return at24(maze(width, height)); }

/// A photograph of at most 256 colours, 24 bits: three, three and two bits of each channel.
inline OwnedDib photo256(int width, int height) {
  return at24(draw32(width, height, [source = photo(width, height)](int x, int y) {
    return dibkit::Bgra32::get(dibkit::View(source.get()).row(y), x) & 0xE0E0C0U;
  }));
}

/// The photograph in gray levels: 8 bits.
inline OwnedDib gray8(int width, int height) {
  return OwnedDib(CBitmapConverter::Convert24BitsDIBTo256GraysDIB(photo24(width, height).get(), nullptr));
}

/// The same in 24 bits.
inline OwnedDib gray24(int width, int height) {
  return OwnedDib(CBitmapConverter::Convert8BitsTo24Bits(gray8(width, height).get(), nullptr));
}

/// The frame mask that goes with the cartoon's one transparent colour.
inline OwnedDib cartoonMask(int width, int height) {
  const OwnedDib picture = cartoon(width, height);
  const dibkit::View from(picture.get());
  OwnedDib mask = dibkit::createMask(width, height);
  dibkit::fillPixels<dibkit::Index1>(dibkit::View(mask.get()), [&](int x, int y) {
    return static_cast<BYTE>(dibkit::Bgra32::get(from.row(y), x) >> 24 == 0);
  });
  return mask;
}

/// A brush or an 8-bit mask with all bytes in use and none of them 0.
inline OwnedDib brush8(int width, int height) {
  OwnedDib dib = dibkit::createDib(width, height, 8, 0);
  dibkit::fillPixels<dibkit::Index8>(dibkit::View(dib.get()),
                                     [](int x, int y) { return static_cast<BYTE>(1 + (x + y) % 255); });
  return dib;
}

}  // namespace bench
