#include "support/palettes.h"

#include <functional>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "convert/palette_finish.h"

/// The conversions that give a picture a palette, each beside a plain search, also beyond its limits.
namespace {

using Convert = CBitmapConverter;
using Map = test::ColourMap;
using test::below;
using test::OwnedDib;

/// An image with room behind it, for the palette entries that are written past its end.
class RoomyImage {
 public:
  RoomyImage(const OwnedDib& empty) : block_(test::bytesOf(empty)), size_(block_.size()) {
    block_.resize(size_ + 1024);
  }
  BITMAPINFOHEADER* dib() { return reinterpret_cast<BITMAPINFOHEADER*>(block_.data()); }
  BYTE* entry(std::size_t index) { return block_.data() + 40 + 4 * index; }
  /// The first entry below `count` that starts with these bytes, else `count`.
  std::size_t find(std::size_t count, DWORD colour, std::size_t bytes) {
    std::size_t i = 0;
    while (i < count && std::memcmp(entry(i), &colour, bytes) != 0) ++i;
    return i;
  }
  std::vector<BYTE> bytes() const {
    return {block_.begin(), block_.begin() + static_cast<std::ptrdiff_t>(size_)};
  }

 private:
  std::vector<BYTE> block_;
  std::size_t size_;
};

struct Reducer {
  int bits;
  BITMAPINFOHEADER* (*reduce)(BITMAPINFOHEADER*, int, CQorCommonProgress*);
};
const Reducer reducers[] = {{1, Convert::ConvertTrueDibTo1BitsDib},
                            {4, Convert::ConvertTrueDibTo4BitsDib},
                            {8, Convert::ConvertTrueDibTo8BitsDib}};

/// Colours in order of first appearance. After the 256th the palette is written again from its start; an
/// index that does not fit shows as its low bits, in one bit whether it is 1, set beside what is there.
std::vector<BYTE> reduced(const OwnedDib& source, int bits, int colourCount) {
  RoomyImage result(
      OwnedDib(CBitmapCreator::CreateDibImage(source->biWidth, source->biHeight, bits, colourCount)));
  std::size_t count = 0;
  for (int y = 0; y < source->biHeight; ++y) {
    BYTE* row = test::rowOf(result.dib(), y);
    for (int x = 0; x < source->biWidth; ++x) {
      const DWORD colour = test::pixel(source, x, y);
      const std::size_t index = result.find(count, colour, 3);
      if (index == count) {
        std::memcpy(result.entry(count), &colour, 3);
        count = (count + 1) & 255;
      }
      if (bits == 8) row[x] = static_cast<BYTE>(index);
      if (bits == 4)
        row[x / 2] = static_cast<BYTE>(row[x / 2] | (x % 2 != 0 ? index & 15 : index << 4 & 0xF0));
      if (bits == 1 && index == 1) row[x / 8] = static_cast<BYTE>(row[x / 8] | 0x80 >> x % 8);
    }
  }
  return result.bytes();
}

/// A 24-bit picture of single pixels and runs of so many colours.
OwnedDib runs(test::Random& random, int width, int height, int colourCount) {
  OwnedDib dib = test::image(width, height, 24);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width;) {
      const DWORD colour = static_cast<DWORD>(below(random, colourCount)) * 0x30201;
      const int end = std::min(width, x + 1 + below(random, below(random, 3) != 0 ? 1 : 30));
      for (; x < end; ++x) test::setPixel(dib, x, y, colour);
    }
  }
  return dib;
}

TEST(ExactReduction, IsThatOfThePlainSearchAlsoBeyondItsLimits) {
  test::Random random(31);
  const int counts[] = {0, -4, 1, 2, 3, 5, 16, 17, 100, 255, 256, 300};
  for (int round = 0; round < 1500; ++round) {
    const Reducer& reducer = reducers[round % 3];
    const int colours = 1 + below(random, round % 4 == 0 ? 700 : round % 4 == 1 ? 3 : 20);
    const int colourCount = counts[below(random, 12)];
    const OwnedDib source =
        runs(random, 1 + below(random, round % 10 == 0 ? 700 : 40), 1 + below(random, 25), colours);
    const OwnedDib result(reducer.reduce(source.get(), colourCount, nullptr));
    ASSERT_EQ(test::bytesOf(result), reduced(source, reducer.bits, colourCount))
        << "round " << round << ": " << colours << " colours to " << reducer.bits << " bits, " << colourCount;
  }
}

/// A 24-bit picture on the palette of a map that numbers the keys in order, at the smallest depth that holds
/// them. Entries have no reserved byte; a key with one belongs to no pixel.
OwnedDib onto(const OwnedDib& source, const std::vector<DWORD>& keys) {
  std::vector<DWORD> palette;
  for (const DWORD key : keys) palette.push_back(key & 0xFFFFFF);
  OwnedDib result = test::image(source->biWidth, source->biHeight,
                                keys.size() < 3    ? 1
                                : keys.size() < 17 ? 4
                                                   : 8,
                                palette);
  for (int i = 0; i < source->biWidth * source->biHeight; ++i) {
    const int x = i % source->biWidth, y = i / source->biWidth;
    const auto found = std::find(keys.begin(), keys.end(), test::pixel(source, x, y));
    test::setPixel(result, x, y, found != keys.end() ? (found - keys.begin()) & 255 : 0);
  }
  return result;
}

TEST(PaletteConversions, ChooseTheDepthByTheColours) {
  struct Case {
    int colours, depth;
  };
  for (const Case& c :
       {Case{0, 1}, {1, 1}, {2, 1}, {3, 4}, {16, 4}, {17, 8}, {256, 8}, {257, 24}, {300, 24}}) {
    SCOPED_TRACE(c.colours);
    const std::vector<DWORD> colours = test::distinctColours(c.colours);
    OwnedDib source = test::imageOf(c.colours, 1, 24, colours);
    const OwnedDib low(Convert::ConvertTrueDibToLowBitsDib(source.get(), nullptr));
    ASSERT_EQ(low != nullptr, c.depth < 24);
    if (low) {
      EXPECT_EQ(test::bytesOf(low), reduced(source, c.depth, c.colours));
    }

    Map map = test::mapOf(colours);
    const OwnedDib mapped(Convert24BitsDIBToLowerBitsDIB(source.get(), map));
    EXPECT_EQ(mapped->biBitCount, std::min(c.depth, 8));
    EXPECT_EQ(test::bytesOf(mapped), test::bytesOf(onto(source, colours)));

    dibkit::FrameColours frame;
    frame.note(test::rowOf(source.get(), 0), 0, c.colours);
    EXPECT_EQ(frame.overflowed(), c.depth == 24);
    EXPECT_EQ(frame.finish(std::move(source))->biBitCount, c.depth);
  }
}

TEST(Convert24BitsDIBToLowerBitsDIB, FindsExactlyTheKeysOfTheMap) {
  test::Random random(23);
  for (int round = 0; round < 300; ++round) {
    // Some colours are missing, others have a twin with a reserved byte.
    std::vector<DWORD> keys;
    for (DWORD i = 0; i < (round % 3 == 0 ? 300 : 24); ++i) {
      if (random() % 3 != 0) keys.push_back(i * 0x30201);
      if (random() % 4 == 0) keys.push_back(i * 0x30201 | 0xFF000000);
    }
    std::shuffle(keys.begin(), keys.end(), random);
    keys.resize(std::min(keys.size(), static_cast<std::size_t>(below(random, 300))));
    Map map = test::mapOf(keys);
    const OwnedDib source =
        runs(random, 1 + below(random, 90), 1 + below(random, 6), round % 3 == 0 ? 300 : 24);
    ASSERT_EQ(test::bytesOf(OwnedDib(Convert24BitsDIBToLowerBitsDIB(source.get(), map))),
              test::bytesOf(onto(source, keys)))
        << round;
  }
}

TEST(Convert24BitsDIBToLowerBitsDIB, DropsWhatIsOutsideTheBlock) {
  // Two colours numbered 1 and 3 in a block of 40 + 8 + 4 bytes: entry 3 would be just past its end; the
  // pixel keeps that its index is not 0.
  Map map;
  const auto set = [&](DWORD key, int value) { map.SetAt(key, value); };
  set(0xFFFFFF, 3);
  set(0x808080, 1);
  const OwnedDib result(
      Convert24BitsDIBToLowerBitsDIB(test::imageOf(3, 1, 24, {0xFFFFFF, 0, 0x808080}).get(), map));
  EXPECT_EQ(test::entriesOf(result).at(1), 0x808080U);
  EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{1, 0, 1}));
  for (const int wild : {-1, -1000000, 1 << 30}) {
    set(0x123456, wild);
    EXPECT_TRUE(OwnedDib(Convert24BitsDIBToLowerBitsDIB(test::image(3, 3, 24).get(), map)));
  }
}

TEST(Convert24BitsDIBToLowerBitsDIB, ReadsRowsOfTwentyFourBitsAtAnyDepth) {
  const OwnedDib dib = test::imageOf(4, 1, 24, {0xFF, 0xFF00, 0xFF0000, 0xFF});
  std::vector<BYTE> block = test::bytesOf(dib);
  block.resize(block.size() + 4);  // rows of 16 bytes by the header, of 12 as they are read
  auto* source = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
  source->biBitCount = 32;
  Map map = test::mapOf({0xFF0000, 0xFF00, 0xFF});
  const OwnedDib result(Convert24BitsDIBToLowerBitsDIB(source, map));
  EXPECT_EQ(test::pixelsOf(result), (std::vector<DWORD>{2, 1, 0, 2}));
}

TEST(FrameColours, FinishLikeTheMapOfTheColoursNoted) {
  test::Random random(21);
  for (int round = 0; round < 400; ++round) {
    const int colourCount = 1 + below(random, round % 2 != 0 ? 20 : 300);
    OwnedDib work = runs(random, 1 + below(random, 80), 1 + below(random, 12), colourCount);
    dibkit::FrameColours frame;
    std::vector<DWORD> noted;
    const int leaveOut = below(random, 4);  // 3: every pixel, which gets black
    for (int y = 0; y < work->biHeight; ++y) {
      for (int x = 0, end = 0; x < work->biWidth; x = end) {
        end = std::min<int>(work->biWidth, x + 1 + below(random, 30));
        if (below(random, 3) < leaveOut) continue;
        frame.note(test::rowOf(work.get(), y), x, end);
        for (int i = x; i < end; ++i) {
          const DWORD colour = test::pixel(work, i, y);
          if (std::find(noted.begin(), noted.end(), colour) == noted.end()) noted.push_back(colour);
        }
      }
    }
    if (noted.empty()) noted.push_back(0);
    const std::vector<BYTE> expected =
        noted.size() > 256 ? test::bytesOf(work) : test::bytesOf(onto(work, noted));
    ASSERT_EQ(test::bytesOf(frame.finish(std::move(work))), expected) << round;
  }
  EXPECT_FALSE(dibkit::FrameColours().finish(nullptr));
}

struct Converter {
  int from, to;
  BITMAPINFOHEADER* (*convert)(BITMAPINFOHEADER*, Map*, CQorCommonProgress*);
};
const Converter converters[] = {
    {1, 4, Convert::Convert1BitsDibTo4BitsDib}, {1, 8, Convert::Convert1BitsDibTo8BitsDib},
    {4, 8, Convert::Convert4BitsDibTo8BitsDib}, {8, 4, Convert::Convert8BitsDibTo4BitsDib},
    {8, 1, Convert::Convert8BitsDibTo1BitsDib}, {4, 1, Convert::Convert4BitsDibTo1BitsDib},
};

/// With a map that numbers the colours in order, or on the source's own palette: to more bits as it is, to
/// fewer each entry once, a repeated one with the number of the next new one.
std::vector<BYTE> converted(const OwnedDib& source, int to, const std::vector<DWORD>* map) {
  RoomyImage result(
      test::image(source->biWidth, source->biHeight, to, map != nullptr ? *map : std::vector<DWORD>()));
  std::vector<int> remapped;
  std::size_t next = 0;
  for (const DWORD colour : test::entriesOf(source)) {
    if (map != nullptr) {
      const auto found = std::find(map->begin(), map->end(), colour);
      remapped.push_back(found != map->end() ? static_cast<int>(found - map->begin()) : 0);
      continue;
    }
    remapped.push_back(static_cast<int>(next));
    const bool isNew = source->biBitCount < to || result.find(next, colour, 4) == next;
    if (isNew) std::memcpy(result.entry(next++), &colour, 4);
  }
  int value = 0;
  for (int y = 0; y < source->biHeight; ++y) {
    BYTE* row = test::rowOf(result.dib(), y);
    for (int x = 0; x < source->biWidth; ++x) {
      const DWORD index = test::pixel(source, x, y);
      if (index < remapped.size()) value = remapped[index];  // else as the pixel before
      if (to == 1) Set1BitPixel(row, value > 0, x);
      if (to == 4) Set4BitPixel(row, static_cast<BYTE>(value), x);
      if (to == 8) Set8BitPixel(row, static_cast<BYTE>(value), x);
    }
  }
  return result.bytes();
}

TEST(IndexedConversions, AreThoseOfThePlainSearchAlsoBeyondTheirLimits) {
  test::Random random(13);
  for (int round = 0; round < 1800; ++round) {
    const Converter& converter = converters[round % 6];
    // Palettes of any size, with repeated entries when there are few colours, the reserved byte included.
    std::vector<DWORD> palette(static_cast<std::size_t>(below(random, (1 << converter.from) + 1))), shared;
    const int colours = 1 + below(random, 40);
    for (DWORD& entry : palette) entry = static_cast<DWORD>(below(random, colours)) * 0x03010207;
    for (DWORD i = 0; i < 40 && shared.size() < std::size_t{1} << converter.to; ++i) {
      if (random() % 2 != 0) shared.push_back(i * 0x03010207);
    }
    std::shuffle(shared.begin(), shared.end(), random);
    const OwnedDib source = test::randomImage(1 + below(random, round % 10 == 0 ? 1200 : 70),
                                              1 + below(random, 4), converter.from, random, palette);
    const bool mapped = round % 4 < 2;
    Map map = test::mapOf(shared);
    const OwnedDib result(converter.convert(source.get(), mapped ? &map : nullptr, nullptr));
    ASSERT_EQ(test::bytesOf(result), converted(source, converter.to, mapped ? &shared : nullptr))
        << round << ": " << converter.from << " to " << converter.to;
    EXPECT_EQ(map.GetCount(), static_cast<int>(shared.size()));
  }
}

TEST(IndexedConversions, KeepOfANumberInTheMapWhatFits) {
  // One bit is set above 0 only; a byte takes the lowest bits of -5.
  Map map;
  DWORD key = 0x10;
  int value = -5;
  map.SetAt(key, value);
  const OwnedDib source = test::imageOf(1, 1, 4, {0}, {0x10});
  const OwnedDib bits(Convert::Convert4BitsDibTo1BitsDib(source.get(), &map, nullptr));
  const OwnedDib bytes(Convert::Convert4BitsDibTo8BitsDib(source.get(), &map, nullptr));
  EXPECT_TRUE(test::pixel(bits, 0, 0) == 0 && test::pixel(bytes, 0, 0) == 251);
}

}  // namespace
