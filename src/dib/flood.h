#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "platform/win32.h"

namespace dibkit {

/// A picture of one bit a pixel, in words of 64 so that runs are found a word at a time. Bit x mod 64 of word
/// x / 64 of a row is pixel x; bits beyond the width are 0.
class BitGrid {
 public:
  BitGrid(int width, int height)
      : wordsPerRow_((static_cast<std::size_t>(width) + 63) / 64),
        words_(wordsPerRow_ * static_cast<std::size_t>(height)) {}

  std::uint64_t* row(int y) { return words_.data() + wordsPerRow_ * static_cast<std::size_t>(y); }
  std::size_t wordsPerRow() const { return wordsPerRow_; }

 private:
  std::size_t wordsPerRow_;
  std::vector<std::uint64_t> words_;
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

/// The four-connected walk under every fill and wand. It starts at the seed, which is visited whatever it
/// holds, and spreads over the pixels that match.
/// \param seed inside width x height
/// \param match match(y, flags) sets flags[x] to 1 for the pixels of row y that may be entered and to 0 for
/// the
///        others; called once for each row that the walk reaches, before any pixel of it is visited
/// \param visit visit(y, left, right) receives each run of reached pixels once
/// Throws std::bad_alloc when the work list cannot grow; what was visited until then has been visited.
template <class Match, class Visit>
void walkConnected(int width, int height, POINT seed, Match&& match, Visit&& visit) {
  struct Span {
    int y, left, right;
  };
  BitGrid open(width, height);
  std::vector<BYTE> flags(open.wordsPerRow() * 64);
  std::vector<bool> matched(static_cast<std::size_t>(height));
  std::vector<Span> work;

  const auto rowOf = [&](int y) {
    std::uint64_t* row = open.row(y);
    if (!matched[static_cast<std::size_t>(y)]) {
      matched[static_cast<std::size_t>(y)] = true;
      match(y, flags.data());
      packFlags(flags.data(), open.wordsPerRow(), row);
    }
    return row;
  };
  const auto enter = [&](int y, int from, int end) {
    std::uint64_t* row = rowOf(y);
    for (int x = findBit(row, from, end, true); x < end; x = findBit(row, x, end, true)) {
      const int left = runStart(row, x);
      const int right = findBit(row, x, width, false);
      clearBits(row, left, right);
      visit(y, left, right);
      work.push_back({y, left, right});
      x = right;
      if (x >= end) break;
    }
  };

  rowOf(seed.y)[seed.x / 64] |= std::uint64_t{1} << seed.x % 64;
  enter(seed.y, seed.x, seed.x + 1);
  while (!work.empty()) {
    const Span span = work.back();
    work.pop_back();
    if (span.y + 1 < height) enter(span.y + 1, span.left, span.right);
    if (span.y > 0) enter(span.y - 1, span.left, span.right);
  }
}

}  // namespace dibkit
