#pragma once

#include "files/files.h"
#include "picture.h"

/// \file
/// Cameras store pictures as the sensor saw them, and beside them how the camera was held.
namespace host {

/// Which of the eight orientations a block of Exif data asks for, 1 for a picture that stands upright
/// already, which is also what damaged data ask for. \param exif from its "Exif" mark on
int orientationOf(ByteView exif);

/// The picture turned and mirrored so that it stands upright.
/// \param orientation 1 to 8
Picture upright(Picture picture, int orientation);

}  // namespace host
