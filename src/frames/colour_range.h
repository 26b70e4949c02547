#pragma once

#include "dib/pixel_format.h"

namespace dibkit {

/// The colours whose channels all lie within a tolerance of a centre. Tolerances are taken in 64 bits, so
/// that any int may come; a negative one accepts nothing.
class ColourRange {
 public:
  ColourRange(Rgb centre, std::int64_t tolerance);

  bool contains(Rgb colour) const {
    return colour.blue >= low_[0] && colour.blue <= high_[0] && colour.green >= low_[1] &&
           colour.green <= high_[1] && colour.red >= low_[2] && colour.red <= high_[2];
  }

  /// Sets flags[i] to 1 for each of `count` blue, green, red triples inside the range, to 0 for the others.
  void match(const BYTE* bgr, int count, BYTE* flags) const;

 private:
  BYTE low_[3];   ///< blue, green, red, inclusive
  BYTE high_[3];  ///< inclusive; below low_ when nothing matches
};

}  // namespace dibkit
