#pragma once

#include "dib/allocate.h"
#include "dib/colour_index.h"

namespace dibkit {

/// How the operations on animation frames end. They work in 24 bits, note each colour that they write, and
/// hand back an image with a palette when there were at most 256 colours, since frames end up in a GIF:
///
///     FrameColours colours;
///     for each row: write the pixels; colours.note(row, left, right) for each stretch that was written
///     return colours.finish(std::move(work));
class FrameColours {
 public:
  /// Enters the colours of pixels [left, right) of a 24-bit row, in order of first appearance. Pixels that
  /// were left out are not to be noted. The 257th colour ends the noting.
  void note(const BYTE* row, int left, int right) {
    if (overflowed_) return;
    overflowed_ = !forEachColour<Bgr24>(
        row, left, right, [&](DWORD key, int, auto) { return colours_.enter(key) != ColourIndex::none; });
  }

  /// More than 256 colours were noted: finish() will give the 24-bit image as it is.
  bool overflowed() const { return overflowed_; }

  /// The work image itself after an overflow, otherwise the same picture as Convert24BitsDIBToLowerBitsDIB
  /// makes it with a map of the noted colours; a map without any gets black. A pixel that was never noted
  /// becomes the index of its colour, index 0 when no noted pixel has that colour.
  /// \param work 24 bits
  /// \return null when memory runs out
  OwnedDib finish(OwnedDib work);

 private:
  ColourIndex colours_;
  bool overflowed_ = false;
};

}  // namespace dibkit
