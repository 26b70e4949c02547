#include "host/formats/formats.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/errors.h"
#include "host/formats/gif_decoder.h"

namespace {

using host::Bytes;
using host::Strictness;
using Strings = std::vector<std::string>;

/// A case of cases/FORMAT.txt; generate.py tells what is in them.
struct Sample {
  std::string format, name, file;
  Strings frames;
  std::string fault, times;
  char mark;

  Bytes bytes(std::size_t length = std::string::npos) const {
    const std::string part = file.substr(0, length);
    return {part.begin(), part.end()};
  }
};

const std::vector<Sample>& samples() {
  static const std::vector<Sample> all = {
#include "samples.inc"
  };
  return all;
}

const Sample& sampleNamed(const std::string& name) {
  return *std::ranges::find_if(samples(), [&](const Sample& one) { return one.name == name; });
}

char letterOf(host::Pixel pixel) {
  if (pixel.alpha == 0) return '.';
  const bool gray = pixel.blue == pixel.green && pixel.green == pixel.red;
  if (gray && pixel.red % 255 == 0 && pixel.alpha == 255) return pixel.red == 0 ? 'K' : 'W';
  if (gray && pixel.red % 40 == 0 && pixel.alpha == 255) return static_cast<char>('0' + pixel.red / 40);
  for (const auto& [letter, colour] : {std::pair{'R', host::Pixel{0, 0, 255, 255}},
                                       {'G', host::Pixel{0, 255, 0, 255}},
                                       {'B', host::Pixel{255, 0, 0, 255}}}) {
    if (pixel == colour) return letter;
  }
  return '?';
}

std::string textOf(const host::Picture& picture) {
  std::string text;
  for (int y = 0; y < picture.height(); ++y) {
    if (y > 0) text += '/';
    for (int x = 0; x < picture.width(); ++x) text += letterOf(picture.row(y)[x]);
  }
  return text;
}

struct Result {
  Strings frames{};
  Strings warnings{};
  std::string times{};
  std::string refusal{};  ///< there is nothing else with one
};

Result read(const Bytes& bytes, Strictness strictness = Strictness::lenient,
            host::Keep keep = host::Keep::allFrames) {
  Result result;
  try {
    const host::Animation animation = host::readAnimation(bytes, {keep, strictness});
    result.warnings = animation.warnings;
    for (const host::Frame& frame : animation.frames) {
      result.frames.push_back(textOf(frame.picture));
      result.times += std::to_string(frame.delay) + ' ';
    }
    result.times += animation.loops ? std::to_string(*animation.loops) : "once";
  } catch (const host::FormatError& error) {
    result.refusal = error.what();
  }
  return result;
}

/// Whether these are the frames expected, of which '*' are any pixels.
bool matches(const Strings& frames, const Strings& expected) {
  return std::ranges::equal(frames, expected, [](const std::string& frame, const std::string& letters) {
    return std::ranges::equal(frame, letters,
                              [](char pixel, char letter) { return pixel == letter || letter == '*'; });
  });
}

class Formats : public testing::TestWithParam<const char*> {
 protected:
  template <class Test>
  void forEach(Test test) {
    int count = 0;
    for (const Sample& sample : samples()) {
      if (sample.format != GetParam()) continue;
      SCOPED_TRACE(sample.name);
      test(sample);
      ++count;
    }
    EXPECT_GT(count, 8);
  }
};
INSTANTIATE_TEST_SUITE_P(, Formats, testing::Values("bmp", "gif", "jpeg", "png", "webp"),
                         [](const auto& format) { return format.param; });

TEST_P(Formats, AreShownAsViewersShowThem) {
  forEach([](const Sample& sample) {
    EXPECT_EQ(read(sample.bytes(), Strictness::strict).refusal, sample.fault);
    const Result all = read(sample.bytes());
    EXPECT_EQ(all.refusal, sample.frames.empty() ? sample.fault : "");
    if (sample.frames.empty()) return;
    EXPECT_TRUE(matches(all.frames, sample.frames)) << testing::PrintToString(all.frames);
    EXPECT_EQ(all.warnings, sample.fault.empty() ? Strings{} : Strings{sample.fault});
    EXPECT_TRUE(sample.times.empty() || all.times == sample.times) << all.times;
    const Result first = read(sample.bytes(), Strictness::lenient, host::Keep::firstFrame);
    EXPECT_TRUE(matches(first.frames, {sample.frames.front()})) << testing::PrintToString(first.frames);
  });
}

/// How much of the frames is right: pixels, or those before the first wrong one. Others may be what `mark`
/// allows.
std::size_t rightPixels(const Strings& frames, const Strings& whole, char mark) {
  std::size_t right = 0;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    for (std::size_t at = 0; at < frames[i].size(); ++at) {
      const char pixel = frames[i][at];
      const bool same = pixel == whole.at(i).at(at);
      if (!same && mark == '~') return right;
      const bool unchanged = i + 1 == frames.size() && (pixel == '.' || (i > 0 && pixel == whole[i - 1][at]));
      EXPECT_TRUE(same || unchanged) << "frame " << i + 1 << ", " << pixel << " at " << at;
      right += same && pixel != '/' ? 1 : 0;
    }
  }
  return right;
}

TEST_P(Formats, ShowMoreOfMoreBytes) {
  int tried = 0;
  forEach([&tried](const Sample& sample) {
    if (sample.mark == ' ') return;
    ++tried;
    std::size_t right = 0;
    for (std::size_t length = 0; length <= sample.file.size(); ++length) {
      SCOPED_TRACE(std::to_string(length) + " bytes");
      const Result result = read(sample.bytes(length));
      const std::size_t now = rightPixels(result.frames, sample.frames, sample.mark);
      ASSERT_GE(now, right);
      right = now;
    }
  });
  EXPECT_GT(tried, 0);
}

/// The columns that changed from frame to frame, of a line.
TEST(Gif, TellsWhereTheCanvasChanged) {
  const Bytes bytes = sampleNamed("changes").bytes();
  host::GifDecoder decoder(bytes, Strictness::strict);
  std::string columns;
  while (decoder.next()) {
    const RECT& changed = decoder.changed();
    const bool any = changed.right > changed.left;
    columns += any ? std::to_string(changed.left) + '-' + std::to_string(changed.right) + ' ' : "none ";
  }
  // All of the canvas; kept the one before; cleared two in front of it; restored the last pixel; restored
  // both; hangs over; is beside the canvas.
  EXPECT_EQ(columns, "0-6 2-4 2-6 0-6 0-2 4-6 none ");
}

TEST(Gif, KeepsExtensions) {
  const Bytes bytes = sampleNamed("extensions").bytes();
  host::GifDecoder decoder(bytes, Strictness::strict);
  while (decoder.next()) continue;
  std::string kept;
  for (const host::GifExtension& extension : decoder.extensions()) {
    kept += std::to_string(extension.label) + " before frame " + std::to_string(extension.frame + 1) + ": ";
    for (const std::uint8_t byte : extension.blocks)
      kept += byte >= ' ' ? std::string(1, char(byte)) : '<' + std::to_string(byte) + '>';
    kept += '\n';
  }
  EXPECT_EQ(kept,
            "254 before frame 1: <2>hi<1>!<0>\n255 before frame 2: <11>application<0>\n1 before frame 3: "
            "<1><9><0>\n");
}

}  // namespace
