#include <algorithm>
#include <memory>

#include <webp/decode.h>
#include <webp/demux.h>

#include "errors.h"
#include "formats/formats.h"

namespace host {

namespace {

/// The decoder gives its lines from the top.
Picture fromLines(Size size, const std::uint8_t* lines) {
  Picture picture(size);
  const auto* line = reinterpret_cast<const Pixel*>(lines);
  for (int y = 0; y < size.height; ++y, line += size.width) std::copy_n(line, size.width, picture.row(y));
  return picture;
}

Picture readStill(ByteView bytes, Size size) {
  Bytes lines(static_cast<std::size_t>(size.pixels()) * sizeof(Pixel));
  const int stride = size.width * static_cast<int>(sizeof(Pixel));
  if (WebPDecodeBGRAInto(bytes.data(), bytes.size(), lines.data(), lines.size(), stride) == nullptr) {
    throw FormatError("WebP: the picture cannot be decoded");
  }
  return fromLines(size, lines.data());
}

void readFrames(ByteView bytes, Size size, Keep keep, Animation& animation) {
  WebPAnimDecoderOptions options;
  WebPAnimDecoderOptionsInit(&options);
  options.color_mode = MODE_BGRA;
  const WebPData data{bytes.data(), bytes.size()};
  const std::unique_ptr<WebPAnimDecoder, void (*)(WebPAnimDecoder*)> decoder(
      WebPAnimDecoderNew(&data, &options), WebPAnimDecoderDelete);
  WebPAnimInfo info;
  if (!decoder || WebPAnimDecoderGetInfo(decoder.get(), &info) == 0 || info.frame_count == 0) {
    throw FormatError("WebP: the animation cannot be decoded");
  }
  if (keep == Keep::allFrames) requireUsableAnimation(size, info.frame_count);
  // WebP counts how often the animation plays, 0 for ever; once is no repetition.
  const int plays = static_cast<int>(info.loop_count);
  if (plays != 1) animation.loops = std::max(0, plays - 1);
  int before = 0;
  while (WebPAnimDecoderHasMoreFrames(decoder.get()) != 0) {
    std::uint8_t* canvas = nullptr;
    int until = 0;
    if (WebPAnimDecoderGetNext(decoder.get(), &canvas, &until) == 0) {
      throw FormatError("WebP: the animation cannot be decoded");
    }
    if (keep == Keep::firstFrame && !animation.frames.empty()) continue;
    animation.frames.push_back({fromLines(size, canvas), until / 10 - before / 10});
    before = until;
  }
}

}  // namespace

Animation readWebp(ByteView bytes, Keep keep) {
  WebPBitstreamFeatures features;
  const VP8StatusCode status = WebPGetFeatures(bytes.data(), bytes.size(), &features);
  if (status == VP8_STATUS_NOT_ENOUGH_DATA) throw FormatError("the file is truncated");
  if (status != VP8_STATUS_OK) throw FormatError("WebP: the picture cannot be decoded");
  requireUsableSize(features.width, features.height);
  const Size size{features.width, features.height};
  Animation animation;
  animation.format = "WebP";
  animation.bitsPerPixel = features.has_alpha != 0 ? 32 : 24;
  if (features.has_animation != 0) {
    readFrames(bytes, size, keep, animation);
  } else {
    animation.frames.push_back({readStill(bytes, size), 0});
  }
  return animation;
}

}  // namespace host
