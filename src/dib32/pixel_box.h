#pragma once

#include <array>

#include "dib/flood.h"
#include "dib32/bgra.h"

namespace dibkit {

/// The byte values of [low, high]; none when low is above high.
struct ByteRange {
  std::int64_t low = 0;
  std::int64_t high = 255;

  /// The values at most `tolerance` away from `value`. A negative tolerance gives an empty range.
  static constexpr ByteRange around(BYTE value, int tolerance) {
    return {std::max<std::int64_t>(std::int64_t{value} - tolerance, 0),
            std::min<std::int64_t>(std::int64_t{value} + tolerance, 255)};
  }
  constexpr bool empty() const { return low > high; }
};

/// The test under every fill and wand: a range for each byte of a pixel. There is no distance across the
/// channels, so what matches is a box in the space of colours.
struct PixelBox {
  ByteRange blue, green, red, alpha;

  /// The colours at most `tolerance` away from that of `centre`, channel by channel.
  static constexpr PixelBox around(const Bgra& centre, int tolerance, ByteRange alpha) {
    return {ByteRange::around(centre.blue, tolerance), ByteRange::around(centre.green, tolerance),
            ByteRange::around(centre.red, tolerance), alpha};
  }
  /// What a fill takes for the same as its target: near colours at the very same opacity.
  /// \param target a pixel value, 0xAARRGGBB
  static constexpr PixelBox nearTarget(DWORD target, int tolerance) {
    const Bgra centre{lowByte(target), lowByte(target >> 8), lowByte(target >> 16), lowByte(target >> 24)};
    return around(centre, tolerance, {centre.alpha, centre.alpha});
  }
  /// Transparent pixels, whatever their colour.
  static constexpr PixelBox transparent() { return {{}, {}, {}, {0, 0}}; }
};

/// flags[i] = 1 where pixels[i] lies in the box, else 0.
void markMatches(const Bgra* pixels, int count, const PixelBox& box, BYTE* flags);

/// flags[i] = 0 where mask[i] is 0.
void keepUnderMask(const BYTE* mask, int count, BYTE* flags);

/// Calls run(left, right) for runs of marked pixels of a row, from the left; a long run may come in pieces.
/// \param mark mark(x, count, flags) sets flags[i] to 1 or 0 for the pixels from x on
template <class Mark, class Run>
void forEachMarkedRun(int width, Mark&& mark, Run&& run) {
  constexpr int words = 16;  // short enough for the stack and the first cache
  constexpr int piece = words * 64;
  std::array<BYTE, piece> flags{};
  std::array<std::uint64_t, words> bits;
  for (int begin = 0; begin < width; begin += piece) {
    const int count = std::min(piece, width - begin);
    mark(begin, count, flags.data());
    packFlags(flags.data(), (static_cast<std::size_t>(count) + 63) / 64, bits.data());
    forEachRun(bits.data(), count, [&](int left, int right) { run(begin + left, begin + right); });
  }
}

}  // namespace dibkit
