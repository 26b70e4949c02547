#pragma once

#include <memory>
#include <optional>
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

/// Pixels of frames that have been mapped, and the index of each. Pixels of the next frame that equal them
/// need not be mapped again.
struct MappedPicture {
  std::optional<Picture> picture;  ///< nothing before the first frame
  Bytes indices;                   ///< of the whole picture, lines from the top
};

/// Maps pictures to a palette. Colours that are in the palette map to themselves. Several threads may use one
/// object at once.
class PaletteMapper {
 public:
  virtual ~PaletteMapper() = default;
  /// The palette indices of a part of a picture, lines from the top.
  /// \param before null for a picture by itself; otherwise an object that is passed for all frames that are
  ///        mapped one after the other. Another size than before starts anew.
  ///
  /// With diffusion, frames come in the order in which they show, and the part has all pixels that differ
  /// from the frame before; the first frame comes whole.
  virtual Bytes indicesOf(const Picture& picture, const RECT& part, MappedPicture* before) const = 0;
};

/// \param colours at most 256; 255 if there are transparent pixels, whose index is the one after them
std::unique_ptr<PaletteMapper> mapperOnto(std::vector<RGBQUAD> colours, Dither dither);

/// Whether one mapper has to see all frames of an animation, in order.
constexpr bool needsOrder(Dither dither) { return dither == Dither::diffusion; }

}  // namespace host
