#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "raster/bit_grid.h"

namespace dibkit {

/// The pixels that a flood fill has not visited. The match predicate is evaluated lazily, one block of a row
/// at a time, so a small area in a large picture costs little.
template <class Match>
class UnvisitedPixels {
 public:
  UnvisitedPixels(int width, int height, Match& match)
      : match_(match),
        width_(width),
        grid_(width, height),
        rowWidth_(static_cast<std::int64_t>(grid_.wordsPerRow()) * 64),
        blocksPerRow_((rowWidth_ + blockWidth() - 1) / blockWidth()),
        evaluated_(static_cast<std::size_t>(blocksPerRow_) * static_cast<std::size_t>(height)),
        flags_(static_cast<std::size_t>(blockWidth())) {}

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
      const std::int64_t nextBlock = (x / blockWidth() + 1) * blockWidth();
      const int blockEnd = static_cast<int>(std::min<std::int64_t>(end, nextBlock));
      x = findBit(row, x, blockEnd, true);
      if (x == blockEnd) continue;
      int left = runStart(row, x);
      while (left > 0 && left % blockWidth() == 0 && evaluate(y, left - 1)) left = runStart(row, left);
      int right = findBit(row, x, width_, false);
      while (right < width_ && right % blockWidth() == 0 && evaluate(y, right)) {
        right = findBit(row, right, width_, false);
      }
      clearBits(row, left, right);
      take(left, right);
      x = right;
    }
  }

 private:
  static constexpr bool inBlocks = std::is_invocable_v<Match&, int, int, int, BYTE*>;
  /// Pixels of a block: whole words of the grid, so the last block of a row may have fewer. 64 bits, since
  /// the words of the widest row have more than 2^31 - 1 bits.
  std::int64_t blockWidth() const { return inBlocks ? 128 : rowWidth_; }

  /// Evaluates the predicate for the block that holds x, unless that has been done.
  /// \return whether it was evaluated now
  bool evaluate(int y, int x) {
    const std::int64_t block = x / blockWidth();
    const std::int64_t index = y * blocksPerRow_ + block;
    if (evaluated_[static_cast<std::size_t>(index)]) return false;
    evaluated_[static_cast<std::size_t>(index)] = true;
    const int left = static_cast<int>(block * blockWidth());
    const int count = static_cast<int>(std::min<std::int64_t>(width_ - left, blockWidth()));
    if constexpr (inBlocks) {
      match_(y, left, count, flags_.data());
    } else {
      match_(y, flags_.data());
    }
    std::fill(flags_.begin() + count, flags_.end(), BYTE{0});
    packFlags(flags_.data(), (static_cast<std::size_t>(count) + 63) / 64, grid_.row(y) + left / 64);
    return true;
  }

  Match& match_;
  int width_;
  BitGrid grid_;
  std::int64_t rowWidth_;  ///< with the unused bits of the last word
  std::int64_t blocksPerRow_;
  std::vector<bool> evaluated_;
  std::vector<BYTE> flags_;
};

/// Four-connected flood fill by spans, which every fill and wand uses. It starts at the seed, which is
/// visited whether it matches or not, and spreads over the pixels that match. Throws std::bad_alloc when the
/// work list cannot grow; the runs visited until then stay visited.
///
/// \param seed inside width x height
/// \param match match(y, flags) sets flags[x] to 1 for the pixels of row y that match and to 0 for others,
///     or match(y, x, count, flags), which does so for `count` pixels from x on, the first one in flags[0].
///     Called once for each row or block that is reached, before any pixel of it is visited
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
