#include "animation/gif_of_frames.h"

#include "parallel.h"

namespace host {

IndexedAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step) {
  const Palette palette = paletteFor(frames);
  const Dither usedDither = palette.exact ? Dither::none : dither;
  IndexedAnimation animation{frames.front().picture.size(), palette.colours, {}, {}};
  if (palette.transparentIndex() >= 0) {
    animation.transparent = palette.transparentIndex();
    animation.palette.push_back(RGBQUAD{});
  }
  animation.frames.resize(frames.size());
  forEachIndex(static_cast<int>(frames.size()), [&](int number) {
    const auto i = static_cast<std::size_t>(number);
    PaletteIndex index(palette);
    animation.frames[i] = {index.indicesOf(frames[i].picture, usedDither), frames[i].delay};
    frames[i].picture = Picture();
    step();
  });
  return animation;
}

GifFile gifOf(const IndexedAnimation& animation, std::optional<int> loops) {
  return {animation.canvas, animation.palette, loops,
          storeChanges(animation.canvas, animation.frames, animation.transparent.value_or(-1),
                       animation.palette.size())};
}

}  // namespace host
