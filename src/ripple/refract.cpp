#include <algorithm>
#include <cstring>
#include <vector>

#include "dib/allocate.h"
#include "dib/pixel_format.h"
#include "ripple/water.h"

namespace dibkit {
namespace {

constexpr DWORD opaque = 0xFF000000;

/// What the inner pixels of a line show: the place of a pixel in memory, counted from the picture's first
/// one, and how much darker it is.
struct Displacement {
  std::vector<int> place;
  std::vector<int> shade;
};

/// \param level,below the heights on line y and the next one
void displaceLine(int w, int h, int y, const int* level, const int* below, Displacement& line) {
  int* place = line.place.data();
  int* shade = line.shade.data();
  for (int x = 1; x < w - 1; ++x) {
    const int dx = wrapped(bitsOf(level[x]) - bitsOf(level[x + 1]));
    const int dy = wrapped(bitsOf(level[x]) - bitsOf(below[x]));
    const int sy = std::clamp(y + (dy >> 3), 0, h - 1);
    // A column equal to the width stays, deliberately: it is the first pixel of the next row in memory, which
    // is the line above. The top line has none.
    const int largest = w - (sy == 0 ? 1 : 0);
    const int moved = x + (dx >> 3);
    const int sx = moved > largest ? w - 1 : std::max(moved, 0);
    place[x] = (h - 1 - sy) * w + sx;
    shade[x] = dx;
  }
}

/// channel - shade, kept within a byte; opaque
void shadePixels(DWORD* pixels, const int* shade, int begin, int end) {
  for (int x = begin; x < end; ++x) {
    const int darker = std::clamp(shade[x], -255, 255);
    const auto lit = [&](int shift) {
      return static_cast<DWORD>(std::clamp(static_cast<int>(pixels[x] >> shift & 255) - darker, 0, 255))
             << shift;
    };
    pixels[x] = opaque | lit(16) | lit(8) | lit(0);
  }
}

}  // namespace

OwnedDib refract(const ConstView& picture, const HeightPage& page) {
  const int w = picture.width();
  const int h = picture.height();
  OwnedDib frame = createDib(w, h, 32, 0, Pixels::unwritten);
  if (!frame || w == 0 || h == 0) return frame;
  const View to(frame.get());
  const BYTE* pixels = picture.row(h - 1);
  const auto width = static_cast<std::size_t>(w);
  Displacement line{std::vector<int>(width), std::vector<int>(width)};
  for (int y = 0; y < h; ++y) {
    auto* row = reinterpret_cast<DWORD*>(to.row(y));
    const bool border = y == 0 || y == h - 1 || w < 3;
    std::memcpy(row, picture.row(y), border ? width * 4 : 4);
    if (border) continue;
    displaceLine(w, h, y, page.line(y), page.line(y + 1), line);
    for (int x = 1; x < w - 1; ++x) row[x] = Bgra32::get(pixels, line.place[static_cast<std::size_t>(x)]);
    shadePixels(row, line.shade.data(), 1, w - 1);
    Bgra32::put(to.row(y), w - 1, Bgra32::get(picture.row(y), w - 1));
  }
  return frame;
}

}  // namespace dibkit
