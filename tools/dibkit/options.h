#pragma once

#include <string>
#include <utility>

#include "host/picture.h"

/// \file
/// Words of the command line as values. What cannot be read throws UsageError with what would do.
namespace host {

/// A size of which parts may follow from a picture's own.
class WantedSize {
 public:
  /// That of the picture.
  WantedSize() = default;
  /// A side of 0 follows from the other one, in the picture's shape. One of them is more than 0.
  explicit WantedSize(Size sides) : sides_(sides) {}
  explicit WantedSize(double percent) : percent_(percent) {}

  /// For a picture of that size, at least 1 each way. Throws UsageError for a size that no GIF can have, or
  /// that is above maximumPixels.
  Size of(Size picture) const;

  /// The sides that do not depend on the picture, 0 for others.
  Size sides() const { return sides_; }

 private:
  Size sides_{};
  double percent_ = 100;
};

/// "640x360", "320x", "x240" or "50%"; nothing for the picture's own size.
WantedSize parseSize(const std::string& text);

/// "#rrggbb", "#rgb", or one of a few names; opaque, except for "transparent".
Pixel parseColour(const std::string& text);

/// Throws UsageError when no GIF can have that size.
void requireGifSize(Size size);

}  // namespace host
