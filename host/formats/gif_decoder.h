#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <dibkit.h>

#include "host/formats/animation_canvas.h"
#include "host/formats/diagnostics.h"
#include "host/formats/gif_reader.h"
#include "host/picture.h"

namespace host {

/// Plays a GIF: each step gives the whole canvas as a viewer shows it. Holds two canvases at most however
/// long the animation is, and its work is that of the pixels that the frames hold and restore.
///
/// Blocks and pixels are read by code of our own: giflib refuses code sizes above 8, gives nothing of a line
/// in which the data end, and stops at the first fault.
class GifDecoder {
 public:
  /// \param bytes must outlive the decoder. Throws FormatError when there is nothing to show, and with the
  /// first fault when strict; so does next().
  GifDecoder(ByteView bytes, Strictness strictness);
  GifDecoder(const GifDecoder&) = delete;
  GifDecoder& operator=(const GifDecoder&) = delete;

  Size size() const { return canvas_.size(); }
  /// The palette for all frames; empty when there is none.
  const std::vector<RGBQUAD>& palette() const { return reader_.palette(); }

  /// Goes on to the next frame; false after the last one. Frames without any pixel keep their time, but not
  /// in front of the first one that shows something.
  bool next();
  /// The frame reached, until the next step.
  const Picture& canvas() const { return canvas_.picture(); }
  /// The rectangle outside of which the canvas is as it was a step before: what the step restored, and the
  /// box of the pixels that it changed. All of the canvas at the first frame.
  RECT changed() const { return changed_; }
  /// The time of the frame in hundredths of a second.
  int delay() const { return frame_.delay; }

  /// How often the animation repeats, 0 for ever; known for certain after the last frame.
  std::optional<int> loops() const { return reader_.loops(); }
  /// Comments and what applications keep in the file, up to the frame reached.
  const std::vector<GifExtension>& extensions() const { return reader_.extensions(); }
  /// How many bytes of the file have been read.
  std::size_t position() const { return reader_.position(); }
  /// The faults found so far, in the order of the file.
  const std::vector<std::string>& warnings() const { return diagnostics_.warnings(); }

 private:
  bool show();
  bool draw(const RECT& part);
  void drawLine(int y, const RECT& part, ByteView indices, const std::array<Pixel, 256>& colours);
  std::array<Pixel, 256> colours();
  void reportEmptyFrame();
  void reportMissing(std::int64_t drawn, bool damaged);
  [[noreturn]] void failWithoutPicture() const;

  Diagnostics diagnostics_;
  GifReader reader_;
  std::int64_t pixelsLeft_;  ///< that a file of this length can still hold
  GifFrame frame_;
  bool frameIsAhead_ = false;  ///< frame_ has been read, and its step is to come
  bool shownAny_ = false;
  AnimationCanvas canvas_;
  RECT changed_{};
};

}  // namespace host
