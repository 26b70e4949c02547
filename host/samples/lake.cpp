#include <array>
#include <iterator>

#include "host/samples/paint.h"
#include "host/samples/samples.h"

namespace host {

namespace {

using namespace paint;

constexpr double shore = 0.60;  ///< where the lake begins
constexpr Point sun{0.94, 0.585};
constexpr Point moon{0.34, 0.17};
constexpr double moonRadius = 0.038;
constexpr double nothingBeyond = 60;  ///< e to the power of -60 is too little to show

/// Stars: at most one in each cell of a grid, brighter the higher they are.
double stars(Point p) {
  constexpr double cell = 0.026;
  constexpr double lowest = 0.42;
  if (p.y >= lowest) return 0;
  const int column = static_cast<int>(std::floor(p.x / cell));
  const int line = static_cast<int>(std::floor(p.y / cell));
  double light = 0;
  for (int y = line - 1; y <= line + 1; ++y) {
    for (int x = column - 1; x <= column + 1; ++x) {
      if (chance(x, y, 1) > 0.34) continue;
      const Point star{(x + chance(x, y, 2)) * cell, (y + chance(x, y, 3)) * cell};
      constexpr double largest = 0.0028;
      const double squared = square(p.x - star.x) + square(p.y - star.y);
      if (squared > nothingBeyond * square(largest)) continue;
      const double bright = chance(x, y, 4);
      const double strength = square(square(bright)) * bright;
      const double radius = 0.0012 + 0.0016 * strength;
      const double away = squared / square(radius);
      if (away < nothingBeyond) light += (0.25 + 0.95 * strength) * std::exp(-away);
    }
  }
  return light * ramp(lowest, 0.08, p.y);
}

Colour moonAndGlow(Colour sky, Point p) {
  const double away = length(p - moon);
  sky = sky + hex(0xAFC3FF) * (0.30 * std::exp(-away * 16) + 0.10 * std::exp(-away * 5));
  // A crescent: the disc without a second disc a little to the upper left.
  const double lit =
      ramp(moonRadius + 0.0015, moonRadius - 0.0015, away) *
      ramp(moonRadius * 0.93 - 0.004, moonRadius * 0.93 + 0.004, length(p - moon - Point{-0.017, -0.010}));
  if (lit <= 0) return sky;
  const double spots = 0.82 + 0.18 * clouds({p.x * 90, p.y * 90}, 3, 5);
  return mix(sky, hex(0xFFF6DF) * spots, lit);
}

Colour sky(Point p) {
  constexpr Colour stops[] = {hex(0x0A1033), hex(0x141B4D), hex(0x2B2A6B), hex(0x5A3B83), hex(0x9C4A86),
                              hex(0xDB6479), hex(0xF98F62), hex(0xFFBC6B), hex(0xFFDD93)};
  Colour colour = gradient(stops, std::pow(p.y / shore, 1.15));
  const double away = length({(p.x - sun.x) * 0.75, p.y - sun.y});
  colour =
      colour + hex(0xFFB560) * (0.42 * std::exp(-away * 6.5)) + hex(0xFFE9B0) * (0.55 * std::exp(-away * 22));
  colour = colour + hex(0xE8EEFF) * stars(p);
  colour = moonAndGlow(colour, p);
  // Long thin clouds, rose where the sun still reaches them from below, violet on top.
  const double inBand = ramp(0.10, 0.30, p.y) * ramp(0.62, 0.46, p.y);
  if (inBand <= 0) return colour;
  const double band = clouds({p.x * 2.1 + 3.0, p.y * 13}, 5, 21);
  const double thickness = ramp(0.50, 0.74, band) * inBand;
  if (thickness <= 0) return colour;
  const double fromBelow = clouds({p.x * 2.1 + 3.0, (p.y + 0.012) * 13}, 5, 21);
  const Colour lit = mix(hex(0xFF8E7C), hex(0xFFD08A), ramp(0.6, 0.0, away));
  return mix(colour, mix(hex(0x4B3570), lit, ramp(-0.04, 0.07, band - fromBelow)), 0.78 * thickness);
}

struct Range {
  double base;  ///< mean height of its skyline
  double height;
  double frequency;
  unsigned seed;
  Colour shade;
  double haze;  ///< how much of the evening light is in front of it
  double snow;
};

constexpr Range ranges[] = {
    {0.470, 0.250, 2.3, 31, hex(0x4A3D78), 0.42, 1.0},
    {0.510, 0.150, 3.4, 47, hex(0x37305F), 0.26, 0.25},
    {0.560, 0.095, 4.6, 59, hex(0x221F49), 0.12, 0.0},
};

constexpr double highestRidges = 1.03;  ///< the sum of all strengths in skyline()

constexpr double softness = 0.0012;  ///< of a skyline's edge

double skyline(const Range& range, double x) {
  // Folding the noise at its middle gives ridges instead of hills.
  double sum = 0;
  double strength = 0.55;
  double scale = range.frequency;
  for (unsigned i = 0; i < 6; ++i, strength *= 0.47, scale *= 2.1) {
    sum += strength * (1 - std::abs(2 * noise({x * scale, 0.5}, range.seed + i) - 1));
  }
  return range.base - range.height * (sum - 0.55);
}

Colour mountain(const Range& range, Point p, double top) {
  const double below = p.y - top;
  // Gullies run down from the skyline to both sides; the one that faces the sun's side has the last light.
  const auto relief = [&](double x) {
    return 1 - std::abs(2 * clouds({x * 8 + below * 2.5, p.y * 5 - x * 1.5}, 5, range.seed + 90) - 1);
  };
  const double slope = relief(p.x - 0.004) - relief(p.x + 0.004);
  const double facing = skyline(range, p.x + 0.03) - skyline(range, p.x - 0.03);
  const double lit = ramp(-0.05, 0.07, slope + 0.9 * facing);
  const double rock = clouds({p.x * 34, p.y * 46}, 4, range.seed + 7);
  Colour colour = mix(range.shade * (0.62 + 0.34 * rock), mix(range.shade, hex(0xFF9C7A), 0.42),
                      lit * (0.45 + 0.4 * rock));
  const double snowLine = 0.030 + 0.085 * rock + 0.015 * lit;
  const double snow = range.snow * ramp(snowLine, snowLine - 0.035, below) * ramp(0.50, 0.40, p.y);
  colour = mix(colour, mix(hex(0x8C86C6), hex(0xFFD3C0), lit), snow);
  return mix(colour, hex(0xE98878), range.haze * ramp(0.30, 0.62, p.y));
}

/// The sky and what is in front of it.
Colour mountains(Point p) {
  struct Seen {
    double top = 0;
    double cover = 0;
  };
  std::array<Seen, std::size(ranges)> seen;
  std::size_t farthest = seen.size();
  while (farthest > 0 && (farthest == seen.size() || seen[farthest].cover < 1)) {
    const Range& range = ranges[--farthest];
    // No skyline reaches higher.
    if (p.y < range.base - range.height * (highestRidges - 0.55) - softness) continue;
    const double top = skyline(range, p.x);
    seen[farthest] = {top, ramp(top - softness, top + softness, p.y)};
  }
  const bool hidden = seen[farthest].cover >= 1;
  Colour colour = hidden ? Colour{} : sky(p);
  for (std::size_t i = farthest; i < seen.size(); ++i) {
    if (seen[i].cover > 0) colour = mix(colour, mountain(ranges[i], p, seen[i].top), seen[i].cover);
  }
  return colour;
}

/// The firs of the far shore: each a tall triangle with ragged sides.
double firs(Point p) {
  constexpr double tallest = 0.078;
  constexpr double widest = 0.010;
  if (p.y < shore - tallest || p.y >= shore + 0.004) return 0;
  double cover = ramp(shore - 0.014, shore - 0.009, p.y + 0.012 * (clouds({p.x * 14, 2.5}, 3, 71) - 0.5));
  for (int row = 0; row < 2; ++row) {
    const double cell = row == 0 ? 0.0135 : 0.021;
    const int here = static_cast<int>(std::floor(p.x / cell));
    for (int tree = here - 2; tree <= here + 2; ++tree) {
      const unsigned seed = 80 + 10 * static_cast<unsigned>(row);
      const double trunk = (tree + chance(tree, 2, seed)) * cell;
      if (std::abs(p.x - trunk) > widest) continue;
      const double grove = ramp(0.30, 0.62, noise({tree * cell * 5.5, 1.5}, seed + 3));
      const double tall = (0.018 + 0.060 * chance(tree, 1, seed)) * (0.30 + 0.70 * grove);
      const double down = (p.y - (shore - tall)) / tall;
      if (down < 0) continue;
      const double boughs = 0.72 + 0.28 * std::abs(std::sin(down * 19 + tree));
      const double half = (0.0008 + 0.0062 * down) * boughs * (0.8 + tall * 5);
      cover = std::max(cover, ramp(half + 0.0009, half - 0.0009, std::abs(p.x - trunk)));
    }
  }
  return cover;
}

Colour land(Point p) {
  const Colour fir = mix(hex(0x0D1330), hex(0x1B1B42), ramp(shore - 0.06, shore, p.y));
  const double wood = firs(p);
  if (wood >= 1) return fir;
  Colour colour = mountains(p);
  const double fromMist = square((p.y - shore + 0.012) / 0.022);
  if (fromMist < nothingBeyond)
    colour = mix(colour, hex(0xF3A48D), 0.55 * std::exp(-fromMist) * clouds({p.x * 4, p.y * 9}, 3, 14));
  return mix(colour, fir, wood);
}

Colour lake(Point p) {
  const double depth = (p.y - shore) / (1 - shore);
  // Waves look flatter and closer the further away they are.
  const double far = 1.0 / (0.06 + depth);
  const double wave = clouds({p.x * (2.5 + far * 0.7), far * 11.0}, 4, 101) - 0.5;
  const double ripple = noise({p.x * 16, far * 44.0}, 120) - 0.5;
  const Point mirrored{p.x + (0.010 + 0.05 * depth) * wave,
                       shore - (p.y - shore) * 0.98 + (0.02 + 0.11 * depth) * wave + 0.010 * ripple};
  Colour colour = land({mirrored.x, std::clamp(mirrored.y, 0.0, shore - 0.002)});
  colour = mix(colour * 0.80, hex(0x101A4A), 0.20 + 0.38 * ramp(0.1, 1.0, depth));
  const double path = std::exp(-square((p.x - sun.x - 0.03 * wave) / (0.03 + 0.12 * depth)));
  colour = colour + hex(0xFFC27A) * (path * ramp(0.05, 0.34, ripple + wave * 0.6) * (0.85 - 0.55 * depth));
  colour = colour + hex(0xBFD0FF) * (0.10 * ramp(0.22, 0.48, ripple + wave * 0.4) * depth);
  return mix(colour, hex(0xFFD9A8), 0.35 * ramp(0.012, 0.0, p.y - shore));
}

/// A thin bent stalk, some with a cat's tail.
struct Reed {
  double root;
  double height;
  double lean;
  bool tail;
};

using Reeds = std::array<Reed, 74>;

Reeds reedsFor(double aspect) {
  Reeds reeds;
  for (int i = 0; i < static_cast<int>(reeds.size()); ++i) {
    const bool left = i % 5 < 3;
    const double offset = std::pow(chance(i, 0, 200), 1.7) * 0.36;
    reeds[static_cast<std::size_t>(i)] = {left ? offset - 0.01 : aspect - offset * 0.8 + 0.01,
                                          (0.34 - 0.62 * offset) * (0.45 + 0.75 * chance(i, 1, 200)),
                                          (chance(i, 2, 200) - 0.5) * 0.16 + (left ? 0.03 : -0.03),
                                          chance(i, 3, 200) > 0.62};
  }
  return reeds;
}

/// How much of the place the reeds in front cover.
double cover(const Reeds& reeds, Point p) {
  double cover = 0;
  for (const Reed& reed : reeds) {
    constexpr double widest = 0.0065;
    if (p.x < reed.root + std::min(reed.lean, 0.0) - widest) continue;
    if (p.x > reed.root + std::max(reed.lean, 0.0) + widest) continue;
    const double up = (1.02 - p.y) / reed.height;
    if (up < 0 || up > 1) continue;
    const double away = std::abs(p.x - reed.root - reed.lean * up * up);
    double half = 0.0029 * (1 - 0.82 * up) + 0.0003;
    if (reed.tail && up > 0.80 && up < 0.97) half = 0.0050 * std::sqrt(std::sin((up - 0.80) / 0.17 * pi));
    cover = std::max(cover, ramp(half + 0.0012, half - 0.0006, away));
  }
  return cover;
}

}  // namespace

Picture drawLake(Size size) {
  const double aspect = static_cast<double>(size.width) / size.height;
  return paint::paint(size, [reeds = reedsFor(aspect)](Point p) {
    const Colour reed = mix(hex(0x0A0D26), hex(0x2A1E3F), ramp(1.0, 0.62, p.y));
    const double covered = cover(reeds, p);
    if (covered >= 1) return reed;
    return mix(p.y < shore ? land(p) : lake(p), reed, covered);
  });
}

}  // namespace host
