#include "host/animation/gif_animation.h"

#include <memory>
#include <utility>

#include "host/animation/animation_writer.h"
#include "host/animation/palette.h"
#include "host/parallel.h"

namespace host {

namespace {

constexpr std::size_t maximumEntries = 256;

// Estimates of what the two passes over the frames cost: both render, the second maps and compresses too.
constexpr double paletteShare = 0.25;
constexpr double writeShare = 1 - paletteShare;

SharedPalette paletteFrom(std::vector<RGBQUAD> colours, Dither dither) {
  SharedPalette palette{std::move(colours), {}, dither};
  if (palette.entries.size() < maximumEntries) {
    palette.transparent = static_cast<std::uint8_t>(palette.entries.size());
    palette.entries.push_back(RGBQUAD{});
  }
  return palette;
}

/// Palette indices of frames. Each thread keeps the frame that it mapped last.
class FrameMapper {
 public:
  FrameMapper(const SharedPalette& palette, const Workers& workers)
      : mapper_(mapperOnto(palette.colours(), palette.dither)),
        before_(static_cast<std::size_t>(workers.count())) {}

  Patch<std::uint8_t> patchOf(const Picture& picture, const RECT& place, int thread) {
    Patch<std::uint8_t> patch;
    patch.place = place;
    patch.cells = mapper_->indicesOf(picture, place, &before_[static_cast<std::size_t>(thread)]);
    return patch;
  }

 private:
  std::unique_ptr<PaletteMapper> mapper_;
  std::vector<MappedPicture> before_;  ///< one for each thread
};

}  // namespace

std::vector<RGBQUAD> SharedPalette::colours() const {
  return {entries.begin(), entries.end() - (transparent ? 1 : 0)};
}

SharedPalette sharedPaletteOf(FrameSource& source, Dither dither, Workers& workers, Progress& progress,
                              double share) {
  ShownColours shown;
  ColourHistogram histogram(source.size().pixels() * source.count());
  const auto fits = [&shown] { return shown.count() + (shown.anyTransparent() ? 1 : 0) <= maximumEntries; };
  forEachFrame(source, workers, [&](RenderedFrame&& frame, int number, const RECT& changed) {
    if (fits()) shown.add(frame.picture, changed);
    histogram.add(frame.picture, source.delay(number));
    progress.add(share / source.count());
  });
  if (fits()) return paletteFrom(shown.first(), Dither::none);
  // One entry stays free for pixels that are transparent, or that a frame leaves as they were.
  return paletteFrom(histogram.bestPalette(static_cast<int>(maximumEntries) - 1), dither);
}

void forEachIndexedFrame(FrameSource& source, const SharedPalette& palette, Workers& workers,
                         const std::function<void(const Patch<std::uint8_t>& patch, int number)>& take) {
  FrameMapper mapper(palette, workers);
  OrderedResults<Patch<std::uint8_t>> patches(workers);
  int taken = 0;
  const auto takeNext = [&] { take(patches.next(), taken++); };
  forEachFrame(source, workers, [&](RenderedFrame&& rendered, int, const RECT& changed) {
    const auto frame = std::make_shared<RenderedFrame>(std::move(rendered));
    const auto work = [&mapper, frame, changed](int thread) {
      return mapper.patchOf(frame->picture, changed, thread);
    };
    if (needsOrder(palette.dither)) {
      patches.addSmall(work);
    } else {
      patches.add(work);
    }
    while (patches.full()) takeNext();
  });
  while (!patches.empty()) takeNext();
}

GifFile gifOf(FrameSource& source, const GifOptions& options, Progress& progress,
              const IndexedFrameTap& tap) {
  Workers workers;
  const SharedPalette palette = sharedPaletteOf(source, options.dither, workers, progress, paletteShare);
  GifWriter file(source.size(), palette.entries, options.loops);
  if (!options.comment.empty()) file.addComment(options.comment);
  AnimationWriter<std::uint8_t> writer(file, source.size(), palette.transparent, {}, progress, workers);
  forEachIndexedFrame(source, palette, workers, [&](const Patch<std::uint8_t>& patch, int number) {
    if (tap) tap(palette, patch);
    writer.add(patch, source.delay(number), writeShare / source.count());
  });
  writer.finish();
  const int images = file.images();
  const std::int64_t duration = file.duration();
  return {file.finish(), source.size(), images, duration, source.count() - images};
}

}  // namespace host
