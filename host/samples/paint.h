#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "host/parallel.h"
#include "host/picture.h"

/// \file
/// What the sample pictures are painted with: colours as light, noise, shapes as smooth functions of the
/// place. A scene computes only what shows: nothing behind what covers a place wholly.
namespace host::paint {

constexpr double pi = 3.14159265358979323846;

struct Point {
  double x = 0;
  double y = 0;
};
constexpr Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
constexpr Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
constexpr double square(double value) { return value * value; }
inline double length(Point p) { return std::sqrt(square(p.x) + square(p.y)); }

/// Red, green and blue from 0 to 1.
struct Colour {
  double red = 0;
  double green = 0;
  double blue = 0;
};
constexpr Colour operator*(Colour c, double f) { return {c.red * f, c.green * f, c.blue * f}; }
constexpr Colour operator+(Colour a, Colour b) { return {a.red + b.red, a.green + b.green, a.blue + b.blue}; }
constexpr Colour hex(unsigned value) {
  return {(value >> 16 & 255) / 255.0, (value >> 8 & 255) / 255.0, (value & 255) / 255.0};
}
constexpr Colour mix(Colour a, Colour b, double share) { return a * (1 - share) + b * share; }

/// 0 up to `from`, 1 from `to` on, smooth between them; `from` may be the larger one.
inline double ramp(double from, double to, double value) {
  const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

/// The colour at a place along a row of colours.
template <std::size_t N>
Colour gradient(const Colour (&stops)[N], double place) {
  const double scaled = std::clamp(place, 0.0, 1.0) * (N - 1);
  const auto first = std::min<std::size_t>(static_cast<std::size_t>(scaled), N - 2);
  return mix(stops[first], stops[first + 1], scaled - static_cast<double>(first));
}

/// A number from 0 to 1 for each place of a grid; the mixing steps are those of a 32-bit integer hash.
inline double chance(int x, int y, unsigned seed) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8DA6B343U ^
                    static_cast<std::uint32_t>(y) * 0xD8163841U ^ seed * 0xCB1AB31FU;
  h = (h ^ h >> 16) * 0x7FEB352DU;
  h = (h ^ h >> 15) * 0x846CA68BU;
  return (h ^ h >> 16) * (1 / 4294967295.0);
}

/// Smooth noise from 0 to 1 with features of about one unit.
inline double noise(Point p, unsigned seed) {
  const int x = static_cast<int>(std::floor(p.x));
  const int y = static_cast<int>(std::floor(p.y));
  const double across = ramp(0, 1, p.x - x);
  const double down = ramp(0, 1, p.y - y);
  const double top = chance(x, y, seed) * (1 - across) + chance(x + 1, y, seed) * across;
  const double bottom = chance(x, y + 1, seed) * (1 - across) + chance(x + 1, y + 1, seed) * across;
  return top * (1 - down) + bottom * down;
}

/// Noise of several scales, each half as strong and half as large as the one before.
inline double clouds(Point p, int scales, unsigned seed) {
  double sum = 0;
  double strength = 0.5;
  for (int i = 0; i < scales; ++i, strength /= 2) {
    sum += strength * noise(p, seed + static_cast<unsigned>(i));
    p = {p.x * 2.03 + 17.1, p.y * 2.03 + 9.2};
  }
  return sum / (1 - strength * 2);
}

/// Paints every pixel as the mean of nine places in it, with rounded transparent corners. Places are counted
/// in picture heights from the top-left corner.
template <class Scene>
Picture paint(Size size, const Scene& scene) {
  constexpr int fine = 3;
  constexpr double cornerRadius = 0.07;
  Picture picture(size);
  const double aspect = static_cast<double>(size.width) / size.height;
  const auto covers = [&](Point p) {
    const Point beyond{std::max(std::abs(p.x - aspect / 2) - aspect / 2 + cornerRadius, 0.0),
                       std::max(std::abs(p.y - 0.5) - 0.5 + cornerRadius, 0.0)};
    return length(beyond) <= cornerRadius;
  };
  parallelFor(size.height, [&](int y) {
    Pixel* row = picture.row(y);
    for (int x = 0; x < size.width; ++x) {
      Colour sum;
      int covered = 0;
      for (int i = 0; i < fine * fine; ++i) {
        const Point p{(x + (i % fine + 0.5) / fine) / size.height,
                      (y + (i / fine + 0.5) / fine) / size.height};
        sum = sum + scene(p);
        covered += covers(p) ? 1 : 0;
      }
      // A little grain, as film has it, so that no gradient is perfectly smooth.
      const double grain = (chance(x, y, 77) - 0.5) * 0.018;
      const auto byte = [&](double light) {
        return static_cast<BYTE>(std::lround(std::clamp(light / (fine * fine) + grain, 0.0, 1.0) * 255));
      };
      if (covered == 0) continue;
      row[x] = {byte(sum.blue), byte(sum.green), byte(sum.red),
                static_cast<BYTE>(covered * 255 / (fine * fine))};
    }
  });
  return picture;
}

}  // namespace host::paint
