#pragma once

#include <array>

#include "dib32/bgra.h"

/// \file
/// What a fill does to the pixels that it selects, run by run. Masked runs have a mask byte m for each pixel,
/// which scales the colour's alpha by m / 255.

namespace dibkit {

/// Composites a colour over the pixels.
class CompositeColour {
 public:
  CompositeColour(COLORREF colour, BYTE opacity) : layer_(withAlpha(fromColorRef(colour), opacity)) {
    row_.fill(layer_);
  }

  /// \param run pixels that all have the same alpha
  void operator()(Bgra* run, int count);
  void operator()(Bgra* run, const BYTE* mask, int count) const;

 private:
  Bgra layer_;
  std::array<Bgra, 256> row_;    ///< the layer, repeated
  int tableAlpha_ = -1;          ///< the alpha that `table_` is for
  std::array<Bgra, 256> table_;  ///< over() for each value of a channel
};

/// Replaces the pixels by a colour, except where the mask is 0.
class PutColour {
 public:
  PutColour(COLORREF colour, BYTE alpha) : pixel_(withAlpha(fromColorRef(colour), alpha)) {}

  void operator()(Bgra* run, int count) const;
  void operator()(Bgra* run, const BYTE* mask, int count) const;

 private:
  Bgra pixel_;
};

/// Sets the alpha of the pixels; their colours are unchanged.
class SetAlpha {
 public:
  explicit SetAlpha(BYTE alpha) : alpha_(alpha) {}

  void operator()(Bgra* run, int count) const;

 private:
  BYTE alpha_;
};

}  // namespace dibkit
