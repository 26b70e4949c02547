#include "formats/shown.h"

#include <algorithm>
#include <iterator>

#include <gtest/gtest.h>

#include "host/errors.h"

namespace shown {

namespace {

struct Named {
  char letter;
  host::Pixel pixel;
};
constexpr Named named[] = {{'.', {}},
                           {'R', {0, 0, 255, 255}},
                           {'G', {0, 255, 0, 255}},
                           {'B', {255, 0, 0, 255}},
                           {'W', {255, 255, 255, 255}},
                           {'K', {0, 0, 0, 255}}};

char letterOf(host::Pixel pixel) {
  if (pixel.alpha == 0) return '.';
  for (const Named& one : named) {
    if (one.pixel == pixel) return one.letter;
  }
  const bool gray = pixel.blue == pixel.green && pixel.green == pixel.red && pixel.alpha == 255;
  return gray && pixel.red % 40 == 0 ? static_cast<char>('0' + pixel.red / 40) : '?';
}

host::Animation read(const Bytes& bytes, host::Strictness strictness = host::Strictness::lenient,
                     host::Keep keep = host::Keep::allFrames) {
  return host::readAnimation(bytes, {keep, strictness});
}

std::string refusal(const Bytes& bytes, host::Strictness strictness) {
  try {
    read(bytes, strictness);
    return {};
  } catch (const host::FormatError& error) {
    return error.what();
  }
}

}  // namespace

std::vector<Strings> shownAtEveryLength(const Bytes& bytes, int step) {
  std::vector<Strings> shown(1);
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    try {
      shown.push_back(
          textsOf(read({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)}), step));
    } catch (const host::FormatError&) {
      EXPECT_TRUE(shown.back().empty()) << "more was shown of fewer bytes than " << length;
    }
  }
  return shown;
}

std::string textOf(const host::Picture& picture, int step) {
  std::string text;
  for (int y = 0; y < picture.height(); y += step) {
    if (y > 0) text += '/';
    for (int x = 0; x < picture.width(); x += step) text += letterOf(picture.row(y)[x]);
  }
  return text;
}

Strings textsOf(const host::Animation& animation, int step) {
  Strings texts;
  for (const host::Frame& frame : animation.frames) texts.push_back(textOf(frame.picture, step));
  return texts;
}

host::Pixel pixelOf(char letter) {
  return std::find_if(std::begin(named), std::end(named),
                      [=](const Named& one) { return one.letter == letter; })
      ->pixel;
}

void expectShown(const Sample& sample) {
  SCOPED_TRACE(sample.name);
  EXPECT_EQ(refusal(sample.bytes, host::Strictness::strict), sample.fault);
  if (sample.frames.empty()) {
    EXPECT_EQ(refusal(sample.bytes, host::Strictness::lenient), sample.fault);
    return;
  }
  ASSERT_EQ(refusal(sample.bytes, host::Strictness::lenient), "");
  const host::Animation all = read(sample.bytes);
  EXPECT_EQ(textsOf(all), sample.frames);
  EXPECT_EQ(all.warnings, sample.fault.empty() ? Strings{} : Strings{sample.fault});
  const host::Animation first = read(sample.bytes, host::Strictness::lenient, host::Keep::firstFrame);
  EXPECT_EQ(textsOf(first), Strings{sample.frames.front()});
}

void expectShownAtEveryLength(const Bytes& bytes) {
  const Strings whole = textsOf(read(bytes));
  std::size_t mostRight = 0;
  for (const Strings& frames : shownAtEveryLength(bytes)) {
    ASSERT_LE(frames.size(), whole.size());
    std::size_t right = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
      ASSERT_EQ(frames[i].size(), whole[i].size());
      for (std::size_t at = 0; at < frames[i].size(); ++at) {
        const char pixel = frames[i][at];
        const bool last = i + 1 == frames.size();
        const bool unchanged = last && (pixel == '.' || (i > 0 && pixel == whole[i - 1][at]));
        ASSERT_TRUE(pixel == whole[i][at] || unchanged);
        if (pixel != '/' && pixel == whole[i][at]) ++right;
      }
    }
    ASSERT_GE(right, mostRight);
    mostRight = right;
  }
}

Bytes joined(const std::vector<Bytes>& parts) {
  Bytes bytes;
  for (const Bytes& part : parts) bytes.insert(bytes.end(), part.begin(), part.end());
  return bytes;
}

Bytes without(Bytes bytes, std::size_t fromEnd) {
  bytes.resize(bytes.size() - fromEnd);
  return bytes;
}

Bytes little(std::size_t value, int count) {
  Bytes bytes;
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i & 255));
  return bytes;
}

Bytes big(std::size_t value, int count) {
  Bytes bytes = little(value, count);
  std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

Bytes exifOf(int orientation, bool bigEndian) {
  const auto number = bigEndian ? big : little;
  const auto mark = static_cast<std::uint8_t>(bigEndian ? 'M' : 'I');
  // One entry: tag, type of 16 bits, one of them, its value; there is no further directory.
  return joined({{mark, mark},
                 number(42, 2),
                 number(8, 4),
                 number(1, 2),
                 number(0x0112, 2),
                 number(3, 2),
                 number(1, 4),
                 number(static_cast<std::size_t>(orientation), 2),
                 {0, 0},
                 number(0, 4)});
}

}  // namespace shown
