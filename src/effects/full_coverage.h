#pragma once

#include "dib/dib.h"

/// The least amounts at which those effects cover the whole picture whose amount for it depends on its size,
/// at least 1 x 1.
namespace dibkit {

/// The least of the amounts from 0 to `enough` whose region holds the whole picture, by bisection.
/// \param enough an amount that does
/// \param regionOf the region of an amount, growing with it; null shows nothing
template <class RegionOf>
long leastFullCoverage(const SIZE& picture, long enough, RegionOf&& regionOf) {
  const OwnedRegion whole(CreateRectRgn(0, 0, picture.cx, picture.cy));
  const OwnedRegion hidden(CreateRectRgn(0, 0, 0, 0));
  const auto hides = [&](long amount) {
    const OwnedRegion shown = regionOf(amount);
    return !shown || CombineRgn(hidden.get(), whole.get(), shown.get(), RGN_DIFF) != NULLREGION;
  };
  long low = 0;
  while (low < enough) {
    const long middle = low + (enough - low) / 2;
    if (hides(middle)) {
      low = middle + 1;
    } else {
      enough = middle;
    }
  }
  return low;
}

/// The half opening of the iris, in pixels. \param style none, as for the star
long fullCoverageIris(const SIZE& picture, long style);

/// The percentage of the five-pointed star.
long fullCoverageStarPercent(const SIZE& picture, long style);

/// The angle of the hands of many clocks, in degrees. \param direction the effect's style
long fullCoverageManyClocksAngle(const SIZE& picture, long direction);

/// The angle of the spiral, in degrees. \param direction the effect's style
long fullCoverageSpiralAngle(const SIZE& picture, long direction);

/// The percentage of a spreading shape. \param shape the effect's style
long fullCoverageSpreadPercent(const SIZE& picture, long shape);

/// The percentage of a mosaic: 100, or 101 for a small picture whose cells leave some of it over.
/// \param sweeping whether it is the sweeping one
long fullCoverageMosaicPercent(const SIZE& picture, bool sweeping);

}  // namespace dibkit
