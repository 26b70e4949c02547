#include "host/animation/canvas_frames.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/animation/animation_writer.h"
#include "host/cancel.h"
#include "host/parallel.h"

namespace host {

namespace {

constexpr std::size_t mostEntries = 256;

/// What the frames show; looks no further once the colours are more than `enough`.
ShownColours coloursOf(const std::vector<Frame>& frames, std::size_t enough) {
  ShownColours colours;
  const Picture* before = nullptr;
  for (const Frame& frame : frames) {
    throwIfCancelled();
    colours.add(frame.picture, std::exchange(before, &frame.picture));
    if (colours.count() > enough) break;
  }
  return colours;
}

/// The frames on one palette: the colours, and behind them the transparent one where there is room.
CanvasAnimation onPalette(std::vector<Frame> frames, const std::vector<RGBQUAD>& colours, Dither dither,
                          const std::function<void()>& step) {
  CanvasAnimation animation{frames.front().picture.size(), colours, {}, {}};
  if (colours.size() < mostEntries) {
    animation.transparent = static_cast<std::uint8_t>(colours.size());
    animation.palette.push_back(RGBQUAD{});
  }
  animation.frames.resize(frames.size());
  // The frames of a thread share what it finds, as they share most of their colours.
  const int threads = needsOrder(dither) ? 1 : Workers().count();
  forEachIndex(threads, [&](int first) {
    const std::unique_ptr<PaletteMapper> mapper = mapperOnto(colours, dither);
    for (auto i = static_cast<std::size_t>(first); i < frames.size();
         i += static_cast<std::size_t>(threads)) {
      throwIfCancelled();
      animation.frames[i] = {mapper->indicesOf(std::move(frames[i].picture)), frames[i].delay};
      step();
    }
  });
  return animation;
}

/// Whether a palette holds the colours, and an entry for transparent pixels if there are any.
bool fitPalette(const ShownColours& colours) {
  return colours.count() + (colours.anyTransparent() ? 1 : 0) <= mostEntries;
}

}  // namespace

CanvasAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step) {
  const ShownColours shown = coloursOf(frames, mostEntries);
  if (fitPalette(shown)) return onPalette(std::move(frames), shown.first(), Dither::none, step);
  // One entry stays free for pixels that are transparent, or that a frame leaves as they were.
  const std::vector<RGBQUAD> best = bestPalette(frames, static_cast<int>(mostEntries) - 1);
  return onPalette(std::move(frames), best, dither, step);
}

GifFile gifOf(const CanvasAnimation& animation, std::optional<int> loops, const std::string& comment) {
  GifWriter file(animation.canvas, animation.palette, loops);
  if (!comment.empty()) file.addComment(comment);
  Progress silent;
  Workers workers;
  AnimationWriter<std::uint8_t> writer(file, animation.canvas, animation.transparent, {}, silent, workers);
  for (const CanvasFrame& frame : animation.frames) {
    Patch<std::uint8_t> patch;
    patch.place = {0, 0, animation.canvas.width, animation.canvas.height};
    patch.cells = frame.indices;
    writer.add(patch, frame.delay, 0);
  }
  writer.finish();
  const int images = file.images();
  const std::int64_t duration = file.duration();
  const int merged = static_cast<int>(animation.frames.size()) - images;
  return {file.finish(), animation.canvas, images, duration, merged};
}

std::optional<int> entryOf(const std::vector<RGBQUAD>& palette, RGBQUAD colour) {
  const auto entry = std::find_if(palette.begin(), palette.end(), [colour](const RGBQUAD& other) {
    return other.rgbRed == colour.rgbRed && other.rgbGreen == colour.rgbGreen &&
           other.rgbBlue == colour.rgbBlue;
  });
  if (entry == palette.end()) return std::nullopt;
  return static_cast<int>(entry - palette.begin());
}

std::vector<RGBQUAD> paletteOf(const BITMAPINFOHEADER* dib) {
  std::vector<RGBQUAD> entries(GetDIBPaletteSize(dib));
  std::memcpy(entries.data(), reinterpret_cast<const BYTE*>(dib) + dib->biSize,
              entries.size() * sizeof(RGBQUAD));
  return entries;
}

}  // namespace host
