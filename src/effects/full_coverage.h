#pragma once

#include "dib/dib.h"

namespace dibkit {

/// The minimum of the amounts from 0 to `enough` whose region covers the whole picture, by bisection.
/// \param enough an amount that covers it
/// \param regionOf the region of an amount, which grows with the amount; null shows nothing
template <class RegionOf>
long minimumFullCoverage(const SIZE& picture, long enough, RegionOf&& regionOf) {
  const OwnedRegion whole(CreateRectRgn(0, 0, picture.cx, picture.cy));
  const OwnedRegion uncovered(CreateRectRgn(0, 0, 0, 0));
  const auto covers = [&](long amount) {
    const OwnedRegion shown = regionOf(amount);
    return shown && CombineRgn(uncovered.get(), whole.get(), shown.get(), RGN_DIFF) == NULLREGION;
  };
  long low = 0;
  while (low < enough) {
    const long middle = low + (enough - low) / 2;
    if (covers(middle)) {
      enough = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

}  // namespace dibkit
