#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "formats/shown.h"
#include "host/formats/gif_decoder.h"

namespace {

using namespace shown;

Bytes number(int value) { return little(static_cast<std::size_t>(value), 2); }

/// Red, green, blue and white.
const Bytes fourColours{255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};

Bytes head(int width, int height, const Bytes& palette = fourColours) {
  const Bytes flags{static_cast<std::uint8_t>(palette.empty() ? 0 : 0x81), 0, 0};
  return joined({{'G', 'I', 'F', '8', '9', 'a'}, number(width), number(height), flags, palette});
}

/// What an image's data say, one code after the other.
class Codes {
 public:
  explicit Codes(int minimumSize)
      : minimumSize_(minimumSize), bytes_{static_cast<std::uint8_t>(minimumSize)} {}

  Codes& put(unsigned code, int size) {
    held_ |= code << bits_;
    for (bits_ += size; bits_ >= 8; bits_ -= 8, held_ >>= 8)
      payload_.push_back(static_cast<std::uint8_t>(held_));
    return *this;
  }
  /// Each pixel behind a clear code, which keeps the codes as short as they start and needs no table.
  Codes& pixels(const std::vector<unsigned>& indices) {
    for (const unsigned index : indices)
      put(1U << minimumSize_, minimumSize_ + 1).put(index, minimumSize_ + 1);
    return *this;
  }
  Codes& end() { return put((1U << minimumSize_) + 1, minimumSize_ + 1); }

  Bytes blocks() {
    if (bits_ > 0) put(0, 8 - bits_);
    Bytes all = bytes_;
    for (std::size_t at = 0; at < payload_.size(); at += 255) {
      const std::size_t length = std::min<std::size_t>(255, payload_.size() - at);
      all.push_back(static_cast<std::uint8_t>(length));
      const auto from = payload_.begin() + static_cast<std::ptrdiff_t>(at);
      all.insert(all.end(), from, from + static_cast<std::ptrdiff_t>(length));
    }
    all.push_back(0);
    return all;
  }

 private:
  int minimumSize_;
  unsigned held_ = 0;
  int bits_ = 0;
  Bytes bytes_;
  Bytes payload_;
};

struct Place {
  int left = 0;
  int top = 0;
  int width = 2;
  int height = 2;
};

Bytes image(const Bytes& blocks, Place place = {}, std::uint8_t flags = 0) {
  return joined({{0x2C},
                 number(place.left),
                 number(place.top),
                 number(place.width),
                 number(place.height),
                 {flags},
                 blocks});
}
Bytes imageOf(const std::vector<unsigned>& indices, Place place = {}) {
  return image(Codes(2).pixels(indices).end().blocks(), place);
}
Bytes control(int disposal, int delay, int transparent = -1) {
  return joined({{0x21, 0xF9, 4, static_cast<std::uint8_t>(disposal << 2 | (transparent >= 0 ? 1 : 0))},
                 number(delay),
                 {static_cast<std::uint8_t>(std::max(transparent, 0)), 0}});
}
const Bytes trailer{0x3B};
const Bytes rgbw = imageOf({0, 1, 2, 3});

TEST(Gif, ShowsWhatViewersShow) {
  const Bytes damaged = image(Codes(2).pixels({3, 3}).put(4, 3).put(7, 3).blocks());
  const Sample samples[] = {
      {"whole", joined({head(2, 2), rgbw, trailer}), {"RG/BW"}},
      {"no trailer", joined({head(2, 2), rgbw}), {"RG/BW"}, "the trailer is missing"},
      {"no end of the last frame either",
       joined({head(2, 2), without(rgbw, 1)}),
       {"RG/BW"},
       "the trailer is missing"},
      {"zero for a trailer",
       joined({head(2, 2), rgbw, {0}}),
       {"RG/BW"},
       "there are unknown data behind frame 1"},
      {"text for a trailer",
       joined({head(2, 2), rgbw, {'x', 'y'}}),
       {"RG/BW"},
       "there are unknown data behind frame 1"},
      {"unknown data only", joined({head(2, 2), {'x'}}), {}, "there are unknown data before the first frame"},
      {"nothing but a head", joined({head(2, 2), trailer}), {}, "GIF: there is no picture in it"},
      {"cut in the head", without(head(2, 2), 13), {}, "the file is truncated"},
      {"cut in the palette", without(head(2, 2), 1), {}, "the file is truncated"},
      // Two pixels are 12 bits: the file ends within the third one's clear code.
      {"cut in the second frame",
       joined({head(2, 2), rgbw, without(imageOf({3, 3, 3, 3}), 3)}),
       {"RG/BW", "WW/BW"},
       "the file is truncated, it ends within frame 2"},
      {"cut where the second frame says its place",
       joined({head(2, 2), rgbw, without(rgbw, 12)}),
       {"RG/BW"},
       "the file is truncated, it ends within frame 2"},
      {"cut before the second frame's first pixel",
       joined({head(2, 2), rgbw, without(rgbw, 5)}),
       {"RG/BW"},
       "the file is truncated, it ends within frame 2"},
      {"cut in a block behind a frame",
       joined({head(2, 2), rgbw, without(control(0, 5), 2)}),
       {"RG/BW"},
       "the file is truncated, it ends in a block behind frame 1"},
      {"cut before any pixel",
       joined({head(2, 2), without(rgbw, 5)}),
       {},
       "the file is truncated, it ends within frame 1"},
      {"a damaged frame between others",
       joined({head(2, 2), rgbw, damaged, imageOf({2, 2, 2, 2}), trailer}),
       {"RG/BW", "WW/BW", "BB/BB"},
       "the data of frame 2 are damaged"},
      {"a first frame without a pixel",
       joined({head(2, 2), image(Codes(2).put(4, 3).put(7, 3).blocks()), rgbw, trailer}),
       {"RG/BW"},
       "the data of frame 1 are damaged"},
      {"too few pixels",
       joined({head(2, 2), imageOf({1, 1, 1}), rgbw, trailer}),
       {"GG/G.", "RG/BW"},
       "frame 1 has too few pixels"},
      {"too many pixels", joined({head(2, 2), imageOf({0, 1, 2, 3, 3}), trailer}), {"RG/BW"}},
      {"no palette", joined({head(2, 2, {}), rgbw, trailer}), {"KK/KK"}, "frame 1 has no palette"},
      {"an index beyond the palette",
       joined({head(2, 2), image(Codes(3).pixels({0, 4, 7, 1}).end().blocks()), trailer}),
       {"R./.G"}},
      {"a screen of no size",
       joined({head(0, 0), imageOf({0, 1, 2, 3}, {1, 0, 2, 2}), trailer}),
       {".RG/.BW"},
       "the screen has no size, that of the first frame is taken"},
      {"a frame of no width among others",
       joined({head(2, 2), control(2, 5), imageOf({0, 1}, {0, 0, 2, 1}), imageOf({}, {0, 0, 0, 2}), rgbw,
               trailer}),
       {"RG/..", "../..", "RG/BW"},
       "frame 2 has no pixels"},
      {"a frame of no height alone",
       joined({head(2, 2), imageOf({}, {0, 0, 2, 0}), trailer}),
       {},
       "frame 1 has no pixels"},
      {"a frame of no width alone, on a screen of no size",
       joined({head(0, 0), imageOf({}, {0, 0, 0, 2}), trailer}),
       {},
       "frame 1 has no pixels"},
      {"codes of 10 bits",
       joined({head(2, 2), image(Codes(9).pixels({0, 1, 256 + 2, 3}).end().blocks()), trailer}),
       {"RG/BW"}},
      {"codes of 12 bits",
       joined({head(2, 2), image(Codes(11).pixels({0, 1, 1024 + 2, 3}).end().blocks()), trailer}),
       {"RG/BW"}},
      {"codes of 13 bits",
       joined({head(2, 2), rgbw, image(Codes(12).pixels({0}).end().blocks()), trailer}),
       {"RG/BW", "RG/BW"},
       "the data of frame 2 are damaged"},
      // Code 6 is the string that is just being added: one red pixel and the next string's first, red again.
      {"a string that starts with itself",
       joined(
           {head(3, 1), image(Codes(2).put(4, 3).put(0, 3).put(6, 3).end().blocks(), {0, 0, 3, 1}), trailer}),
       {"RRR"}},
      {"no clear code at the start",
       joined({head(2, 1), image(Codes(2).put(0, 3).put(1, 3).end().blocks(), {0, 0, 2, 1}), trailer}),
       {"RG"}},
      {"a frame of more pixels than the file can hold",
       joined({head(1, 1), imageOf({2}, {0, 0, 65535, 65535}), trailer}),
       {"B"},
       "frame 1 has too few pixels"},
      {"a screen of more pixels than the file can hold",
       joined({head(8191, 8191), rgbw, trailer}),
       {},
       "the file is too short for 8191x8191 pixels"},
  };
  for (const Sample& sample : samples) expectShown(sample);
}

TEST(Gif, CutAtEveryByte) {
  expectShownAtEveryLength(joined({head(2, 2), control(2, 5), rgbw, control(3, 5),
                                   imageOf({3, 3}, {0, 1, 2, 1}), imageOf({2}, {1, 0, 1, 1}), trailer}));
}

TEST(Gif, GoesOnWithAFullTable) {
  // Literals alone fill the table too: the n-th code of a frame adds string 4 + n. From the 4,092nd on it is
  // full.
  constexpr int width = 100, height = 60;
  Codes codes(2);
  codes.put(4, 3);
  std::string expected;
  for (int n = 1; n <= width * height - 2; ++n) {
    const unsigned index = static_cast<unsigned>(n * n / 7 % 4);
    codes.put(index, std::clamp<int>(std::bit_width(4U + static_cast<unsigned>(n)), 3, 12));
    if (n > 1 && n % width == 1) expected += '/';
    expected += "RGBW"[index];
  }
  codes.put(6, 12).put(5, 12);  // the first string: the pixels 1 and 2
  expected += {expected[0], expected[1]};
  expectShown(
      {"", joined({head(width, height), image(codes.blocks(), {0, 0, width, height}), trailer}), {expected}});
}

TEST(Gif, TellsWhereTheCanvasChanged) {
  struct Step {
    int disposal;
    Place place;
    RECT changed;
    std::string canvas;
  };
  // A line of six pixels; frames are blue.
  const Step steps[] = {
      {1, {1, 0, 1, 1}, {0, 0, 6, 1}, ".B...."},  // the first one: all of the canvas
      {2, {2, 0, 2, 1}, {2, 0, 4, 1}, ".BBB.."},  // kept the one before
      {3, {5, 0, 1, 1}, {2, 0, 6, 1}, ".B...B"},  // cleared two in front of it
      {3, {0, 0, 2, 1}, {0, 0, 6, 1}, "BB...."},  // restored the last pixel
      {1, {1, 0, 1, 1}, {0, 0, 2, 1}, ".B...."},  // restored both
      {0, {4, 0, 9, 1}, {4, 0, 6, 1}, ".B..BB"},  // hangs over
      {0, {9, 0, 1, 1}, {6, 0, 6, 1}, ".B..BB"},  // beside the canvas
  };
  std::vector<Bytes> parts{head(6, 1)};
  for (const Step& step : steps) {
    parts.push_back(control(step.disposal, 1));
    parts.push_back(
        imageOf(std::vector<unsigned>(static_cast<std::size_t>(step.place.width), 2), step.place));
  }
  parts.push_back(trailer);
  const Bytes bytes = joined(parts);
  host::GifDecoder decoder(bytes, host::Strictness::strict);
  for (const Step& step : steps) {
    SCOPED_TRACE(step.canvas);
    ASSERT_TRUE(decoder.next());
    EXPECT_EQ(textOf(decoder.canvas()), step.canvas);
    const RECT changed = decoder.changed();
    EXPECT_EQ(changed.right - changed.left, step.changed.right - step.changed.left);
    EXPECT_TRUE(changed.right == changed.left || changed.left == step.changed.left);
  }
  EXPECT_FALSE(decoder.next());
}

TEST(Gif, KeepsExtensionsAndTimes) {
  const Bytes loop{0x21, 0xFF, 11, 'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0', 3, 1, 7, 0, 0};
  const Bytes comment{0x21, 0xFE, 2, 'h', 'i', 1, '!', 0};
  const Bytes unknown{0x21, 0xAA, 1, 9, 0};
  const Bytes text{0x21, 0x01, 1, 9, 0};
  const Bytes application{0x21, 0xFF, 11, 'a', 'p', 'p', 'l', 'i', 'c', 'a', 't', 'i', 'o', 'n', 0};
  const Bytes bytes = joined({head(2, 2), loop, comment, control(0, 3), unknown, rgbw, application,
                              control(0, 300), rgbw, text, trailer});
  host::GifDecoder decoder(bytes, host::Strictness::strict);
  std::vector<int> delays;
  while (decoder.next()) delays.push_back(decoder.delay());
  EXPECT_EQ(delays, (std::vector<int>{3, 300}));
  EXPECT_EQ(decoder.loops(), 7);
  struct Expected {
    int label;
    std::size_t frame;
    Bytes file;
  };
  const std::vector<Expected> expected{{0xFE, 0, comment}, {0xFF, 1, application}, {0x01, 2, text}};
  ASSERT_EQ(decoder.extensions().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const host::GifExtension& extension = decoder.extensions()[i];
    EXPECT_EQ(extension.label, expected[i].label);
    EXPECT_EQ(extension.frame, expected[i].frame);
    EXPECT_EQ(Bytes(extension.blocks.begin(), extension.blocks.end()),
              Bytes(expected[i].file.begin() + 2, expected[i].file.end()));
  }
}

}  // namespace
