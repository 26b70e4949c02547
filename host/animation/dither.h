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

/// Brings pictures onto a palette, on one thread: it remembers what it has found. Colours that are in the
/// palette map to themselves.
class PaletteMapper {
 public:
  virtual ~PaletteMapper() = default;
  /// Palette indices, lines from the top. With diffusion, pictures come in the order in which they show.
  virtual Bytes indicesOf(Picture picture) = 0;
};

/// \param colours at most 256; 255 if there are transparent pixels, whose index is the one behind them
std::unique_ptr<PaletteMapper> mapperOnto(std::vector<RGBQUAD> colours, Dither dither);

/// Whether one mapper has to see all frames of an animation, in order.
constexpr bool needsOrder(Dither dither) { return dither == Dither::diffusion; }

}  // namespace host
