#include "split/split.h"
#include "support.h"

/// Finding and cutting what changed between two frames of 1920 x 1080, next to memcmp of both.
namespace {

using bench::OwnedDib;

constexpr int width = 1920;
constexpr int height = 1080;

OwnedDib noise(int bitCount) {
  OwnedDib frame = dibkit::createDib(width, height, bitCount, 0);
  if (bitCount == 8) {
    auto* entries = reinterpret_cast<RGBQUAD*>(frame.get() + 1);
    for (int i = 0; i < 256; ++i)
      entries[i] = {static_cast<BYTE>(i), static_cast<BYTE>(i), static_cast<BYTE>(i), 0};
  }
  const dibkit::View view(frame.get());
  std::mt19937 random(3);
  for (int y = 0; y < height; ++y) {
    for (std::ptrdiff_t i = 0; i < view.stride(); ++i) view.row(y)[i] = static_cast<BYTE>(random());
  }
  return frame;
}

/// A copy with another colour in a rectangle.
OwnedDib changed(const OwnedDib& frame, const RECT& rect) {
  OwnedDib copy(CBitmapCreator::Clone(frame.get()));
  const dibkit::View view(copy.get());
  const std::ptrdiff_t bytes = view.bitCount() / 8;
  for (LONG y = rect.top; y < rect.bottom; ++y) {
    std::memset(view.row(static_cast<int>(y)) + rect.left * bytes, 7,
                static_cast<std::size_t>((rect.right - rect.left) * bytes));
  }
  return copy;
}

void compareBytes(benchmark::State& state, int bitCount) {
  const OwnedDib a = noise(bitCount);
  const OwnedDib b(CBitmapCreator::Clone(a.get()));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        std::memcmp(GetDIBBits(a.get()), GetDIBBits(b.get()),
                    static_cast<std::size_t>(width) * height * static_cast<std::size_t>(bitCount / 8)));
    benchmark::ClobberMemory();
  }
}
BENCHMARK_CAPTURE(compareBytes, 24, 24)->Name("Split/memcmp of 24 bits/1920x1080");
BENCHMARK_CAPTURE(compareBytes, 8, 8)->Name("Split/memcmp of 8 bits/1920x1080");

void reset(benchmark::State& state, int bitCount, RECT rect) {
  const OwnedDib a = noise(bitCount);
  const OwnedDib b = changed(a, rect);
  CSpiltEmbededDIBEx splitter;
  for (auto _ : state) {
    splitter.Reset(a.get(), nullptr, {0, 0}, b.get(), nullptr, {0, 0});
    benchmark::DoNotOptimize(splitter.m_nBottomSame);
  }
}
BENCHMARK_CAPTURE(reset, equal, 24, RECT{0, 0, 0, 0})->Name("Split/Reset 24 bits equal/1920x1080");
BENCHMARK_CAPTURE(reset, middle, 24, RECT{800, 400, 1000, 600})
    ->Name("Split/Reset 24 bits middle changed/1920x1080");
BENCHMARK_CAPTURE(reset, corners, 24, RECT{1, 1, width - 1, height - 1})
    ->Name("Split/Reset 24 bits all but the edge changed/1920x1080");
BENCHMARK_CAPTURE(reset, eight, 8, RECT{800, 400, 1000, 600})
    ->Name("Split/Reset 8 bits middle changed/1920x1080");

template <class Splitter>
void cut(benchmark::State& state, int bitCount) {
  const OwnedDib a = noise(bitCount);
  const OwnedDib b = changed(a, {100, 100, width - 100, height - 100});
  Splitter splitter;
  splitter.Reset(a.get(), nullptr, {0, 0}, b.get(), nullptr, {0, 0});
  for (auto _ : state) {
    BITMAPINFOHEADER* image = nullptr;
    BITMAPINFOHEADER* mask = nullptr;
    POINT position{};
    splitter.SplitTransparency(&image, &mask, &position, nullptr);
    const OwnedDib takenImage(image);
    const OwnedDib takenMask(mask);
  }
}
void cutIndexes(benchmark::State& state) { cut<CSpiltEmbededDIB>(state, 8); }
BENCHMARK(cutIndexes)->Name("Split/SplitTransparency 8 bits/1920x1080");
void cutColours(benchmark::State& state) { cut<CSpiltEmbededDIBEx>(state, 24); }
BENCHMARK(cutColours)->Name("Split/SplitTransparency 24 bits/1920x1080");

}  // namespace
