#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include <dibkit.h>

#include "host/animation/dither.h"
#include "host/picture.h"

namespace host {

/// What a picture is to become.
struct DepthOptions {
  std::optional<int> bits;  ///< nothing: the smallest depth that keeps all colours
  bool gray = false;
  bool blackAndWhite = false;    ///< by `threshold`
  std::optional<int> threshold;  ///< gray value from which on a pixel is white; nothing: the best one
  std::vector<RGBQUAD> palette;  ///< colours to use; empty: the picture's own
  bool sharedPalette = false;    ///< one palette for all pictures
  Dither dither = Dither::none;  ///< where the palette has not all colours
};

/// Receives a share of the work that has been done.
using ShareDone = std::function<void(double)>;

/// The pictures at another depth, each in a way that the library has an operation for: exactly where the
/// colours allow it, otherwise onto the best palette of that depth. Transparency stays with 32 bits only.
/// Throws UsageError for options that exclude each other, Cancelled on Ctrl-C.
/// \param done receives shares of the work, which are 1 together
std::vector<dibkit::OwnedDib> atDepth(std::span<const Picture> pictures, const DepthOptions& options,
                                      const ShareDone& done);

}  // namespace host
