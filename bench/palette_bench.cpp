#include <unordered_set>

#include "colours.h"
#include "palette/palette.h"

namespace {

using bench::OwnedDib;

/// What a host writes without the library.
int countWithStandardSet(BITMAPINFOHEADER* dib) {
  const dibkit::ConstView view(dib);
  std::unordered_set<DWORD> colours;
  for (int y = 0; y < view.height(); ++y) {
    for (int x = 0; x < view.width(); ++x) {
      colours.insert(dibkit::packRgb(dibkit::Bgr24::get(view.row(y), x)));
    }
  }
  return static_cast<int>(colours.size());
}

int countIntoMap(BITMAPINFOHEADER* dib) {
  CMap<DWORD, DWORD&, int, int&> map;
  return CPaletteFuns::GetColorsNumFromTrueDib(dib, &map);
}

int countIndexes(BITMAPINFOHEADER* dib) {
  CMap<int, int&, int, int&> map;
  return CPaletteFuns::GetColorsNumFromPaletteDib(dib, &map);
}

OwnedDib grayPhoto(int width, int height) {
  return OwnedDib(
      CBitmapConverter::Convert24BitsDIBTo256GraysDIB(bench::photo24(width, height).get(), nullptr));
}

struct Count {
  const char* name;
  OwnedDib (*picture)(int width, int height);
  int (*count)(BITMAPINFOHEADER* dib);
};
constexpr Count counts[] = {
    {"GetColorsNumFrom24BitsDib/photo", bench::photo256, CPaletteFuns::GetColorsNumFrom24BitsDib},
    {"GetColorsNumFromTrueDib/photo", bench::photo256, countIntoMap},
    {"StandardSetLoop/photo", bench::photo256, countWithStandardSet},
    {"GetColorsNumFrom24BitsDib/cartoon", bench::cartoon24, CPaletteFuns::GetColorsNumFrom24BitsDib},
    {"StandardSetLoop/cartoon", bench::cartoon24, countWithStandardSet},
    {"GetColorsNumFromPaletteDib/photo", grayPhoto, countIndexes},
    {"GetThreshValueForm8BitsGrayDib/photo", grayPhoto, CPaletteFuns::GetThreshValueForm8BitsGrayDib},
};

void measure(benchmark::State& state, const Count& operation, int width, int height) {
  const OwnedDib dib = operation.picture(width, height);
  for (auto _ : state) benchmark::DoNotOptimize(operation.count(dib.get()));
  bench::countPixels(state, width, height);
}

const bool registered = [] {
  for (const auto& [width, height] : bench::sizes) {
    for (const Count& operation : counts) {
      const std::string name = std::string("Palette/") + operation.name;
      benchmark::RegisterBenchmark(bench::nameOf(name, width, height).c_str(), measure, operation, width,
                                   height);
    }
    for (const int bytes : {1, 3}) {
      const std::string name = "Palette/Copy" + std::to_string(8 * bytes) + "Bits";
      benchmark::RegisterBenchmark(bench::nameOf(name, width, height).c_str(),
                                   [=, width = width, height = height](benchmark::State& state) {
                                     bench::copyBytes(state,
                                                      static_cast<std::size_t>(width * height * bytes));
                                     bench::countPixels(state, width, height);
                                   });
    }
  }
  return true;
}();

}  // namespace
