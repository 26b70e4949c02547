#pragma once

#include <cstring>

#include "dib/allocate.h"
#include "palette/colour_index.h"

namespace dibkit {

/// The last step of the operations on animation frames. They work in 24 bits, note each colour that they
/// write, and give an image with a palette if there were at most 256 colours, since frames are stored in
/// GIFs:
///
///     FrameColours colours;
///     for each row: write the pixels; colours.note(row, left, right) for each stretch that was written
///     return colours.finish(std::move(work));
class FrameColours {
 public:
  /// Adds the colours of pixels [left, right) of a row of the work image, in order of first appearance; none
  /// after the 257th. Callers do not note pixels that they left out, and do not change them afterwards.
  void note(const BYTE* row, int left, int right) {
    if (overflowed_) return;
    const BYTE* const pixels = row + std::ptrdiff_t{left} * 3;
    const auto bytes = static_cast<std::size_t>(right - left) * 3;
    const bool isRepeated = last_ != nullptr && bytes <= lastBytes_ && std::memcmp(pixels, last_, bytes) == 0;
    last_ = pixels;
    lastBytes_ = bytes;
    if (isRepeated) return;
    overflowed_ = !forEachColour<Bgr24>(
        row, left, right, [&](DWORD key, int, auto) { return colours_.enter(key) != ColourIndex::none; });
  }

  /// More than 256 colours were noted: finish() will return the 24-bit image unchanged.
  bool overflowed() const { return overflowed_; }

  /// After an overflow the work image itself, otherwise the picture that Convert24BitsDIBToLowerBitsDIB gives
  /// with a map of the noted colours; without any, with a map of black. A pixel that was never noted becomes
  /// the index of its colour, or index 0 if no noted pixel has that colour.
  /// \param work 24 bits
  /// \return null when memory runs out
  OwnedDib finish(OwnedDib work);

 private:
  ColourIndex colours_;
  /// The pixels that were noted last. Flat pictures repeat them in the next row.
  const BYTE* last_ = nullptr;
  std::size_t lastBytes_ = 0;
  bool overflowed_ = false;
};

}  // namespace dibkit
