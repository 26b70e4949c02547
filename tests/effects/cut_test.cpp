#include <cmath>
#include <cstdlib>
#include <numeric>

#include "effects/stage.h"

/// The effects that cut their piece out of the picture by a region.
namespace {

using namespace test;

constexpr double pi = 3.1415926;  // with no more digits, as everywhere in the effects
int whole(double value) { return static_cast<int>(value); }

/// What a hand sweeps from twelve o'clock: the centre, the middle of the top side, the corners that it has
/// passed, and where it ends. d is the angle of the diagonal, in whole degrees.
OwnedRegion clockRegion(int w, int h, int angle, bool clockwise) {
  const auto tan = [](int degrees) { return std::tan(degrees * pi / 180.0); };
  const int d = whole(std::atan(static_cast<double>(w) / h) / pi * 180.0);
  const double hw = w / 2.0, hh = h / 2.0;
  const int s = clockwise ? 1 : -1, side = clockwise ? w : 0, opposite = w - side;
  std::vector<POINT> points{{w / 2, h / 2}, {w / 2, 0}, {side, 0}, {side, h}, {opposite, h}, {opposite, 0}};
  if (angle <= d) {
    points.resize(2), points.push_back({w / 2 + s * whole(tan(angle) * hh), 0});
  } else if (angle <= 180 - d) {
    points.resize(3), points.push_back({side, whole(tan(angle - 90) * hw + hh)});
  } else if (angle <= 180 + d) {
    points.resize(4), points.push_back({whole(s * tan(180 - angle) * hh + hw), h});
  } else if (angle <= 360 - d) {
    points.resize(5), points.push_back({opposite, whole(tan(270 - angle) * hw + hh)});
  } else {
    points.push_back({whole(hw - s * tan(360 - angle) * hh), 0});
  }
  return polygon(points);
}

Stage clock(const OwnedDib& source, long direction, long angle) {
  const OwnedRegion region =
      clockRegion(source->biWidth, source->biHeight, static_cast<int>(angle), direction != 0);
  RECT box{};
  GetRgnBox(region.get(), &box);  // the place is that of the hand before it is clipped
  Stage stage = cut(source, region);
  stage.rect = box;
  return stage;
}

/// A clock in each tile of a tenth of the picture.
Stage manyClocks(const OwnedDib& source, long direction, long angle) {
  const int w = source->biWidth, h = source->biHeight, tw = std::max(1, w / 10), th = std::max(1, h / 10);
  OwnedRegion region;
  for (int y = 0; y < h; y += th) {
    for (int x = 0; x < w; x += tw) {
      OwnedRegion tile =
          clockRegion(std::min(tw, w - x), std::min(th, h - y), static_cast<int>(angle), direction != 0);
      OffsetRgn(tile.get(), x, y);
      join(region, std::move(tile));
    }
  }
  return cut(source, region);
}

TEST(Clocks, MatchTheirPlainTwins) {
  // A hand before twelve o'clock or past a full turn still ends on the top side.
  expectTwin(1, {0, 1, -3}, {-60, -1,  0,   1,   20,  44,  45,  46,  60,  89,  90,  91,  134, 135, 136, 179,
                             180, 181, 224, 225, 226, 269, 270, 271, 300, 314, 315, 316, 359, 360, 361, 400},
             clock);
  expectTwin(2, {0, 1}, {-60, 0, 20, 45, 46, 90, 91, 135, 136, 180, 225, 226, 271, 315, 316, 360, 361},
             manyClocks);
}

TEST(Clocks, PointAlongTheSidesOfAVeryThinPicture) {
  // The diagonal counts as 0 degrees, so that at 180 the hand ends far below on the right side: rows below
  // the centre show what is right of a line that leaves column 1 at once and never reaches column 2.
  const OwnedDib picture = numberedPicture(3, 200);
  const OwnedDib expected = drawn(2, 200, 32, [&](int x, int y) {
    return pixel(picture, x + 1, y) & (x == 1 || y <= 100 ? 0xFFFFFFFF : 0xFFFFFF);
  });
  EXPECT_EQ(pixelsOf(render(1, picture, 1, 180).image), pixelsOf(expected));
  EXPECT_EQ(pixelsOf(render(1, picture, 1, 360).image), pixelsOf(picture));
}

/// Triangles from the centre to a path that runs outward, a step of at most 20 degrees after the other.
Stage spiral(const OwnedDib& source, long direction, long angle) {
  const int w = source->biWidth, h = source->biHeight;
  const double radius = std::sqrt(static_cast<double>(w * w + h * h)) / 2.0;
  OwnedRegion region = rectangle(w / 2, h / 2, w / 2 + 1, h / 2 + 1);
  POINT p{w / 2 + 1, h / 2};
  for (long i = 0; i < angle; ++i) {
    const long j = std::min(i + 20, angle);
    const double rho = static_cast<double>(j) * radius / 720.0;
    const double turned = static_cast<double>(direction == 1 ? 360 - j : j) * pi / 180.0;
    const POINT q{whole(std::cos(turned) * rho + w / 2.0), whole(h / 2.0 - std::sin(turned) * rho)};
    join(region, polygon({{w / 2, h / 2}, p, q}));
    p = q;
  }
  return cut(source, region);
}

TEST(Spiral, MatchesItsPlainTwin) {
  expectTwin(4, {0, 1, 2}, {-5, 0, 1, 19, 20, 21, 90, 200, 359, 360, 500, 720, 1100}, spiral);
}

/// Draws one after the other from a list of `places`, among the first `span` of it; the one drawn leaves the
/// list, by moving the rest down or, with `swapping`, the last into its place.
std::vector<int> drawnPlaces(int places, long draws, int seed, int span, bool swapping) {
  std::vector<int> list(static_cast<std::size_t>(places)), taken;
  std::iota(list.begin(), list.end(), 0);
  std::srand(static_cast<unsigned>(seed));
  for (; draws > 0; --draws) {
    const auto k = list.begin() + std::rand() % std::min(span, static_cast<int>(list.size()));
    taken.push_back(*k);
    if (swapping) std::swap(*k, list.back()), list.pop_back();
    if (!swapping) list.erase(k);
  }
  return taken;
}

/// Cells of a tenth of the picture. An eleventh column or row is added when the extent is no multiple of 10,
/// or of 100 without a direction (-1). The front of a sweep is two lines of cells deep.
Stage mosaic(const OwnedDib& source, long direction, long percent) {
  const int w = source->biWidth, h = source->biHeight, multiple = direction < 0 ? 100 : 10;
  const int columns = 10 + (w % multiple != 0 ? 1 : 0), rows = 10 + (h % multiple != 0 ? 1 : 0);
  const bool byColumns = direction >= 0 && direction % 2 == 0;
  const int lines = byColumns ? columns : rows, length = byColumns ? rows : columns;
  OwnedRegion region;
  for (const int place :
       drawnPlaces(columns * rows, percent * columns * rows / 100, direction < 0 || byColumns ? w : h,
                   direction < 0 ? columns * rows : 2 * length, direction < 0)) {
    const int line = direction >= 2 ? lines - 1 - place / length : place / length;
    const int x = (byColumns ? line : place % length) * (w / 10);
    const int y = (byColumns ? place % length : line) * (h / 10);
    join(region, rectangle(x, y, x + w / 10, y + h / 10));
  }
  return cut(source, region);
}

/// Columns (styles 0, 2 and 3) or rows of one pixel; the sweeping ones from 2 on draw among the next 32.
Stage strips(const OwnedDib& source, long style, long percent) {
  const int w = source->biWidth, h = source->biHeight;
  const bool columns = style == 0 || style == 2 || style == 3;
  const int n = columns ? w : h;
  OwnedRegion region;
  for (const int place : drawnPlaces(n, n * percent / 100, n, style >= 2 ? 32 : n, false)) {
    const int at = style == 3 || style == 5 ? n - 1 - place : place;
    join(region, columns ? rectangle(at, 0, at + 1, h) : rectangle(0, at, w, at + 1));
  }
  return cut(source, region);
}

TEST(DrawnPieces, MatchTheirPlainTwins) {
  const std::vector<long> percents{0, 1, 9, 13, 33, 50, 87, 99, 100};
  expectTwin(5, percents, {3},
             [](const OwnedDib& source, long percent, long) { return mosaic(source, -1, percent); });
  expectTwin(6, {0, 1, 2, 3}, percents, mosaic);
  expectTwin(14, {-1, 0, 1, 2, 3, 4, 5, 6, 7}, percents, strips);
}

/// Slats of 8 pixels, or of the whole extent of a smaller picture, open by a percentage of that.
Stage blinds(const OwnedDib& source, long style, long percent) {
  const int w = source->biWidth, h = source->biHeight, extent = style != 0 ? h : w;
  const int pitch = std::min(8, extent), opening = static_cast<int>(pitch * percent / 100);
  OwnedRegion region;
  for (int s = 0; s < extent; s += pitch) {
    join(region, style != 0 ? rectangle(0, s, w, s + opening) : rectangle(s, 0, s + opening, h));
  }
  return cut(source, region);
}

TEST(Blinds, MatchTheirPlainTwin) { expectTwin(15, {0, 1, -7}, {0, 12, 13, 50, 99, 100}, blinds); }

TEST(CutPieces, HaveTheShapesWorkedOutByHand) {
  struct Case {
    int effect;
    SIZE picture;
    long a, b;
    const char* shape;
  };
  const Case cases[] = {
      // Iris: 25 pixels across are 25 * 60 / 100 = 15 down; 3 * 10 / 7 = 4.28 about the centre (3, 5).
      {9, {100, 60}, 25, 7, "polygon 8 25 15 0 30 25 45 50 60 75 45 100 30 75 15 50 0"},
      {9, {7, 10}, 3, 7, "polygon 8 0 1 0 5 0 9 3 10 6 9 7 5 6 1 3 0"},
      // Star: unit vertices (0, 1), (-0.951, 0.309), (-0.588, -0.809), inner ones (-0.2245, 0.309),
      // (-0.3633, -0.118), (0, -0.382). 100 percent of 100 x 100 is a scale of 100 / 0.690983 = 144.721. The
      // width decides of 201 x 50: 30 percent are 60.3 / 0.726543 = 82.996.
      {3, {100, 100}, 100, 7, "polygon 10 50 -94 17 5 -87 5 -2 67 -35 167 50 105 135 167 102 67 187 5 82 5"},
      {3, {201, 50}, 30, 7, "polygon 10 100 -57 81 0 21 0 70 34 51 92 100 56 149 92 130 34 179 0 119 0"},
      // Spread, 40 percent about the centre (201, 100). Half the diagonal is 224.95, 40 percent of it 89.98.
      {13, {403, 200}, 0, 40, "ellipse 112 11 290 189"},
      // 161 and 80, halved.
      {13, {403, 200}, 1, 40, "rect 121 60 281 140"},
      // 403 / 0.717 = 562.06, 200 / 0.717 = 278.94; 40 percent are 224 and 111, halved.
      {13, {403, 200}, 2, 40, "ellipse 89 45 313 155"},
      // 403 / 0.8 = 503.75, 200 / 0.8 = 250; 40 percent are 201 and 100, halved; corners of a quarter.
      {13, {403, 200}, 3, 40, "roundrect 101 50 301 150 50 25"},
      // 161 and 80, not halved.
      {13, {403, 200}, 4, 40, "polygon 4 201 20 40 100 201 180 362 100"},
  };
  for (const Case& c : cases) {
    const OwnedDib picture = numberedPicture(c.picture.cx, c.picture.cy);
    SCOPED_TRACE(testing::Message() << c.effect << '/' << c.a);
    expectStage(render(c.effect, picture, c.a, c.b), cut(picture, shapeOf(c.shape)));
    // A shape of negative size is its own mirror image.
    if (c.effect == 13) expectStage(render(13, picture, c.a, -c.b), render(13, picture, c.a, c.b));
  }
}

}  // namespace
