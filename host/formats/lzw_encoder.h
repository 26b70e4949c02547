#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/bytes.h"

namespace host {

/// Compresses the pixels of GIF frames. Keeps its table from frame to frame, so use one object for many
/// frames.
class LzwEncoder {
 public:
  /// The pixels as a GIF stores them: the bits of an index, the codes in blocks that start with their length,
  /// and the empty block.
  ///
  /// Gives up with an empty result when that takes more than `maximumBytes`. So a caller can compress several
  /// versions of an image and keep the shortest.
  Bytes encode(ByteView indices, std::size_t maximumBytes);

 private:
  static constexpr int codeBits = 12;
  static constexpr std::uint32_t maximumCodes = 1U << codeBits;
  // Four times as many as there are codes.
  static constexpr int slotBits = 14;
  static constexpr std::uint32_t slots = 1U << slotBits;

  std::uint32_t findOrAdd(std::uint32_t prefix, std::uint32_t index, std::uint32_t next);
  void clear();

  // The strings that have a code: a code and the index that follows it, packed with the code of the two. No
  // entry is 0, since the code of a string is not. Most codes begin one string only, so the first one of each
  // is where its code says; the others are in a hash table.
  std::array<std::uint32_t, maximumCodes> firstStrings_{};
  std::array<std::uint32_t, slots> otherStrings_{};
  std::array<std::uint16_t, maximumCodes> usedSlots_{};
  std::size_t used_ = 0;
};

}  // namespace host
