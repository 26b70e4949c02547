#pragma once

#include <cstring>
#include <random>
#include <sstream>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "dib/allocate.h"
#include "dib/view.h"

/// Pictures to measure on, and the copy that every figure is compared with.
namespace bench {

using dibkit::OwnedDib;

/// Gradients with noise, opacity over the whole range: what a photograph costs. 32 bits.
inline OwnedDib photo(int width, int height) {
  OwnedDib dib = dibkit::createDib(width, height, 32, 0);
  std::mt19937 random(1);
  const dibkit::View view(dib.get());
  for (int y = 0; y < height; ++y) {
    BYTE* row = view.row(y);
    for (int x = 0; x < width; ++x, row += 4) {
      row[0] = static_cast<BYTE>(x * 255 / width + static_cast<int>(random() % 9));
      row[1] = static_cast<BYTE>(y * 255 / height + static_cast<int>(random() % 9));
      row[2] = static_cast<BYTE>((x + y) / 8 + static_cast<int>(random() % 9));
      row[3] = static_cast<BYTE>(random());
    }
  }
  return dib;
}

/// 24 flat colours in blocks of 40 x 30 pixels, opaque but for one colour: what a cartoon costs. 32 bits.
inline OwnedDib cartoon(int width, int height) {
  OwnedDib dib = dibkit::createDib(width, height, 32, 0);
  const dibkit::View view(dib.get());
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const unsigned colour = static_cast<unsigned>(x / 40 * 7 + y / 30 * 5) % 24;
      const DWORD pixel = (colour == 0 ? 0U : 0xFF000000U) | colour * 0x0A0C0B;
      dibkit::Bgra32::put(view.row(y), x, pixel);
    }
  }
  return dib;
}

/// A copy of `bytes` bytes, read plus written 2 x bytes: the yardstick, registered beside every benchmark.
inline void copyBytes(benchmark::State& state, std::size_t bytes) {
  std::vector<BYTE> from(bytes, 1);
  std::vector<BYTE> to(bytes, 2);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bytes) *
                          2);
}

/// Reports the time for each of the pixels that an iteration works on.
inline void reportPixels(benchmark::State& state, double pixels) {
  state.counters["ns/pixel"] = benchmark::Counter(
      pixels / 1e9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Registers measure(state, operation, width, height) for operations with a name at a small and a large size,
/// and next to them a copy of as many bytes as a 32-bit picture has.
template <class Operation, std::size_t count, class Measure>
bool registerAll(const char* room, const Operation (&operations)[count], Measure measure) {
  for (const auto& [width, height] : {std::pair{320, 240}, std::pair{1920, 1080}}) {
    const auto nameOf = [&, w = width, h = height](const char* operation) {
      std::ostringstream name;
      name << room << '/' << operation << '/' << w << 'x' << h;
      return name.str();
    };
    for (const Operation& operation : operations) {
      benchmark::RegisterBenchmark(nameOf(operation.name).c_str(), measure, operation, width, height);
    }
    benchmark::RegisterBenchmark(nameOf("Copy").c_str(), copyBytes,
                                 static_cast<std::size_t>(width * height) * 4);
  }
  return true;
}

}  // namespace bench
