#include <string>
#include <utility>

#include "host/errors.h"
#include "host/formats/formats.h"
#include "host/formats/jpeg_decoder.h"
#include "host/formats/limits.h"
#include "host/formats/orientation.h"

namespace host {

namespace {

void inkToColour(Picture& picture, int lines, bool inverted) {
  for (int y = 0; y < lines; ++y) {
    Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) {
      // In memory the pixel is cyan, magenta, yellow, black: cyan takes red away, yellow blue.
      const Pixel ink = row[x];
      const auto paper = [&](BYTE value) { return inverted ? value : 255 - value; };
      const int light = paper(ink.alpha);
      row[x] = Pixel{static_cast<BYTE>(paper(ink.red) * light / 255),
                     static_cast<BYTE>(paper(ink.green) * light / 255),
                     static_cast<BYTE>(paper(ink.blue) * light / 255), 255};
    }
  }
}

}  // namespace

Animation readJpeg(ByteView bytes, const ReadOptions& options) {
  Diagnostics diagnostics(options.strictness);
  JpegDecoder decoder(bytes);
  const int orientation = orientationOf(decoder.exif());
  const int factor = reductionFor(decoder.size(), asStored(options.enough, orientation));
  if (decoder.comesInScans()) requireRoomInMemory(decoder.size(), "a progressive JPEG");
  // A block of 64 pixels takes a bit at the very least, and three channels never less than one of them.
  requirePixelsIn(bytes.size(), decoder.size(), 512);
  Picture picture(decoder.start(factor));
  int y = 0;
  while (y < picture.height() && decoder.readLine(picture.row(y))) ++y;
  if (y == picture.height()) decoder.finish();
  decoder.reportFaults(diagnostics);
  if (decoder.isInk()) inkToColour(picture, y, decoder.isInverted());
  Animation animation;
  animation.format = "JPEG";
  animation.bitsPerPixel = 8 * decoder.channels();
  animation.frames.push_back({upright(std::move(picture), orientation), 0});
  animation.warnings = diagnostics.warnings();
  return animation;
}

}  // namespace host
