#pragma once

#include <algorithm>

#include "support/blends.h"
#include "support/images.h"

/// Placed images for tests that compare an operation with a rule for one pixel.
namespace test {

constexpr int sizes[] = {1, 4, 7, 8, 9, 15, 33, 40};
constexpr DWORD colourBits = 0xFFFFFF;
inline POINT randomPoint(Random& random, int reach) {
  return {below(random, 2 * reach + 1) - reach, below(random, 2 * reach + 1) - reach};
}

/// An image at a place of the plane, in the middle of a longer block, so that writes around it show.
class Layer {
 public:
  explicit Layer(const OwnedDib& dib, const POINT& place = {}) : at(place) {
    const std::vector<BYTE> bytes = bytesOf(dib);
    block_.assign(bytes.size() + 2 * guard, 0xA5);
    std::copy(bytes.begin(), bytes.end(), block_.begin() + guard);
  }
  /// Random pixels at a random place.
  Layer(Random& random, int bitCount, int reach)
      : Layer(randomImage(oneOf(random, sizes), oneOf(random, sizes), bitCount, random),
              randomPoint(random, reach)) {}

  BITMAPINFOHEADER* dib() { return reinterpret_cast<BITMAPINFOHEADER*>(block_.data() + guard); }
  RECT box() { return {at.x, at.y, at.x + dib()->biWidth, at.y + dib()->biHeight}; }
  bool covers(int x, int y) {
    const RECT area = box();
    return PtInRect(&area, {x, y}) != FALSE;
  }
  /// The bytes of the pixel at (x, y) of the image, by the file format: rows of whole words, the lowest
  /// first.
  BYTE* bytesAt(int x, int y) {
    const int stride = (dib()->biWidth * dib()->biBitCount + 31) / 32 * 4;
    return GetDIBBits(dib()) + (dib()->biHeight - 1 - y) * stride + x * dib()->biBitCount / 8;
  }
  /// The pixel at a point of the plane; 0 where there is none.
  DWORD pixelAt(int x, int y) { return covers(x, y) ? pixel(dib(), x - at.x, y - at.y) : 0; }
  /// Header, palette, pixels and what is around them.
  const std::vector<BYTE>& block() const { return block_; }

  POINT at;

 private:
  static constexpr std::size_t guard = 64;
  std::vector<BYTE> block_;
};

inline DWORD over(DWORD below, DWORD above, int alpha) {
  blends::over(reinterpret_cast<BYTE*>(&below), reinterpret_cast<BYTE*>(&above), alpha);
  return below;
}

}  // namespace test
