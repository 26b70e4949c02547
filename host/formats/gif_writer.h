#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <dibkit.h>

#include "host/bytes.h"
#include "host/formats/gif_reader.h"
#include "host/picture.h"

namespace host {

/// One frame as a GIF stores it: a rectangle of the canvas.
struct GifImage {
  RECT place{};
  Bytes pixels;                    ///< compressed by LzwEncoder
  std::vector<RGBQUAD> palette{};  ///< its own; empty when it uses the one for all
  std::optional<int> transparent;  ///< the index that leaves the canvas as it is
  Disposal disposal = Disposal::keep;
  int delay = 0;  ///< in hundredths of a second

  /// Bytes that it takes in a file, without those that every image takes.
  std::size_t storedSize() const;
};

/// Writes a GIF from its start to its end. Only the bytes of the file grow with the number of frames.
class GifWriter {
 public:
  /// \param palette at most 256 colours for all images; empty when each has its own
  /// \param loops how often the animation repeats, 0 for ever; nothing for once
  GifWriter(Size canvas, const std::vector<RGBQUAD>& palette, std::optional<int> loops);

  /// Adds a comment, which may be anywhere in the file.
  void addComment(std::string_view comment);
  /// Adds an extension block of another file.
  void addExtension(const GifExtension& extension);
  void addImage(const GifImage& image);

  /// How many images there are, and how long all of them show, in hundredths of a second.
  int images() const { return images_; }
  std::int64_t duration() const { return duration_; }

  /// The bytes of the file, which is complete with this.
  Bytes finish();

 private:
  void put(int byte) { bytes_.push_back(static_cast<std::uint8_t>(byte)); }
  void putNumber(int value);
  void putPalette(const std::vector<RGBQUAD>& palette);
  void putControl(const GifImage& image);

  Bytes bytes_;
  int images_ = 0;
  std::int64_t duration_ = 0;
};

}  // namespace host
