#pragma once

#include <optional>
#include <vector>

#include "host/animation/palette_index.h"
#include "host/bytes.h"

namespace host {

/// Passes on to the next pixels by how much a pixel's colour in the palette differs from its own, so that the
/// mean is right: lines forwards and backwards in turn. Pixels that equal those of the picture before keep
/// their index, so that what does not move does not flicker.
class ErrorDiffusion {
 public:
  /// \param index must outlive this object
  explicit ErrorDiffusion(PaletteIndex& index) : index_(&index) {}

  /// Indices of a part of the picture that follows the one before, lines from the top. All pixels outside of
  /// the part equal those of the picture before; the first picture comes whole, and so does one of another
  /// size.
  Bytes indicesOf(const Picture& picture, const RECT& part);

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

  std::uint8_t diffuse(const Pixel& pixel, std::size_t place, int direction, Lines& lines);

  PaletteIndex* index_;
  std::optional<Picture> before_;
  Bytes indicesBefore_;  ///< of all of it
};

}  // namespace host
