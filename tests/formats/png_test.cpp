#include <gtest/gtest.h>
#include <zlib.h>

#include "formats/shown.h"

namespace {

using namespace shown;

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

Bytes chunk(const std::string& name, const Bytes& data) {
  const Bytes checked = joined({bytesOf(name), data});
  return joined({big(data.size(), 4), checked, big(crc32_z(0, checked.data(), checked.size()), 4)});
}

Bytes compressed(const Bytes& data) {
  Bytes bytes(compressBound(data.size()));
  uLongf size = bytes.size();
  compress2(bytes.data(), &size, data.data(), data.size(), Z_NO_COMPRESSION);
  bytes.resize(size);
  return bytes;
}

/// The compressed lines of a picture in letters, of 8-bit indices into the palette.
Bytes packed(const std::string& letters) {
  static const std::string order = ".RGBWK";
  Bytes lines{0};
  for (const char letter : letters)
    lines.push_back(static_cast<std::uint8_t>(letter == '/' ? 0 : order.find(letter)));
  return compressed(lines);
}

Bytes head(int width, int height, bool interlaced = false) {
  Bytes palette;
  for (const char letter : {'.', 'R', 'G', 'B', 'W', 'K'}) {
    const host::Pixel pixel = pixelOf(letter);
    palette = joined({palette, {pixel.red, pixel.green, pixel.blue}});
  }
  return joined({bytesOf("\x89PNG\r\n\x1A\n"),
                 chunk("IHDR", joined({big(static_cast<std::size_t>(width), 4),
                                       big(static_cast<std::size_t>(height), 4),
                                       {8, 3, 0, 0, static_cast<std::uint8_t>(interlaced ? 1 : 0)}})),
                 chunk("PLTE", palette), chunk("tRNS", {0})});
}
Bytes pixels(const std::string& letters) { return chunk("IDAT", packed(letters)); }
Bytes animated(int frames, int plays = 0) {
  return chunk("acTL",
               joined({big(static_cast<std::size_t>(frames), 4), big(static_cast<std::size_t>(plays), 4)}));
}

enum Disposal { keep, background, previous };
enum Blend { replace, over };
struct Place {
  int left = 0;
  int top = 0;
  int width = 2;
  int height = 2;
};

Bytes control(Place place, Disposal disposal = keep, Blend blend = replace, int hundredths = 5,
              int parts = 100) {
  const auto number = [](int value, int count) { return big(static_cast<std::size_t>(value), count); };
  return chunk("fcTL", joined({number(0, 4),
                               number(place.width, 4),
                               number(place.height, 4),
                               number(place.left, 4),
                               number(place.top, 4),
                               number(hundredths, 2),
                               number(parts, 2),
                               {static_cast<std::uint8_t>(disposal), static_cast<std::uint8_t>(blend)}}));
}
Bytes further(const std::string& letters) { return chunk("fdAT", joined({big(0, 4), packed(letters)})); }
const Bytes end = chunk("IEND", {});

/// With a byte of the checksum changed.
Bytes damaged(Bytes chunkBytes) {
  chunkBytes.back() ^= 1;
  return chunkBytes;
}

TEST(Png, ShowsWhatViewersShow) {
  const Bytes two = joined({head(2, 2), pixels("RG/BW")});
  const Bytes first = joined({head(2, 2), animated(2), control({}), pixels("RG/BW")});
  const std::string checksum = "PNG: the data are damaged (IDAT: CRC error)";
  const Sample samples[] = {
      {"a still picture", joined({two, end}), {"RG/BW"}},
      {"no end", two, {"RG/BW"}},
      {"interlaced", joined({head(3, 2, true), chunk("IDAT", packed("R/W/B/GBK")), end}), {"RBW/GBK"}},
      {"transparent", joined({head(2, 1), pixels(".K"), end}), {".K"}},
      {"turned by Exif data",
       joined({head(2, 2), chunk("eXIf", exifOf(6)), pixels("RG/BW"), end}),
       {"BR/WG"}},
      {"Exif data behind the picture", joined({two, chunk("eXIf", exifOf(3, true)), end}), {"WB/GR"}},
      {"a cut in the second line",
       joined({head(2, 2), without(pixels("RG/BW"), 4 + 4 + 1)}),
       {"RG/.."},
       "the file is truncated"},
      {"a cut in the first line",
       joined({head(2, 2), without(pixels("RG/BW"), 4 + 4 + 4)}),
       {},
       "the file is truncated"},
      {"a cut in the head", without(head(2, 2), 60), {}, "the file is truncated"},
      {"a wrong checksum", joined({head(2, 2), damaged(pixels("RG/BW")), end}), {"RG/BW"}, checksum},
      {"a damaged line",
       joined({head(2, 2), chunk("IDAT", compressed({0, 1, 2, 9, 3, 4})), end}),
       {"RG/.."},
       "PNG: the data are damaged (bad adaptive filter value)"},
      {"an animation", joined({first, control({1, 0, 1, 2}), further("K/K"), end}), {"RG/BW", "RK/BK"}},
      {"a picture beside the animation",
       joined({head(2, 2), animated(1), pixels("KK/KK"), control({}), further("RG/BW"), end}),
       {"RG/BW"}},
      {"frames without a word of animation",
       joined({head(2, 2), control({}), pixels("RG/BW"), control({}), further("KK/KK"), end}),
       {"RG/BW"}},
      {"composited over and in place",
       joined({head(2, 2), animated(3), control({}), pixels("RG/BW"), control({0, 0, 2, 1}, keep, over),
               further(".K"), control({0, 1, 2, 1}, keep, replace), further(".K"), end}),
       {"RG/BW", "RK/BW", "RK/.K"}},
      {"disposal to the background and to what was before",
       joined({head(2, 1), animated(4), control({0, 0, 2, 1}), pixels("RG"),
               control({0, 0, 1, 1}, background), further("K"), control({1, 0, 1, 1}, previous), further("K"),
               control({0, 0, 1, 1}, keep), further("W"), end}),
       {"RG", "KG", ".K", "WG"}},
      {"disposal of the first frame to what was before",
       joined({head(2, 1), animated(2), control({0, 0, 2, 1}, previous), pixels("RG"), control({1, 0, 1, 1}),
               further("K"), end}),
       {"RG", ".K"}},
      {"an animation turned by Exif data",
       joined({head(2, 1), animated(2), chunk("eXIf", exifOf(8)), control({0, 0, 2, 1}), pixels("RG"),
               control({1, 0, 1, 1}), further("K"), end}),
       {"G/R", "K/R"}},
      {"a cut in the second frame",
       joined({first, control({}, keep, replace), without(further("KK/KK"), 4 + 4 + 1)}),
       {"RG/BW", "KK/BW"},
       "the file is truncated, it ends within frame 2"},
      {"a cut before the second frame's first line",
       joined({first, control({}), without(further("KK/KK"), 4 + 4 + 4)}),
       {"RG/BW"},
       "the file is truncated, it ends within frame 2"},
      {"a cut where the second frame says its place",
       joined({first, without(control({}), 5)}),
       {"RG/BW"},
       "the file is truncated, it ends within frame 2"},
      {"a frame with a wrong checksum",
       joined({first, control({}), damaged(further("KK/KK")), end}),
       {"RG/BW", "KK/KK"},
       "PNG: the data of frame 2 are damaged"},
      {"a frame of unknown data",
       joined({head(2, 2), animated(3), control({}), pixels("RG/BW"), control({}), chunk("fdAT", Bytes(9)),
               control({1, 1, 1, 1}), further("K"), end}),
       {"RG/BW", "RG/BW", "RG/BK"},
       "PNG: the data of frame 2 are damaged"},
      {"a frame outside of the picture",
       joined({first, control({1, 0, 2, 1}), further("KK"), end}),
       {"RG/BW"},
       "PNG: frame 2 is not inside of the picture"},
      {"a frame of no width",
       joined({first, control({0, 0, 0, 1}), further("KK"), end}),
       {"RG/BW"},
       "PNG: frame 2 is not inside of the picture"},
      {"a frame whose place is damaged",
       joined({first, damaged(control({})), further("KK/KK"), end}),
       {"RG/BW"},
       "PNG: the data of frame 2 are damaged"},
      {"fewer frames than it says", joined({first, end}), {"RG/BW"}, "PNG: there are 1 frames instead of 2"},
  };
  for (const Sample& sample : samples) expectShown(sample);
}

TEST(Png, CountsTimesAndLoops) {
  struct Case {
    int plays;
    std::optional<int> loops;
  };
  for (const Case& one : {Case{0, 0}, Case{1, std::nullopt}, Case{3, 2}}) {
    // A third of a second, twice; a tenth, as a hundred parts are meant by none; 29 hundredths.
    const Bytes file = joined({head(1, 1), animated(4, one.plays), control({0, 0, 1, 1}, keep, replace, 1, 3),
                               pixels("K"), control({0, 0, 1, 1}, keep, replace, 1, 3), further("R"),
                               control({0, 0, 1, 1}, keep, replace, 10, 0), further("G"),
                               control({0, 0, 1, 1}, keep, replace, 29, 100), further("B"), end});
    const host::Animation animation = host::readAnimation(file, {});
    EXPECT_EQ(animation.loops, one.loops);
    std::vector<int> delays;
    for (const host::Frame& frame : animation.frames) delays.push_back(frame.delay);
    EXPECT_EQ(delays, (std::vector<int>{33, 33, 10, 29}));
  }
}

TEST(Png, CutAtEveryByte) {
  expectShownAtEveryLength(joined({head(2, 3), pixels("RG/BW/KR"), end}));
  expectShownAtEveryLength(joined({head(2, 2), animated(2), control({}), pixels("RG/BW"),
                                   control({0, 0, 2, 2}, keep, over), further("KK/KK"), end}));
}

}  // namespace
