#include <array>
#include <iterator>

#include "host/samples/paint.h"
#include "host/samples/samples.h"

namespace host {

namespace {

using namespace paint;

constexpr Point heart{0.80, 0.485};

/// A light spot out of focus.
struct Disc {
  Point centre;
  double radius;
  double strength;
  Colour tint;
};

std::array<Disc, 46> makeDiscs() {
  constexpr Colour tints[] = {hex(0xFFFBE0), hex(0xBDF3D6), hex(0xFFE1A6), hex(0x9BE7F0)};
  std::array<Disc, 46> discs;
  for (int i = 0; i < std::ssize(discs); ++i) {
    discs[static_cast<std::size_t>(i)] = {{chance(i, 1, 310) * 1.5, chance(i, 2, 310)},
                                          0.018 + 0.070 * std::pow(chance(i, 3, 310), 1.6),
                                          0.35 + 0.65 * chance(i, 4, 310),
                                          tints[i % 4]};
  }
  return discs;
}

/// Light spots of a garden.
Colour garden(Point p) {
  static const std::array<Disc, 46> discs = makeDiscs();
  constexpr Colour stops[] = {hex(0xFDF6C8), hex(0xC9EFC0), hex(0x7FD6BE), hex(0x3FAFB0), hex(0x1E7F92)};
  Colour colour =
      gradient(stops, 0.10 + 0.42 * p.x + 0.38 * p.y + 0.22 * (clouds({p.x * 2.2, p.y * 2.2}, 3, 301) - 0.5));
  for (const Disc& disc : discs) {
    constexpr double edge = 1.04;
    const Point d = p - disc.centre;
    if (square(d.x) + square(d.y) >= square(edge * disc.radius)) continue;
    const double away = length(d) / disc.radius;
    const double light = ramp(edge, 0.94, away) * (0.55 + 0.45 * ramp(0.5, 1.0, away));
    colour = mix(colour, disc.tint, 0.34 * light * disc.strength);
  }
  return colour;
}

struct Leaf {
  Point root;
  double angle;
  double length;
  double width;
  double bend;
  Colour dark;
  Colour bright;
};

constexpr Leaf leaves[] = {
    {{0.80, 0.52}, 3.60, 0.78, 0.125, 0.10, hex(0x0F5A46), hex(0x4FB36A)},
    {{0.82, 0.50}, 5.62, 0.80, 0.120, -0.09, hex(0x14664C), hex(0x63C074)},
    {{0.78, 0.54}, 2.62, 0.82, 0.135, -0.11, hex(0x0C5140), hex(0x3F9F5E)},
    {{0.82, 0.54}, 0.50, 0.80, 0.135, 0.11, hex(0x0F5A46), hex(0x58B86C)},
    {{0.80, 0.56}, 1.80, 0.66, 0.105, 0.08, hex(0x0A4638), hex(0x37935A)},
    {{0.80, 0.56}, 1.18, 0.70, 0.105, -0.08, hex(0x0D4D3C), hex(0x3F9F5E)},
    {{0.80, 0.50}, 4.18, 0.70, 0.095, -0.07, hex(0x187052), hex(0x7ACB7C)},
    {{0.80, 0.50}, 5.05, 0.70, 0.095, 0.07, hex(0x187052), hex(0x86D084)},
};

/// The direction of a leaf's rib, as a point at distance 1.
Point directionOf(const Leaf& leaf) {
  static const auto directions = [] {
    std::array<Point, std::size(leaves)> all;
    for (std::size_t i = 0; i < all.size(); ++i)
      all[i] = {std::cos(leaves[i].angle), std::sin(leaves[i].angle)};
    return all;
  }();
  return directions[static_cast<std::size_t>(&leaf - leaves)];
}

/// A place as a leaf sees it.
struct OnLeaf {
  Point at;         ///< along its rib, 0 at the root and 1 at the tip; and to the side of it
  double half = 0;  ///< of the leaf's width there; 0 beyond its ends
};

OnLeaf onLeaf(const Leaf& leaf, Point p) {
  constexpr double shadowReach = 0.02;
  const Point d = p - leaf.root;
  const auto [cosine, sine] = directionOf(leaf);
  const double along = (d.x * cosine + d.y * sine) / leaf.length;
  const double side = -d.x * sine + d.y * cosine - leaf.bend * along * along;
  const bool near = along > 0 && along < 1 && std::abs(side) < leaf.width + shadowReach;
  return {{along, side}, near ? leaf.width * std::pow(std::sin(pi * std::pow(along, 0.85)), 0.9) : 0};
}

/// How much of a place the leaf covers.
double coverOf(const OnLeaf& place) {
  if (place.half <= 0) return 0;
  // A gently toothed edge.
  const double half = place.half * (1 - 0.035 * std::abs(std::sin(place.at.x * 46)));
  return ramp(0.0016, -0.0016, std::abs(place.at.y) - half);
}

/// Darkens what is behind a leaf by its shadow.
Colour inShadow(Colour behind, const Leaf& leaf, Point p) {
  const OnLeaf place = onLeaf(leaf, p - Point{0.012, 0.018});
  if (place.half <= 0) return behind;
  return behind * (1 - 0.38 * ramp(0.02, -0.02, std::abs(place.at.y) - place.half));
}

/// The leaf's own colour at a place.
Colour leafColour(const Leaf& leaf, Point at, Point p) {
  const double across = std::abs(at.y) / leaf.width;
  const double vein = std::abs(std::fmod(at.x * 15 - across * 3.4 + 20, 1.0) - 0.5) * 2;
  const double veins = ramp(0.86, 0.99, vein) * ramp(0.0, 0.15, across);
  const double rib = ramp(0.0052 * (1.25 - at.x), 0.0, std::abs(at.y));
  const double sheen = 0.5 + 0.5 * std::sin(at.x * 94 - across * 21);
  double light = 0.35 + 0.35 * at.x + (at.y < 0 ? 0.20 : -0.04) + 0.05 * sheen;
  light += 0.24 * (clouds({p.x * 24, p.y * 24}, 3, 330) - 0.5);
  Colour colour = mix(leaf.dark, leaf.bright, std::clamp(light, 0.0, 1.0));
  return mix(colour, hex(0xC9EFA6), 0.42 * veins + 0.75 * rib);
}

/// The garden with the leaves in front of it, from the last one that covers the place wholly.
Colour foliage(Point p) {
  constexpr std::size_t count = std::size(leaves);
  std::array<OnLeaf, count> places;
  std::array<double, count> covers{};
  std::size_t first = count;
  while (first > 0 && (first == count || covers[first] < 1)) {
    --first;
    places[first] = onLeaf(leaves[first], p);
    covers[first] = coverOf(places[first]);
  }
  const bool hidden = covers[first] >= 1;
  Colour colour = hidden ? Colour{} : garden(p);
  for (std::size_t i = first; i < count; ++i) {
    if (covers[i] < 1) colour = inShadow(colour, leaves[i], p);
    if (covers[i] > 0) colour = mix(colour, leafColour(leaves[i], places[i].at, p), covers[i]);
  }
  return colour;
}

struct Ring {
  double radius;
  int petals;
  double turn;
};

constexpr std::size_t ringCount = 11;

/// From the outermost ring to the innermost one; the petals of each cover the gaps of the one below.
constexpr Ring ringAt(int i) {
  return {0.455 - 0.0395 * i, i < 4 ? 18 : i < 7 ? 15 : i < 9 ? 12 : 8, i * 0.5 + (i % 3) * 0.04};
}

constexpr auto rings = [] {
  std::array<Ring, ringCount> all{};
  for (std::size_t i = 0; i < ringCount; ++i) all[i] = ringAt(static_cast<int>(i));
  return all;
}();

struct Petal {
  double inside = -1;  ///< above 0 in the petal: distance to its edge in picture heights
  double along = 1;    ///< 0 at the heart, 1 at the tip
  double across = 0;   ///< -1 and 1 at the edges
  int number = 0;
};

/// A place as seen from the heart.
struct Polar {
  double radius;
  double angle;
};

Polar polarOf(Point p) {
  const Point d = p - heart;
  return {length(d), std::atan2(d.y, d.x)};
}

Petal petalAt(const Ring& ring, Polar place) {
  const double r = place.radius;
  Petal petal;
  constexpr double longest = 1.02;  // of the ring's radius
  if (r >= ring.radius * longest) return petal;
  const double step = 2 * pi / ring.petals;
  const double angle = place.angle - ring.turn * step;
  petal.number = static_cast<int>(std::lround(angle / step));
  // Petals are not all of one length.
  const double radius = ring.radius * (0.95 + 0.07 * chance(petal.number % ring.petals, ring.petals, 350));
  petal.along = r / radius;
  if (petal.along >= 1) return petal;
  const double side = (angle - petal.number * step) * r;
  const double widest = ring.radius * step * 0.60;
  const double half =
      widest * std::pow(std::sin(pi * std::min(1.0, 0.10 + 0.90 * std::pow(petal.along, 0.78))), 0.72);
  petal.across = side / half;
  petal.inside = half - std::abs(side);
  return petal;
}

Colour petalColour(const Petal& petal, int ring, Point p) {
  constexpr Colour outer[] = {hex(0x8E1350), hex(0xC7245F), hex(0xF4586B),
                              hex(0xFF8A78), hex(0xFFC3A4), hex(0xFFEBD6)};
  constexpr Colour inner[] = {hex(0x9C1A3A), hex(0xE2463F), hex(0xFF8A3C),
                              hex(0xFFB84A), hex(0xFFDB73), hex(0xFFF2B8)};
  const double depth = static_cast<double>(ring) / (ringCount - 1);
  // Only the last third of a petal shows, so the colours are close together there.
  const double place = std::pow(petal.along, 3.4) * (0.93 + 0.07 * chance(petal.number, ring, 365));
  const Colour colour = mix(gradient(outer, place), gradient(inner, place), ramp(0.40, 1.0, depth));
  // A groove along the middle, fine stripes beside it, the edges turned up to the light.
  const double groove = std::exp(-square(petal.across * 5.5));
  const double stripes = std::sin(petal.across * 21 + std::sin(petal.number * 9.0));
  const double turned = std::pow(std::abs(petal.across), 3.0);
  double light = 1.0 - 0.16 * groove * (1 - petal.along) + 0.035 * stripes + 0.10 * turned;
  light -= 0.16 * petal.across * (1 - 0.5 * petal.along);
  light += 0.07 * (clouds({p.x * 60, p.y * 60}, 2, 360) - 0.5);
  light *= 0.42 + 0.58 * ramp(0.30, 0.86, petal.along);
  return colour * light;
}

double coverOf(const Petal& petal) { return petal.along >= 1 ? 0 : ramp(-0.0012, 0.0012, petal.inside); }

/// The flower in front of the leaves, from the innermost ring that covers the place wholly.
Colour flower(Point p) {
  constexpr double farthest = 0.48;  // what a petal or its shadow reaches
  if (length(p - heart) > farthest) return foliage(p);
  const Polar place = polarOf(p);
  const Polar shadowPlace = polarOf(p - Point{0.007, 0.011});
  std::array<Petal, ringCount> petals;
  std::size_t first = ringCount;
  while (first > 0 && (first == ringCount || coverOf(petals[first]) < 1)) {
    --first;
    petals[first] = petalAt(rings[first], place);
  }
  const bool hidden = coverOf(petals[first]) >= 1;
  Colour colour = hidden ? Colour{} : foliage(p);
  for (std::size_t i = first; i < ringCount; ++i) {
    const Petal& petal = petals[i];
    const double cover = coverOf(petal);
    // The shadow that this ring throws on the one below it, softer further away.
    const Petal shadow = cover < 1 ? petalAt(rings[i], shadowPlace) : Petal{};
    if (shadow.along < 1) colour = colour * (1 - 0.46 * ramp(-0.010, 0.012, shadow.inside));
    if (cover <= 0) continue;
    const double rim = 0.20 * ramp(0.0042, 0.0, petal.inside) * petal.along;
    colour = mix(colour, mix(petalColour(petal, static_cast<int>(i), p), hex(0xFFF6EC), rim), cover);
  }
  const double bud = length(p - heart);
  if (bud < 0.045) {
    const double angle = place.angle;
    // Seeds along two families of spirals.
    const double seeds = std::sin(angle * 8 + bud * 260) * std::sin(angle * 5 - bud * 260);
    const Colour core = mix(hex(0xB3471B), hex(0xFFD84F), 0.45 + 0.40 * seeds + 5.0 * (0.02 - bud));
    colour = mix(colour, core, ramp(0.042, 0.030, bud));
  }
  return colour;
}

/// Drops of dew: each shows the light upside down and throws a bright spot into its own shadow.
Colour overDew(Colour colour, Point p) {
  constexpr Point drops[] = {{0.29, 0.19}, {0.335, 0.25},  {0.27, 0.83},   {0.335, 0.745},
                             {1.22, 0.16}, {1.285, 0.825}, {1.20, 0.755},  {0.62, 0.30},
                             {1.00, 0.66}, {0.57, 0.62},   {0.665, 0.925}, {0.935, 0.075}};
  int number = 0;
  for (const Point drop : drops) {
    const double radius = 0.010 + 0.007 * chance(number++, 0, 380);
    const Point d = p - drop;
    if (square(d.x) + square(d.y) > square(2 * radius)) continue;
    const double away = length(d) / radius;
    colour = colour * (1 - 0.35 * ramp(1.5, 0.8, length(d - Point{radius * 0.35, radius * 0.5}) / radius));
    const double cover = ramp(1.05, 0.95, away);
    const Colour glass =
        mix(colour * 0.86, hex(0xFFFFFF), std::clamp(0.10 + 0.42 * (d.x + d.y) / radius / 1.4, 0.0, 0.6));
    colour = mix(colour, glass, cover);
    colour = mix(colour, hex(0xFFFFFF),
                 0.95 * ramp(0.30, 0.16, length(d + Point{radius * 0.38, radius * 0.42}) / radius));
  }
  return colour;
}

}  // namespace

Picture drawDahlia(Size size) {
  return paint::paint(size, [](Point p) { return overDew(flower(p), p); });
}

}  // namespace host
