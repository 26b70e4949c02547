#pragma once

#include "dib/view.h"

namespace dibkit {

/// The initial contents of a new image's pixel rows.
enum class InitialPixels {
  cleared,    ///< all bytes 0
  unwritten,  ///< the caller writes every pixel; only the padding at the end of the rows is 0
};

/// A new packed DIB; the rules are those of CBitmapCreator::CreateDibImage.
OwnedDib createDib(int width, int height, int bitCount, int clrUsed,
                   InitialPixels pixels = InitialPixels::cleared);

/// A new frame mask without transparent pixels: palette entry 0 black, entry 1 white.
OwnedDib createMask(int width, int height);

/// A new image with a full palette, whose lines row(bytes, y) writes, from the bottom, which is the order of
/// memory. Null when it cannot be created.
template <class Row>
OwnedDib makeImage(int width, int height, int bitCount, Row&& row) {
  OwnedDib image = createDib(width, height, bitCount, 0, InitialPixels::unwritten);
  const View view(image.get());
  for (int y = view.lines(); y-- > 0;) row(view.row(y), y);
  return image;
}

/// Copies all palette entries of an image of at most 8 bits to one that has room for as many.
void copyPalette(const BITMAPINFOHEADER* from, BITMAPINFOHEADER* to);

/// An uninitialised block of `bytes` bytes, or null. For a large block large pages are requested before it is
/// touched, which costs a fraction of the page faults of fresh memory.
BYTE* allocateBlock(std::int64_t bytes);

}  // namespace dibkit
