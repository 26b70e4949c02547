#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/bytes.h"
#include "host/formats/diagnostics.h"
#include "host/picture.h"

/// \file
/// Pictures as files. Readers take the bytes of a whole file and throw FormatError with what is wrong with
/// them; writers give the bytes. The format is found by the first bytes of a file, not by its name.
namespace host {

/// One picture of an animation, on the whole canvas.
struct Frame {
  Picture picture;
  int delay = 0;  ///< how long it shows, in hundredths of a second
};

/// What a file holds. A still picture is an animation of one frame.
struct Animation {
  std::string format;                   ///< "PNG", "GIF", ...
  int bitsPerPixel = 0;                 ///< as stored, all channels together
  std::vector<RGBQUAD> palette;         ///< the file's own; empty for true colour
  std::vector<Frame> frames;            ///< at least one, all of one size
  std::optional<int> loops;             ///< how often the animation repeats, 0 for ever; nothing for once
  std::vector<std::string> warnings{};  ///< what is wrong with the file; its frames are what could be decoded

  Size size() const { return frames.front().picture.size(); }
};

/// How much of a file is read. With firstFrame, what follows the first frame is neither read nor checked.
enum class Keep { allFrames, firstFrame };

struct ReadOptions {
  Keep keep = Keep::allFrames;
  Strictness strictness = Strictness::lenient;
  /// The size that a picture will be scaled to, a side of 0 when it follows from the other. Large pictures
  /// may be read smaller then, but not below it; animations are not.
  std::optional<Size> enough{};
};

Animation readPng(ByteView bytes, const ReadOptions& options);
Animation readJpeg(ByteView bytes, const ReadOptions& options);
Animation readBmp(ByteView bytes, const ReadOptions& options);
Animation readGif(ByteView bytes, const ReadOptions& options);
Animation readWebp(ByteView bytes, const ReadOptions& options);

/// Whether the bytes start like a GIF.
bool isGif(ByteView bytes);

/// Reads any of the formats.
Animation readAnimation(ByteView bytes, const ReadOptions& options);

/// A picture of palette indices, lines from the top.
struct IndexedPicture {
  Size size;
  Bytes indices;
  std::vector<RGBQUAD> palette;
  std::optional<int> transparent;  ///< the index that shows nothing
};

Bytes writePng(const IndexedPicture& picture);

/// A PNG of a packed DIB of any depth: palettes stay palettes of that depth, 32 bits keep their alpha.
/// \param lineDone called after each line
Bytes writePng(
    const BITMAPINFOHEADER* dib, const std::function<void()>& lineDone = [] {});
/// A BMP file of a packed DIB of any depth, its block as it is.
Bytes writeBmp(const BITMAPINFOHEADER* dib);

}  // namespace host
