#pragma once

#include <vector>

#include "dib/flood.h"
#include "dib/frame.h"
#include "dib/placement.h"

namespace dibkit {

/// A frame at its place on the canvas. Coordinates are the canvas's; lines may lie anywhere.
class PlacedFrame {
 public:
  PlacedFrame(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, const POINT& position);

  explicit operator bool() const { return static_cast<bool>(frame_); }
  const Box& box() const { return box_; }
  const Frame& frame() const { return frame_; }

  /// Marks where the frame shows on line y between the left and right edge of `area`: bit x of `bits` is 1
  /// where it has an opaque pixel at area.left + x.
  void opaqueBits(std::int64_t y, const Box& area, std::uint64_t* bits);

  /// `count` pixels to the right of (x, y), all inside the frame, as blue, green, red bytes; valid until the
  /// next call.
  const BYTE* bgr(std::int64_t x, std::int64_t y, int count) {
    return frame_.bgr(static_cast<int>(y - box_.top), static_cast<int>(x - box_.left), count, buffer_.data());
  }

 private:
  Frame frame_;
  Box box_;
  std::vector<BYTE> buffer_;
  std::vector<BYTE> maskPiece_;
  std::vector<std::uint64_t> maskBits_;
};

/// Calls run(left, right, a, b) for the stretches of [0, width) over which two rows of bits do not change,
/// from the left, with the bits that they have.
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
