#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <gif_lib.h>

#include "formats/formats.h"

namespace host {

/// Plays a GIF: each step gives the whole canvas as a viewer shows it. Holds two canvases however long the
/// animation is. Every oddity that viewers accept is accepted; what they could only guess at throws
/// FormatError.
class GifDecoder {
 public:
  explicit GifDecoder(ByteView bytes);

  Size size() const { return canvas_.size(); }
  /// The palette for all frames; empty when every frame brings its own.
  const std::vector<RGBQUAD>& palette() const { return palette_; }

  /// Goes on to the next frame; false after the last one.
  bool next();
  /// The frame reached, until the next step.
  const Picture& canvas() const { return canvas_; }
  /// Its time in hundredths of a second.
  int delay() const { return delay_; }
  /// How often the animation repeats, 0 for ever; known for certain after the last frame.
  std::optional<int> loops() const { return loops_; }

 private:
  struct Source {
    ByteView rest;
  };
  struct Place {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
  };

  static int readSource(GifFileType* gif, GifByteType* to, int count);
  [[noreturn]] void fail() const;
  void orFail(int status) const {
    if (status == GIF_ERROR) fail();
  }

  bool advanceToImage();
  void readExtension();
  void dispose();
  void readImage();
  void drawLine(int y, const Place& place, const std::vector<GifPixelType>& line,
                const ColorMapObject& colours);

  Source source_;
  std::size_t fileBytes_;
  std::unique_ptr<GifFileType, void (*)(GifFileType*)> gif_;
  std::vector<RGBQUAD> palette_;
  Picture canvas_;
  Picture saved_;               ///< what is under a frame that gives it back
  std::optional<Place> shown_;  ///< where the frame reached lies, clipped to the canvas
  int shownDisposal_ = DISPOSAL_UNSPECIFIED;
  GraphicsControlBlock control_{};
  int delay_ = 0;
  std::optional<int> loops_;
};

}  // namespace host
