#include "animation/canvas_frames.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "interrupt.h"
#include "parallel.h"

namespace host {

namespace {

using dibkit::OwnedDib;

constexpr std::size_t mostEntries = 256;

/// What the frames show; looks no further once the colours are more than `enough`.
ShownColours coloursOf(const std::vector<Frame>& frames, std::size_t enough) {
  ShownColours colours;
  const Picture* before = nullptr;
  for (const Frame& frame : frames) {
    throwIfInterrupted();
    colours.add(frame.picture, std::exchange(before, &frame.picture));
    if (colours.count() > enough) break;
  }
  return colours;
}

/// A colour that is not in the palette. \param palette at most 255 entries
RGBQUAD colourOutside(const std::vector<RGBQUAD>& palette) {
  RGBQUAD colour{};
  while (entryOf(palette, colour)) ++colour.rgbBlue;
  return colour;
}

/// The transparent pixels of a picture as a mask; null when there are none.
OwnedDib maskOf(const Picture& picture) {
  OwnedDib mask;
  const std::ptrdiff_t stride = (std::ptrdiff_t{picture.width()} + 31) / 32 * 4;
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) {
      if (row[x].alpha >= opaqueFrom) continue;
      if (!mask) mask.reset(CBitmapCreator::CreateDibImage(picture.width(), picture.height(), 1, 0));
      if (!mask) throw std::bad_alloc();
      Set1BitPixel(GetDIBBits(mask.get()) + (picture.height() - 1 - y) * stride, 1, x);
    }
  }
  return mask;
}

/// An 8-bit image of palette indices.
OwnedDib indexedDib(Size size, const Bytes& indices, const std::vector<RGBQUAD>& palette) {
  OwnedDib dib(CBitmapCreator::CreateDibImage(size.width, size.height, 8, static_cast<int>(palette.size())));
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

/// The frames on one palette: the colours, and behind them the transparent one where there is room.
CanvasAnimation onPalette(std::vector<Frame> frames, const std::vector<RGBQUAD>& colours, RGBQUAD transparent,
                          Dither dither, const std::function<void()>& step) {
  CanvasAnimation animation{frames.front().picture.size(), {}, transparent, false};
  std::vector<RGBQUAD> palette = colours;
  if (palette.size() < mostEntries) {
    palette.push_back(transparent);
    animation.hasTransparent = true;
  }
  animation.frames.resize(frames.size());
  // The frames of a thread share what it finds, as they share most of their colours.
  const int threads = threadsFor(static_cast<int>(frames.size()));
  forEachIndex(threads, [&](int first) {
    PaletteIndex index(colours);
    for (auto i = static_cast<std::size_t>(first); i < frames.size();
         i += static_cast<std::size_t>(threads)) {
      throwIfInterrupted();
      const Picture picture = std::move(frames[i].picture);
      animation.frames[i] = {indexedDib(picture.size(), index.indicesOf(picture, dither), palette),
                             maskOf(picture), frames[i].delay};
      step();
    }
  });
  return animation;
}

/// Whether a palette holds the colours, and an entry for transparent pixels if there are any.
bool fitPalette(const ShownColours& colours) {
  return colours.count() + (colours.anyTransparent() ? 1 : 0) <= mostEntries;
}

/// A picture as a frame of 24 bits. Pixels below half opacity are transparent, the others opaque.
CanvasFrame trueColourFrame(Picture picture, int delay, RGBQUAD transparent) {
  // A GIF knows no half transparent pixels: what is below half is nothing, what is above all of it.
  const bool halfTransparent = CDIB32::IsTranslucence32BitsImage(picture.dib()) != 0;
  for (int y = 0; halfTransparent && y < picture.height(); ++y) {
    Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) row[x].alpha = row[x].alpha < opaqueFrom ? 0 : 255;
  }
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  const COLORREF colour = RGB(transparent.rgbRed, transparent.rgbGreen, transparent.rgbBlue);
  if (CMaskedBitmapTransform::Spilt32BitsDIBForGIF(picture.dib(), 0, colour, &image, &mask) == 0)
    throw std::bad_alloc();
  return {OwnedDib(image), OwnedDib(mask), delay};
}

CanvasAnimation inTrueColour(std::vector<Frame> frames, RGBQUAD transparent) {
  CanvasAnimation animation{frames.front().picture.size(), {}, transparent, true};
  animation.frames.resize(frames.size());
  forEachIndex(static_cast<int>(frames.size()), [&](int number) {
    const auto i = static_cast<std::size_t>(number);
    animation.frames[i] = trueColourFrame(std::move(frames[i].picture), frames[i].delay, transparent);
  });
  return animation;
}

}  // namespace

CanvasAnimation indexFrames(std::vector<Frame> frames, Dither dither, const std::function<void()>& step) {
  const ShownColours shown = coloursOf(frames, mostEntries);
  if (fitPalette(shown))
    return onPalette(std::move(frames), shown.first(), shown.unused(), Dither::none, step);
  // One entry stays free for pixels that are transparent, or that a frame leaves as they were.
  const std::vector<RGBQUAD> best = bestPalette(frames, static_cast<int>(mostEntries) - 1);
  return onPalette(std::move(frames), best, colourOutside(best), dither, step);
}

CanvasAnimation keepColours(std::vector<Frame> frames) {
  const ShownColours shown = coloursOf(frames, std::numeric_limits<std::size_t>::max());
  if (!fitPalette(shown)) return inTrueColour(std::move(frames), shown.unused());
  return onPalette(std::move(frames), shown.first(), shown.unused(), Dither::none, [] {});
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
