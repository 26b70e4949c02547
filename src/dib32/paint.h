#pragma once

#include <array>

#include "dib32/bgra.h"

/// \file
/// What a fill does to the pixels that it takes, run by run. Masked runs come with the mask byte of each
/// pixel, which scales the opacity: 255 leaves it whole.

namespace dibkit {

/// Lays a colour over the pixels, as one layer over another.
class LayColour {
 public:
  LayColour(COLORREF colour, BYTE opacity) : layer_(withAlpha(fromColorRef(colour), opacity)) {
    row_.fill(layer_);
  }

  /// \param run pixels that all have the same opacity
  void operator()(Bgra* run, int count);
  void operator()(Bgra* run, const BYTE* mask, int count) const;

 private:
  Bgra layer_;
  std::array<Bgra, 256> row_;    ///< the layer again and again
  int tableOpacity_ = -1;        ///< the opacity that `table_` is for
  std::array<Bgra, 256> table_;  ///< over() for each value of a channel
};

/// Replaces the pixels by a colour, except where the mask is 0.
class PutColour {
 public:
  PutColour(COLORREF colour, BYTE opacity) : pixel_(withAlpha(fromColorRef(colour), opacity)) {}

  void operator()(Bgra* run, int count) const;
  void operator()(Bgra* run, const BYTE* mask, int count) const;

 private:
  Bgra pixel_;
};

/// Sets the opacity of the pixels and leaves them their colour.
class SetOpacity {
 public:
  explicit SetOpacity(BYTE opacity) : opacity_(opacity) {}

  void operator()(Bgra* run, int count) const;

 private:
  BYTE opacity_;
};

}  // namespace dibkit
