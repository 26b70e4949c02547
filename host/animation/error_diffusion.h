#pragma once

#include "host/animation/palette_index.h"
#include "host/bytes.h"

namespace host {

/// Passes on to the next pixels by how much a pixel's colour in the palette differs from its own, so that the
/// mean is right: lines forwards and backwards in turn. Pixels that are as in the picture before keep their
/// index, so that what stands still does not flicker.
class ErrorDiffusion {
 public:
  /// \param index must outlive this object
  explicit ErrorDiffusion(PaletteIndex& index) : index_(&index) {}

  /// Indices of the picture that follows the one before, lines from the top.
  Bytes indicesOf(Picture picture);

 private:
  struct Error {
    int red = 0;
    int green = 0;
    int blue = 0;
  };
  /// The errors of a line and the next one, with a place more at both ends.
  struct Lines {
    std::vector<Error> here;
    std::vector<Error> below;
  };

  std::uint8_t diffuse(const Pixel& pixel, std::size_t place, int direction, Lines& lines);

  PaletteIndex* index_;
  Picture before_;
  Bytes indicesBefore_;
};

}  // namespace host
