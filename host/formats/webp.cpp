#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <webp/decode.h>
#include <webp/demux.h>

#include "host/errors.h"
#include "host/formats/formats.h"
#include "host/formats/frame_player.h"
#include "host/formats/limits.h"
#include "host/formats/orientation.h"

namespace host {

namespace {

/// What the file has, which may be the start of it only.
struct Container {
  std::unique_ptr<WebPDemuxer, void (*)(WebPDemuxer*)> demuxer;
  bool whole;
};

Container openContainer(ByteView bytes) {
  const WebPData data{bytes.data(), bytes.size()};
  WebPDemuxState state = WEBP_DEMUX_PARSE_ERROR;
  Container container{{WebPDemuxPartial(&data, &state), WebPDemuxDelete}, false};
  if (state == WEBP_DEMUX_PARSING_HEADER) throw FormatError("the file is truncated");
  if (!container.demuxer) throw FormatError("WebP: the data are damaged");
  container.whole = state == WEBP_DEMUX_DONE;
  return container;
}

int orientationIn(const WebPDemuxer* demuxer) {
  WebPChunkIterator chunk;
  const bool found = WebPDemuxGetChunk(demuxer, "EXIF", 1, &chunk) != 0;
  const int orientation = found ? orientationOf({chunk.chunk.bytes, chunk.chunk.size}) : uprightAlready;
  WebPDemuxReleaseChunkIterator(&chunk);
  return orientation;
}

/// A frame of the file, from the first on. A still picture is the only one.
class FrameIterator {
 public:
  explicit FrameIterator(const WebPDemuxer* demuxer) : valid_(WebPDemuxGetFrame(demuxer, 1, &frame_) != 0) {}
  FrameIterator(const FrameIterator&) = delete;
  FrameIterator& operator=(const FrameIterator&) = delete;
  ~FrameIterator() { WebPDemuxReleaseIterator(&frame_); }

  bool valid() const { return valid_; }
  const WebPIterator& operator*() const { return frame_; }
  const WebPIterator* operator->() const { return &frame_; }
  void advance() { valid_ = WebPDemuxNextFrame(&frame_) != 0; }

 private:
  WebPIterator frame_{};
  bool valid_;
};

/// Decodes a picture of the given size, reduced, as far as it is there.
FramePixels decode(const WebPData& data, Size size, int factor) {
  Picture picture(reduced(size, factor));
  WebPDecoderConfig config;
  WebPInitDecoderConfig(&config);
  config.options.use_scaling = factor > 1 ? 1 : 0;
  config.options.scaled_width = picture.width();
  config.options.scaled_height = picture.height();
  // A picture's last line is the first in memory.
  config.options.flip = 1;
  config.output.colorspace = MODE_BGRA;
  config.output.is_external_memory = 1;
  const std::size_t stride = static_cast<std::size_t>(picture.width()) * sizeof(Pixel);
  config.output.u.RGBA = {reinterpret_cast<std::uint8_t*>(picture.row(picture.height() - 1)),
                          static_cast<int>(stride), stride * static_cast<std::size_t>(picture.height())};
  const std::unique_ptr<WebPIDecoder, void (*)(WebPIDecoder*)> decoder(WebPIDecode(nullptr, 0, &config),
                                                                       WebPIDelete);
  if (!decoder) throw std::bad_alloc();
  const VP8StatusCode status = WebPIUpdate(decoder.get(), data.bytes, data.size);
  int lines = 0;
  WebPIDecGetRGB(decoder.get(), &lines, nullptr, nullptr, nullptr);
  if (lines == 0) return {};
  return {std::move(picture), status == VP8_STATUS_OK};
}

PlacedFrame placeOf(const WebPIterator& frame) {
  return {frame.x_offset,
          frame.y_offset,
          {frame.width, frame.height},
          frame.duration / 1000.0,
          frame.dispose_method == WEBP_MUX_DISPOSE_BACKGROUND ? Disposal::background : Disposal::keep,
          frame.blend_method == WEBP_MUX_BLEND ? Compositing::over : Compositing::replace,
          frame.complete == 0};
}

Picture readStill(const WebPDemuxer* demuxer, Size size, int factor, Diagnostics& diagnostics) {
  const FrameIterator frame(demuxer);
  if (!frame.valid()) throw FormatError("the file is truncated");
  FramePixels pixels = decode(frame->fragment, size, factor);
  const std::string fault = frame->complete == 0 ? "the file is truncated" : "WebP: the data are damaged";
  if (!pixels.picture) throw FormatError(fault);
  if (!pixels.complete) diagnostics.report(fault);
  return std::move(*pixels.picture);
}

std::vector<Frame> readFrames(const Container& container, Size size, Keep keep, Diagnostics& diagnostics) {
  FramePlayer player("WebP", size, diagnostics);
  std::size_t count = 0;
  for (FrameIterator frame(container.demuxer.get()); frame.valid(); frame.advance()) {
    const PlacedFrame place = placeOf(*frame);
    player.show(place, decode(frame->fragment, place.size, 1));
    ++count;
    if (keep == Keep::firstFrame && !player.empty()) return std::move(player).takeFrames();
  }
  if (!container.whole && diagnostics.warnings().empty()) {
    diagnostics.report(count == 0 ? "the file is truncated" : truncated("after " + frameName(count)));
  }
  return std::move(player).takeFrames();
}

}  // namespace

Animation readWebp(ByteView bytes, const ReadOptions& options) {
  Diagnostics diagnostics(options.strictness);
  const Container container = openContainer(bytes);
  const WebPDemuxer* demuxer = container.demuxer.get();
  WebPBitstreamFeatures features;
  const VP8StatusCode status = WebPGetFeatures(bytes.data(), bytes.size(), &features);
  if (status == VP8_STATUS_NOT_ENOUGH_DATA) throw FormatError("the file is truncated");
  if (status != VP8_STATUS_OK) throw FormatError("WebP: the data are damaged");
  const Size size{features.width, features.height};
  const int orientation = orientationIn(demuxer);
  Animation animation;
  animation.format = "WebP";
  animation.bitsPerPixel = features.has_alpha != 0 ? 32 : 24;
  if (features.has_animation != 0) {
    animation.frames = readFrames(container, size, options.keep, diagnostics);
    animation.loops = loopsFromPlays(WebPDemuxGetI(demuxer, WEBP_FF_LOOP_COUNT));
  } else {
    constexpr int lossless = 2;
    if (features.format == lossless) requireRoomInMemory(size, "a lossless WebP");
    const int factor = reductionFor(size, asStored(options.enough, orientation));
    animation.frames.push_back({readStill(demuxer, size, factor, diagnostics), 0});
  }
  for (Frame& frame : animation.frames) frame.picture = upright(std::move(frame.picture), orientation);
  animation.warnings = diagnostics.warnings();
  return animation;
}

}  // namespace host
