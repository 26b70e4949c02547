#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include "platform/win32.h"

namespace dibkit {

/// A picture of one bit a pixel, in words of 64 so that runs are found a word at a time. Bit x mod 64 of word
/// x / 64 of a row is pixel x; bits beyond the width are 0.
class BitGrid {
 public:
  /// All bits 0. Throws std::bad_alloc when memory runs out.
  BitGrid(int width, int height)
      : wordsPerRow_((static_cast<std::size_t>(width) + 63) / 64),
        words_(static_cast<std::uint64_t*>(
            // One word more, since nothing asked for may come back as null.
            std::calloc(wordsPerRow_ * static_cast<std::size_t>(height) + 1, sizeof(std::uint64_t)))) {
    if (!words_) throw std::bad_alloc();
  }

  std::uint64_t* row(int y) { return words_.get() + wordsPerRow_ * static_cast<std::size_t>(y); }
  std::size_t wordsPerRow() const { return wordsPerRow_; }

 private:
  struct Free {
    void operator()(std::uint64_t* words) const { std::free(words); }
  };

  std::size_t wordsPerRow_;
  // From calloc, which hands out large blocks untouched: rows that nobody comes to cost nothing.
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

/// The pixels that a walk may still enter. What matches is asked for piece by piece, as the walk gets there,
/// so that a small area in a large picture costs little.
template <class Match>
class OpenPixels {
 public:
  OpenPixels(int width, int height, Match& match)
      : match_(match),
        width_(width),
        grid_(width, height),
        wordsPerPiece_(inPieces ? 2 : std::max<std::size_t>(grid_.wordsPerRow(), 1)),
        piecesPerRow_((grid_.wordsPerRow() + wordsPerPiece_ - 1) / wordsPerPiece_),
        known_(piecesPerRow_ * static_cast<std::size_t>(height)),
        flags_(wordsPerPiece_ * 64) {}

  /// Opens a pixel whatever it holds.
  void open(int x, int y) {
    learn(y, x);
    setBits(grid_.row(y), x, x + 1);
  }

  /// Closes all runs that reach into [from, end) and calls take(left, right) for each.
  template <class Take>
  void takeRuns(int y, int from, int end, Take&& take) {
    std::uint64_t* const row = grid_.row(y);
    const int pixels = static_cast<int>(wordsPerPiece_) * 64;
    for (int x = from; x < end;) {
      learn(y, x);
      const int pieceEnd = std::min(end, x - x % pixels + pixels);
      x = findBit(row, x, pieceEnd, true);
      if (x == pieceEnd) continue;
      int left = runStart(row, x);
      while (left > 0 && left % pixels == 0 && learn(y, left - 1)) left = runStart(row, left);
      int right = findBit(row, x, width_, false);
      while (right < width_ && right % pixels == 0 && learn(y, right))
        right = findBit(row, right, width_, false);
      clearBits(row, left, right);
      take(left, right);
      x = right;
    }
  }

 private:
  static constexpr bool inPieces = std::is_invocable_v<Match&, int, int, int, BYTE*>;

  /// Finds out what matches in the piece of a row that holds x.
  /// \return whether that was not known before
  bool learn(int y, int x) {
    const std::size_t piece = static_cast<std::size_t>(x) / 64 / wordsPerPiece_;
    const std::size_t index = static_cast<std::size_t>(y) * piecesPerRow_ + piece;
    if (known_[index]) return false;
    known_[index] = true;
    const std::size_t first = piece * wordsPerPiece_;
    const std::size_t words = std::min(wordsPerPiece_, grid_.wordsPerRow() - first);
    const int left = static_cast<int>(first) * 64;
    const int count = std::min(width_ - left, static_cast<int>(words) * 64);
    if constexpr (inPieces) {
      match_(y, left, count, flags_.data());
    } else {
      match_(y, flags_.data());
    }
    std::fill(flags_.begin() + count, flags_.end(), BYTE{0});
    packFlags(flags_.data(), words, grid_.row(y) + first);
    return true;
  }

  Match& match_;
  int width_;
  BitGrid grid_;
  std::size_t wordsPerPiece_;
  std::size_t piecesPerRow_;
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
