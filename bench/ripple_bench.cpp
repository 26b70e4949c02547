#include <string>

#include "ripple/ripple.h"
#include "support.h"

/// The water at two sizes, one that stays in the cache and one that doesn't, beside a copy of the picture.
namespace {

void copyPicture(benchmark::State& state) {
  bench::copyBytes(state, static_cast<std::size_t>(state.range(0) * state.range(1)) * 4);
}

/// A picture under moving water.
struct Scene {
  explicit Scene(const benchmark::State& state)
      : picture(bench::photo(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)))),
        ripple(picture.get(), 0) {
    ripple.StartToRipple();
    for (int i = 0; i < 5; ++i) bench::OwnedDib(ripple.NextToRipple());
  }
  ~Scene() { ripple.EndToRipple(); }
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  bench::OwnedDib picture;
  CRippleEffect ripple;
};

void waveStep(benchmark::State& state) {
  Scene scene(state);
  int page = 0;
  for (auto _ : state) {
    scene.ripple.CalcWater(page, 5);
    page = 1 - page;
  }
}

void broadWaveStep(benchmark::State& state) {
  Scene scene(state);
  int page = 0;
  for (auto _ : state) {
    scene.ripple.CalcWaterBigFilter(page, 5);
    page = 1 - page;
  }
}

void render(benchmark::State& state) {
  Scene scene(state);
  for (auto _ : state) {
    const bench::OwnedDib frame(scene.ripple.GenerateRippleEffect(0, 0));
    benchmark::DoNotOptimize(frame.get());
  }
}

void bothSizes(benchmark::internal::Benchmark* benchmark) { benchmark->Args({1920, 1080})->Args({426, 240}); }

BENCHMARK(copyPicture)->Name("Ripple/Memcpy")->Apply(bothSizes);
BENCHMARK(waveStep)->Name("Ripple/WaveStep")->Apply(bothSizes);
BENCHMARK(broadWaveStep)->Name("Ripple/BroadWaveStep")->Apply(bothSizes);
BENCHMARK(render)->Name("Ripple/Render")->Apply(bothSizes);

}  // namespace
