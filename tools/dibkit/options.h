#pragma once

#include <string>
#include <utility>

#include "host/picture.h"

/// \file
/// Values of options, parsed from text. A text that is not valid throws UsageError, which names valid ones.
namespace host {

/// The value of --size. What it leaves open follows from the size of a picture.
class WantedSize {
 public:
  /// The size of the picture itself.
  WantedSize() = default;
  /// A side of 0 follows from the other one and the shape of the picture. At least one is above 0.
  explicit WantedSize(Size sides) : sides_(sides) {}
  explicit WantedSize(double percent) : percent_(percent) {}

  /// The size for a picture of the given one, at least 1 x 1. Throws UsageError for sides above the 65,535 of
  /// a GIF, and for more than maximumPixels.
  Size of(Size picture) const;

  /// The sides that are fixed; 0 for a side that depends on the picture.
  Size sides() const { return sides_; }

 private:
  Size sides_{};
  double percent_ = 100;
};

/// "640x360", "320x", "x240" or "50%"; an empty text means the size of the picture.
WantedSize parseSize(const std::string& text);

/// "#rrggbb", "#rgb", or one of a few names; opaque, except for "transparent".
Pixel parseColour(const std::string& text);

/// Throws UsageError when no GIF can have that size.
void requireGifSize(Size size);

}  // namespace host
