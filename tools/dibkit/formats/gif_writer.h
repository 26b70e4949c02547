#pragma once

#include <optional>
#include <string>
#include <vector>

#include "formats/formats.h"

namespace host {

/// What becomes of a frame's rectangle before the next one is drawn.
enum class Disposal { keep = 1, toBackground = 2 };

/// One frame as a GIF stores it: a rectangle of the canvas.
struct GifImage {
  int left = 0;
  int top = 0;
  Size size;
  Bytes indices;                   ///< lines from the top
  std::vector<RGBQUAD> palette{};  ///< its own; empty when it uses the one for all
  std::optional<int> transparent;  ///< the index that leaves the canvas as it is
  Disposal disposal = Disposal::keep;
  int delay = 0;  ///< in hundredths of a second
};

struct GifFile {
  Size canvas;
  std::vector<RGBQUAD> palette;  ///< at most 256, for all images; empty when each has its own
  std::optional<int> loops;      ///< 0 for ever; nothing for once
  std::vector<GifImage> images;
  std::string comment{};  ///< for people; nothing when empty
};

/// The bytes of the file.
Bytes writeGif(const GifFile& file);

/// Bytes that an image takes in a file, nearly; something above `most` once that is sure to be passed.
/// \param paletteSize entries of the palette for all images, if it uses that one
std::size_t compressedSize(const GifImage& image, std::size_t paletteSize, std::size_t most);

}  // namespace host
