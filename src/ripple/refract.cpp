#include <algorithm>
#include <cstring>
#include <vector>

#include "dib/allocate.h"
#include "dib/view.h"
#include "ripple/water.h"

namespace dibkit {
namespace {

/// For each pixel of a line the source pixel that it shows, by its place in memory counted from the picture's
/// first one, and what is subtracted from and added to each of its bytes.
struct Displacement {
  explicit Displacement(int width)
      : place(static_cast<std::size_t>(width)), darker(place.size()), lighter(place.size()) {}

  std::vector<int> place;
  std::vector<DWORD> darker;
  std::vector<DWORD> lighter;
};

/// The same number in blue, green and red.
constexpr DWORD inEachChannel(int value) { return static_cast<DWORD>(value) * 0x010101; }

/// Fills in the inner pixels of line y.
/// \param level,below the heights of line y and of the next one
/// \param addedAlpha added to each pixel's alpha, in the top byte
void displaceLine(int w, int h, int y, const int* level, const int* below, DWORD addedAlpha,
                  Displacement& line) {
  int* __restrict place = line.place.data();
  DWORD* __restrict darker = line.darker.data();
  DWORD* __restrict lighter = line.lighter.data();
  for (int x = 1; x < w - 1; ++x) {
    const int dx = wrapped(bitsOf(level[x]) - bitsOf(level[x + 1]));
    const int dy = wrapped(bitsOf(level[x]) - bitsOf(below[x]));
    const int sy = std::clamp(y + (dy >> 3), 0, h - 1);
    // A column equal to the width is allowed, deliberately: it is the first pixel of the next row in memory,
    // which is the line above. The top line has none.
    const int largest = w - (sy == 0 ? 1 : 0);
    const int moved = x + (dx >> 3);
    const int sx = moved > largest ? w - 1 : std::max(moved, 0);
    place[x] = (h - 1 - sy) * w + sx;
    const int shade = std::clamp(dx, -255, 255);
    const int whenNegative = shade >> 31;  // all bits or none: a selection without a branch
    darker[x] = inEachChannel(shade & ~whenNegative);
    lighter[x] = inEachChannel(-shade & whenNegative) | addedAlpha;
  }
}

/// byte = byte - darker, not below 0, + lighter, not above 255; one of the two is 0
void shadeBytes(BYTE* bytes, const BYTE* darker, const BYTE* lighter, int count) {
  for (int i = 0; i < count; ++i) {
    const auto left = static_cast<BYTE>(std::max(bytes[i], darker[i]) - darker[i]);
    bytes[i] = static_cast<BYTE>(left + std::min(lighter[i], static_cast<BYTE>(255 - left)));
  }
}

}  // namespace

OwnedDib refract(const ConstView& picture, const HeightPage& page, RefractedAlpha alpha) {
  const int w = picture.width();
  const int h = picture.height();
  OwnedDib frame = createDib(w, h, 32, 0, InitialPixels::unwritten);
  if (!frame || w == 0 || h == 0) return frame;
  const View to(frame.get());
  const BYTE* pixels = picture.row(h - 1);
  const DWORD added = alpha == RefractedAlpha::full ? 0xFF000000 : 0;
  Displacement line(w);
  for (int y = 0; y < h; ++y) {
    BYTE* row = to.row(y);
    if (y == 0 || y == h - 1 || w < 3) {
      std::memcpy(row, picture.row(y), static_cast<std::size_t>(to.stride()));
      continue;
    }
    displaceLine(w, h, y, page.line(y), page.line(y + 1), added, line);
    for (int x = 1; x < w - 1; ++x) {
      Bgra32::put(row, x, Bgra32::get(pixels, line.place[static_cast<std::size_t>(x)]));
    }
    shadeBytes(row + 4, reinterpret_cast<const BYTE*>(&line.darker[1]),
               reinterpret_cast<const BYTE*>(&line.lighter[1]), (w - 2) * 4);
    for (const int x : {0, w - 1}) Bgra32::put(row, x, Bgra32::get(picture.row(y), x));
  }
  return frame;
}

}  // namespace dibkit
