#pragma once

#include "dib/dib.h"

/// \file
/// Whole frames of transitions. Pictures are those of `Effect::frame`: 32 bits, of one size, with pixels.
/// Every function gives null when memory runs out.
namespace dibkit {

/// A frame at a stage between the ends. \param progress more than 0, less than 1
using Compose = OwnedDib(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style, double progress);

Compose composeFade;
Compose composeRipple;
Compose composeDiamonds;  ///< fades by bands; what is transparent in a picture fades too
Compose composePush;      ///< from one of the four sides, numbered as the carpet's are
Compose composeThaw;      ///< fades in as it starts, since its first stage hides the outgoing picture already
Compose composeFilm;      ///< likewise

/// The outgoing picture, and in the place of what the piece covers the piece: where the incoming picture is
/// transparent there, so is the frame.
/// \param number,a,b an effect that makes a piece, and its parameters
OwnedDib composePiece(int number, BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, long a, long b);

/// A picture moved on by a share of its size, away from the side that it came from; its mirror image follows.
/// \param direction 0 to 7, where it came from, numbered as for the push
/// \param share -1 to 1; below 0 it moves back
OwnedDib moveOn(BITMAPINFOHEADER* picture, long direction, double share);

}  // namespace dibkit
