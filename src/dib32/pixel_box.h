#pragma once

#include <array>

#include "dib32/bgra.h"
#include "raster/bit_grid.h"
#include "raster/byte_range.h"

namespace dibkit {

/// The matching rule of every fill and wand: a range for each byte of a pixel. No distance combines the
/// channels, so the matching pixels are a box in colour space.
struct PixelBox {
  ByteRange blue, green, red, alpha;

  /// The colours at most `tolerance` away from that of `centre`, channel by channel.
  static constexpr PixelBox around(const Bgra& centre, int tolerance, ByteRange alpha) {
    return {ByteRange::around(centre.blue, tolerance), ByteRange::around(centre.green, tolerance),
            ByteRange::around(centre.red, tolerance), alpha};
  }
  /// The pixels that a fill treats as equal to its target: near colours with exactly the same alpha.
  /// \param target a pixel value, 0xAARRGGBB
  static constexpr PixelBox nearTarget(DWORD target, int tolerance) {
    const Bgra centre{lowByte(target), lowByte(target >> 8), lowByte(target >> 16), lowByte(target >> 24)};
    return around(centre, tolerance, {centre.alpha, centre.alpha});
  }
  /// Transparent pixels of any colour.
  static constexpr PixelBox transparent() { return {{}, {}, {}, {0, 0}}; }
};

/// flags[i] = 1 where pixels[i] is in the box, else 0.
void markMatches(const Bgra* pixels, int count, const PixelBox& box, BYTE* flags);

/// flags[i] = 0 where mask[i] is 0.
void keepUnderMask(const BYTE* mask, int count, BYTE* flags);

/// Pixels of a row that are marked at a time: few enough for the stack and the level 1 cache.
constexpr int markedPiece = 1024;

/// Gives the marked pixels of a row as bits; the unused bits of the last word are 0.
/// \param mark mark(x, count, flags) sets flags[i] to 1 or 0 for the `count` pixels from x on
template <class Mark>
void packMarked(int width, Mark&& mark, std::uint64_t* bits) {
  std::array<BYTE, markedPiece> flags;
  for (int begin = 0; begin < width; begin += markedPiece) {
    const int count = std::min(markedPiece, width - begin);
    mark(begin, count, flags.data());
    const std::size_t words = (static_cast<std::size_t>(count) + 63) / 64;
    std::fill(flags.data() + count, flags.data() + words * 64, BYTE{0});
    packFlags(flags.data(), words, bits + begin / 64);
  }
}

/// Calls run(left, right) for runs of marked pixels of a row, from the left. A long run may be given in
/// pieces.
/// \param mark as for packMarked
template <class Mark, class Run>
void forEachMarkedRun(int width, Mark&& mark, Run&& run) {
  std::array<std::uint64_t, markedPiece / 64> bits;
  for (int begin = 0; begin < width; begin += markedPiece) {
    const int count = std::min(markedPiece, width - begin);
    packMarked(
        count, [&](int x, int n, BYTE* flags) { mark(begin + x, n, flags); }, bits.data());
    forEachRun(bits.data(), count, [&](int left, int right) { run(begin + left, begin + right); });
  }
}

}  // namespace dibkit
