#pragma once

#include "dib/frame.h"

namespace dibkit {

/// Finds where two frames differ. Two pixels are the same when both are transparent, whatever their colours,
/// or both are opaque and of one colour.
class FrameDifference {
 public:
  /// A pixel of the first frame and the pixel of the second one that it is compared with.
  struct At {
    int xA, yA, xB, yB;
  };

  /// Both frames have to be usable and to outlive this object.
  FrameDifference(const Frame& a, const Frame& b);

  /// Compares `count` pixels to the right of a pair.
  /// \return how many pixels are the same before the first difference; `count` when there is none
  int first(At start, int count) const;
  /// \return how many of the pixels are left of the last difference, itself included; 0 when there is none
  int last(At start, int count) const;

 private:
  bool sameStored(const At& start, int count) const;
  bool sameTransparency(const At& start, int count) const;
  const BYTE* differing(const At& start, int count, BYTE* flags) const;

  const Frame& a_;
  const Frame& b_;
  bool sameFormat_;  ///< equal stored pixels have equal colours
};

}  // namespace dibkit
