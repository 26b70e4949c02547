#pragma once

#include "dib/pixel_format.h"
#include "raster/placement.h"

namespace dibkit {

/// Pixels added to an image at its edges; negative numbers cut. Right and bottom may be differences of two
/// ints.
struct Margins {
  int left = 0;
  int top = 0;
  std::int64_t right = 0;
  std::int64_t bottom = 0;
};

/// The size of a padded image; nothing when it is negative or too large for an image.
std::optional<SIZE> paddedSize(const Box& box, const Margins& margins);

/// An image with a palette entry for a matte colour.
struct MatteImage {
  OwnedDib image;
  std::int64_t index = 0;  ///< of the first entry with the colour, where the image has a palette
};

/// A new image whose pixels are not written, with the depth and palette of another. Where the palette does
/// not have the matte colour, it becomes a new last entry, with a greater depth when the palette was full: 4
/// bits for 1, 8 for 4, 24 for 8.
/// \return a null image when memory runs out
MatteImage imageWithMatte(const BITMAPINFOHEADER* dib, Rgb matte, const SIZE& size);

/// Flattens a frame onto a matte: its transparent pixels and its margins become the matte colour. Depth and
/// palette are those of imageWithMatte. The unused bit of 16-bit pixels and the fourth byte of 32-bit ones
/// become 0. Throws std::bad_alloc.
/// \param mask may be null
/// \return null for an unusable frame or mask, a negative size, or when memory runs out
OwnedDib flattenOnto(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, Rgb matte,
                     const Margins& margins);

}  // namespace dibkit
