#pragma once

#include <algorithm>
#include <optional>

#include "support/images.h"

/// Placed 32-bit images for tests that compare with a pixel-by-pixel twin.
namespace test {

/// An image in the middle of a longer block, so that bytes before and after it can be watched.
class Guarded {
 public:
  explicit Guarded(const OwnedDib& dib) : Guarded(bytesOf(dib)) {}
  /// Random pixels, 1 to 40 in each direction.
  Guarded(Random& random, int bitCount)
      : Guarded(randomImage(1 + below(random, 40), 1 + below(random, 40), bitCount, random)) {}
  /// A copy of its own, so that the twin has the same to work on.
  Guarded(const Guarded&) = default;

  BITMAPINFOHEADER* dib() { return reinterpret_cast<BITMAPINFOHEADER*>(block_.data() + guard); }
  /// Header, palette and pixels, and the guards.
  const std::vector<BYTE>& block() const { return block_; }

  /// The pixel at (x, y) from the top left, by its place in the file's layout.
  BYTE* at(int x, int y) {
    const BITMAPINFOHEADER* header = dib();
    const int stride = (header->biWidth * header->biBitCount + 31) / 32 * 4;
    return GetDIBBits(dib()) + (header->biHeight - 1 - y) * stride + x * header->biBitCount / 8;
  }
  bool has(int x, int y) { return x >= 0 && y >= 0 && x < dib()->biWidth && y < dib()->biHeight; }

 private:
  static constexpr std::size_t guard = 64;
  explicit Guarded(const std::vector<BYTE>& bytes) : block_(bytes.size() + 2 * guard, 0xA5) {
    std::copy(bytes.begin(), bytes.end(), block_.begin() + guard);
  }
  std::vector<BYTE> block_;
};

inline POINT randomPoint(Random& random, int reach) {
  return {below(random, 2 * reach + 1) - reach, below(random, 2 * reach + 1) - reach};
}

}  // namespace test
