#include <cmath>
#include <numbers>

#include "effects/stage.h"

/// The effects that draw their piece pixel by pixel.
namespace {

using namespace test;

/// Halves (10) and bars of 4 pixels (11). Along the axis of motion a place p of extent n shows what is n - d
/// further back when it comes from the far end, n - d further on when it comes from the near one.
Stage slideIn(const OwnedDib& source, bool halves, bool vertically, long percent) {
  const int w = source->biWidth, h = source->biHeight;
  const long long n = vertically ? h : w, d = n * percent / 100;
  const auto pixelAt = [&](int x, int y) -> DWORD {
    const long long p = vertically ? y : x;
    const int across = vertically ? x : y;
    const bool fromFarEnd = halves ? across < (vertically ? w : h) / 2 : across / 4 % 2 == 1;
    if (!(fromFarEnd ? p >= n - d : halves ? p <= d : p < d)) return 0;
    const auto from = static_cast<int>(std::clamp(fromFarEnd ? p - (n - d) : p + (n - d), 0LL, n - 1));
    return vertically ? pixel(source, x, from) : pixel(source, from, y);
  };
  return {1, drawn(w, h, 32, pixelAt), {0, 0, w, h}};
}

TEST(SlidingBars, MatchTheirPlainTwin) {
  for (const int effect : {10, 11}) {
    expectTwin(effect, {0, 1}, {0, 1, 37, 50, 99, 100, 101, 250, -1, -40, -1000},
               [&](const OwnedDib& source, long style, long percent) {
                 return slideIn(source, effect == 10, style == 1, percent);
               });
  }
}

/// Lines from the front on repeat the line at the front.
Stage film(const OwnedDib& source, long style, long percent) {
  const int w = source->biWidth, h = source->biHeight;
  const int front = static_cast<int>((style == 0 ? h : w) * percent / 100);
  return {1,
          drawn(w, h, 32,
                [&](int x, int y) {
                  return style == 0 ? pixel(source, x, std::min(y, front))
                                    : pixel(source, std::min(x, front), y);
                }),
          {0, 0, w, h}};
}

TEST(Film, MatchesItsPlainTwin) { expectTwin(8, {0, 1}, {1, 10, 50, 99, 100}, film); }

/// A line of the carpet by its number from the side that it starts at: its source line and its light.
std::pair<int, int> carpetLine(int number, int n, int percent) {
  const int flat = n * percent / 100;
  if (number < flat) return {number, 255};
  const int roll = (n * (100 - percent) + 999) / 1000;
  const double v = (2.0 * (number - flat) + 1 - roll) / roll;
  const int line = flat + static_cast<int>(roll / 2.0 * (1 + std::numbers::pi - std::asin(v)));
  return {std::min(line, n - 1), 64 + static_cast<int>(191 * std::sqrt(1 - v * v))};
}

Stage carpet(const OwnedDib& source, long side, long amount) {
  const int w = source->biWidth, h = source->biHeight;
  const auto percent = static_cast<int>(amount);
  const bool columns = side % 2 == 0, fromFarSide = side >= 2;
  const int n = columns ? w : h, shown = n * percent / 100 + (n * (100 - percent) + 999) / 1000;
  const int start = fromFarSide ? n - shown : 0;
  const auto pixelAt = [&](int x, int y) {
    const int along = start + (columns ? x : y);
    const auto [line, light] = carpetLine(fromFarSide ? n - 1 - along : along, n, percent);
    const int from = fromFarSide ? n - 1 - line : line;
    const DWORD colour = columns ? pixel(source, from, y) : pixel(source, x, from);
    DWORD lit = colour & 0xFF000000;
    for (const int shift : {0, 8, 16})
      lit |= (colour >> shift & 255) * static_cast<DWORD>(light) / 255 << shift;
    return lit;
  };
  return {1, drawn(columns ? shown : w, columns ? h : shown, 32, pixelAt),
          columns ? RECT{start, 0, start + shown, h} : RECT{0, start, w, start + shown}};
}

TEST(Carpet, MatchesItsPlainTwin) { expectTwin(17, {0, 1, 2, 3}, {0, 1, 10, 50, 99, 100}, carpet); }

struct Turned {
  double z, x, y;
};

/// A corner of the gate, hinged at the left, top, right or bottom, after the turn; the centre is the origin.
Turned turned(long hinge, int w, int h, double s, double c, int x, int y) {
  if (hinge == 0) return {-x * s, -w / 2.0 + x * c, h / 2.0 - y};
  if (hinge == 1) return {-y * s, x - w / 2.0, h / 2.0 - y * c};
  if (hinge == 2) return {-(w - x) * s, w / 2.0 - (w - x) * c, h / 2.0 - y};
  return {-(h - y) * s, static_cast<double>(x - w / 2), (h - y) * c - h / 2.0};
}

/// Corner by corner, then pixel by pixel, each with a division of its own; t is the depth of what it shows.
Stage gate(const OwnedDib& source, long hinge, long angle) {
  const int w = source->biWidth, h = source->biHeight;
  const double radians = static_cast<double>(angle) * 3.1415926 / 180.0;
  const double s = static_cast<float>(std::sin(radians)), c = static_cast<float>(std::cos(radians));
  const double e = hinge % 2 == 0 ? w : h;
  float minX = 1e9F, maxX = -1e9F, minY = 1e9F, maxY = -1e9F;
  for (const auto& [x, y] : {std::pair{0, 0}, {w, 0}, {w, h}, {0, h}}) {
    const Turned corner = turned(hinge, w, h, s, c, x, y);
    const auto px = static_cast<float>(corner.x / (1 - corner.z / e));
    const auto py = static_cast<float>(corner.y / (1 - corner.z / e));
    minX = std::min(minX, px), maxX = std::max(maxX, px);
    minY = std::min(minY, py), maxY = std::max(maxY, py);
  }
  const double left = w / 2.0 + minX, top = h / 2.0 - maxY;
  const int ow = std::max(1, static_cast<int>(w / 2.0 + maxX) - static_cast<int>(left));
  const int oh = std::max(1, static_cast<int>(h / 2.0 - minY) - static_cast<int>(top));
  const auto pixelAt = [&](int i, int j) -> DWORD {
    const double x = i + left - w / 2.0, y = h / 2.0 - j - top;
    const auto depth = static_cast<float>(hinge == 0   ? (w / 2.0 + x) / (x / e - c / s)
                                          : hinge == 1 ? (y - h / 2.0) / (y / e + c / s)
                                          : hinge == 2 ? (x - w / 2) / (c / s + x / e)
                                                       : (h / 2 + y) / (y / e - c / s));
    const double along = hinge < 2 ? -depth / s : depth / s + e;
    const double sx = hinge % 2 == 0 ? along : w / 2.0 + (1 - depth / e) * x;
    const double sy = hinge % 2 == 0 ? h / 2.0 - (1 - depth / e) * y : along;
    if (!(std::abs(sx) < 1e6 && std::abs(sy) < 1e6)) return 0;
    const int fromX = static_cast<int>(sx), fromY = static_cast<int>(sy);
    return fromX >= 0 && fromY > 0 && fromX < w && fromY < h ? pixel(source, fromX, fromY) : 0;
  };
  const int x = hinge == 2 ? w - ow : 0, y = hinge == 3 ? h - oh : 0;
  return {1, drawn(ow, oh, 32, pixelAt), {x, y, x + ow, y + oh}};
}

TEST(Gate, MatchesItsPlainTwin) {
  expectTwin(0, {0, 1, 2, 3}, {1, 2, 15, 30, 45, 60, 75, 88, 89, 90, 120, 179, 180, 360, -20}, gate);
}

TEST(Gate, RoundsToSinglePrecision) {
  // Sine and cosine are 0.70710677 both, and column 18 has t = 18 / (-0.32 - 1) = -13.6363636, in single
  // precision -13.6363640. So row 8 shows row 30 - (1 + 0.13636364) * 22 = 4.9999999; with doubles it is 5.
  const OwnedDib picture = numberedPicture(100, 60);
  EXPECT_EQ(pixel(render(0, picture, 0, 45).image, 18, 8), pixel(picture, 19, 4));
}

/// Squashed about the horizontal or the vertical centre line by the cosine; there is no back.
Stage spin(const OwnedDib& source, long axis, long angle) {
  const int w = source->biWidth, h = source->biHeight;
  const double squash = std::cos(static_cast<double>(angle) * 3.1415926 / 180.0);
  const int n = axis == 0 ? h : w, seen = static_cast<int>(n * squash), margin = (n - seen) / 2;
  if (seen < 0) return {};
  const auto from = [&](int place) { return static_cast<int>(place / squash); };
  return {1,
          axis == 0 ? drawn(w, seen, 32, [&](int x, int y) { return pixel(source, x, from(y)); })
                    : drawn(seen, h, 32, [&](int x, int y) { return pixel(source, from(x), y); }),
          axis == 0 ? RECT{0, margin, w, margin + seen} : RECT{margin, 0, margin + seen, h}};
}

TEST(Spin, MatchesItsPlainTwin) { expectTwin(7, {0, 1}, {0, 20, 45, 60, 89, 90, 180, 300, -30}, spin); }

/// Where the picture comes from, by direction: -1 the left or the top, 1 the right or the bottom.
constexpr int fromX[] = {-1, -1, 0, 1, 1, 1, 0, -1}, fromY[] = {0, -1, -1, -1, 0, 1, 1, 1};

/// Along one axis of extent n, of which d have come in: what shows of the picture, and where. All of it where
/// the picture does not move.
struct Entry {
  int cut, place, count;
  Entry(int from, int n, int d)
      : cut(from < 0 ? n - d : 0), place(from > 0 ? n - d : 0), count(from != 0 ? d : n) {}
};

Stage slide(const OwnedDib& source, long direction, long percent) {
  const int w = source->biWidth, h = source->biHeight;
  const bool known = direction >= 0 && direction < 8;  // the whole picture from nowhere
  const Entry x(known ? fromX[direction] : 0, w, static_cast<int>(w * percent / 100));
  const Entry y(known ? fromY[direction] : 0, h, static_cast<int>(h * percent / 100));
  Stage stage = cut(source, rectangle(x.cut, y.cut, x.cut + x.count, y.cut + y.count));
  stage.rect = {x.place, y.place, x.place + x.count, y.place + y.count};
  return stage;
}

TEST(Slide, MatchesItsPlainTwin) {
  expectTwin(12, {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8}, {0, 1, 30, 50, 99, 100}, slide);
}

/// Where the incoming picture of a slide does not show, the outgoing one does, moved the same way; beyond its
/// edge its pixels count back.
OwnedDib push(const OwnedDib& in, const OwnedDib& out, long direction, long percent) {
  const int w = in->biWidth, h = in->biHeight;
  const Stage slid = slide(in, direction, percent);
  const RECT& box = slid.rect;
  const auto mirrored = [](long place, long n) {
    return static_cast<int>(place < 0 ? -1 - place : place >= n ? 2 * n - 1 - place : place);
  };
  return drawn(w, h, 32, [&](int x, int y) {
    if (PtInRect(&box, {x, y})) return pixel(slid.image, x - box.left, y - box.top);
    return pixel(out, mirrored(x + fromX[direction] * (w * percent / 100), w),
                 mirrored(y + fromY[direction] * (h * percent / 100), h));
  });
}

TEST(Push, MatchesItsPlainTwin) {
  for (const auto& [w, h] : {SIZE{1, 1}, {7, 5}, {33, 16}}) {
    const OwnedDib in = numberedPicture(w, h), out = opaquePicture(w, h, 0x550000);
    for (long direction = 0; direction < 8; ++direction) {
      // Beyond its range the percentage counts as the nearer end.
      for (const long percent : {LONG_MIN, -1L, 0L, 1L, 30L, 50L, 99L, 100L, 101L, LONG_MAX}) {
        SCOPED_TRACE(testing::Message() << w << 'x' << h << " direction " << direction << " at " << percent);
        const OwnedDib frame(GenerateRunPushEffect(in.get(), out.get(), direction, percent));
        ASSERT_EQ(pixelsOf(frame), pixelsOf(push(in, out, direction, std::clamp(percent, 0L, 100L))));
      }
    }
  }
}

TEST(Thawing, PixelatesByTwoFifthsOfItsAmount) {
  struct Case {
    int w, h;
    long amount;
    int block;  ///< 0 for the picture as it is
  };
  for (const Case& c : {Case{100, 100, 50, 20},
                        {30, 20, 100, 20},
                        {20, 30, 100, 20},
                        {100, 100, 99, 39},
                        {60, 50, LONG_MAX, 50},
                        {100, 100, 3, 1},
                        {30, 20, 2, 0},
                        {30, 20, LONG_MIN, 0}}) {
    OwnedDib picture = numberedPicture(c.w, c.h);
    const Stage stage = render(16, picture, c.amount, 0);
    if (c.block > 0) picture.reset(Mosaic32BitsDIB(OwnedDib(std::move(picture)).get(), c.block));
    expectStage(stage, {1, std::move(picture), {0, 0, c.w, c.h}});
  }
}

TEST(Thawing, KeepsTheColoursAndTheAlphaOfOneColour) {
  const auto uniform = [](int, int) { return DWORD{0x80'95'64'14}; };
  const OwnedDib in = drawn(30, 20, 32, uniform), out = opaquePicture(30, 20, 1);
  const dibkit::Effect* thaw = dibkit::findEffect("thaw");
  ASSERT_NE(thaw, nullptr);
  // Blocks of one colour: 128 / 255 of 149, 100 and 20 is 75, 50 and 10, and back again 149, 100 and 20.
  EXPECT_EQ(pixelsOf(thaw->frame(in.get(), out.get(), 0, 0.9)), pixelsOf(in));
}

}  // namespace
