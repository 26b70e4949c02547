#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/bytes.h"
#include "host/picture.h"

namespace host {

/// How colours that a palette lacks are shown.
enum class Dither {
  none,       ///< each as the nearest one
  ordered,    ///< as patterns of two others, which stay where they are from frame to frame
  diffusion,  ///< by passing each pixel's error on; unchanged pixels stay as they are from frame to frame
};

/// Throws UsageError for a name that does not exist.
Dither ditherNamed(const std::string& name);
std::vector<std::string> ditherNames();

/// Maps pictures to a palette. Colours that are in the palette map to themselves. Remembers what it has
/// found, so an object is for one thread.
class PaletteMapper {
 public:
  virtual ~PaletteMapper() = default;
  /// The palette indices of a part of a picture, lines from the top.
  ///
  /// With diffusion, pictures come in the order in which they show, and the part has all pixels that differ
  /// from the picture before; the first picture comes whole.
  virtual Bytes indicesOf(const Picture& picture, const RECT& part) = 0;
  /// Those of all of a picture.
  Bytes indicesOf(const Picture& picture) {
    return indicesOf(picture, {0, 0, picture.width(), picture.height()});
  }
};

/// \param colours at most 256; 255 if there are transparent pixels, whose index is the one after them
std::unique_ptr<PaletteMapper> mapperOnto(std::vector<RGBQUAD> colours, Dither dither);

/// Whether one mapper has to see all frames of an animation, in order.
constexpr bool needsOrder(Dither dither) { return dither == Dither::diffusion; }

}  // namespace host
