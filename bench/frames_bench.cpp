#include "cel/mask_on_demand.h"
#include "frames/frames.h"
#include "gifmask/gifmask.h"
#include "support.h"

/// Frame operations on 1920 x 1080, next to a copy of the frame. Peers on other machines:
/// docs/performance.md.
namespace {

using bench::OwnedDib;
using dibkit::OwnedRegion;

constexpr int width = 1920;
constexpr int height = 1080;

/// The same picture in 24 bits.
OwnedDib at24(const OwnedDib& image) {
  OwnedDib result = dibkit::createDib(image->biWidth, image->biHeight, 24, 0);
  const dibkit::View from(image.get());
  const dibkit::View to(result.get());
  for (int y = 0; y < from.height(); ++y) {
    for (int x = 0; x < from.width(); ++x) {
      const DWORD pixel = dibkit::Bgra32::get(from.row(y), x);
      dibkit::Bgr24::put(to.row(y), x, dibkit::Bgra32::colour(pixel, dibkit::PaletteTable()));
    }
  }
  return result;
}
OwnedDib photo24() { return at24(bench::photo(width, height)); }
OwnedDib cartoon24() { return at24(bench::cartoon(width, height)); }

/// One flat colour.
OwnedDib flat24() {
  OwnedDib result = dibkit::createDib(width, height, 24, 0);
  std::memset(GetDIBBits(result.get()), 0x55, std::size_t{width} * 3 * height);
  return result;
}

/// The mask that goes with the cartoon's one transparent colour.
OwnedDib cartoonMask() {
  const OwnedDib image = bench::cartoon(width, height);
  OwnedDib mask = dibkit::createMask(width, height);
  const dibkit::View from(image.get());
  const dibkit::View to(mask.get());
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      Set1BitPixel(to.row(y), dibkit::Bgra32::get(from.row(y), x) >> 24 == 0 ? 1 : 0, x);
    }
  }
  return mask;
}

void drop(BITMAPINFOHEADER* image) { OwnedDib taken(image); }

void copyFrame24(benchmark::State& state) { bench::copyBytes(state, std::size_t{width} * 3 * height); }
BENCHMARK(copyFrame24)->Name("Frames/memcpy of 24 bits/1920x1080");
void copyFrame32(benchmark::State& state) { bench::copyBytes(state, std::size_t{width} * 4 * height); }
BENCHMARK(copyFrame32)->Name("Frames/memcpy of 32 bits/1920x1080");

void compareBytes(benchmark::State& state) {
  const OwnedDib a = photo24();
  const OwnedDib b(CBitmapCreator::Clone(a.get()));
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        std::memcmp(GetDIBBits(a.get()), GetDIBBits(b.get()), std::size_t{width} * 3 * height));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(compareBytes)->Name("Frames/memcmp of 24 bits/1920x1080");

void compareFrames(benchmark::State& state, int bitCount, bool masked) {
  OwnedDib a = bitCount == 32   ? bench::photo(width, height)
               : bitCount == 24 ? photo24()
                                : dibkit::createDib(width, height, bitCount, 0);
  const OwnedDib b(CBitmapCreator::Clone(a.get()));
  const OwnedDib mask = masked ? cartoonMask() : nullptr;
  const OwnedDib maskB(CBitmapCreator::Clone(mask.get()));
  for (auto _ : state) benchmark::DoNotOptimize(CompareFrame(a.get(), mask.get(), b.get(), maskB.get()));
}
BENCHMARK_CAPTURE(compareFrames, 24, 24, false)->Name("Frames/CompareFrame 24 bits/1920x1080");
BENCHMARK_CAPTURE(compareFrames, 24m, 24, true)->Name("Frames/CompareFrame 24 bits masked/1920x1080");
BENCHMARK_CAPTURE(compareFrames, 32, 32, false)->Name("Frames/CompareFrame 32 bits/1920x1080");
BENCHMARK_CAPTURE(compareFrames, 8, 8, false)->Name("Frames/CompareFrame 8 bits/1920x1080");

void compareDepths(benchmark::State& state) {
  const OwnedDib a = bench::photo(width, height);
  const OwnedDib b = photo24();
  for (auto _ : state) benchmark::DoNotOptimize(CompareFrame(a.get(), nullptr, b.get(), nullptr));
}
BENCHMARK(compareDepths)->Name("Frames/CompareFrame 32 with 24 bits/1920x1080");

void crop32(benchmark::State& state, bool ellipse) {
  const OwnedDib image = bench::photo(width, height);
  const OwnedRegion region(ellipse ? CreateEllipticRgn(0, 0, width, height)
                                   : CreateRectRgn(0, 0, width, height));
  for (auto _ : state) drop(Crop32BitsDIB(image.get(), region.get()));
}
BENCHMARK_CAPTURE(crop32, rectangle, false)->Name("Frames/Crop32BitsDIB rectangle/1920x1080");
BENCHMARK_CAPTURE(crop32, ellipse, true)->Name("Frames/Crop32BitsDIB ellipse/1920x1080");

void cropFrame(benchmark::State& state) {
  const OwnedDib frame = photo24();
  const OwnedRegion region(CreateEllipticRgn(0, 0, width, height));
  for (auto _ : state) {
    BITMAPINFOHEADER* image = nullptr;
    BITMAPINFOHEADER* mask = nullptr;
    CropFrame(frame.get(), nullptr, region.get(), &image, &mask);
    drop(image);
    drop(mask);
  }
}
BENCHMARK(cropFrame)->Name("Frames/CropFrame 24 bits ellipse/1920x1080");

void wand(benchmark::State& state, OwnedDib (*make)(), int tolerance) {
  const OwnedDib frame = make();
  for (auto _ : state) {
    const OwnedRegion region(
        MagicWandRegion(frame.get(), nullptr, {0, 0}, {width / 2, height / 2}, tolerance, {width, height}));
    benchmark::DoNotOptimize(region.get());
  }
}
BENCHMARK_CAPTURE(wand, flat, flat24, 10)->Name("Frames/MagicWandRegion flat/1920x1080");
BENCHMARK_CAPTURE(wand, cartoon, cartoon24, 60)->Name("Frames/MagicWandRegion cartoon/1920x1080");

void opacityArea(benchmark::State& state, bool cartoon) {
  const OwnedDib mask = cartoon ? cartoonMask() : dibkit::createMask(width, height);
  for (auto _ : state) {
    const OwnedRegion region(CalcOpacityAreaRgn(mask.get()));
    benchmark::DoNotOptimize(region.get());
  }
}
BENCHMARK_CAPTURE(opacityArea, full, false)->Name("Frames/CalcOpacityAreaRgn full/1920x1080");
BENCHMARK_CAPTURE(opacityArea, cartoon, true)->Name("Frames/CalcOpacityAreaRgn cartoon/1920x1080");

void removeNoise(benchmark::State& state, bool masked) {
  const OwnedDib frame = photo24();
  const OwnedDib mask = masked ? cartoonMask() : nullptr;
  for (auto _ : state) drop(RemoveNoiseDIB(frame.get(), mask.get(), nullptr));
}
BENCHMARK_CAPTURE(removeNoise, opaque, false)->Name("Frames/RemoveNoiseDIB/1920x1080");
BENCHMARK_CAPTURE(removeNoise, masked, true)->Name("Frames/RemoveNoiseDIB masked/1920x1080");

void mosaic(benchmark::State& state, int block) {
  const OwnedDib image = bench::photo(width, height);
  for (auto _ : state) drop(Mosaic32BitsDIB(image.get(), block));
}
BENCHMARK_CAPTURE(mosaic, 2, 2)->Name("Frames/Mosaic32BitsDIB block 2/1920x1080");
BENCHMARK_CAPTURE(mosaic, 16, 16)->Name("Frames/Mosaic32BitsDIB block 16/1920x1080");

/// Runs an operation that hands out an image and a mask.
template <class Operation>
void run(benchmark::State& state, Operation&& operation) {
  for (auto _ : state) {
    BITMAPINFOHEADER* image = nullptr;
    BITMAPINFOHEADER* mask = nullptr;
    POINT position{};
    operation(&image, &mask, &position);
    drop(image);
    drop(mask);
  }
}

void blendByFrame(benchmark::State& state, OwnedDib (*make)(), bool masked) {
  const OwnedDib a = make();
  const OwnedDib b = make();
  const OwnedDib mask = masked ? cartoonMask() : nullptr;
  run(state, [&](auto image, auto outMask, POINT*) {
    AlphaBlendByFrame(a.get(), mask.get(), {0, 0}, b.get(), nullptr, {0, 0}, 0, 100, image, outMask);
  });
}
BENCHMARK_CAPTURE(blendByFrame, photo, photo24, false)->Name("Frames/AlphaBlendByFrame photo/1920x1080");
BENCHMARK_CAPTURE(blendByFrame, cartoon, cartoon24, false)
    ->Name("Frames/AlphaBlendByFrame cartoon/1920x1080");
BENCHMARK_CAPTURE(blendByFrame, masked, cartoon24, true)
    ->Name("Frames/AlphaBlendByFrame cartoon masked/1920x1080");

void blendByFrame2(benchmark::State& state, bool deep) {
  const OwnedDib a = deep ? bench::photo(width, height) : cartoon24();
  const OwnedDib b = deep ? bench::photo(width, height) : cartoon24();
  run(state, [&](auto image, auto mask, POINT* position) {
    AlphaBlendByFrame2(a.get(), nullptr, {0, 0}, b.get(), nullptr, {0, 0}, 0, 100, {width, height}, image,
                       mask, position);
  });
}
BENCHMARK_CAPTURE(blendByFrame2, photo, true)->Name("Frames/AlphaBlendByFrame2 32-bit photo/1920x1080");
BENCHMARK_CAPTURE(blendByFrame2, cartoon, false)->Name("Frames/AlphaBlendByFrame2 cartoon/1920x1080");

void mergeFrames(benchmark::State& state) {
  const OwnedDib a = cartoon24();
  const OwnedDib mask = cartoonMask();
  const OwnedDib b = flat24();
  run(state, [&](auto image, auto outMask, POINT* position) {
    MergeFrames(a.get(), mask.get(), {0, 0}, b.get(), nullptr, {0, 0}, image, outMask, position);
  });
}
BENCHMARK(mergeFrames)->Name("Frames/MergeFrames cartoon/1920x1080");

void fillFrame(benchmark::State& state, OwnedDib (*make)()) {
  const OwnedDib frame = make();
  run(state, [&](auto image, auto mask, POINT*) {
    ExtFillFrame(frame.get(), nullptr, 0x555555, 0x0000FF, 60, 40, image, mask);
  });
}
BENCHMARK_CAPTURE(fillFrame, flat, flat24)->Name("Frames/ExtFillFrame flat/1920x1080");
BENCHMARK_CAPTURE(fillFrame, photo, photo24)->Name("Frames/ExtFillFrame photo/1920x1080");

void fillAdjacent(benchmark::State& state, OwnedDib (*make)()) {
  const OwnedDib frame = make();
  run(state, [&](auto image, auto mask, POINT*) {
    ExtFillAdjacentArea(frame.get(), nullptr, 0x555555, 0x0000FF, 60, 80, {width / 2, height / 2}, image,
                        mask);
  });
}
BENCHMARK_CAPTURE(fillAdjacent, flat, flat24)->Name("Frames/ExtFillAdjacentArea flat/1920x1080");
BENCHMARK_CAPTURE(fillAdjacent, cartoon, cartoon24)->Name("Frames/ExtFillAdjacentArea cartoon/1920x1080");

void fillBackground(benchmark::State& state) {
  const OwnedDib frame = cartoon24();
  const OwnedDib mask = dibkit::createMask(width, height);
  run(state, [&](auto image, auto outMask, POINT* position) {
    ExtFillBkgnd(frame.get(), mask.get(), {20, 20}, {width + 40, height + 40}, 0x0000FF, 60, 0, {0, 0}, image,
                 outMask, position);
  });
}
BENCHMARK(fillBackground)->Name("Frames/ExtFillBkgnd/1920x1080");

void splitForGif(benchmark::State& state, OwnedDib (*make)(int, int)) {
  const OwnedDib source = make(width, height);
  run(state, [&](auto image, auto mask, POINT*) {
    CMaskedBitmapTransform::Spilt32BitsDIBForGIF(source.get(), 0xFFFFFF, 0, image, mask);
  });
}
BENCHMARK_CAPTURE(splitForGif, photo, bench::photo)->Name("Frames/Spilt32BitsDIBForGIF photo/1920x1080");
BENCHMARK_CAPTURE(splitForGif, cartoon, bench::cartoon)
    ->Name("Frames/Spilt32BitsDIBForGIF cartoon/1920x1080");

}  // namespace
