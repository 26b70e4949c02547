#pragma once

#include "dib/dib.h"

/// The amounts at which those effects cover the whole picture whose amount for it depends on its size, at
/// least 1 x 1. Beyond them nothing changes any more.
namespace dibkit {

/// The half opening of the iris, in pixels.
long coveringIris(const SIZE& picture);

/// The percentage of the five-pointed star.
long coveringStarPercent(const SIZE& picture);

/// The angle of the spiral, in degrees: its radius reaches the corners after two turns, and has to hold out
/// for one more.
long coveringSpiralAngle(const SIZE& picture);

/// The percentage of a spreading shape. One that is round or that loses its last column to rounding needs
/// more than 100, the more the smaller the picture is. \param shape the effect's style
long coveringSpreadPercent(const SIZE& picture, long shape);

/// The percentage of a mosaic: 100, or 101 for a small picture whose cells leave some of it over.
/// \param sweeping whether it is the sweeping one
long coveringMosaicPercent(const SIZE& picture, bool sweeping);

}  // namespace dibkit
