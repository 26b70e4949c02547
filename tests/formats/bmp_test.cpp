#include <gtest/gtest.h>

#include "formats/shown.h"

namespace {

using namespace shown;

/// A BMP file of a 40-byte header or a longer one, whose further fields are 0, or the start of one.
struct Bmp {
  int width = 2;
  int height = 2;
  int bits = 24;
  std::uint32_t compression = 0;
  std::uint32_t headerBytes = 40;
  std::vector<std::uint32_t> masks{};
  std::vector<std::uint32_t> palette{};
  Bytes pixels{};

  Bytes file() const {
    const auto field = [](auto value, int count) { return little(static_cast<std::size_t>(value), count); };
    const int side = headerBytes == 12 ? 2 : 4;
    Bytes rest = joined({field(headerBytes, 4),
                         field(width, side),
                         field(height, side),
                         {1, 0},
                         field(bits, 2),
                         field(compression, 4),
                         Bytes(12),
                         field(palette.size(), 4),
                         Bytes(4)});
    rest.resize(std::min<std::size_t>(headerBytes, 40));
    for (const std::uint32_t mask : masks) rest = joined({rest, little(mask, 4)});
    if (headerBytes > rest.size()) rest.resize(headerBytes);
    for (const std::uint32_t entry : palette) rest = joined({rest, little(entry, headerBytes == 12 ? 3 : 4)});
    return joined({{'B', 'M'}, Bytes(8), little(14 + rest.size(), 4), rest, pixels});
  }
};

const std::vector<std::uint32_t> rgbw{0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF};

TEST(Bmp, ShowsEveryKind) {
  std::vector<std::uint32_t> fullPalette = rgbw;
  fullPalette.resize(256);
  const Bytes eightBits{2, 3, 0, 0, 0, 1, 0, 0};
  const Bytes topFirst{0, 0, 255, 0, 255, 0, 0, 0, 255, 0, 0, 255, 255, 255, 0, 0};
  const auto runs = [](Bytes pixels, int width = 3, int height = 2) {
    return Bmp{.width = width,
               .height = height,
               .bits = 8,
               .compression = 1,
               .palette = rgbw,
               .pixels = std::move(pixels)};
  };
  struct Case {
    const char* name;
    Bmp bmp;
    Strings frames;
    std::string fault{};
  };
  const Case cases[] = {
      {"1 bit",
       {.bits = 1, .palette = {0xFF0000, 0x0000FF}, .pixels = {0x40, 0, 0, 0, 0x80, 0, 0, 0}},
       {"BR/RB"}},
      {"2 bits", {.bits = 2, .palette = rgbw, .pixels = {0xB0, 0, 0, 0, 0x10, 0, 0, 0}}, {"RG/BW"}},
      {"4 bits", {.bits = 4, .palette = rgbw, .pixels = {0x23, 0, 0, 0, 0x01, 0, 0, 0}}, {"RG/BW"}},
      {"8 bits", {.bits = 8, .palette = rgbw, .pixels = eightBits}, {"RG/BW"}},
      {"16 bits 5-5-5", {.bits = 16, .pixels = {0x1F, 0, 0xFF, 0x7F, 0, 0x7C, 0xE0, 0x03}}, {"RG/BW"}},
      {"16 bits 5-6-5",
       {.bits = 16,
        .compression = 3,
        .masks = {0xF800, 0x07E0, 0x001F},
        .pixels = {0x1F, 0, 0xFF, 0xFF, 0, 0xF8, 0xE0, 0x07}},
       {"RG/BW"}},
      {"24 bits", {.pixels = {255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0, 0}}, {"RG/BW"}},
      {"24 bits, top first", {.height = -2, .pixels = topFirst}, {"RG/BW"}},
      {"24 bits, the padding of the last line missing",
       {.height = -2, .pixels = without(topFirst, 2)},
       {"RG/BW"}},
      {"32 bits, last byte unused",
       {.bits = 32, .pixels = {255, 0, 0, 0, 255, 255, 255, 0, 0, 0, 255, 0, 0, 255, 0, 0}},
       {"RG/BW"}},
      {"32 bits with alpha, colours in another order",
       {.bits = 32,
        .compression = 3,
        .headerBytes = 108,
        .masks = {0xFF, 0xFF00, 0xFF0000, 0xFF000000},
        .pixels = {0, 0, 255, 255, 9, 9, 9, 0, 255, 0, 0, 255, 0, 255, 0, 255}},
       {"RG/B."}},
      {"the old 12-byte header",
       {.bits = 8, .headerBytes = 12, .palette = fullPalette, .pixels = eightBits},
       {"RG/BW"}},
      {"a 16-byte header",
       {.bits = 8, .headerBytes = 16, .palette = fullPalette, .pixels = eightBits},
       {"RG/BW"}},
      // Three of index 1, end of line; literal 0, 2, 3 and a padding byte; end of picture.
      {"runs of 8 bits", runs({3, 1, 0, 0, 0, 3, 0, 2, 3, 0, 0, 1}), {"RBW/GGG"}},
      {"runs, top first", runs({3, 1, 0, 0, 0, 3, 0, 2, 3, 0, 0, 1}, 3, -2), {"GGG/RBW"}},
      // Skips one column to the right and one line: the rest has no colour.
      {"runs with a jump", runs({0, 2, 1, 1, 1, 2, 0, 1}), {".B./..."}},
      // Three pixels 1, 2, 1, then a literal of three in two bytes: 0, 3, 2.
      {"runs of 4 bits",
       {.width = 6,
        .height = 1,
        .bits = 4,
        .compression = 2,
        .palette = rgbw,
        .pixels = {3, 0x12, 0, 3, 0x03, 0x20, 0, 1}},
       {"GBGRWB"}},
      {"a line missing", {.height = -2, .pixels = without(topFirst, 3)}, {"RG/.."}, "the file is truncated"},
      {"every line missing", {.pixels = {255, 0, 0}}, {}, "the file is truncated"},
      {"runs that are cut", runs({3, 1, 0, 0, 0, 3, 0}), {"R../GGG"}, "the file is truncated"},
      {"runs that are cut at once", runs({3}), {}, "the file is truncated"},
      {"a run beyond the line", runs({4, 1, 0, 0, 3, 2, 0, 1}), {"BBB/GGG"}, "BMP: the data are damaged"},
      {"a literal beyond the line", runs({0, 4, 1, 1, 1, 1, 0, 1}), {".../GGG"}, "BMP: the data are damaged"},
      {"a jump out of the picture",
       runs({3, 1, 0, 2, 0, 9, 3, 2, 0, 1}),
       {".../GGG"},
       "BMP: the data are damaged"},
      {"a run of no colour", runs({3, 4, 0, 1}), {".../KKK"}, "BMP: the data are damaged"},
      {"far too large",
       {.width = 65535, .height = 65535},
       {},
       "65535x65535 pixels are too many, the limit is 67108864"},
      {"too large for its bytes",
       {.width = 8000, .height = 8000},
       {},
       "the file is too short for 8000x8000 pixels"},
      {"no width", {.width = 0}, {}, "the picture has no pixels"},
      {"less than no width", {.width = -2}, {}, "the picture has no pixels"},
      {"the lowest height",
       {.height = -2147483647 - 1},
       {},
       "2x2147483648 pixels are too many, the limit is 67108864"},
      {"an odd depth", {.bits = 7}, {}, "BMP: a depth of 7 bits is not supported"},
      {"an unknown compression", {.compression = 4}, {}, "BMP: this compression is not supported"},
      {"runs of 24 bits", {.compression = 1}, {}, "BMP: this compression at 24 bits is not supported"},
      {"another system's compression",
       {.bits = 1, .compression = 3, .headerBytes = 36},
       {},
       "BMP: this compression is not supported"},
      {"an unknown header", {.headerBytes = 13}, {}, "BMP: this header is not supported"},
  };
  for (const Case& one : cases) expectShown({one.name, one.bmp.file(), one.frames, one.fault});
}

TEST(Bmp, CutAtEveryByte) {
  expectShownAtEveryLength(Bmp{.bits = 8, .palette = rgbw, .pixels = {2, 3, 0, 0, 0, 1}}.file());
  expectShownAtEveryLength(
      Bmp{.bits = 8, .compression = 1, .palette = rgbw, .pixels = {0, 3, 1, 2, 0, 0, 0, 0, 2, 3}}.file());
}

}  // namespace
