#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "host/bytes.h"

namespace host {

/// Decodes the pixels of a GIF frame, as many at a time as fit into the caller's buffer. Gives every pixel
/// before a fault, accepts code sizes up to the largest that fits into 12 bits, and continues with a full
/// table until the data clear it.
class LzwDecoder {
 public:
  static constexpr int largestMinimumCodeSize = 11;

  /// \param codes must outlive the decoder
  /// \param minimumCodeSize 0 to largestMinimumCodeSize
  LzwDecoder(ByteView codes, int minimumCodeSize);

  /// Decodes palette indices into `to` and returns how many; fewer than fit in when the data end.
  std::size_t read(std::span<std::uint8_t> to);
  /// Whether the data ended at a code that no table has.
  bool damaged() const { return state_ == State::damaged; }

 private:
  enum class State { running, ended, damaged };
  static constexpr int maximumCodeSize = 12;
  static constexpr int tableSize = 1 << maximumCodeSize;
  static constexpr int none = -1;

  int nextCode();
  void clear();
  bool addString(int code);
  std::size_t deliver(int code, std::span<std::uint8_t> to);
  std::size_t deliverHeld(std::span<std::uint8_t> to);

  // Strings are stored in chunks of eight pixels: a string has the last one, which may be shorter, and the
  // code of the string that is all of it before that chunk.
  static constexpr std::size_t chunkSize = 8;
  std::array<std::uint64_t, tableSize> chunk_{};  ///< the first pixel in the lowest byte
  std::array<std::uint16_t, tableSize> front_{};
  std::array<std::uint16_t, tableSize> length_{};
  std::array<std::uint8_t, tableSize> first_{};
  // The rest of a string that did not fit into the buffer of the last call.
  std::array<std::uint8_t, tableSize + chunkSize> held_{};
  std::size_t heldFrom_ = 0;
  std::size_t heldTo_ = 0;

  ByteView codes_;
  std::size_t position_ = 0;
  std::uint64_t bits_ = 0;
  int bitCount_ = 0;
  State state_ = State::running;
  int minimumCodeSize_;
  int clearCode_;
  int codeSize_ = 0;
  int next_ = 0;         ///< the code of the string to be added
  int previous_ = none;  ///< the code before, none after a clear code
};

}  // namespace host
