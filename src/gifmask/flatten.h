#pragma once

#include "dib/pixel_format.h"
#include "raster/placement.h"

namespace dibkit {

/// Pixels added to an image at its edges; negative numbers cut. The far ones may be differences of any ints.
struct Margins {
  int left = 0;
  int top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;
};

/// The size of a padded image; nothing when it is negative or too large for an image.
std::optional<SIZE> paddedSize(const Box& box, const Margins& margins);

/// Flattens a frame onto a matte: its transparent pixels and its margins become the matte colour. At most
/// 8 bits deep it keeps its palette when that has the colour (the first such entry is used); otherwise the
/// colour becomes a new last entry, with a greater depth where the palette was full: 1 to 4, 4 to 8, 8 to 24
/// bits. Deeper frames come out as their format encodes colours: the unused bit of 16 and the fourth byte of
/// 32 are 0. Throws std::bad_alloc.
/// \param mask may be null
/// \return null for an unusable frame or mask, a negative size, or when memory runs out
OwnedDib flattenOnto(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, Rgb matte,
                     const Margins& margins);

}  // namespace dibkit
