#include "animation/depth.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "animation/palette.h"
#include "errors.h"
#include "interrupt.h"

namespace host {

namespace {

using dibkit::OwnedDib;
using ColourMap = CMap<DWORD, DWORD&, int, int&>;

OwnedDib made(BITMAPINFOHEADER* dib) {
  throwIfInterrupted();
  if (dib == nullptr) throw std::bad_alloc();
  return OwnedDib(dib);
}

RGBQUAD* paletteOf(BITMAPINFOHEADER* dib) {
  return reinterpret_cast<RGBQUAD*>(reinterpret_cast<BYTE*>(dib) + dib->biSize);
}

OwnedDib trueColour(const Picture& picture) {
  CancelOnInterrupt progress;
  return made(CBitmapConverter::ConvertDIBTo24Bits(picture.dib(), &progress));
}

/// The palette in a map as the library's operations take it. Equal colours share one index.
ColourMap mapOf(const std::vector<RGBQUAD>& palette) {
  ColourMap map;
  std::vector<RGBQUAD> entries = palette;
  CPaletteFuns::SumDibImagePalEntries(map, entries.data(), static_cast<int>(entries.size()));
  return map;
}

/// A picture of few colours at a depth of 1, 4 or 8 bits: each of its colours becomes the next index. Its
/// colours must fit.
OwnedDib exactly(BITMAPINFOHEADER* trueColourDib, int bits, int colours) {
  CancelOnInterrupt progress;
  const auto reduce = bits == 1   ? CBitmapConverter::ConvertTrueDibTo1BitsDib
                      : bits == 4 ? CBitmapConverter::ConvertTrueDibTo4BitsDib
                                  : CBitmapConverter::ConvertTrueDibTo8BitsDib;
  return made(reduce(trueColourDib, colours, &progress));
}

/// A picture of palette indices at more bits, its indices as they are.
OwnedDib widened(OwnedDib dib, int bits, ColourMap& map) {
  CancelOnInterrupt progress;
  const int from = dib->biBitCount;
  if (from == bits) return dib;
  const auto widen = from == 4   ? CBitmapConverter::Convert4BitsDibTo8BitsDib
                     : bits == 4 ? CBitmapConverter::Convert1BitsDibTo4BitsDib
                                 : CBitmapConverter::Convert1BitsDibTo8BitsDib;
  return made(widen(dib.get(), &map, &progress));
}

/// A true-colour picture of nothing but the palette's colours, each pixel the nearest one.
OwnedDib nearestColours(const Picture& picture, const std::vector<RGBQUAD>& colours) {
  PaletteIndex index(colours);
  Picture matched = picture.clone();
  CDIB32::MakeAllPixelsSameOpacity(matched.dib(), 255);
  const Bytes indices = index.indicesOf(matched, Dither::none);
  const std::uint8_t* next = indices.data();
  for (int y = 0; y < matched.height(); ++y) {
    Pixel* row = matched.row(y);
    for (int x = 0; x < matched.width(); ++x) {
      const RGBQUAD& colour = colours[*next++];
      row[x] = {colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 255};
    }
  }
  return trueColour(matched);
}

OwnedDib ontoPalette(const Picture& picture, const std::vector<RGBQUAD>& palette, int bits) {
  ColourMap map = mapOf(palette);
  const OwnedDib matched = nearestColours(picture, palette);
  return widened(made(Convert24BitsDIBToLowerBitsDIB(matched.get(), map)), bits, map);
}

/// The best colours for all pictures together.
std::vector<RGBQUAD> bestColours(std::span<const Picture> pictures, int most) {
  std::vector<Frame> frames;
  for (const Picture& picture : pictures) {
    frames.push_back({picture.clone(), 1});
    CDIB32::MakeAllPixelsSameOpacity(frames.back().picture.dib(), 255);
  }
  return bestPalette(frames, most);
}

int smallestDepthFor(std::size_t colours) { return colours <= 2 ? 1 : colours <= 16 ? 4 : 8; }

OwnedDib gray(const Picture& picture) {
  CancelOnInterrupt progress;
  return made(CBitmapConverter::ConvertDIBTo256Grays(picture.dib(), &progress));
}

OwnedDib blackAndWhite(const Picture& picture, std::optional<int> threshold) {
  const OwnedDib grays = gray(picture);
  CancelOnInterrupt progress;
  // The best threshold is the last gray that counts as dark; white begins above it.
  const int whiteFrom = threshold.value_or(CPaletteFuns::GetThreshValueForm8BitsGrayDib(grays.get()) + 1);
  return made(CBitmapConverter::Convert8BitsGrayDibTo1BitsDib(grays.get(), whiteFrom, &progress));
}

/// One picture on a palette of its own.
OwnedDib onOwnPalette(const Picture& picture, int bits) {
  const OwnedDib flat = trueColour(picture);
  const int colours = CPaletteFuns::GetColorsNumFrom24BitsDib(flat.get());
  if (colours <= 1 << bits) return exactly(flat.get(), bits, colours);
  return ontoPalette(picture, bestColours({&picture, 1}, 1 << bits), bits);
}

/// All pictures on the palette that their colours make together, if it has room for them.
std::vector<OwnedDib> onJoinedPalette(std::span<const Picture> pictures, int bits) {
  ColourMap joined;
  std::vector<OwnedDib> all;
  for (const Picture& picture : pictures) {
    const OwnedDib flat = trueColour(picture);
    const int colours = CPaletteFuns::GetColorsNumFrom24BitsDib(flat.get());
    if (colours > 1 << bits) return {};
    all.push_back(exactly(flat.get(), bits, colours));
    const bool fits = CPaletteFuns::SumDibImagePalEntries(joined, paletteOf(all.back().get()), colours) != 0;
    if (!fits || joined.GetCount() > 1 << bits) return {};
  }
  for (OwnedDib& dib : all) dib = made(CPaletteFuns::ChangeDibBitsPalette(dib.get(), &joined));
  return all;
}

std::vector<OwnedDib> onSharedPalette(std::span<const Picture> pictures, int bits) {
  std::vector<OwnedDib> all = onJoinedPalette(pictures, bits);
  if (!all.empty()) return all;
  const std::vector<RGBQUAD> palette = bestColours(pictures, 1 << bits);
  for (const Picture& picture : pictures) all.push_back(ontoPalette(picture, palette, bits));
  return all;
}

OwnedDib trueColourAt(BITMAPINFOHEADER* dib, int bits) {
  CancelOnInterrupt progress;
  if (bits == 16) return made(CBitmapConverter::ConvertDIBTo16Bits(dib, &progress));
  return made(CBitmapConverter::ConvertDIBTo24Bits(dib, &progress));
}

/// A picture that was made gray, or any other one, at the depth that was asked for.
OwnedDib oneAtDepth(const Picture& picture, const DepthOptions& options) {
  if (options.blackAndWhite) return blackAndWhite(picture, options.threshold);
  if (options.gray && options.bits.value_or(8) == 8) return gray(picture);
  if (options.gray) {
    const OwnedDib grays = gray(picture);
    const Picture again(made(CDIB32::ConvertTo32BitsDIB(grays.get(), nullptr, 255, 0)));
    return oneAtDepth(again, DepthOptions{options.bits, false, false, {}, {}, false});
  }
  if (!options.palette.empty()) {
    return ontoPalette(picture, options.palette,
                       options.bits.value_or(smallestDepthFor(options.palette.size())));
  }
  if (options.bits == 32) return made(CBitmapCreator::Clone(picture.dib()));
  if (options.bits && *options.bits > 8) return trueColourAt(picture.dib(), *options.bits);
  if (options.bits) return onOwnPalette(picture, *options.bits);

  if (CDIB32::IsFullOpacity32BitsImage(picture.dib()) == 0) return made(CBitmapCreator::Clone(picture.dib()));
  OwnedDib flat = trueColour(picture);
  CancelOnInterrupt progress;
  OwnedDib low(CBitmapConverter::ConvertTrueDibToLowBitsDib(flat.get(), &progress));
  throwIfInterrupted();
  return low ? std::move(low) : std::move(flat);
}

void requireSense(const DepthOptions& options) {
  const int bits = options.bits.value_or(8);
  if (options.blackAndWhite && options.bits.value_or(1) != 1) throw UsageError("--threshold gives 1 bit");
  if (options.blackAndWhite && options.gray) throw UsageError("--threshold and --gray exclude each other");
  const bool palette = !options.palette.empty() || options.sharedPalette;
  if (palette && (options.gray || options.blackAndWhite))
    throw UsageError("gray pictures have a palette of their own");
  if (palette && bits > 8) throw UsageError(std::to_string(bits) + " bits have no palette");
  if (!options.palette.empty() && static_cast<int>(options.palette.size()) > 1 << bits) {
    throw UsageError("the palette has " + std::to_string(options.palette.size()) + " colours, too many for " +
                     std::to_string(bits) + " bits");
  }
}

}  // namespace

std::vector<OwnedDib> atDepth(std::span<const Picture> pictures, const DepthOptions& options) {
  requireSense(options);
  if (options.sharedPalette && options.palette.empty())
    return onSharedPalette(pictures, options.bits.value_or(8));
  std::vector<OwnedDib> all;
  for (const Picture& picture : pictures) all.push_back(oneAtDepth(picture, options));
  return all;
}

}  // namespace host
