#pragma once

#include <optional>
#include <vector>

#include <dibkit.h>

/// \file
/// True-colour images of few colours on palettes that hold all of them. The only exact reduction of the host:
/// that of the library starts its palette anew at the 256th colour, this one accepts exactly 256 colours too.
namespace host {

/// The depth of a palette image of so many colours: 1, 4 or 8 bits.
int smallestDepthFor(std::size_t colours);

/// The colours of a 24-bit image in order of first appearance, lines from the top; nothing when they are more
/// than 256.
std::optional<std::vector<RGBQUAD>> fewColoursOf(BITMAPINFOHEADER* trueColour);

/// A 24-bit image as a palette image. Equal entries of the palette become one, later ones move up.
/// \param colours all colours of the image, and others; at most 1 << bits
/// \param bits 1, 4 or 8
dibkit::OwnedDib onColours(BITMAPINFOHEADER* trueColour, const std::vector<RGBQUAD>& colours, int bits);

/// A 24-bit image at the smallest depth that holds its colours; null when they are more than 256.
dibkit::OwnedDib reducedExactly(BITMAPINFOHEADER* trueColour);

}  // namespace host
