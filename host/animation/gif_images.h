#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>

#include "host/animation/changes.h"
#include "host/formats/gif_writer.h"
#include "host/formats/lzw_encoder.h"

namespace host {

/// A frame changes more than 256 colours at once, so that no palette holds it.
class TooManyColours : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The version of a change that takes the fewest bytes, on the palette for all images.
/// \param transparent the cell that leaves the canvas as it is, if there is one
GifImage smallestImage(const Change<std::uint8_t>& change, std::optional<std::uint8_t> transparent,
                       LzwEncoder& encoder);

/// The same for colours, which are pixels as they are in memory: the image has a palette of its own. Throws
/// TooManyColours when none can hold it.
GifImage smallestImage(const Change<std::uint32_t>& change, std::optional<std::uint32_t> transparent,
                       LzwEncoder& encoder);

}  // namespace host
