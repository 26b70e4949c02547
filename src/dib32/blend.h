#pragma once

#include "dib32/opacity.h"

/// \file
/// The blends of one row of 32-bit pixels onto another. They differ in their formulas, which use d
/// (destination byte), s (source byte), a (source alpha, scaled by LayerOpacity and mask) and ad (destination
/// alpha). Divisions truncate.
///
/// The rows may be parts of one image and overlap: pixels are processed one after the other from the left, so
/// that a row may read what was just written. `mask` has a byte for each pixel, or is null for none.

namespace dibkit {

/// Exact compositing: alpha unionAlpha(ad, a), channels overChannel. Two transparent pixels give transparent
/// black.
void overRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask = nullptr);

/// Compositing in steps of 1/256. With A = 256 (ad + a) - ad a: alpha A / 256 and each channel
/// (256 d ad + (256 s - d ad) a) / A. Unchanged for a = 0.
void plainOverRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask = nullptr);

/// All four bytes (d (256 - a) + s a) / 256. So the source's own alpha byte s is mixed in too, with the
/// weight a. The source for a = 255.
void linearMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask = nullptr);

/// All four bytes 2 (d (32768 - f) / 65536 + s f / 65536) with f = 32768 a / 255: always even. Unchanged for
/// a = 0, the source for a = 255.
void evenMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask = nullptr);

/// Copies the pixels with a = 255. Where a is 1 to 254 the source is changed instead, towards the
/// destination's colour: its channels become (256 s + (d - s) f) / 256, f = 256 a / 255, rounded down, and
/// the destination is unchanged.
void copyOrShadeRow(Bgra* to, Bgra* from, int count, LayerOpacity opacity, const BYTE* mask = nullptr);

/// The rule of copyOrShadeRow for one pixel.
/// \param alpha the scaled source alpha a
void copyOrShade(Bgra& to, Bgra& from, BYTE alpha);

}  // namespace dibkit
