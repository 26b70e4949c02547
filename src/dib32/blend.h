#pragma once

#include "dib32/opacity.h"

/// \file
/// The blends of one row of 32-bit pixels onto another. Each differs from the others in its rule, told as
/// d (destination byte), s (source byte), a (source opacity after LayerOpacity and mask) and ad (destination
/// opacity); divisions truncate.
///
/// Rows may be parts of one image: pixels are taken one after the other from the left, also where a row reads
/// what it has just written. `mask` holds a byte per pixel, or is null for none.

namespace dibkit {

/// Exact compositing: opacity unionOpacity(ad, a), channels overChannel. Two transparent pixels give
/// transparent black.
void overRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask = nullptr);

/// Compositing in steps of 1/256: with A = 256 (ad + a) - ad a, opacity A / 256 and each channel
/// (256 d ad + (256 s - d ad) a) / A. Nothing for a = 0.
void plainOverRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity);

/// All four bytes (d (256 - a) + s a) / 256. The source's own opacity byte is mixed in, under the reduced
/// weight. The source for a = 255.
void linearMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity);

/// All four bytes 2 (d (32768 - f) / 65536 + s f / 65536), f = 32768 a / 255: always even. Nothing for a = 0,
/// the source for a = 255.
void evenMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask = nullptr);

/// Copies the pixels with a = 255. Where a is 1 to 254 the source takes on the destination's colour instead:
/// its channels become (256 s + (d - s) f) / 256, f = 256 a / 255, rounded down, and the destination stays.
void copyOrShadeRow(Bgra* to, Bgra* from, int count, LayerOpacity opacity);

/// The rule of copyOrShadeRow for one pixel.
void copyOrShade(Bgra& to, Bgra& from, BYTE opacity);

}  // namespace dibkit
