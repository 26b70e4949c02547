#pragma once

#include <string>
#include <vector>

#include "host/bytes.h"
#include "host/formats/formats.h"

/// Files made byte by byte, and what the readers show of them.
namespace shown {

using host::Bytes;
using Strings = std::vector<std::string>;

/// Small pictures as text: a letter for each pixel, '/' between the lines. R, G, B, W, K and '.', which is
/// transparent; digits are grays of 40 times as much. \param step from one pixel to the next
std::string textOf(const host::Picture& picture, int step = 1);
Strings textsOf(const host::Animation& animation, int step = 1);
/// The pixel of a letter.
host::Pixel pixelOf(char letter);

/// A file and what is to become of it.
struct Sample {
  const char* name;
  Bytes bytes;
  Strings frames;  ///< none when nothing can be shown
  std::string
      fault{};  ///< the warning, the strict reader's refusal, and everyone's where there are no frames
};

/// Reads the file leniently, strictly, and its first frame alone.
void expectShown(const Sample& sample);

/// What the reader shows of the first bytes, for every number of them from 0 on, as long as it shows
/// anything. Fails when more bytes are refused than fewer.
std::vector<Strings> shownAtEveryLength(const Bytes& bytes, int step = 1);

/// Expects of each of them what the whole file shows, or in its last frame the frame before or nothing, pixel
/// by pixel, and never fewer pixels right than of fewer bytes.
void expectShownAtEveryLength(const Bytes& bytes);

/// The bytes of several parts, one behind the other.
Bytes joined(const std::vector<Bytes>& parts);
Bytes without(Bytes bytes, std::size_t fromEnd);
/// A number of `count` bytes, the low one first.
Bytes little(std::size_t value, int count);
/// The high one first.
Bytes big(std::size_t value, int count);

/// Exif data with nothing but the orientation, in either order of bytes.
Bytes exifOf(int orientation, bool bigEndian = false);

}  // namespace shown
