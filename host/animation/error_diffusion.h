#pragma once

#include <vector>

#include "host/animation/dither.h"
#include "host/animation/palette_index.h"
#include "host/bytes.h"

namespace host {

/// Passes on to the next pixels by how much a pixel's colour in the palette differs from its own, so that the
/// mean is right: lines forwards and backwards in turn. Pixels that equal those of the picture before keep
/// their index, so that what does not move does not flicker.
class ErrorDiffusion {
 public:
  /// \param index must outlive this object
  explicit ErrorDiffusion(const PaletteIndex& index) : index_(&index) {}

  /// As PaletteMapper does it.
  Bytes indicesOf(const Picture& picture, const RECT& part, MappedPicture* before) const;

 private:
  struct Error {
    int red = 0;
    int green = 0;
    int blue = 0;
  };
  /// The errors of a line and the next one, with one more element at both ends.
  struct Lines {
    std::vector<Error> here;
    std::vector<Error> below;
  };

  std::uint8_t diffuse(const Pixel& pixel, std::size_t place, int direction, Lines& lines) const;

  const PaletteIndex* index_;
};

}  // namespace host
