#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "dib/bit_grid.h"

namespace dibkit {

/// The pixels that a walk may still enter. What matches is asked for piece by piece, as the walk gets there,
/// so that a small area in a large picture costs little.
template <class Match>
class OpenPixels {
 public:
  OpenPixels(int width, int height, Match& match)
      : match_(match),
        width_(width),
        grid_(width, height),
        rowWidth_(static_cast<std::int64_t>(grid_.wordsPerRow()) * 64),
        piecesPerRow_((rowWidth_ + pieceWidth() - 1) / pieceWidth()),
        known_(static_cast<std::size_t>(piecesPerRow_) * static_cast<std::size_t>(height)),
        flags_(static_cast<std::size_t>(pieceWidth())) {}

  /// Opens a pixel whatever it holds.
  void open(int x, int y) {
    learn(y, x);
    setBits(grid_.row(y), x, x + 1);
  }

  /// Closes all runs that reach into [from, end) and calls take(left, right) for each.
  template <class Take>
  void takeRuns(int y, int from, int end, Take&& take) {
    std::uint64_t* const row = grid_.row(y);
    for (int x = from; x < end;) {
      learn(y, x);
      const std::int64_t nextPiece = (x / pieceWidth() + 1) * pieceWidth();
      const int pieceEnd = static_cast<int>(std::min<std::int64_t>(end, nextPiece));
      x = findBit(row, x, pieceEnd, true);
      if (x == pieceEnd) continue;
      int left = runStart(row, x);
      while (left > 0 && left % pieceWidth() == 0 && learn(y, left - 1)) left = runStart(row, left);
      int right = findBit(row, x, width_, false);
      while (right < width_ && right % pieceWidth() == 0 && learn(y, right)) {
        right = findBit(row, right, width_, false);
      }
      clearBits(row, left, right);
      take(left, right);
      x = right;
    }
  }

 private:
  static constexpr bool inPieces = std::is_invocable_v<Match&, int, int, int, BYTE*>;
  /// How many pixels are asked about at a time: whole words of the grid, so that the last may be fewer. In 64
  /// bits, since those of a row pass 31.
  std::int64_t pieceWidth() const { return inPieces ? 128 : rowWidth_; }

  /// Finds out what matches in the piece of a row that holds x.
  /// \return whether that was not known before
  bool learn(int y, int x) {
    const std::int64_t piece = x / pieceWidth();
    const std::int64_t index = y * piecesPerRow_ + piece;
    if (known_[static_cast<std::size_t>(index)]) return false;
    known_[static_cast<std::size_t>(index)] = true;
    const int left = static_cast<int>(piece * pieceWidth());
    const int count = static_cast<int>(std::min<std::int64_t>(width_ - left, pieceWidth()));
    if constexpr (inPieces) {
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
  std::int64_t rowWidth_;  ///< with the bits that fill up the last word
  std::int64_t piecesPerRow_;
  std::vector<bool> known_;
  std::vector<BYTE> flags_;
};

/// The four-connected walk under every fill and wand. It starts at the seed, which is visited whatever it
/// holds, and spreads over the pixels that match.
/// \param seed inside width x height
/// \param match match(y, flags) sets flags[x] to 1 for the pixels of row y that may be entered and to 0 for
///        the others. Or match(y, x, count, flags), which does so for `count` pixels from x on, the first
///        being flags[0]. Asked once about each row or piece that the walk reaches, before any pixel of it is
///        visited.
/// \param visit visit(y, left, right) receives each run of reached pixels once
/// Throws std::bad_alloc when the work list cannot grow; what was visited until then has been visited.
template <class Match, class Visit>
void walkConnected(int width, int height, POINT seed, Match&& match, Visit&& visit) {
  struct Span {
    int y, left, right;
  };
  OpenPixels<std::remove_reference_t<Match>> pixels(width, height, match);
  std::vector<Span> work;
  const auto enter = [&](int y, int from, int end) {
    pixels.takeRuns(y, from, end, [&](int left, int right) {
      visit(y, left, right);
      work.push_back({y, left, right});
    });
  };

  const int seedX = static_cast<int>(seed.x);
  const int seedY = static_cast<int>(seed.y);
  pixels.open(seedX, seedY);
  enter(seedY, seedX, seedX + 1);
  while (!work.empty()) {
    const Span span = work.back();
    work.pop_back();
    if (span.y + 1 < height) enter(span.y + 1, span.left, span.right);
    if (span.y > 0) enter(span.y - 1, span.left, span.right);
  }
}

}  // namespace dibkit
