#pragma once

#include "kernels/dispatch.h"
#include "kernels/opacity.h"

namespace dibkit {

/// The blends of one row of 32-bit pixels onto another. They differ in their formulas, which use d
/// (destination byte), s (source byte), a (source alpha, scaled by the opacity and the mask) and ad
/// (destination alpha). Divisions truncate.
///
/// The rows may be parts of one image and overlap: pixels are processed one after the other from the left, so
/// that a row may read what was just written. `mask` has a byte for each pixel, or is null for none.
struct BlendKernels {
  template <class Source>
  using Blend = void (*)(std::uint8_t* to, Source* from, int count, LayerOpacity opacity,
                         const std::uint8_t* mask);

  /// Exact compositing: alpha unionAlpha(ad, a), channels overChannel. Two transparent pixels give
  /// transparent black.
  Blend<const std::uint8_t> over;
  /// Compositing in steps of 1/256. With A = 256 (ad + a) - ad a: alpha A / 256 and each channel
  /// (256 d ad + (256 s - d ad) a) / A. Unchanged for a = 0.
  Blend<const std::uint8_t> plainOver;
  /// All four bytes (d (256 - a) + s a) / 256. So the source's own alpha byte s is mixed in too, with the
  /// weight a. The source for a = 255.
  Blend<const std::uint8_t> linearMix;
  /// All four bytes 2 (d (32768 - f) / 65536 + s f / 65536) with f = 32768 a / 255: always even. Unchanged
  /// for a = 0, the source for a = 255.
  Blend<const std::uint8_t> evenMix;
  /// Copies the pixels with a = 255. Where a is 1 to 254 the source is changed instead, towards the
  /// destination's colour: its channels become (256 s + (d - s) f) / 256, f = 256 a / 255, rounded down, and
  /// the destination is unchanged.
  Blend<std::uint8_t> copyOrShade;
};

template <>
const BlendKernels& plainKernels();
template <>
std::span<const Compiled<BlendKernels>> compiledKernels();

}  // namespace dibkit
