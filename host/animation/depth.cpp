#include "host/animation/depth.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <string>

#include "host/animation/dither.h"
#include "host/animation/exact_palette.h"
#include "host/animation/palette.h"
#include "host/cancel.h"
#include "host/errors.h"
#include "host/names.h"

namespace host {

namespace {

using dibkit::OwnedDib;

// What mapping a picture to the best palette costs, measured on photographs; the rest finds the palette.
constexpr double mappingShare = 0.6;

/// Receives the shares of a part of the work. \param done must outlive it
ShareDone partOf(const ShareDone& done, double part) {
  return [&done, part](double share) { done(part * share); };
}

OwnedDib made(BITMAPINFOHEADER* dib) {
  throwIfCancelled();
  if (dib == nullptr) throw std::bad_alloc();
  return OwnedDib(dib);
}

OwnedDib trueColour(const Picture& picture) {
  CancelProgress progress;
  return made(CBitmapConverter::ConvertDIBTo24Bits(picture.dib(), &progress));
}

/// The picture in true colour, with colours of the palette only.
OwnedDib inColours(const Picture& picture, const std::vector<RGBQUAD>& colours, Dither dither,
                   const ShareDone& done) {
  Picture matched = picture.clone();
  CDIB32::MakeAllPixelsSameOpacity(matched.dib(), 255);
  const std::unique_ptr<PaletteMapper> mapper = mapperOnto(colours, dither);
  const int band = needsOrder(dither) ? matched.height() : 64;
  for (int top = 0; top < matched.height(); top += band) {
    throwIfCancelled();
    const int bottom = std::min(top + band, matched.height());
    const Bytes indices = mapper->indicesOf(matched, {0, top, matched.width(), bottom}, nullptr);
    const std::uint8_t* next = indices.data();
    for (int y = top; y < bottom; ++y) {
      Pixel* row = matched.row(y);
      for (int x = 0; x < matched.width(); ++x) {
        const RGBQUAD& colour = colours[*next++];
        row[x] = {colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 255};
      }
    }
    done(static_cast<double>(bottom - top) / matched.height());
  }
  return trueColour(matched);
}

OwnedDib ontoPalette(const Picture& picture, const std::vector<RGBQUAD>& palette, int bits, Dither dither,
                     const ShareDone& done) {
  return onColours(inColours(picture, palette, dither, done).get(), palette, bits);
}

/// The best colours for all pictures together, those of transparent pixels too.
std::vector<RGBQUAD> bestColours(std::span<const Picture> pictures, int maximum) {
  constexpr BYTE visibleFrom = 0;
  std::int64_t pixels = 0;
  for (const Picture& picture : pictures) pixels += picture.size().pixels();
  ColourHistogram histogram(pixels, visibleFrom);
  for (const Picture& picture : pictures) {
    throwIfCancelled();
    histogram.add(picture, 1);
  }
  return histogram.bestPalette(maximum);
}

std::vector<RGBQUAD> allGrays() {
  std::vector<RGBQUAD> grays(256);
  CPaletteFuns::MakeGrayPalette(grays.data(), static_cast<int>(grays.size()));
  return grays;
}

bool isGray(const Picture& picture) {
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    const bool all = std::all_of(row, row + picture.width(), [](const Pixel& pixel) {
      return pixel.blue == pixel.green && pixel.green == pixel.red;
    });
    if (!all) return false;
  }
  return true;
}

OwnedDib gray(const Picture& picture) {
  // The library's weights round some grays down by one: a picture that is gray already stays as it is.
  if (isGray(picture)) return onColours(trueColour(picture).get(), allGrays(), 8);
  CancelProgress progress;
  return made(CBitmapConverter::ConvertDIBTo256Grays(picture.dib(), &progress));
}

OwnedDib blackAndWhite(const Picture& picture, std::optional<int> threshold) {
  const OwnedDib grays = gray(picture);
  CancelProgress progress;
  // The best threshold is the last gray that counts as dark; white begins above it.
  const int whiteFrom = threshold.value_or(CPaletteFuns::GetThreshValueForm8BitsGrayDib(grays.get()) + 1);
  return made(CBitmapConverter::Convert8BitsGrayDibTo1BitsDib(grays.get(), whiteFrom, &progress));
}

/// One picture on a palette of its own.
OwnedDib onOwnPalette(const Picture& picture, int bits, Dither dither, const ShareDone& done) {
  const OwnedDib flat = trueColour(picture);
  const auto colours = fewColoursOf(flat.get());
  if (colours && std::ssize(*colours) <= 1 << bits) {
    done(1);
    return onColours(flat.get(), *colours, bits);
  }
  const std::vector<RGBQUAD> palette = bestColours({&picture, 1}, 1 << bits);
  done(1 - mappingShare);
  return ontoPalette(picture, palette, bits, dither, partOf(done, mappingShare));
}

/// All pictures on one palette of all their colours; nothing when these are too many.
std::vector<OwnedDib> onJoinedPalette(std::span<const Picture> pictures, int bits) {
  std::vector<RGBQUAD> joined;
  std::vector<OwnedDib> all;
  for (const Picture& picture : pictures) {
    all.push_back(trueColour(picture));
    const auto colours = fewColoursOf(all.back().get());
    if (!colours) return {};
    std::copy_if(colours->begin(), colours->end(), std::back_inserter(joined),
                 [&joined](RGBQUAD colour) { return !entryOf(joined, colour); });
    if (std::ssize(joined) > 1 << bits) return {};
  }
  for (OwnedDib& dib : all) dib = onColours(dib.get(), joined, bits);
  return all;
}

std::vector<OwnedDib> onSharedPalette(std::span<const Picture> pictures, int bits, Dither dither,
                                      const ShareDone& done) {
  std::vector<OwnedDib> all = onJoinedPalette(pictures, bits);
  if (!all.empty()) {
    done(1);
    return all;
  }
  const std::vector<RGBQUAD> palette = bestColours(pictures, 1 << bits);
  done(1 - mappingShare);
  const ShareDone mapped = partOf(done, mappingShare / static_cast<double>(pictures.size()));
  for (const Picture& picture : pictures) all.push_back(ontoPalette(picture, palette, bits, dither, mapped));
  return all;
}

OwnedDib trueColourAt(BITMAPINFOHEADER* dib, int bits) {
  CancelProgress progress;
  if (bits == 16) return made(CBitmapConverter::ConvertDIBTo16Bits(dib, &progress));
  return made(CBitmapConverter::ConvertDIBTo24Bits(dib, &progress));
}

/// A picture at a depth for which no palette has to be found and nothing mapped to one.
OwnedDib inOneStep(const Picture& picture, const DepthOptions& options) {
  if (options.blackAndWhite) return blackAndWhite(picture, options.threshold);
  if (options.gray) return gray(picture);
  if (options.bits == 32) return made(CBitmapCreator::Clone(picture.dib()));
  if (options.bits) return trueColourAt(picture.dib(), *options.bits);

  if (CDIB32::IsFullOpacity32BitsImage(picture.dib()) == 0) return made(CBitmapCreator::Clone(picture.dib()));
  OwnedDib flat = trueColour(picture);
  OwnedDib low = reducedExactly(flat.get());
  return low ? std::move(low) : std::move(flat);
}

/// A picture at the depth of the options.
OwnedDib oneAtDepth(const Picture& picture, const DepthOptions& options, const ShareDone& done) {
  if (options.gray && options.bits.value_or(8) != 8) {
    const OwnedDib grays = gray(picture);
    const Picture again(made(CDIB32::ConvertTo32BitsDIB(grays.get(), nullptr, 255, 0)));
    DepthOptions colours = options;
    colours.gray = false;
    return oneAtDepth(again, colours, done);
  }
  if (!options.palette.empty()) {
    return ontoPalette(picture, options.palette,
                       options.bits.value_or(smallestDepthFor(options.palette.size())), options.dither, done);
  }
  const bool chosenColours = options.blackAndWhite || options.gray;
  if (!chosenColours && options.bits.value_or(32) <= 8)
    return onOwnPalette(picture, *options.bits, options.dither, done);
  OwnedDib dib = inOneStep(picture, options);
  done(1);
  return dib;
}

void requireSense(const DepthOptions& options) {
  const int bits = options.bits.value_or(8);
  if (options.blackAndWhite && options.bits.value_or(1) != 1) throw UsageError("--threshold gives 1 bit");
  if (options.blackAndWhite && options.gray) throw UsageError("--threshold and --gray exclude each other");
  const bool palette = !options.palette.empty() || options.sharedPalette;
  if (palette && (options.gray || options.blackAndWhite))
    throw UsageError("gray pictures have a palette of their own");
  const bool reduces = palette || (options.bits && bits <= 8 && !options.blackAndWhite);
  if (options.dither != Dither::none && !reduces)
    throw UsageError("--dither needs a palette: --bits 8 or less, --palette or --shared-palette");
  if (palette && bits > 8) throw UsageError(std::to_string(bits) + " bits have no palette");
  if (!options.palette.empty() && static_cast<int>(options.palette.size()) > 1 << bits) {
    throw UsageError("the palette has " + std::to_string(options.palette.size()) + " colours, too many for " +
                     counted(bits, "bit"));
  }
}

}  // namespace

std::vector<OwnedDib> atDepth(std::span<const Picture> pictures, const DepthOptions& options,
                              const ShareDone& done) {
  requireSense(options);
  if (options.sharedPalette && options.palette.empty())
    return onSharedPalette(pictures, options.bits.value_or(8), options.dither, done);
  const ShareDone doneOfOne = partOf(done, 1 / static_cast<double>(pictures.size()));
  std::vector<OwnedDib> all;
  for (const Picture& picture : pictures) all.push_back(oneAtDepth(picture, options, doneOfOne));
  return all;
}

}  // namespace host
