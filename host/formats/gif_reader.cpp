#include "host/formats/gif_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/errors.h"

namespace host {

namespace {

constexpr std::size_t headBytes = 13;
constexpr int tableFlag = 0x80;
constexpr int interlacedFlag = 0x40;
constexpr int tableBitsMask = 7;

enum Introducer { imageIntroducer = 0x2C, extensionIntroducer = 0x21, trailer = 0x3B };
enum Label { plainTextLabel = 0x01, controlLabel = 0xF9, commentLabel = 0xFE, applicationLabel = 0xFF };

/// Some writers number "restore to previous" 4; viewers read both.
Disposal disposalOf(int number) {
  if (number == 2) return Disposal::background;
  return number == 3 || number == 4 ? Disposal::previous : Disposal::keep;
}

/// The first sub-block of a chain without its length; empty where there is none.
ByteView firstBlock(ByteView chain) { return chain.subspan(1, chain[0]); }

bool isLoopBlock(ByteView block) {
  return block.size() == 11 && (std::memcmp(block.data(), "NETSCAPE2.0", 11) == 0 ||
                                std::memcmp(block.data(), "ANIMEXTS1.0", 11) == 0);
}

/// The number in the loop block's chain, if there is one.
std::optional<int> loopsIn(ByteView chain) {
  for (ByteView rest = chain.subspan(12); rest[0] != 0; rest = rest.subspan(rest[0] + 1U)) {
    if (rest[0] >= 3 && rest[1] == 1) return rest[2] | rest[3] << 8;
  }
  return std::nullopt;
}

}  // namespace

GifReader::GifReader(ByteView bytes, Diagnostics& diagnostics) : bytes_(bytes), diagnostics_(&diagnostics) {
  if (!has(headBytes)) throw FormatError("the file is truncated");
  screen_ = {number(6), number(8)};
  const int packedFields = bytes_[10];
  position_ = headBytes;
  std::optional<std::vector<RGBQUAD>> palette = takePalette(packedFields);
  if (!palette) throw FormatError("the file is truncated");
  palette_ = std::move(*palette);
}

/// The palette here, empty when the flags say that there is none; nothing when the file ends in it.
std::optional<std::vector<RGBQUAD>> GifReader::takePalette(int packedFields) {
  std::vector<RGBQUAD> palette;
  if ((packedFields & tableFlag) == 0) return palette;
  const std::size_t entries = std::size_t{2} << (packedFields & tableBitsMask);
  if (!has(3 * entries)) return std::nullopt;
  palette.reserve(entries);
  for (std::size_t i = 0; i < entries; ++i, position_ += 3) {
    palette.push_back(RGBQUAD{bytes_[position_ + 2], bytes_[position_ + 1], bytes_[position_], 0});
  }
  return palette;
}

/// Reports a fault that ends the file; there is no next frame.
bool GifReader::endWith(const std::string& fault) {
  ended_ = true;
  diagnostics_->report(fault);
  return false;
}

std::string GifReader::afterFrames() const {
  return frames_ == 0 ? "before the first frame" : "after " + frameName(frames_);
}

bool GifReader::next(GifFrame& frame) {
  disposal_ = Disposal::keep;
  delay_ = 0;
  transparent_.reset();
  while (!ended_) {
    if (!has(1)) return endWith("the trailer is missing");
    switch (bytes_[position_++]) {
      case imageIntroducer:
        return readFrame(frame);
      case extensionIntroducer:
        if (!readExtension()) return endWith(truncated("in a block " + afterFrames()));
        break;
      case trailer:
        ended_ = true;
        break;
      default:
        // Viewers stop here too.
        return endWith("there are unknown data " + afterFrames());
    }
  }
  return false;
}

/// Skips to after the empty sub-block; false when the file ends before it.
bool GifReader::skipSubBlocks() {
  while (has(1)) {
    const std::size_t length = bytes_[position_];
    if (!has(length + 1)) break;
    position_ += length + 1;
    if (length == 0) return true;
  }
  position_ = bytes_.size();
  return false;
}

bool GifReader::readExtension() {
  if (!has(1)) return false;
  const int label = bytes_[position_++];
  const std::size_t start = position_;
  if (!skipSubBlocks()) return false;
  const ByteView chain = bytes_.subspan(start, position_ - start);
  if (label == controlLabel) {
    readControl(firstBlock(chain));
  } else if (label == applicationLabel && isLoopBlock(firstBlock(chain))) {
    if (const std::optional<int> loops = loopsIn(chain)) loops_ = loops;
  } else if (label == applicationLabel || label == commentLabel || label == plainTextLabel) {
    extensions_.push_back({label, frames_, chain});
  }
  return true;
}

void GifReader::readControl(ByteView block) {
  if (block.size() < 4) return;
  disposal_ = disposalOf(block[0] >> 2 & 7);
  delay_ = block[1] | block[2] << 8;
  transparent_.reset();
  if ((block[0] & 1) != 0) transparent_ = block[3];
}

bool GifReader::readFrame(GifFrame& frame) {
  const std::string endsHere = truncated("within " + frameName(frames_ + 1));
  if (!has(9)) return endWith(endsHere);
  frame = {};
  frame.left = number(0);
  frame.top = number(2);
  frame.size = {number(4), number(6)};
  const int packedFields = bytes_[position_ + 8];
  position_ += 9;
  frame.interlaced = (packedFields & interlacedFlag) != 0;
  frame.disposal = disposal_;
  frame.delay = delay_;
  frame.transparent = transparent_;
  std::optional<std::vector<RGBQUAD>> palette = takePalette(packedFields);
  if (!palette || !has(1)) return endWith(endsHere);
  frame.palette = std::move(*palette);
  frame.minimumCodeSize = bytes_[position_++];
  readCodes(frame);
  frame.number = ++frames_;
  return true;
}

/// The payload of all sub-blocks, as far as the file has them.
void GifReader::readCodes(GifFrame& frame) {
  frame.cut = true;
  while (frame.cut && has(1)) {
    const std::size_t length = bytes_[position_++];
    const ByteView payload = bytes_.subspan(position_, std::min(length, bytes_.size() - position_));
    frame.codes.insert(frame.codes.end(), payload.begin(), payload.end());
    position_ += payload.size();
    frame.cut = length != 0;
  }
  ended_ = frame.cut;
}

}  // namespace host
