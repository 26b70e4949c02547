#pragma once

#include "dib/pixel_format.h"
#include "kernels/match.h"

namespace dibkit {

/// The colours of which each channel is at most a tolerance away from a centre's; none for a negative
/// tolerance.
class ColourRange {
 public:
  ColourRange(Rgb centre, int tolerance);

  /// Sets flags[i] to 1 for each of `count` blue, green, red triples inside the range, to 0 for the others.
  void match(const BYTE* bgr, int count, BYTE* flags) const;

 private:
  MatchKernels::Box box_;
};

}  // namespace dibkit
