#include "cel/placed_cel.h"

namespace dibkit {

PlacedCel::PlacedCel(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, const POINT& position)
    : cel_(dib, mask), box_(placedBox(cel_.width(), cel_.height(), position)) {
  // An image without lines needs no buffers, whatever its width.
  const auto width = static_cast<std::size_t>(cel_.height() > 0 ? cel_.width() : 0);
  // Pixels of 24 bits are read in the frame itself.
  if (cel_.bitCount() != Bgr24::bits) buffer_.resize(width * 3);
  if (cel_.mask().present()) {
    maskPiece_.resize((width + 7) / 8);
    maskBits_.resize((width + 63) / 64);
  }
}

void PlacedCel::opaqueBits(std::int64_t y, const Box& area, std::uint64_t* bits) {
  const std::int64_t words = (area.width() + 63) / 64;
  std::fill_n(bits, words, 0);
  const Box line = intersection(box_, {area.left, y, area.right, y + 1});
  if (line.empty()) return;
  const int left = static_cast<int>(line.left - area.left);
  setBits(bits, left, static_cast<int>(line.right - area.left));
  const BYTE* mask = cel_.mask().row(static_cast<int>(y - box_.top));
  if (mask == nullptr) return;
  const int width = static_cast<int>(line.width());
  copyRowBits(mask, line.left - box_.left, width, maskPiece_.data());
  loadMaskRow(maskPiece_.data(), width, maskBits_.data());
  forEachRun(maskBits_.data(), width, [&](int from, int end) { clearBits(bits, left + from, left + end); });
}

}  // namespace dibkit
