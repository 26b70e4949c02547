#include "animation/gif_of_frames.h"

#include "animation/changes.h"
#include "parallel.h"

namespace host {

GifFile gifOfFrames(std::vector<Frame> frames, std::optional<int> loops, Dither dither,
                    const std::function<void()>& step) {
  const Size canvas = frames.front().picture.size();
  const Palette palette = paletteFor(frames);
  const Dither usedDither = palette.exact ? Dither::none : dither;
  std::vector<IndexedFrame> indexed(frames.size());
  forEachIndex(static_cast<int>(frames.size()), [&](int number) {
    const auto i = static_cast<std::size_t>(number);
    PaletteIndex index(palette);
    indexed[i] = {index.indicesOf(frames[i].picture, usedDither), frames[i].delay};
    frames[i].picture = Picture();
    step();
  });
  const int transparent = palette.transparentIndex();
  GifFile file{canvas, palette.colours, loops, {}};
  if (transparent >= 0) file.palette.push_back(RGBQUAD{});
  file.images = storeChanges(canvas, std::move(indexed), transparent, file.palette.size());
  return file;
}

}  // namespace host
