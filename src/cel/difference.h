#pragma once

#include "cel/cel.h"

namespace dibkit {

/// Finds where two frames differ. Two pixels are the same if both are transparent, whichever colours are
/// stored there, or if both are opaque and have one colour.
class CelDifference {
 public:
  /// A pixel of the first frame and the pixel of the second one that it is compared with.
  struct At {
    int xA, yA, xB, yB;
  };

  /// Both frames must be usable and must outlive this object.
  CelDifference(const Cel& a, const Cel& b);

  /// Whether one comparison of the memory of lines [top, bottom) of both frames shows that they are the same;
  /// false also when it does not decide it.
  bool sameLines(int top, int bottom) const;

  /// Compares `count` pixels to the right of a pair.
  /// \return how many pixels are the same before the first difference; `count` when there is none
  int first(At start, int count) const;
  /// \return how many of the pixels there are up to and including the last difference; 0 when there is none
  int last(At start, int count) const;

 private:
  bool sameStored(const At& start, int count) const;
  bool sameTransparency(const At& start, int count) const;
  const BYTE* differing(const At& start, int count, BYTE* flags) const;

  const Cel& a_;
  const Cel& b_;
  bool sameFormat_;  ///< equal stored pixels have equal colours
};

}  // namespace dibkit
