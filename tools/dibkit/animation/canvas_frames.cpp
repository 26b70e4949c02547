#include "animation/canvas_frames.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "animation/palette.h"
#include "interrupt.h"

namespace host {

namespace {

using dibkit::OwnedDib;

OwnedDib made(BITMAPINFOHEADER* dib) {
  if (dib == nullptr) throw std::bad_alloc();
  return OwnedDib(dib);
}

constexpr COLORREF colourOf(RGBQUAD entry) { return RGB(entry.rgbRed, entry.rgbGreen, entry.rgbBlue); }

std::size_t keyOf(const Pixel& pixel) {
  return std::size_t{pixel.red} << 16 | std::size_t{pixel.green} << 8 | pixel.blue;
}

}  // namespace

CanvasFrame trueColourFrame(Picture picture, int delay, RGBQUAD transparent) {
  // A GIF knows no half transparent pixels: what is below half is nothing, what is above all of it.
  const bool halfTransparent = CDIB32::IsTranslucence32BitsImage(picture.dib()) != 0;
  for (int y = 0; halfTransparent && y < picture.height(); ++y) {
    Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) row[x].alpha = row[x].alpha < opaqueFrom ? 0 : 255;
  }
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  if (CMaskedBitmapTransform::Spilt32BitsDIBForGIF(picture.dib(), 0, colourOf(transparent), &image, &mask) ==
      0) {
    throw std::bad_alloc();
  }
  return {OwnedDib(image), OwnedDib(mask), delay};
}

std::optional<CanvasAnimation> onOneExactPalette(const CanvasAnimation& trueColour) {
  constexpr int most = 256;
  CMap<DWORD, DWORD&, int, int&> colours;
  CanvasAnimation indexed{trueColour.canvas, {}, trueColour.transparent, true};
  for (const CanvasFrame& frame : trueColour.frames) {
    throwIfInterrupted();
    const int count = CPaletteFuns::GetColorsNumFrom24BitsDib(frame.image.get());
    if (count > most) return std::nullopt;
    OwnedDib own = made(CBitmapConverter::ConvertTrueDibTo8BitsDib(frame.image.get(), count, nullptr));
    std::vector<RGBQUAD> entries = paletteOf(own.get());
    if (CPaletteFuns::SumDibImagePalEntries(colours, entries.data(), count) == 0) return std::nullopt;
    OwnedDib mask(frame.mask ? CBitmapCreator::Clone(frame.mask.get()) : nullptr);
    indexed.frames.push_back({std::move(own), std::move(mask), frame.delay});
  }
  RGBQUAD transparent = trueColour.transparent;
  indexed.hasTransparent = CPaletteFuns::SumDibImagePalEntries(colours, &transparent, 1) != 0;
  for (CanvasFrame& frame : indexed.frames) {
    frame.image = made(CPaletteFuns::ChangeDibBitsPalette(frame.image.get(), &colours));
  }
  return indexed;
}

UnusedColour::UnusedColour() : used_(std::size_t{1} << 24) {}

void UnusedColour::addUsed(const Picture& picture, const Picture* before) {
  std::size_t last = used_.size();
  const std::size_t rowBytes = static_cast<std::size_t>(picture.width()) * sizeof(Pixel);
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    if (before != nullptr && std::memcmp(row, before->row(y), rowBytes) == 0) continue;
    for (int x = 0; x < picture.width(); ++x) {
      const std::size_t key = keyOf(row[x]);
      if (key == last || row[x].alpha < opaqueFrom) continue;
      last = key;
      if (used_[key]) continue;
      used_[key] = true;
      ++count_;
    }
  }
}

RGBQUAD UnusedColour::find() const {
  const auto key = static_cast<std::size_t>(std::find(used_.begin(), used_.end(), false) - used_.begin());
  const auto channel = [key](int shift) { return static_cast<BYTE>(key >> shift & 255); };
  return {channel(0), channel(8), channel(16), 0};
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
