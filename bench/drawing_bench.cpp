#include <numbers>

#include "dib32/dib32.h"
#include "frames/frames.h"
#include "support.h"

/// Lines and shapes on a surface of the platform, next to a copy of the bytes of the picture that they
/// return.
namespace {

using bench::OwnedDib;

constexpr int width = 1920;
constexpr int height = 1080;
constexpr RECT canvas{0, 0, width, height};
constexpr POINT from{100, 80};
constexpr POINT to{1800, 1000};

std::vector<POINT> star(int points) {
  std::vector<POINT> corners;
  for (int i = 0; i < 2 * points; ++i) {
    const double angle = std::numbers::pi * i / points;
    const double radius = i % 2 == 0 ? 0.5 : 0.2;
    corners.push_back({static_cast<LONG>(width * (0.5 + radius * std::sin(angle))),
                       static_cast<LONG>(height * (0.5 + radius * std::cos(angle)))});
  }
  return corners;
}

/// \param bitCount of the picture that draw() returns, for the copy beside it
template <class Draw>
void drawn(const char* name, int bitCount, Draw draw) {
  benchmark::RegisterBenchmark((std::string("Drawing/") + name).c_str(), [draw](benchmark::State& state) {
    for (auto _ : state) OwnedDib taken(draw());
  });
  benchmark::RegisterBenchmark((std::string("Drawing/Copy of ") + name).c_str(), bench::copyBytes,
                               std::size_t{width} * height * static_cast<std::size_t>(bitCount) / 8);
}

const bool registered = [] {
  drawn("GenerateLine pen 8", 8,
        [] { return CDIB32::GenerateLine(canvas, from, to, 8, 200, 1, nullptr, nullptr); });
  drawn("PaintLineOnPic pen 8", 1, [] { return PaintLineOnPic(nullptr, canvas, from, to, 8, 1); });
  drawn("PaintLineOnPic on a picture", 1, [] {
    static const OwnedDib picture = dibkit::createMask(width, height);
    return PaintLineOnPic(picture.get(), canvas, from, to, 1, 0);
  });
  drawn("PaintLineOnPic2 of 200 points", 1, [] {
    static std::vector<POINT> points = star(100);
    return PaintLineOnPic2(canvas, points.data(), static_cast<int>(points.size()), 5, 1, nullptr);
  });
  drawn("PaintPolygonOnPic of 200 points", 4, [] {
    static std::vector<POINT> points = star(100);
    return PaintPolygonOnPic(points.data(), static_cast<int>(points.size()), 5, 1, nullptr);
  });
  drawn("PaintShapeOnPic ellipse pen 1", 4, [] { return PaintShapeOnPic(canvas, 1, 1, 1, {0, 0}, nullptr); });
  drawn("PaintShapeOnPic ellipse pen 20", 4, [] {
    return PaintShapeOnPic(canvas, 20, 1, 1, {0, 0}, nullptr);
  });
  drawn("PaintShapeOnPic rounded pen 5", 4, [] {
    return PaintShapeOnPic(canvas, 5, 0, 1, {100, 100}, nullptr);
  });
  return true;
}();

}  // namespace
