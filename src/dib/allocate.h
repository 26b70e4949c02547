#pragma once

#include "dib/view.h"

namespace dibkit {

/// What the pixel rows of a new image hold.
enum class Pixels {
  cleared,    ///< all bytes 0
  unwritten,  ///< the caller writes every pixel; only the padding at the end of the rows is 0
};

/// A new packed DIB; the rules are those of CBitmapCreator::CreateDibImage.
OwnedDib createDib(int width, int height, int bitCount, int clrUsed, Pixels pixels = Pixels::cleared);

/// A new frame mask that marks nothing: palette entry 0 black, entry 1 white.
OwnedDib createMask(int width, int height);

/// Copies all palette entries of an image of at most 8 bits to one that has room for as many.
void copyPalette(const BITMAPINFOHEADER* from, BITMAPINFOHEADER* to);

/// An uninitialised block for `bytes` bytes, or null. Large blocks ask for large pages before they are
/// touched, which is several times cheaper than the page faults of fresh memory.
BYTE* allocateBlock(std::int64_t bytes);

}  // namespace dibkit
