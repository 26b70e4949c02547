#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>
#include <webp/encode.h>

#include "formats/shown.h"

namespace {

using namespace shown;

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

Bytes chunk(const std::string& name, const Bytes& data) {
  return joined({bytesOf(name), little(data.size(), 4), data, Bytes(data.size() % 2)});
}
Bytes riff(const Bytes& chunks) { return chunk("RIFF", joined({bytesOf("WEBP"), chunks})); }

/// A picture in letters, without loss: the chunk that holds it.
Bytes pixels(const std::string& letters) {
  Bytes bgra;
  for (const char letter : letters) {
    if (letter == '/') continue;
    const host::Pixel pixel = pixelOf(letter);
    bgra = joined({bgra, {pixel.blue, pixel.green, pixel.red, pixel.alpha}});
  }
  const auto width = static_cast<int>(std::min(letters.find('/'), letters.size()));
  std::uint8_t* file = nullptr;
  const std::size_t size =
      WebPEncodeLosslessBGRA(bgra.data(), width, static_cast<int>(bgra.size()) / 4 / width, 4 * width, &file);
  const std::unique_ptr<std::uint8_t, void (*)(void*)> owner(file, WebPFree);
  constexpr std::size_t riffBytes = 12;
  return {file + riffBytes, file + size};
}

enum Flags { animation = 2, exif = 8, alpha = 16 };
enum Disposal { keep, background };
enum Blend { over, replace };

Bytes extended(int flags, int width, int height) {
  return chunk("VP8X", joined({little(static_cast<std::size_t>(flags), 4),
                               little(static_cast<std::size_t>(width - 1), 3),
                               little(static_cast<std::size_t>(height - 1), 3)}));
}
Bytes loops(int plays) {
  return chunk("ANIM", joined({Bytes(4), little(static_cast<std::size_t>(plays), 2)}));
}

/// \param left,top even
Bytes frame(int left, int top, const std::string& letters, Disposal disposal = keep, Blend blend = replace) {
  const std::size_t width = std::min(letters.find('/'), letters.size());
  const std::size_t height = (letters.size() + 1) / (width + 1);
  return chunk("ANMF", joined({little(static_cast<std::size_t>(left / 2), 3),
                               little(static_cast<std::size_t>(top / 2), 3),
                               little(width - 1, 3),
                               little(height - 1, 3),
                               little(125, 3),
                               {static_cast<std::uint8_t>(blend << 1 | disposal)},
                               pixels(letters)}));
}

TEST(Webp, ShowsWhatViewersShow) {
  const Bytes start = joined({extended(animation | alpha, 4, 1), loops(3)});
  const Bytes first = joined({start, frame(0, 0, "RGBW")});
  const auto file = [](const Bytes& chunks) { return riff(chunks); };
  const Sample samples[] = {
      {"a still picture", file(pixels("RG/BW")), {"RG/BW"}},
      {"turned by Exif data",
       file(joined({extended(exif, 2, 2), pixels("RG/BW"), chunk("EXIF", exifOf(6))})),
       {"BR/WG"}},
      {"Exif data with their mark",
       file(joined({extended(exif, 2, 2), pixels("RG/BW"),
                    chunk("EXIF", joined({{'E', 'x', 'i', 'f', 0, 0}, exifOf(3)}))})),
       {"WB/GR"}},
      {"composited over and in place",
       file(joined({first, frame(0, 0, ".K", keep, over), frame(2, 0, ".K")})),
       {"RGBW", "RKBW", "RK.K"}},
      {"disposal to the background",
       file(joined({first, frame(2, 0, "KK", background), frame(0, 0, "W")})),
       {"RGBW", "RGKK", "WG.."}},
      {"a cut in the head",
       without(file(pixels("RG/BW")), file(pixels("RG/BW")).size() - 14),
       {},
       "the file is truncated"},
      {"a cut in the second frame",
       without(file(joined({first, frame(0, 0, "BKRG")})), 8),
       {"RGBW"},
       "the file is truncated, it ends behind frame 1"},
      {"a damaged second frame",
       [&] {
         Bytes damaged = frame(0, 0, "KKKK");
         damaged[8 + 16 + 8 + 5] ^= 0xFF;  // behind the head of the pixels
         return file(joined({first, damaged, frame(0, 0, "G")}));
       }(),
       {"RGBW", "RGBW", "GGBW"},
       "WebP: the data of frame 2 are damaged"},
  };
  for (const Sample& sample : samples) expectShown(sample);
  const host::Animation moving = host::readAnimation(samples[3].bytes, {});
  EXPECT_EQ(moving.loops, 2);
  EXPECT_EQ(moving.frames[1].delay, 13) << "the half hundredth that the first frame did not get";
}

TEST(Webp, CutAtEveryByte) {
  std::string noise;
  for (int i = 0; i < 40; ++i)
    noise += std::string(i > 0 ? "/" : "") + "RGBWK"[i * i % 5] + "RGBWK"[i * i * i % 5];
  expectShownAtEveryLength(riff(pixels(noise)));
  expectShownAtEveryLength(
      riff(joined({extended(animation, 4, 1), loops(0), frame(0, 0, "RGBW"), frame(0, 0, "KKKK")})));
}

}  // namespace
