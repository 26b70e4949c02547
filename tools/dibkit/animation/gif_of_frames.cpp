#include "animation/gif_of_frames.h"

#include <algorithm>
#include <new>
#include <utility>

#include "animation/changes.h"
#include "interrupt.h"
#include "parallel.h"

namespace host {

namespace {

/// The frames on a palette of exactly their colours; nothing when that would be too many.
std::optional<CanvasAnimation> indexedExactly(const std::vector<Frame>& frames) {
  constexpr std::size_t most = 256;
  UnusedColour unused;
  const Picture* before = nullptr;
  for (const Frame& frame : frames) {
    throwIfInterrupted();
    unused.addUsed(frame.picture, std::exchange(before, &frame.picture));
    if (unused.usedCount() > most) return std::nullopt;
  }
  CanvasAnimation trueColour{frames.front().picture.size(), {}, unused.find(), true};
  for (const Frame& frame : frames) {
    trueColour.frames.push_back(trueColourFrame(frame.picture.clone(), frame.delay, trueColour.transparent));
  }
  return onOneExactPalette(trueColour);
}

/// A colour that is not in the palette.
RGBQUAD colourOutside(const std::vector<RGBQUAD>& palette) {
  RGBQUAD colour{};
  while (entryOf(palette, colour)) ++colour.rgbBlue;
  return colour;
}

/// The transparent pixels of a picture as a mask; null when there are none.
dibkit::OwnedDib maskOf(const Picture& picture) {
  dibkit::OwnedDib mask;
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) {
      if (row[x].alpha >= opaqueFrom) continue;
      if (!mask) mask.reset(CBitmapCreator::CreateDibImage(picture.width(), picture.height(), 1, 0));
      if (!mask) throw std::bad_alloc();
      const std::ptrdiff_t stride = (std::ptrdiff_t{picture.width()} + 31) / 32 * 4;
      Set1BitPixel(GetDIBBits(mask.get()) + (picture.height() - 1 - y) * stride, 1, x);
    }
  }
  return mask;
}

/// An 8-bit image of palette indices.
dibkit::OwnedDib indexedDib(Size size, const Bytes& indices, const std::vector<RGBQUAD>& palette) {
  dibkit::OwnedDib dib(
      CBitmapCreator::CreateDibImage(size.width, size.height, 8, static_cast<int>(palette.size())));
  if (!dib) throw std::bad_alloc();
  std::copy(palette.begin(), palette.end(),
            reinterpret_cast<RGBQUAD*>(reinterpret_cast<BYTE*>(dib.get()) + dib->biSize));
  const std::ptrdiff_t stride = (std::ptrdiff_t{size.width} + 3) / 4 * 4;
  const std::uint8_t* line = indices.data();
  for (int y = size.height - 1; y >= 0; --y, line += size.width) {
    std::copy_n(line, size.width, GetDIBBits(dib.get()) + y * stride);
  }
  return dib;
}

}  // namespace

CanvasAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step) {
  if (std::optional<CanvasAnimation> exact = indexedExactly(frames)) {
    for (std::size_t i = 0; i < frames.size(); ++i) step();
    return std::move(*exact);
  }
  // One entry stays free for pixels that are transparent, or that a frame leaves as they were.
  const std::vector<RGBQUAD> colours = bestPalette(frames, 255);
  CanvasAnimation animation{frames.front().picture.size(), {}, colourOutside(colours), true};
  std::vector<RGBQUAD> palette = colours;
  palette.push_back(animation.transparent);
  animation.frames.resize(frames.size());
  forEachIndex(static_cast<int>(frames.size()), [&](int number) {
    const auto i = static_cast<std::size_t>(number);
    PaletteIndex index(colours);
    const Picture picture = std::move(frames[i].picture);
    animation.frames[i] = {indexedDib(picture.size(), index.indicesOf(picture, dither), palette),
                           maskOf(picture), frames[i].delay};
    step();
  });
  return animation;
}

GifFile gifOf(CanvasAnimation animation, std::optional<int> loops) {
  const BITMAPINFOHEADER* first = animation.frames.front().image.get();
  GifFile file{
      animation.canvas, first->biBitCount == 8 ? paletteOf(first) : std::vector<RGBQUAD>(), loops, {}};
  file.images = storeChanges(std::move(animation));
  return file;
}

}  // namespace host
