#include "host/animation/summary.h"

#include <algorithm>
#include <utility>

#include "host/animation/palette.h"
#include "host/formats/formats.h"
#include "host/formats/gif_decoder.h"

namespace host {

namespace {

constexpr BYTE visibleFrom = 1;

void addFrame(Summary& summary, int delay) {
  summary.shortestDelay = summary.frames == 0 ? delay : std::min(summary.shortestDelay, delay);
  summary.longestDelay = std::max(summary.longestDelay, delay);
  summary.duration += delay;
  ++summary.frames;
}

Transparency transparencyOf(const Picture& picture) {
  if (CDIB32::IsTranslucence32BitsImage(picture.dib()) != 0) return Transparency::translucent;
  return CDIB32::IsFullOpacity32BitsImage(picture.dib()) != 0 ? Transparency::none
                                                              : Transparency::transparent;
}

Summary summaryOfGif(ByteView bytes, Strictness strictness) {
  GifDecoder decoder(bytes, strictness);
  ShownColours colours(visibleFrom);
  Summary summary;
  summary.format = "GIF";
  summary.bitsPerPixel = 8;
  summary.size = decoder.size();
  while (decoder.next()) {
    colours.add(decoder.canvas(), decoder.changed());
    addFrame(summary, decoder.delay());
  }
  summary.paletteEntries = decoder.palette().size();
  summary.colours = colours.count();
  summary.transparency = colours.anyTransparent() ? Transparency::transparent : Transparency::none;
  summary.loops = decoder.loops();
  summary.warnings = decoder.warnings();
  return summary;
}

}  // namespace

Summary summaryOf(ByteView bytes, Strictness strictness) {
  if (isGif(bytes)) return summaryOfGif(bytes, strictness);
  const Animation animation = readAnimation(bytes, {Keep::allFrames, strictness});
  ShownColours colours(visibleFrom);
  Summary summary;
  summary.format = animation.format;
  summary.bitsPerPixel = animation.bitsPerPixel;
  summary.size = animation.size();
  summary.paletteEntries = animation.palette.size();
  summary.loops = animation.loops;
  summary.warnings = animation.warnings;
  const Picture* before = nullptr;
  for (const Frame& frame : animation.frames) {
    colours.add(frame.picture, std::exchange(before, &frame.picture));
    summary.transparency = std::max(summary.transparency, transparencyOf(frame.picture));
    addFrame(summary, frame.delay);
  }
  summary.colours = colours.count();
  return summary;
}

}  // namespace host
