#include <string>

#include "effects/catalogue.h"
#include "effects/effects.h"
#include "support.h"

/// Stages of every transition at 1280x720, region and cut together, beside a copy of the frame.
namespace {

constexpr int width = 1280;
constexpr int height = 720;

void copyFrame(benchmark::State& state) { bench::copyBytes(state, std::size_t{width} * height * 4); }

void stage(benchmark::State& state, int effect, long a, long b) {
  const bench::OwnedDib source = bench::photo(width, height);
  for (auto _ : state) {
    BITMAPINFOHEADER* image = nullptr;
    RECT rect{};
    benchmark::DoNotOptimize(GeneralEffectFrame(effect, source.get(), a, b, &image, &rect));
    const bench::OwnedDib piece(image);
  }
}

void wholeFrame(benchmark::State& state, const dibkit::Effect& effect) {
  const bench::OwnedDib incoming = bench::photo(width, height);
  const bench::OwnedDib outgoing = bench::cartoon(width, height);
  for (auto _ : state) {
    benchmark::DoNotOptimize(effect.frame(incoming.get(), outgoing.get(), 0, 0.4));
  }
}

/// The stages that cost most are measured beside the ones in the middle.
struct Measured {
  const char* name;
  int effect;
  long a;
  long b;
};

constexpr Measured measured[] = {
    {"Gate/left", 0, 0, 45},
    {"Gate/top", 0, 1, 45},
    {"Clock", 1, 1, 200},
    {"ManyClocks", 2, 1, 200},
    {"Star", 3, 60, 0},
    {"Spiral/360", 4, 1, 360},
    {"Spiral/720", 4, 1, 720},
    {"Mosaic/50", 5, 50, 0},
    {"Mosaic/100", 5, 100, 0},
    {"SweepingMosaic/50", 6, 0, 50},
    {"SweepingMosaic/100", 6, 0, 100},
    {"Spin/horizontal", 7, 0, 30},
    {"Spin/vertical", 7, 1, 30},
    {"Film/rows", 8, 0, 50},
    {"Film/columns", 8, 1, 50},
    {"Iris", 9, 300, 0},
    {"Halves/horizontal", 10, 0, 50},
    {"Halves/vertical", 10, 1, 50},
    {"Bars/horizontal", 11, 0, 50},
    {"Bars/vertical", 11, 1, 50},
    {"Slide/100", 12, 0, 100},
    {"Spread/circle", 13, 0, 70},
    {"Spread/diamond", 13, 4, 70},
    {"Strips/columns", 14, 0, 50},
    {"Strips/rows", 14, 1, 50},
    {"Strips/left", 14, 2, 100},
    {"Blinds/vertical", 15, 0, 50},
    {"Blinds/horizontal", 15, 1, 50},
    {"Thaw", 16, 50, 0},
    {"Roll/left", 17, 0, 50},
    {"Roll/top", 17, 1, 50},
};

const bool registered = [] {
  const std::string size = "/1280x720";
  benchmark::RegisterBenchmark(("Effects/Memcpy" + size).c_str(), copyFrame);
  for (const Measured& m : measured) {
    benchmark::RegisterBenchmark(("Effects/" + std::string(m.name) + size).c_str(), stage, m.effect, m.a,
                                 m.b);
  }
  for (const dibkit::Effect& effect : dibkit::effects()) {
    if (!effect.isWholeFrame()) continue;
    benchmark::RegisterBenchmark(("Effects/" + std::string(effect.name) + size).c_str(),
                                 [&effect](benchmark::State& state) { wholeFrame(state, effect); });
  }
  benchmark::RegisterBenchmark(("Effects/Memcpy" + size + "/again").c_str(), copyFrame);
  return true;
}();

}  // namespace
