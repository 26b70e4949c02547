#include <cmath>
#include <numbers>

#include "effects/stage.h"

namespace {

using namespace test;

Stage filmPlainly(const OwnedDib& source, long style, long percent) {
  const int w = source->biWidth;
  const int h = source->biHeight;
  const int front = static_cast<int>((style == 0 ? h : w) * percent / 100);
  Stage stage{1, image(w, h, 32), {0, 0, w, h}};
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      setPixel(stage.image, x, y,
               style == 0 ? pixel(source, x, std::min(y, front)) : pixel(source, std::min(x, front), y));
    }
  }
  return stage;
}

TEST(Film, MatchesItsPlainTwin) {
  expectTwin(8, {{1, 1}, {7, 5}, {33, 16}}, {0, 1}, {1, 10, 50, 99, 100}, filmPlainly);
}

/// The line of the carpet with a number, counted from the side that it starts at: its source line and its
/// light.
std::pair<int, int> carpetLine(int number, int n, int percent) {
  const int flat = n * percent / 100;
  if (number < flat) return {number, 255};
  const int roll = (n * (100 - percent) + 999) / 1000;
  const double v = (2.0 * (number - flat) + 1 - roll) / roll;
  const int line = flat + static_cast<int>(roll / 2.0 * (1 + std::numbers::pi - std::asin(v)));
  return {std::min(line, n - 1), 64 + static_cast<int>(191 * std::sqrt(1 - v * v))};
}

Stage carpetPlainly(const OwnedDib& source, long side, long amount) {
  const auto percent = static_cast<int>(amount);
  const int w = source->biWidth;
  const int h = source->biHeight;
  const bool columns = side % 2 == 0;
  const int n = columns ? w : h;
  const int shown = n * percent / 100 + (n * (100 - percent) + 999) / 1000;
  const int start = side >= 2 ? n - shown : 0;
  Stage stage{1, image(columns ? shown : w, columns ? h : shown, 32), {}};
  stage.rect = columns ? RECT{start, 0, start + shown, h} : RECT{0, start, w, start + shown};
  for (int y = 0; y < stage.image->biHeight; ++y) {
    for (int x = 0; x < stage.image->biWidth; ++x) {
      const int along = start + (columns ? x : y);
      const auto [line, light] = carpetLine(side >= 2 ? n - 1 - along : along, n, percent);
      const int from = side >= 2 ? n - 1 - line : line;
      const DWORD colour = columns ? pixel(source, from, y) : pixel(source, x, from);
      DWORD lit = colour & 0xFF000000;
      for (const int shift : {0, 8, 16})
        lit |= (colour >> shift & 255) * static_cast<DWORD>(light) / 255 << shift;
      setPixel(stage.image, x, y, lit);
    }
  }
  return stage;
}

TEST(Carpet, MatchesItsPlainTwin) {
  expectTwin(17, {{1, 1}, {7, 5}, {33, 16}, {100, 120}}, {0, 1, 2, 3}, {0, 1, 10, 50, 99, 100},
             carpetPlainly);
}

}  // namespace
