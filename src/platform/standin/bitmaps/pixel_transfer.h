#pragma once

#include <vector>

#include "platform/standin/bitmaps/pixels.h"

namespace dibkit::standin {

/// Copies pixels from one format to another as the platform does: to a colour table by the nearest entry,
/// between equal formats without a change.
class PixelTransfer {
 public:
  PixelTransfer(const Pixels& from, const Pixels& to);
  /// Copies `count` pixels of a row. Both ranges are inside their pictures and do not overlap.
  void copy(int fromX, int fromY, int toX, int toY, int count);

 private:
  void expandBits(int fromX, int fromY, int toX, int toY, int count) const;
  DWORD translated(DWORD raw);
  DWORD indexOf(Colour colour);

  Pixels from_;
  Pixels to_;
  bool verbatim_;
  bool inverts_ = false;        ///< between two tables of black and white in different orders
  std::vector<DWORD> indexes_;  ///< the target's pixel for each index of a source with a colour table
  std::vector<DWORD> known_;    ///< cache of true colours found in the table: the colour above its index
};

}  // namespace dibkit::standin
