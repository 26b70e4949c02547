#pragma once

#include "platform/win32.h"

namespace dibkit {

/// What conversions without a palette do to a row of `width` pixels. `plain` and `avx2` are for
/// fastestKernels().
struct RowKernels {
  using Row = void (*)(const BYTE* from, int width, BYTE* to);

  Row bgra32ToBgr24;
  Row rgb555ToBgr24;
  Row bgr24ToRgb555;
  Row bgra32ToRgb555;
  /// To the bytes 0, red, green, blue: the reverse of the order in images with alpha.
  Row bgr24ToReversed32;
  /// 0.299 red + 0.587 green + 0.114 blue in doubles, added in this order and truncated.
  Row bgr24ToGray;

  static const RowKernels plain;
  static const RowKernels avx2;
};

/// The fastest ones that this processor runs.
const RowKernels& rowKernels();

}  // namespace dibkit
