#include <functional>
#include <unordered_map>

#include <libimagequant.h>

#include "colours.h"
#include "palette/palette.h"

namespace {

using bench::OwnedDib;
using Dib = BITMAPINFOHEADER*;
using Map = CMap<DWORD, DWORD&, int, int&>;

/// Gray levels of a photo: 8 bits, all indexes in use.
OwnedDib indexed8(int width, int height) {
  return OwnedDib(
      CBitmapConverter::Convert24BitsDIBTo256GraysDIB(bench::photo24(width, height).get(), nullptr));
}

/// The same pixels, read as narrower ones.
OwnedDib indexed(int bitCount, int width, int height) {
  const OwnedDib bytes = indexed8(width, height);
  OwnedDib dib = dibkit::createDib(width, height, bitCount, 0);
  const dibkit::View to(dib.get());
  const dibkit::View from(bytes.get());
  for (int y = 0; y < height; ++y) std::memcpy(to.row(y), from.row(y), static_cast<std::size_t>(to.stride()));
  return dib;
}

OwnedDib pictureOf(int bitCount, int width, int height) {
  switch (bitCount) {
    case 8:
      return indexed8(width, height);
    case 16:
      return OwnedDib(CBitmapConverter::ConvertDIBTo16Bits(bench::photo(width, height).get(), nullptr));
    case 24:
      return bench::photo24(width, height);
    case 32:
      return bench::photo(width, height);
    default:
      return indexed(bitCount, width, height);
  }
}

struct Conversion {
  const char* name;
  int from, to;
  std::function<Dib(Dib)> convert;
};

using Converter = CBitmapConverter;
const Conversion conversions[] = {
    {"Convert1BitsTo24Bits", 1, 24, [](Dib dib) { return Converter::Convert1BitsTo24Bits(dib, nullptr); }},
    {"Convert4BitsTo24Bits", 4, 24, [](Dib dib) { return Converter::Convert4BitsTo24Bits(dib, nullptr); }},
    {"Convert8BitsTo24Bits", 8, 24, [](Dib dib) { return Converter::Convert8BitsTo24Bits(dib, nullptr); }},
    {"Convert16BitsTo24Bits", 16, 24, [](Dib dib) { return Converter::Convert16BitsTo24Bits(dib, nullptr); }},
    {"Convert32BitsTo24Bits", 32, 24, [](Dib dib) { return Converter::Convert32BitsTo24Bits(dib, nullptr); }},
    {"Convert8BitsTo16Bits", 8, 16, [](Dib dib) { return Converter::Convert8BitsTo16Bits(dib, nullptr); }},
    {"Convert24BitsTo16Bits", 24, 16, [](Dib dib) { return Converter::Convert24BitsTo16Bits(dib, nullptr); }},
    {"Convert32BitsTo16Bits", 32, 16, [](Dib dib) { return Converter::Convert32BitsTo16Bits(dib, nullptr); }},
    {"Convert24BitsTo32Bits", 24, 32,
     [](Dib dib) { return Converter::Convert24BitsTo32Bits(dib, 0, nullptr); }},
    {"Convert24BitsDIBTo256GraysDIB", 24, 8,
     [](Dib dib) { return Converter::Convert24BitsDIBTo256GraysDIB(dib, nullptr); }},
    {"Convert8BitsGrayDibTo1BitsDib", 8, 1,
     [](Dib dib) { return Converter::Convert8BitsGrayDibTo1BitsDib(dib, 100, nullptr); }},
    {"Convert1BitsDibTo8BitsDib", 1, 8,
     [](Dib dib) { return Converter::Convert1BitsDibTo8BitsDib(dib, nullptr, nullptr); }},
    {"Convert8BitsDibTo4BitsDib", 8, 4,
     [](Dib dib) { return Converter::Convert8BitsDibTo4BitsDib(dib, nullptr, nullptr); }},
};

void measure(benchmark::State& state, const Conversion& conversion, int width, int height) {
  const OwnedDib source = pictureOf(conversion.from, width, height);
  for (auto _ : state) {
    const OwnedDib result(conversion.convert(source.get()));
    benchmark::DoNotOptimize(result.get());
    benchmark::ClobberMemory();
  }
  bench::countPixels(state, width, height);
}

/// What a host writes without the library: each pixel through the standard hash.
OwnedDib reduceWithStandardMap(const OwnedDib& source) {
  const dibkit::ConstView from(source.get());
  OwnedDib result = dibkit::createDib(from.width(), from.height(), 8, 0, dibkit::InitialPixels::unwritten);
  const dibkit::View to(result.get());
  std::unordered_map<DWORD, int> indexes;
  for (int y = 0; y < from.height(); ++y) {
    for (int x = 0; x < from.width(); ++x) {
      const DWORD key = dibkit::packRgb(dibkit::Bgr24::get(from.row(y), x));
      to.row(y)[x] = static_cast<BYTE>(indexes.emplace(key, static_cast<int>(indexes.size())).first->second);
    }
  }
  return result;
}

Map mapOf(const OwnedDib& source) {
  const OwnedDib reduced(CBitmapConverter::ConvertTrueDibToLowBitsDib(source.get(), nullptr));
  Map map;
  CPaletteFuns::SumDibImagePalEntries(
      map, reinterpret_cast<RGBQUAD*>(reinterpret_cast<BYTE*>(reduced.get()) + reduced->biSize),
      static_cast<int>(GetDIBPaletteSize(reduced.get())));
  return map;
}

/// Onto a palette of 256 colours, by the platform's matching.
void measureLogicalPalette(benchmark::State& state, const OwnedDib& source, UINT bitCount) {
  std::vector<BYTE> block(4 + 4 * 256);
  auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
  description->palVersion = 0x300;
  description->palNumEntries = static_cast<WORD>(1U << bitCount);
  for (int i = 0; i < 256; ++i) {
    description->palPalEntry[i] = {static_cast<BYTE>(i & 0xE0), static_cast<BYTE>(i << 3 & 0xE0),
                                   static_cast<BYTE>(i << 6 & 0xC0), 0};
  }
  CPalette palette;
  palette.CreatePalette(description);
  for (auto _ : state) {
    const OwnedDib result(
        ConvertDIBFormat(source.get(), bitCount, static_cast<HPALETTE>(palette.GetSafeHandle())));
    benchmark::DoNotOptimize(result.get());
  }
  bench::countPixels(state, source->biWidth, source->biHeight);
}

/// Remapping onto a given palette by the quantising library; making the palette is not measured.
void measureQuantiser(benchmark::State& state, const OwnedDib& source) {
  const dibkit::ConstView view(source.get());
  std::vector<BYTE> rgba;
  for (int y = 0; y < view.height(); ++y) {
    for (int x = 0; x < view.width(); ++x) {
      const dibkit::Rgb colour = dibkit::Bgr24::get(view.row(y), x);
      rgba.insert(rgba.end(), {colour.red, colour.green, colour.blue, 255});
    }
  }
  liq_attr* attributes = liq_attr_create();
  liq_image* image = liq_image_create_rgba(attributes, rgba.data(), view.width(), view.height(), 0);
  liq_result* quantised = nullptr;
  if (liq_image_quantize(image, attributes, &quantised) != LIQ_OK) return;
  liq_set_dithering_level(quantised, 0);
  std::vector<BYTE> indexes(rgba.size() / 4);
  for (auto _ : state) {
    liq_write_remapped_image(quantised, image, indexes.data(), indexes.size());
    benchmark::ClobberMemory();
  }
  liq_result_destroy(quantised);
  liq_image_destroy(image);
  liq_attr_destroy(attributes);
  bench::countPixels(state, view.width(), view.height());
}

template <class Reduce>
void registerReduction(const char* name, OwnedDib (*picture)(int, int), Reduce reduce) {
  for (const auto& [width, height] : bench::sizes) {
    benchmark::RegisterBenchmark(bench::nameOf(name, width, height).c_str(),
                                 [=, width = width, height = height](benchmark::State& state) {
                                   const OwnedDib source = picture(width, height);
                                   Map map = mapOf(source);
                                   for (auto _ : state) {
                                     const OwnedDib result = reduce(source, map);
                                     benchmark::DoNotOptimize(result.get());
                                   }
                                   bench::countPixels(state, width, height);
                                 });
  }
}

const bool registered = [] {
  for (const auto& [width, height] : bench::sizes) {
    for (const Conversion& conversion : conversions) {
      const std::string name = std::string("Convert/") + conversion.name;
      benchmark::RegisterBenchmark(bench::nameOf(name, width, height).c_str(), measure, conversion, width,
                                   height);
      const auto bits = static_cast<std::size_t>(conversion.from + conversion.to);
      benchmark::RegisterBenchmark(bench::nameOf(name + "/Copy", width, height).c_str(),
                                   [=, width = width, height = height](benchmark::State& state) {
                                     bench::copyBytes(state,
                                                      static_cast<std::size_t>(width * height) * bits / 16);
                                     bench::countPixels(state, width, height);
                                   });
    }
  }
  using Reduce = OwnedDib (*)(const OwnedDib&, Map&);
  const Reduce exact = [](const OwnedDib& source, Map&) {
    return OwnedDib(CBitmapConverter::ConvertTrueDibTo8BitsDib(source.get(), 0, nullptr));
  };
  const Reduce shared = [](const OwnedDib& source, Map& map) {
    return OwnedDib(Convert24BitsDIBToLowerBitsDIB(source.get(), map));
  };
  const Reduce standard = [](const OwnedDib& source, Map&) { return reduceWithStandardMap(source); };
  registerReduction("Convert/ConvertTrueDibTo8BitsDib/photo", bench::photo256, exact);
  registerReduction("Convert/Convert24BitsDIBToLowerBitsDIB/photo", bench::photo256, shared);
  registerReduction("Convert/StandardMapLoop/photo", bench::photo256, standard);
  registerReduction("Convert/ConvertTrueDibTo8BitsDib/cartoon", bench::cartoon24, exact);
  registerReduction("Convert/Convert24BitsDIBToLowerBitsDIB/cartoon", bench::cartoon24, shared);
  registerReduction("Convert/StandardMapLoop/cartoon", bench::cartoon24, standard);
  for (const auto& [width, height] : bench::sizes) {
    for (const UINT bitCount : {8U, 4U, 1U}) {
      const std::string name = "Convert/ConvertDIBFormat/photo/" + std::to_string(bitCount) + "Bits";
      benchmark::RegisterBenchmark(bench::nameOf(name, width, height).c_str(),
                                   [=, width = width, height = height](benchmark::State& state) {
                                     measureLogicalPalette(state, bench::photo24(width, height), bitCount);
                                   });
    }
    benchmark::RegisterBenchmark(bench::nameOf("Convert/QuantiserRemap/photo", width, height).c_str(),
                                 [width = width, height = height](benchmark::State& state) {
                                   measureQuantiser(state, bench::photo24(width, height));
                                 });
  }
  return true;
}();

}  // namespace
