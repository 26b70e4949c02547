#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/palettes.h"

namespace {

using Map = test::ColourMap;
using test::OwnedDib;
using Conversion = BITMAPINFOHEADER* (*)(BITMAPINFOHEADER*, Map*, CQorCommonProgress*);

struct Converter {
  int from, to;
  Conversion convert;
};
const Converter converters[] = {
    {1, 4, CBitmapConverter::Convert1BitsDibTo4BitsDib}, {1, 8, CBitmapConverter::Convert1BitsDibTo8BitsDib},
    {4, 8, CBitmapConverter::Convert4BitsDibTo8BitsDib}, {8, 4, CBitmapConverter::Convert8BitsDibTo4BitsDib},
    {8, 1, CBitmapConverter::Convert8BitsDibTo1BitsDib}, {4, 1, CBitmapConverter::Convert4BitsDibTo1BitsDib},
};

/// The conversion as it is told, with the map's colours at their place in a list: in a block with room behind
/// it for the entries that pass its end.
std::vector<BYTE> plainConversion(const OwnedDib& source, int to, const std::vector<DWORD>* map) {
  const OwnedDib empty =
      test::image(source->biWidth, source->biHeight, to, map != nullptr ? *map : std::vector<DWORD>());
  std::vector<BYTE> block = test::bytesOf(empty);
  const std::size_t size = block.size();
  block.resize(size + 1024);
  const auto entry = [&](std::size_t index) { return block.data() + 40 + 4 * index; };

  const std::vector<DWORD> old = test::entriesOf(source);
  std::vector<int> translated;
  std::size_t next = 0;
  for (const DWORD& colour : old) {
    if (map != nullptr) {
      const auto found = std::find(map->begin(), map->end(), colour);
      translated.push_back(found != map->end() ? static_cast<int>(found - map->begin()) : 0);
      continue;
    }
    translated.push_back(static_cast<int>(next));
    std::size_t equal = source->biBitCount > to ? 0 : next;  // palettes that grow are only copied
    while (equal < next && std::memcmp(entry(equal), &colour, 4) != 0) ++equal;
    if (equal == next) std::memcpy(entry(next++), &colour, 4);
  }

  auto* result = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
  int value = 0;
  for (int y = 0; y < source->biHeight; ++y) {
    BYTE* row = test::rowOf(result, y);
    for (int x = 0; x < source->biWidth; ++x) {
      const DWORD index = test::pixel(source, x, y);
      if (index < translated.size()) value = translated[index];  // else as the pixel before
      if (to == 1) Set1BitPixel(row, value > 0, x);
      if (to == 4) Set4BitPixel(row, static_cast<BYTE>(value), x);
      if (to == 8) Set8BitPixel(row, static_cast<BYTE>(value), x);
    }
  }
  block.resize(size);
  return block;
}

TEST(IndexedConversions, AreThoseOfThePlainSearchAlsoBeyondTheirLimits) {
  test::Random random(13);
  for (int round = 0; round < 1800; ++round) {
    const Converter& converter = converters[round % 6];
    const int width = 1 + test::below(random, round % 10 == 0 ? 1200 : 70);
    // Palettes of any size, with repeated entries when there are few colours, the reserved byte included.
    std::vector<DWORD> palette(static_cast<std::size_t>(test::below(random, (1 << converter.from) + 1)));
    const int colours = 1 + test::below(random, 40);
    for (DWORD& entry : palette) entry = static_cast<DWORD>(test::below(random, colours)) * 0x03010207;
    const OwnedDib source =
        test::randomImage(width, 1 + test::below(random, 4), converter.from, random, palette);
    std::vector<DWORD> shared;
    for (DWORD i = 0; i < 40 && shared.size() < std::size_t{1} << converter.to; ++i) {
      if (random() % 2 != 0) shared.push_back(i * 0x03010207);
    }
    std::shuffle(shared.begin(), shared.end(), random);
    const bool mapped = round % 4 < 2;
    Map map = test::mapOf(shared);
    const OwnedDib result(converter.convert(source.get(), mapped ? &map : nullptr, nullptr));
    ASSERT_TRUE(result);
    ASSERT_EQ(test::bytesOf(result), plainConversion(source, converter.to, mapped ? &shared : nullptr))
        << round << ": " << converter.from << " to " << converter.to << ", width " << width;
    EXPECT_EQ(map.GetCount(), static_cast<int>(shared.size()));
  }
}

TEST(NarrowingConversions, SendARepeatedEntryToTheNextNewNumber) {
  const OwnedDib source = test::imageOf(6, 1, 8, {0, 1, 2, 3, 4, 5}, {0xA, 0xB, 0xA, 0xC, 0xB, 0xA});
  const OwnedDib result(CBitmapConverter::Convert8BitsDibTo4BitsDib(source.get(), nullptr, nullptr));
  EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{0, 1, 2, 2, 3, 3}));
  std::vector<DWORD> palette{0xA, 0xB, 0xC};
  palette.resize(16);
  EXPECT_EQ(test::entriesOf(result), palette);
}

TEST(IndexedConversions, KeepOfANumberInTheMapWhatFits) {
  // One bit is set above 0 only; a byte takes the lowest bits.
  Map map;
  DWORD key = 0x10;
  int value = -5;
  map.SetAt(key, value);
  const OwnedDib source = test::imageOf(1, 1, 4, {0}, {0x10});
  const OwnedDib bits(CBitmapConverter::Convert4BitsDibTo1BitsDib(source.get(), &map, nullptr));
  EXPECT_EQ(test::pixel(bits, 0, 0), 0U);
  const OwnedDib bytes(CBitmapConverter::Convert4BitsDibTo8BitsDib(source.get(), &map, nullptr));
  EXPECT_EQ(test::pixel(bytes, 0, 0), 251U);
}

}  // namespace
