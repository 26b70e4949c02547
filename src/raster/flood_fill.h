#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "raster/bit_grid.h"

namespace dibkit {

/// The pixels of a row that a flood fill examines at once: whole words of bits, and no more than a small area
/// in a large picture needs.
constexpr int floodBlock = 128;

/// The pixels that a flood fill has not visited. The match predicate is evaluated lazily, one block of a row
/// at a time.
template <class Match>
class UnvisitedPixels {
 public:
  UnvisitedPixels(int width, int height, Match& match)
      : match_(match),
        width_(width),
        grid_(width, height),
        blocksPerRow_((std::size_t{grid_.wordsPerRow()} * 64 + floodBlock - 1) / floodBlock),
        evaluated_(blocksPerRow_ * static_cast<std::size_t>(height)) {}

  /// Makes a pixel match, regardless of the predicate.
  void force(int x, int y) {
    evaluate(y, x);
    setBits(grid_.row(y), x, x + 1);
  }

  /// Removes all matching runs that touch [from, end) and calls take(left, right) for each.
  template <class Take>
  void takeRuns(int y, int from, int end, Take&& take) {
    std::uint64_t* const row = grid_.row(y);
    for (int x = from; x < end;) {
      evaluate(y, x);
      const std::int64_t nextBlock = (std::int64_t{x} / floodBlock + 1) * floodBlock;
      const int blockEnd = static_cast<int>(std::min<std::int64_t>(end, nextBlock));
      x = findBit(row, x, blockEnd, true);
      if (x == blockEnd) continue;
      int left = runStart(row, x);
      while (left > 0 && left % floodBlock == 0 && evaluate(y, left - 1)) left = runStart(row, left);
      int right = findBit(row, x, width_, false);
      while (right < width_ && right % floodBlock == 0 && evaluate(y, right)) {
        right = findBit(row, right, width_, false);
      }
      clearBits(row, left, right);
      take(left, right);
      x = right;
    }
  }

 private:
  /// Evaluates the predicate for the block that holds x, unless that has been done.
  /// \return whether it was evaluated now
  bool evaluate(int y, int x) {
    const int block = x / floodBlock;
    BYTE& done = evaluated_[static_cast<std::size_t>(y) * blocksPerRow_ + static_cast<std::size_t>(block)];
    if (done != 0) return false;
    done = 1;
    const int left = block * floodBlock;
    const int count = std::min(width_ - left, floodBlock);
    match_(y, left, count, flags_.data());
    std::fill(flags_.begin() + count, flags_.end(), BYTE{0});
    packFlags(flags_.data(), (static_cast<std::size_t>(count) + 63) / 64, grid_.row(y) + left / 64);
    return true;
  }

  Match& match_;
  int width_;
  BitGrid grid_;
  std::size_t blocksPerRow_;
  std::vector<BYTE> evaluated_;  ///< of each block, 1 or 0
  std::array<BYTE, floodBlock> flags_;
};

/// Four-connected flood fill by spans, which every fill and wand uses. It starts at the seed, which is
/// visited whether it matches or not, and spreads over the pixels that match. Throws std::bad_alloc when the
/// work list cannot grow; the runs visited until then stay visited.
///
/// \param seed inside width x height
/// \param match match(y, x, count, flags) sets flags[i] to 1 if pixel x + i of row y matches, else to 0, for
///     `count` pixels: a block of floodBlock, or less at the end of the row. Called once for each block that
///     is reached, before any pixel of it is visited
/// \param visit visit(y, left, right) receives each run of reached pixels once
template <class Match, class Visit>
void floodFill(int width, int height, POINT seed, Match&& match, Visit&& visit) {
  struct Span {
    int y, left, right;
  };
  UnvisitedPixels<std::remove_reference_t<Match>> pixels(width, height, match);
  std::vector<Span> work;
  const auto enter = [&](int y, int from, int end) {
    pixels.takeRuns(y, from, end, [&](int left, int right) {
      visit(y, left, right);
      work.push_back({y, left, right});
    });
  };

  const int seedX = static_cast<int>(seed.x);
  const int seedY = static_cast<int>(seed.y);
  pixels.force(seedX, seedY);
  enter(seedY, seedX, seedX + 1);
  while (!work.empty()) {
    const Span span = work.back();
    work.pop_back();
    if (span.y + 1 < height) enter(span.y + 1, span.left, span.right);
    if (span.y > 0) enter(span.y - 1, span.left, span.right);
  }
}

}  // namespace dibkit
