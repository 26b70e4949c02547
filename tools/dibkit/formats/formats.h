#pragma once

#include <optional>
#include <string>
#include <vector>

#include "files/files.h"
#include "picture.h"

/// \file
/// Pictures as files. Readers take the bytes of a whole file and throw FormatError with what is wrong with
/// them; writers give the bytes. What a file is shows in its first bytes, not in its name.
namespace host {

/// One picture of an animation, on the whole canvas.
struct Frame {
  Picture picture;
  int delay = 0;  ///< how long it shows, in hundredths of a second
};

/// What a file holds. A still picture is an animation of one frame.
struct Animation {
  std::string format;            ///< "PNG", "GIF", ...
  int bitsPerPixel = 0;          ///< as stored, all channels together
  std::vector<RGBQUAD> palette;  ///< the file's own; empty for true colour
  std::vector<Frame> frames;     ///< at least one, all of one size
  std::optional<int> loops;      ///< how often the animation repeats, 0 for ever; nothing for once

  Size size() const { return frames.front().picture.size(); }
};

/// How much of a file a reader keeps. The whole file is checked either way.
enum class Keep { allFrames, firstFrame };

Animation readPng(ByteView bytes);
Animation readJpeg(ByteView bytes);
Animation readBmp(ByteView bytes);
Animation readGif(ByteView bytes, Keep keep);
Animation readWebp(ByteView bytes, Keep keep);

/// Reads whichever of the formats the bytes are.
Animation readAnimation(ByteView bytes, Keep keep);
/// The same from a file or standard input; what is wrong becomes a FileError.
Animation readAnimationFile(const std::string& path, Keep keep = Keep::allFrames);
/// The file's picture, or its first frame.
Picture readPictureFile(const std::string& path);

/// A picture of palette indices, lines from the top.
struct IndexedPicture {
  Size size;
  Bytes indices;
  std::vector<RGBQUAD> palette;
  std::optional<int> transparent;  ///< the index that shows nothing
};

Bytes writePng(const IndexedPicture& picture);

/// A PNG of a packed DIB of any depth: palettes stay palettes of that depth, 32 bits keep their alpha.
Bytes writePng(const BITMAPINFOHEADER* dib);
/// A BMP file of a packed DIB of any depth, its block as it is.
Bytes writeBmp(const BITMAPINFOHEADER* dib);

}  // namespace host
