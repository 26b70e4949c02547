#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "host/errors.h"
#include "host/formats/apng.h"
#include "host/formats/formats.h"
#include "host/formats/limits.h"
#include "host/formats/orientation.h"
#include "host/formats/png_chunks.h"
#include "host/formats/png_decoder.h"

namespace host {

namespace {

/// The orientation of the picture; its chunk may be anywhere in the file.
int orientationIn(ByteView bytes) {
  PngChunks chunks(bytes);
  while (const std::optional<PngChunk> chunk = chunks.next()) {
    if (chunk->name == "eXIf") return orientationOf(chunk->data);
  }
  return uprightAlready;
}

/// A copy of a file that ends in its pixels, with the length of that chunk corrected; empty for others.
/// libpng would wait for the missing bytes and decode nothing of those that are there.
Bytes withTrueLength(ByteView bytes) {
  PngChunks chunks(bytes);
  while (const std::optional<PngChunk> chunk = chunks.next()) {
    if (!chunk->cut || chunk->name != "IDAT") continue;
    Bytes copy(bytes.begin(), bytes.end());
    const Bytes length = big32(chunk->data.size());
    std::copy(length.begin(), length.end(), copy.begin() + (chunk->whole.data() - bytes.data()));
    return copy;
  }
  return {};
}

Picture readStill(PngDecoder& decoder, int factor, Diagnostics& diagnostics) {
  RowSink sink(decoder.size(), factor, decoder.interlaced() ? RowSink::Order::any : RowSink::Order::byLine);
  const bool any = decoder.readLines(sink);
  if (!any) throw FormatError(decoder.fault());
  if (!decoder.fault().empty()) diagnostics.report(decoder.fault());
  return std::move(sink).take();
}

FramePixels decode(const Apng& animation, const ApngFrame& frame) {
  const Bytes file = fileOf(animation, frame);
  try {
    PngDecoder decoder(file, Strictness::lenient, Checksums::ignore);
    RowSink sink(frame.place.size, 1);
    if (!decoder.readLines(sink)) return {};
    return {std::move(sink).take(), decoder.fault().empty() && !frame.damaged};
  } catch (const FormatError&) {
    return {};
  }
}

}  // namespace

Animation readPng(ByteView bytes, const ReadOptions& options) {
  Diagnostics diagnostics(options.strictness);
  const Bytes mended = withTrueLength(bytes);
  PngDecoder decoder(mended.empty() ? bytes : ByteView(mended), options.strictness, Checksums::verify);
  const int orientation = orientationIn(bytes);
  const Size size = decoder.size();
  // Deflate packs at most 1,032 to 1.
  requirePixelsIn(bytes.size(), size, 1032 * 8 / decoder.bitsPerPixel());
  Animation animation;
  animation.format = "PNG";
  animation.bitsPerPixel = decoder.bitsPerPixel();
  animation.palette = decoder.palette();
  const std::optional<Apng> moving = parseApng(bytes, options.keep, diagnostics);
  if (moving && !(options.keep == Keep::firstFrame && moving->startsWithStill)) {
    FramePlayer player(animation.format, size, diagnostics);
    for (const ApngFrame& frame : moving->frames) player.show(frame.place, decode(*moving, frame));
    animation.frames = std::move(player).takeFrames();
    animation.loops = loopsFromPlays(moving->plays);
  } else {
    const int factor = reductionFor(size, asStored(options.enough, orientation));
    animation.frames.push_back({readStill(decoder, factor, diagnostics), 0});
  }
  for (Frame& frame : animation.frames) frame.picture = upright(std::move(frame.picture), orientation);
  animation.warnings = diagnostics.warnings();
  return animation;
}

}  // namespace host
