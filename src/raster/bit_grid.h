#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "platform/win32.h"

namespace dibkit {

/// A picture of one bit a pixel, in words of 64 bits so that runs are found a word at a time. Bit x mod 64 of
/// word x / 64 of a row is pixel x; bits beyond the width are 0.
class BitGrid {
 public:
  /// All bits 0. Throws std::bad_alloc when memory runs out.
  BitGrid(int width, int height)
      : wordsPerRow_((static_cast<std::size_t>(width) + 63) / 64), words_(allocate(wordsPerRow_, height)) {}

  std::uint64_t* row(int y) { return words_.get() + wordsPerRow_ * static_cast<std::size_t>(y); }
  std::size_t wordsPerRow() const { return wordsPerRow_; }

 private:
  struct Free {
    void operator()(std::uint64_t* words) const { std::free(words); }
  };
  static std::uint64_t* allocate(std::size_t wordsPerRow, int height) {
    // One word more, since calloc may give null for a size of 0.
    const std::uint64_t words = std::uint64_t{wordsPerRow} * static_cast<unsigned>(height) + 1;
    // A 32-bit process would wrap to a small block.
    if (words > SIZE_MAX / sizeof(std::uint64_t)) throw std::bad_alloc();
    void* const block = std::calloc(static_cast<std::size_t>(words), sizeof(std::uint64_t));
    if (block == nullptr) throw std::bad_alloc();
    return static_cast<std::uint64_t*>(block);
  }

  std::size_t wordsPerRow_;
  // From calloc, which does not write to large blocks: rows that are never used cost nothing.
  std::unique_ptr<std::uint64_t, Free> words_;
};

/// Packs one byte a pixel, each 0 or 1, into bits. `flags` has room for whole words of 64 bytes.
void packFlags(const BYTE* flags, std::size_t words, std::uint64_t* bits);

/// First x in [from, end) whose bit is `set`, or `end`.
int findBit(const std::uint64_t* row, int from, int end, bool set);
/// The left end of the run of set bits that holds x.
int runStart(const std::uint64_t* row, int x);
/// Clears the bits of [left, right).
void clearBits(std::uint64_t* row, int left, int right);
/// Sets the bits of [left, right).
void setBits(std::uint64_t* row, int left, int right);

/// Calls run(left, right) for every run of set bits in the first `width` bits, from the left.
template <class Run>
void forEachRun(const std::uint64_t* row, int width, Run&& run) {
  for (int left = findBit(row, 0, width, true); left < width;) {
    const int right = findBit(row, left, width, false);
    run(left, right);
    left = findBit(row, right, width, true);
  }
}

/// Calls run(left, right, a, b) for the runs of [0, width) in which neither of two rows of bits changes, from
/// the left; a and b are their bits there.
template <class Run>
void forEachPairRun(const std::uint64_t* a, const std::uint64_t* b, int width, Run&& run) {
  const auto bitAt = [](const std::uint64_t* row, int x) { return (row[x / 64] >> x % 64 & 1) != 0; };
  int endA = 0;
  int endB = 0;
  for (int left = 0; left < width;) {
    const bool inA = bitAt(a, left);
    const bool inB = bitAt(b, left);
    if (endA <= left) endA = findBit(a, left, width, !inA);
    if (endB <= left) endB = findBit(b, left, width, !inB);
    const int right = endA < endB ? endA : endB;
    run(left, right, inA, inB);
    left = right;
  }
}

}  // namespace dibkit
