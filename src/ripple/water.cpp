#include "ripple/water.h"

#include <algorithm>

namespace dibkit {
namespace {

/// new height = v - v / 2^density, v = wave - old height; the shift keeps the sign
inline int damped(int wave, int old, int density) {
  const int v = wrapped(bitsOf(wave) - bitsOf(old));
  return wrapped(bitsOf(v) - bitsOf(v >> density));
}

}  // namespace

void raiseDisc(const HeightPage& page, std::int64_t x, std::int64_t y, std::int64_t radius, int rise) {
  const std::int64_t left = std::max<std::int64_t>(-radius, 1 - x);
  const std::int64_t right = std::min<std::int64_t>(radius, page.width - 1 - x);
  const std::int64_t top = std::max<std::int64_t>(-radius, 1 - y);
  const std::int64_t bottom = std::min<std::int64_t>(radius, page.height - 1 - y);
  for (std::int64_t dy = top; dy < bottom; ++dy) {
    int* line = page.line(static_cast<int>(y + dy));
    for (std::int64_t dx = left; dx < right; ++dx) {
      if (dx * dx + dy * dy >= radius * radius) continue;
      int& cell = line[x + dx];
      cell = wrapped(bitsOf(cell) + bitsOf(rise));
    }
  }
}

void addDrops(const HeightPage& page) {
  constexpr int distance = 100;
  if (page.width < 3) return;  // all border, however many lines
  for (int y = 0; y < page.height; y += distance) {
    for (int x = 0; x < page.width; x += distance) {
      const int right = std::min(x + distance, page.width - 1);
      const int lower = std::min(y + distance, page.height - 1);
      raiseDisc(page, (x + right) / 2, (y + lower) / 2, 20, dropHeight);
    }
  }
}

void stepWave(const HeightPage& page, const HeightPage& other, int density) {
  const int w = page.width;  // a copy: cells that are written cannot alias it
  if (w < 3) return;
  for (int y = 1; y < page.height - 1; ++y) {
    int* __restrict to = page.line(y);
    const int* above = other.line(y - 1);
    const int* level = other.line(y);
    const int* below = other.line(y + 1);
    for (int x = 1; x < w - 1; ++x) {
      const std::uint32_t sum = bitsOf(above[x - 1]) + bitsOf(above[x]) + bitsOf(above[x + 1]) +
                                bitsOf(level[x - 1]) + bitsOf(level[x + 1]) + bitsOf(below[x - 1]) +
                                bitsOf(below[x]) + bitsOf(below[x + 1]);
      to[x] = damped(wrapped(sum) >> 2, to[x], density);
    }
  }
}

void stepBroadWave(const HeightPage& page, const HeightPage& other, int density) {
  const int w = page.width;
  if (w < 5) return;
  for (int y = 2; y < page.height - 2; ++y) {
    int* __restrict to = page.line(y);
    const int* a = other.line(y - 2);
    const int* b = other.line(y - 1);
    const int* c = other.line(y);
    const int* d = other.line(y + 1);
    const int* e = other.line(y + 2);
    for (int x = 2; x < w - 2; ++x) {
      const std::uint32_t straight = bitsOf(b[x]) + bitsOf(d[x]) + bitsOf(c[x - 1]) + bitsOf(c[x + 1]);
      const std::uint32_t diagonal =
          bitsOf(b[x - 1]) + bitsOf(b[x + 1]) + bitsOf(d[x - 1]) + bitsOf(d[x + 1]);
      const std::uint32_t distant = bitsOf(a[x]) + bitsOf(e[x]) + bitsOf(c[x - 2]) + bitsOf(c[x + 2]);
      const std::uint32_t knights = bitsOf(a[x - 1]) + bitsOf(a[x + 1]) + bitsOf(b[x - 2]) +
                                    bitsOf(b[x + 2]) + bitsOf(d[x - 2]) + bitsOf(d[x + 2]) +
                                    bitsOf(e[x - 1]) + bitsOf(e[x + 1]);
      const std::uint32_t total =
          2 * straight + diagonal + bitsOf(wrapped(distant) >> 1) + bitsOf(wrapped(knights) >> 2);
      to[x] = damped(wrapped(total) >> 3, to[x], density);
    }
  }
}

}  // namespace dibkit
