#include "host/formats/lzw_decoder.h"

#include <algorithm>

namespace host {

LzwDecoder::LzwDecoder(ByteView codes, int minimumCodeSize)
    : codes_(codes), minimumCodeSize_(minimumCodeSize), clearCode_(1 << minimumCodeSize) {
  for (int code = 0; code < clearCode_; ++code) {
    const auto entry = static_cast<std::size_t>(code);
    length_[entry] = 1;
    // Code sizes above 8 have literals that are no palette index; their low eight bits are one.
    chunk_[entry] = first_[entry] = static_cast<std::uint8_t>(code & 255);
  }
  clear();
}

void LzwDecoder::clear() {
  codeSize_ = minimumCodeSize_ + 1;
  next_ = clearCode_ + 2;
  previous_ = none;
}

int LzwDecoder::nextCode() {
  if (bitCount_ < codeSize_) {
    const std::size_t count = std::min<std::size_t>(4, codes_.size() - position_);
    for (std::size_t i = 0; i < count; ++i, bitCount_ += 8)
      bits_ |= std::uint64_t{codes_[position_ + i]} << bitCount_;
    position_ += count;
    if (bitCount_ < codeSize_) return none;
  }
  const int code = static_cast<int>(bits_ & ((1U << codeSize_) - 1));
  bits_ >>= codeSize_;
  bitCount_ -= codeSize_;
  return code;
}

/// Adds the string before and the first pixel of this one; false for a code that cannot occur here.
bool LzwDecoder::addString(int code) {
  if (previous_ == none) return code < clearCode_;
  if (code > next_) return false;
  if (next_ == tableSize) return true;
  const auto before = static_cast<std::size_t>(previous_);
  const auto added = static_cast<std::size_t>(next_);
  // The string being added may be the one that this code means.
  const std::uint64_t last = code == next_ ? first_[before] : first_[static_cast<std::size_t>(code)];
  const std::size_t inChunk = length_[before] % chunkSize;
  if (inChunk == 0) {
    chunk_[added] = last;
    front_[added] = static_cast<std::uint16_t>(before);
  } else {
    chunk_[added] = chunk_[before] | last << 8 * inChunk;
    front_[added] = front_[before];
  }
  length_[added] = static_cast<std::uint16_t>(length_[before] + 1);
  first_[added] = first_[before];
  ++next_;
  return true;
}

std::size_t LzwDecoder::deliverHeld(std::span<std::uint8_t> to) {
  const std::size_t count = std::min(to.size(), heldTo_ - heldFrom_);
  std::copy_n(held_.data() + heldFrom_, count, to.data());
  heldFrom_ += count;
  return count;
}

std::size_t LzwDecoder::deliver(int code, std::span<std::uint8_t> to) {
  auto entry = static_cast<std::size_t>(code);
  const std::size_t length = length_[entry];
  std::size_t start = (length - 1) / chunkSize * chunkSize;
  // Whole chunks are written, beyond the end of the string.
  const bool fits = start + chunkSize <= to.size();
  std::uint8_t* pixels = fits ? to.data() : held_.data();
  for (;; start -= chunkSize, entry = front_[entry]) {
    const std::uint64_t chunk = chunk_[entry];
    for (std::size_t i = 0; i < chunkSize; ++i) pixels[start + i] = static_cast<std::uint8_t>(chunk >> 8 * i);
    if (start == 0) break;
  }
  if (fits) return length;
  heldFrom_ = 0;
  heldTo_ = length;
  return deliverHeld(to);
}

std::size_t LzwDecoder::read(std::span<std::uint8_t> to) {
  std::size_t filled = deliverHeld(to);
  while (filled < to.size() && state_ == State::running) {
    const int code = nextCode();
    if (code == clearCode_) {
      clear();
    } else if (code == none || code == clearCode_ + 1) {
      state_ = State::ended;
    } else if (!addString(code)) {
      state_ = State::damaged;
    } else {
      filled += deliver(code, to.subspan(filled));
      previous_ = code;
      if (next_ >= 1 << codeSize_ && codeSize_ < maximumCodeSize) ++codeSize_;
    }
  }
  return filled;
}

}  // namespace host
