#include <numbers>

#include "raster/region_builder.h"
#include "raster/region_spans.h"
#include "support.h"

/// Regions: what a combination costs per span, a polygon per row, a point test at all.
namespace {

using dibkit::OwnedRegion;

constexpr int width = 1920;
constexpr int height = 1080;

/// Spans of 4 pixels every 8, every row shifted, so that no two rows are alike.
OwnedRegion comb(int shift) {
  dibkit::RegionBuilder builder(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = (y * 3 + shift) % 8; x + 4 <= width; x += 8) builder.add(y, x, x + 4);
  }
  return builder.region();
}

std::vector<POINT> star(int points) {
  std::vector<POINT> corners;
  for (int i = 0; i < 2 * points; ++i) {
    const double angle = std::numbers::pi * i / points;
    const double radius = i % 2 == 0 ? 1.0 : 0.4;
    corners.push_back({static_cast<LONG>(width * (0.5 + 0.5 * radius * std::sin(angle))),
                       static_cast<LONG>(height * (0.5 + 0.5 * radius * std::cos(angle)))});
  }
  return corners;
}

void combine(benchmark::State& state, int mode) {
  const OwnedRegion a = comb(0), b = comb(2), out(CreateRectRgn(0, 0, 1, 1));
  for (auto _ : state) CombineRgn(out.get(), a.get(), b.get(), mode);
  const auto spans = dibkit::RegionSpans(a.get()).rectangles().size() * 2;
  state.counters["spans"] =
      benchmark::Counter(static_cast<double>(spans), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK_CAPTURE(combine, And, RGN_AND)->Name("Platform/CombineAnd/1920x1080");
BENCHMARK_CAPTURE(combine, Or, RGN_OR)->Name("Platform/CombineOr/1920x1080");
BENCHMARK_CAPTURE(combine, Difference, RGN_DIFF)->Name("Platform/CombineDifference/1920x1080");

void collectSpans(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(comb(0).get());
}
BENCHMARK(collectSpans)->Name("Platform/CollectSpans/1920x1080");

void polygon(benchmark::State& state) {
  const std::vector<POINT> corners = star(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    const OwnedRegion region(CreatePolygonRgn(corners.data(), static_cast<int>(corners.size()), ALTERNATE));
    benchmark::DoNotOptimize(region.get());
  }
}
BENCHMARK(polygon)->Name("Platform/PolygonOfStarPoints/1920x1080")->Arg(5)->Arg(100)->Arg(5000);

void ellipse(benchmark::State& state) {
  for (auto _ : state) {
    const OwnedRegion region(CreateEllipticRgn(0, 0, width, height));
    benchmark::DoNotOptimize(region.get());
  }
}
BENCHMARK(ellipse)->Name("Platform/Ellipse/1920x1080");

void pointTest(benchmark::State& state) {
  const OwnedRegion region = comb(0);
  int x = 0, y = 0;
  for (auto _ : state) {
    x = (x + 611) % width;
    y = (y + 397) % height;
    benchmark::DoNotOptimize(PtInRegion(region.get(), x, y));
  }
}
BENCHMARK(pointTest)->Name("Platform/PointTest/1920x1080");

/// As many bytes as the two regions that are combined hold.
void copySpans(benchmark::State& state) {
  bench::copyBytes(state, dibkit::RegionSpans(comb(0).get()).rectangles().size_bytes() * 2);
}
BENCHMARK(copySpans)->Name("Platform/CopyOfBothRegions/1920x1080");

}  // namespace
