#pragma once

#include <span>
#include <vector>

#include "host/picture.h"
#include "host/pixel_sum.h"

namespace host {

/// Receives the lines of a picture as they are decoded and keeps it whole or reduced: then only the reduced
/// picture is ever in memory. Pixels that never arrive are transparent.
class RowSink {
 public:
  enum class Order {
    byLine,  ///< all of a line, then a neighbouring one; takes the least memory
    any
  };

  /// \param factor what reductionFor() says, 1 for the whole picture
  RowSink(Size stored, int factor, Order order = Order::byLine);

  /// Takes pixels of line y, counted from the top: those in columns first, first + step and so on.
  void put(int y, std::span<const Pixel> pixels, int first = 0, int step = 1);

  Picture take() &&;

 private:
  struct Box {
    PixelSum sum;
    float pixels = 0;
  };

  void finishLine(int y);

  int factor_;
  Order order_;
  Picture picture_;
  std::vector<Box> boxes_;  ///< of all lines, or of one
  int line_ = -1;           ///< whose boxes these are, when they are of one
};

}  // namespace host
