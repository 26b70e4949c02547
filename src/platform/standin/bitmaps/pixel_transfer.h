#pragma once

#include <vector>

#include "platform/standin/bitmaps/pixels.h"

namespace dibkit::standin {

/// Copies pixels from one format to another in the platform's way: onto a colour table by the nearest entry,
/// between equal formats as they are stored.
class PixelTransfer {
 public:
  PixelTransfer(const Pixels& from, const Pixels& to);
  /// Copies `count` pixels of a row; both ranges lie inside, and apart.
  void copy(int fromX, int fromY, int toX, int toY, int count);

 private:
  DWORD translated(DWORD raw);
  DWORD indexOf(Colour colour);

  Pixels from_;
  Pixels to_;
  bool verbatim_;
  std::vector<DWORD> indexes_;  ///< what each index of a source with a colour table becomes
  std::vector<DWORD> known_;    ///< true colours found in the table: the colour above its index, by place
};

}  // namespace dibkit::standin
