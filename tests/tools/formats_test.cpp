#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>
#include <jpeglib.h>

#include "journey.h"

namespace {

using namespace journey;

/// The picture in a file as the program reads it: a transition from it to itself is one still frame.
Image seenIn(const Folder& folder, const Bytes& bytes) {
  write(folder / "in", bytes);
  const Ended ended =
      run({"transition", folder / "in", folder / "in", "-o", folder / "out.gif", "--frames", "1", "--quiet"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const Shown shown = play(folder / "out.gif");
  return shown.frames.size() == 1 ? shown.frames.front() : Image{};
}

void append(Bytes& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

/// A BMP file of a 40-byte header or a longer one, whose further fields are 0.
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
    Bytes rest;
    append(rest, headerBytes, 4);
    if (headerBytes == 12) {
      append(rest, static_cast<std::uint32_t>(width), 2);
      append(rest, static_cast<std::uint32_t>(height), 2);
      append(rest, 1, 2);
      append(rest, static_cast<std::uint32_t>(bits), 2);
    } else {
      append(rest, static_cast<std::uint32_t>(width), 4);
      append(rest, static_cast<std::uint32_t>(height), 4);
      append(rest, 1, 2);
      append(rest, static_cast<std::uint32_t>(bits), 2);
      append(rest, compression, 4);
      rest.resize(32);
      append(rest, static_cast<std::uint32_t>(palette.size()), 4);
      rest.resize(40);
    }
    for (const std::uint32_t mask : masks) append(rest, mask, 4);
    if (headerBytes > rest.size()) rest.resize(headerBytes);
    for (const std::uint32_t entry : palette) append(rest, entry, headerBytes == 12 ? 3 : 4);
    Bytes bytes{'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0};
    append(bytes, static_cast<std::uint32_t>(14 + rest.size()), 4);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    bytes.insert(bytes.end(), pixels.begin(), pixels.end());
    return bytes;
  }
};

constexpr std::uint32_t K = 0xFF000000, R = 0xFFFF0000, G = 0xFF00FF00, B = 0xFF0000FF, W = 0xFFFFFFFF;
const std::vector<std::uint32_t> rgbPalette{0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF};

TEST(BmpFiles, OfEveryKind) {
  struct Case {
    const char* name;
    Bmp bmp;
    Image expected;
  };
  const Image four{2, 2, {R, G, B, W}};
  const Case cases[] = {
      {"1 bit",
       {.bits = 1, .palette = {0xFF0000, 0x0000FF}, .pixels = {0x40, 0, 0, 0, 0x80, 0, 0, 0}},
       {2, 2, {B, R, R, B}}},
      {"2 bits", {.bits = 2, .palette = rgbPalette, .pixels = {0xB0, 0, 0, 0, 0x10, 0, 0, 0}}, four},
      {"4 bits", {.bits = 4, .palette = rgbPalette, .pixels = {0x23, 0, 0, 0, 0x01, 0, 0, 0}}, four},
      {"8 bits", {.bits = 8, .palette = rgbPalette, .pixels = {2, 3, 0, 0, 0, 1, 0, 0}}, four},
      {"16 bits 5-5-5", {.bits = 16, .pixels = {0x1F, 0, 0xFF, 0x7F, 0, 0x7C, 0xE0, 0x03}}, four},
      {"16 bits 5-6-5",
       {.bits = 16,
        .compression = 3,
        .masks = {0xF800, 0x07E0, 0x001F},
        .pixels = {0x1F, 0, 0xFF, 0xFF, 0, 0xF8, 0xE0, 0x07}},
       four},
      {"24 bits", {.bits = 24, .pixels = {255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0, 0}}, four},
      {"24 bits, top first",
       {.height = -2, .bits = 24, .pixels = {0, 0, 255, 0, 255, 0, 0, 0, 255, 0, 0, 255, 255, 255, 0, 0}},
       four},
      {"32 bits, last byte unused",
       {.bits = 32, .pixels = {255, 0, 0, 0, 255, 255, 255, 0, 0, 0, 255, 0, 0, 255, 0, 0}},
       four},
      {"32 bits with alpha, colours in another order",
       {.bits = 32,
        .compression = 3,
        .headerBytes = 108,
        .masks = {0xFF, 0xFF00, 0xFF0000, 0xFF000000},
        .pixels = {0, 0, 255, 255, 9, 9, 9, 0, 255, 0, 0, 255, 0, 255, 0, 255}},
       {2, 2, {R, G, B, 0}}},
      {"8 bits, the old 12-byte header",
       {.bits = 8,
        .headerBytes = 12,
        .palette =
            [] {
              auto p = rgbPalette;
              p.resize(256);
              return p;
            }(),
        .pixels = {2, 3, 0, 0, 0, 1, 0, 0}},
       four},
      // Three of index 1, end of line; literal 0, 2, 3 and a padding byte; end of picture.
      {"runs of 8 bits",
       {.width = 3,
        .bits = 8,
        .compression = 1,
        .palette = rgbPalette,
        .pixels = {3, 1, 0, 0, 0, 3, 0, 2, 3, 0, 0, 1}},
       {3, 2, {R, B, W, G, G, G}}},
      // Skips one column to the right, then one pixel: the rest has no colour.
      {"runs with a jump",
       {.width = 3, .bits = 8, .compression = 1, .palette = rgbPalette, .pixels = {0, 2, 1, 1, 1, 2, 0, 1}},
       {3, 2, {0, B, 0, 0, 0, 0}}},
      // Three pixels 1, 2, 1, then a literal of three in two bytes: 0, 3, 2.
      {"runs of 4 bits",
       {.width = 6,
        .height = 1,
        .bits = 4,
        .compression = 2,
        .palette = rgbPalette,
        .pixels = {3, 0x12, 0, 3, 0x03, 0x20, 0, 1}},
       {6, 1, {G, B, G, R, W, B}}},
  };
  const Folder folder;
  for (const Case& sample : cases) {
    SCOPED_TRACE(sample.name);
    EXPECT_EQ(seenIn(folder, sample.bmp.file()), sample.expected);
  }
}

TEST(BmpFiles, ThatAskForTooMuch) {
  const Folder folder;
  struct Case {
    Bmp bmp;
    const char* message;
  };
  const Case cases[] = {
      {{.width = 65535, .height = 65535}, "too many"},
      {{.width = 8000, .height = 8000}, "truncated"},
      {{.width = 0}, "no pixels"},
      {{.width = -2}, "no pixels"},
      {{.height = -2147483647 - 1}, "too many"},
      {{.bits = 7}, "not supported"},
      {{.compression = 4}, "not supported"},
      {{.bits = 24, .compression = 1}, "not supported"},
      {{.headerBytes = 13}, "not supported"},
  };
  for (const Case& wrong : cases) {
    SCOPED_TRACE(wrong.message);
    write(folder / "in.bmp", wrong.bmp.file());
    const Ended ended = run({"info", folder / "in.bmp"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.err.find(wrong.message), std::string::npos) << ended.err;
  }
}

/// A GIF of 4 x 4 in 2-bit codes by hand; every pixel is sent as "clear, index" in 3 bits each, which needs
/// no table.
Bytes plainCodes(const std::vector<int>& indices) {
  Bytes bytes;
  unsigned held = 0;
  int bits = 0;
  const auto put = [&](unsigned code) {
    held |= code << bits;
    for (bits += 3; bits >= 8; bits -= 8, held >>= 8) bytes.push_back(static_cast<std::uint8_t>(held));
  };
  for (const int index : indices) {
    put(4);
    put(static_cast<unsigned>(index));
  }
  put(5);
  bytes.push_back(static_cast<std::uint8_t>(held));
  return bytes;
}

TEST(GifFiles, InterlacedWithALocalPaletteBeyondTheCanvas) {
  Bytes gif{'G',  'I',  'F', '8', '9', 'a', 4, 0, 9,   0,    0, 0, 0,
            0x21, 0xF9, 4,   1,   0,   0,   3, 0,             // index 3 is transparent
            0x2C, 1,    0,   0,   0,   4,   0, 9, 0,   0xC1,  // at column 1, 4 x 9: one column hangs over
            255,  0,    0,   0,   255, 0,   0, 0, 255, 9,    9, 9, 2};
  // Lines come in the order 0, 8, 4, 2, 6, 1, 3, 5, 7; each holds its own place in that order modulo 4.
  std::vector<int> indices;
  for (int order = 0; order < 9; ++order) indices.insert(indices.end(), 4, order % 4);
  const Bytes codes = plainCodes(indices);
  gif.push_back(static_cast<std::uint8_t>(codes.size()));
  gif.insert(gif.end(), codes.begin(), codes.end());
  gif.insert(gif.end(), {0, 0x3B});
  const Folder folder;
  // Line 0: 0, line 8: 1, line 4: 2, line 2: 3, line 6: 0, line 1: 1, line 3: 2, line 5: 3, line 7: 0.
  const std::uint32_t byLine[9] = {R, G, 0, B, B, 0, R, R, G};
  EXPECT_EQ(seenIn(folder, gif), imageBy(4, 9, [&](int x, int y) { return x == 0 ? 0U : byLine[y]; }));
}

/// Six flat blocks of 8 x 8 in three lines, the n-th one of gray 40 n: flat blocks come back exactly.
Image sixBlocks() {
  return imageBy(16, 24, [](int x, int y) {
    const unsigned gray = 40 * (1 + unsigned(x / 8) + 2 * unsigned(y / 8));
    return 0xFF000000U | gray << 16 | gray << 8 | gray;
  });
}

/// The blocks as a JPEG file whose Exif data tell the orientation.
Bytes jpegWith(const Bytes& exif) {
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&jpeg, &buffer, &size);
  const Image image = sixBlocks();
  jpeg.image_width = static_cast<JDIMENSION>(image.width);
  jpeg.image_height = static_cast<JDIMENSION>(image.height);
  jpeg.input_components = 1;
  jpeg.in_color_space = JCS_GRAYSCALE;
  jpeg_set_defaults(&jpeg);
  jpeg_set_quality(&jpeg, 100, TRUE);
  jpeg_start_compress(&jpeg, TRUE);
  jpeg_write_marker(&jpeg, JPEG_APP0 + 1, exif.data(), static_cast<unsigned>(exif.size()));
  for (int y = 0; y < image.height; ++y) {
    Bytes line;
    for (int x = 0; x < image.width; ++x) line.push_back(static_cast<std::uint8_t>(image.at(x, y) & 255));
    JSAMPROW row = line.data();
    jpeg_write_scanlines(&jpeg, &row, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  const Bytes file(buffer, buffer + size);
  std::free(buffer);
  return file;
}

/// Exif data with nothing but the orientation, in either order of bytes.
Bytes exifWith(std::uint8_t orientation, bool bigEndian) {
  Bytes exif{'E', 'x', 'i', 'f', 0, 0};
  const Bytes little{'I', 'I', 42, 0, 8, 0,           0, 0, 1, 0, 0x12, 1, 3,
                     0,   1,   0,  0, 0, orientation, 0, 0, 0, 0, 0,    0, 0};
  const Bytes big{'M', 'M', 0, 42, 0, 0, 0,           8, 0, 1, 1, 0x12, 0,
                  3,   0,   0, 0,  1, 0, orientation, 0, 0, 0, 0, 0,    0};
  const Bytes& tiff = bigEndian ? big : little;
  exif.insert(exif.end(), tiff.begin(), tiff.end());
  return exif;
}

TEST(JpegFiles, StandUpright) {
  // Blocks in the corners of the upright picture, by what Exif says of line 0 and column 0 of the stored one:
  // top left, top right, bottom left, bottom right.
  struct Case {
    std::uint8_t orientation;
    int width;
    unsigned corners[4];
  };
  const Case cases[] = {
      {1, 16, {1, 2, 5, 6}},  // line 0 at the top, column 0 at the left
      {2, 16, {2, 1, 6, 5}},  // top, right
      {3, 16, {6, 5, 2, 1}},  // bottom, right
      {4, 16, {5, 6, 1, 2}},  // bottom, left
      {5, 24, {1, 5, 2, 6}},  // left, top
      {6, 24, {5, 1, 6, 2}},  // right, top
      {7, 24, {6, 2, 5, 1}},  // right, bottom
      {8, 24, {2, 6, 1, 5}},  // left, bottom
      {9, 16, {1, 2, 5, 6}},  // unknown
  };
  const Folder folder;
  for (const Case& sample : cases) {
    SCOPED_TRACE(int{sample.orientation});
    const Image seen = seenIn(folder, jpegWith(exifWith(sample.orientation, sample.orientation % 2 == 0)));
    ASSERT_EQ(seen.width, sample.width);
    ASSERT_EQ(seen.height, 40 - sample.width);
    const std::uint32_t corners[] = {seen.at(0, 0), seen.at(seen.width - 1, 0), seen.at(0, seen.height - 1),
                                     seen.at(seen.width - 1, seen.height - 1)};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(corners[i] & 255, 40 * sample.corners[i]) << "corner " << i;
  }
  Bytes cut = exifWith(6, false);
  cut.resize(20);
  EXPECT_EQ(seenIn(folder, jpegWith(cut)), sixBlocks()) << "Exif data that end too soon";
}

TEST(JpegFiles, WithoutSomeOfTheirPixelsAreRefused) {
  const Folder folder;
  const Bytes whole = jpegWith(exifWith(1, false));
  Bytes gap = whole;
  gap.erase(gap.end() - 6, gap.end() - 2);
  Bytes cut = whole;
  cut.resize(cut.size() - 6);
  for (const auto& [file, message] : {std::pair(gap, "the data are damaged"), std::pair(cut, "truncated")}) {
    write(folder / "in.jpg", file);
    const Ended ended = run({"info", folder / "in.jpg"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.err.find(message), std::string::npos) << ended.err;
  }
}

TEST(PngFiles, KeepTheirColours) {
  const Folder folder;
  const Image image{3, 2, {R, G, B, W, K, 0xFF123456}};
  writePng(folder / "rgb.png", image);
  EXPECT_EQ(seenIn(folder, read(folder / "rgb.png")), image);
}

TEST(Info, TellsSizeColoursAndTimes) {
  const Folder folder;
  writePng(folder / "a.png", {2, 2, {R, G, B, 0x80FFFFFF}});
  const Ended still = run({"info", folder / "a.png"});
  EXPECT_EQ(still.out, (folder / "a.png") +
                           "\n  format        PNG, 32 bits a pixel\n  size          2x2\n  colours       4\n"
                           "  transparency  translucent pixels\n  frames        1\n");
  writePng(folder / "b.png", {2, 2, {G, G, B, R}});
  const Ended mixed = run({"info", folder / "missing.png", folder / "b.png"});
  EXPECT_EQ(mixed.status, 1);
  EXPECT_NE(mixed.out.find("b.png"), std::string::npos) << "one that fails keeps the others from being told";
  ASSERT_EQ(run({"transition", folder / "a.png", folder / "b.png", "-o", folder / "ab.gif", "--frames", "1"})
                .status,
            0);
  const Ended moving = run({"info", folder / "ab.gif"});
  EXPECT_NE(
      moving.out.find("frames        2\n  times         0.80 s each, 1.60 s together, repeats for ever\n"),
      std::string::npos)
      << moving.out;
}

TEST(Samples, AreTwoPicturesOfTheAskedSize) {
  const Folder folder;
  ASSERT_EQ(run({"samples", folder / "deep/er", "--size", "48x32", "--quiet"}).status, 0);
  for (const char* name : {"lake.png", "dahlia.png"}) {
    const Ended info = run({"info", folder / "deep/er/" + std::string(name)});
    EXPECT_NE(info.out.find("48x32"), std::string::npos) << info.err;
    EXPECT_NE(info.out.find("translucent"), std::string::npos);
  }
}

}  // namespace
