#pragma once

#include <optional>

#include "host/bytes.h"
#include "host/picture.h"

/// \file
/// Cameras store pictures as the sensor saw them, and note how the camera was held.
namespace host {

/// The orientation of pictures that need no rotation.
constexpr int uprightAlready = 1;

/// Which of the eight orientations a block of Exif data has; uprightAlready for damaged data.
/// \param exif with the mark "Exif" at the start or without
int orientationOf(ByteView exif);

/// The picture turned and mirrored so that it is upright.
/// \param orientation 1 to 8
Picture upright(Picture picture, int orientation);

/// The size that an upright picture has as it is stored.
std::optional<Size> asStored(const std::optional<Size>& upright, int orientation);

}  // namespace host
