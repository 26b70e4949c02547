#pragma once

#include "effects/catalogue.h"

/// \file
/// Whole frames of transitions, from the pictures of `Effect::frame`: 32 bits, of one size, with pixels.
/// Every function gives null when memory runs out.
namespace dibkit {

/// A frame at a stage between the ends. \param progress more than 0, less than 1
using Compose = OwnedDib(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style, double progress);

Compose composeFade;
Compose composeRipple;
Compose composeDiamonds;  ///< fades by bands, alpha included
Compose composePush;      ///< from one of the four sides
Compose composeThaw;      ///< fades in at first, since even its first stage hides the outgoing picture
Compose composeFilm;      ///< likewise

/// The outgoing picture with the piece in it. The piece replaces what it covers: where the incoming picture
/// is transparent there, the frame is transparent.
/// \param number of an effect that makes a piece
/// \param changed receives the rectangle of the piece in the frame, empty without a piece
OwnedDib composePiece(int number, BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                      EffectParameters parameters, RECT& changed);

/// A picture moved away from the side that it came from, with its mirror image beside it.
/// \param direction 0 to 7, where it came from, numbered as for GenerateRunPushEffect
/// \param share of its size by which it moves, -1 to 1; below 0 it moves back
OwnedDib moveOn(BITMAPINFOHEADER* picture, long direction, double share);

}  // namespace dibkit
