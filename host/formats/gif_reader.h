#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <dibkit.h>

#include "host/bytes.h"
#include "host/formats/animation_canvas.h"
#include "host/formats/diagnostics.h"
#include "host/picture.h"

namespace host {

/// A frame as the file has it, its pixels still compressed.
struct GifFrame {
  std::size_t number = 0;  ///< counts from 1, for messages
  int left = 0;
  int top = 0;
  Size size;
  bool interlaced = false;
  Disposal disposal = Disposal::keep;
  int delay = 0;                   ///< in hundredths of a second
  std::optional<int> transparent;  ///< the index that leaves the canvas as it is
  std::vector<RGBQUAD> palette;    ///< its own; empty when it uses the one for all
  int minimumCodeSize = 0;
  Bytes codes;       ///< the pixels
  bool cut = false;  ///< the file ends before all of `codes`
};

/// An extension block that does not affect the picture: a comment, plain text, or data of an application.
struct GifExtension {
  int label = 0;          ///< 0xFE, 0x01 or 0xFF
  std::size_t frame = 0;  ///< how many frames are in front of it
  ByteView blocks;  ///< its sub-blocks as in the file, each after its length, and the empty one at the end
};

/// Splits a GIF file into its blocks. Nothing is decoded or drawn.
class GifReader {
 public:
  /// \param bytes must outlive the reader and its extensions. Throws FormatError when there is no GIF's head.
  GifReader(ByteView bytes, Diagnostics& diagnostics);

  /// As the file says; either side may be 0.
  Size screen() const { return screen_; }
  /// The palette for all frames; empty when there is none.
  const std::vector<RGBQUAD>& palette() const { return palette_; }

  /// Goes on to the next frame; false when there is none.
  bool next(GifFrame& frame);

  /// How often the animation repeats, 0 for ever; known for certain after the last frame.
  std::optional<int> loops() const { return loops_; }
  /// Those read so far. How often the animation repeats is not among them.
  const std::vector<GifExtension>& extensions() const { return extensions_; }
  /// How many bytes have been read.
  std::size_t position() const { return position_; }

 private:
  bool has(std::size_t count) const { return bytes_.size() - position_ >= count; }
  int number(std::size_t offset) const {
    return bytes_[position_ + offset] | bytes_[position_ + offset + 1] << 8;
  }
  std::optional<std::vector<RGBQUAD>> takePalette(int packedFields);
  bool skipSubBlocks();
  bool readExtension();
  bool readFrame(GifFrame& frame);
  void readControl(ByteView block);
  void readCodes(GifFrame& frame);
  bool endWith(const std::string& fault);
  std::string afterFrames() const;

  ByteView bytes_;
  Diagnostics* diagnostics_;
  std::size_t position_ = 0;
  bool ended_ = false;
  Size screen_;
  std::vector<RGBQUAD> palette_;
  std::size_t frames_ = 0;
  std::optional<int> loops_;
  std::vector<GifExtension> extensions_;
  // What the last control block says of the frame that follows.
  Disposal disposal_ = Disposal::keep;
  int delay_ = 0;
  std::optional<int> transparent_;
};

}  // namespace host
