#pragma once

#include <sstream>
#include <string>
#include <string_view>

#include "convert/convert.h"
#include "support.h"

/// Pictures of the depths that conversions start from, and names and figures of their benchmarks.
namespace bench {

inline OwnedDib photo24(int width, int height) {
  return OwnedDib(CBitmapConverter::ConvertDIBTo24Bits(photo(width, height).get(), nullptr));
}

inline OwnedDib cartoon24(int width, int height) {
  return OwnedDib(CBitmapConverter::ConvertDIBTo24Bits(cartoon(width, height).get(), nullptr));
}

/// A photograph of few colours: three, three and two bits of noise and gradient a channel, 24 bits a pixel.
inline OwnedDib photo256(int width, int height) {
  OwnedDib dib = photo24(width, height);
  const dibkit::View view(dib.get());
  for (int y = 0; y < height; ++y) {
    BYTE* row = view.row(y);
    for (int x = 0; x < width; ++x, row += 3) {
      row[0] &= 0xC0;
      row[1] &= 0xE0;
      row[2] &= 0xE0;
    }
  }
  return dib;
}

inline std::string nameOf(std::string_view operation, int width, int height) {
  std::ostringstream name;
  name << operation << '/' << width << 'x' << height;
  return name.str();
}

inline void countPixels(benchmark::State& state, int width, int height) {
  const double pixels = static_cast<double>(width) * height;
  state.counters["ns/pixel"] = benchmark::Counter(
      pixels / 1e9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

constexpr std::pair<int, int> sizes[] = {{320, 240}, {1920, 1080}};

}  // namespace bench
