#include "host/animation/palette.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include <libimagequant.h>
#include <omp.h>

#include "host/cancel.h"

namespace host {

namespace {

constexpr std::int64_t maximumSamples = 2'000'000;

constexpr std::uint32_t packRgb(const Pixel& pixel) {
  return std::uint32_t{pixel.red} << 16 | std::uint32_t{pixel.green} << 8 | pixel.blue;
}

template <auto Destroy>
struct Destroyer {
  template <class T>
  void operator()(T* object) const {
    Destroy(object);
  }
};
template <class T, auto Destroy>
using Owned = std::unique_ptr<T, Destroyer<Destroy>>;

constexpr RGBQUAD unpackRgb(std::uint32_t colour) {
  const auto channel = [colour](int shift) { return static_cast<BYTE>(colour >> shift & 255); };
  return {channel(0), channel(8), channel(16), 0};
}

}  // namespace

ShownColours::ShownColours(BYTE visibleFrom) : visibleFrom_(visibleFrom), shown_(std::size_t{1} << 24) {}

void ShownColours::add(const Picture& picture, const Picture* before) {
  const std::size_t rowBytes = static_cast<std::size_t>(picture.width()) * sizeof(Pixel);
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    if (before == nullptr || std::memcmp(row, before->row(y), rowBytes) != 0) addLine(row, picture.width());
  }
}

void ShownColours::add(const Picture& picture, const RECT& part) {
  for (int y = part.top; y < part.bottom; ++y) addLine(picture.row(y) + part.left, part.right - part.left);
}

void ShownColours::addLine(const Pixel* pixels, int count) {
  constexpr std::size_t maximumListed = 256;
  for (int x = 0; x < count; ++x) {
    // Most pixels equal the one before.
    if (x > 0 && pixels[x] == pixels[x - 1]) continue;
    if (pixels[x].alpha < visibleFrom_) {
      anyTransparent_ = true;
      continue;
    }
    const std::uint32_t colour = packRgb(pixels[x]);
    if (shown_[colour]) continue;
    shown_[colour] = true;
    if (count_++ < maximumListed) first_.push_back(unpackRgb(colour));
  }
}

ColourHistogram::ColourHistogram(std::int64_t pixels, BYTE visibleFrom)
    : visibleFrom_(visibleFrom),
      step_(static_cast<int>(std::max<std::int64_t>(1, pixels / maximumSamples))) {}

void ColourHistogram::add(const Picture& picture, int delay) {
  const auto weight = static_cast<std::uint32_t>(std::clamp(delay, 1, 200));
  std::uint32_t* weightOfColour = nullptr;
  std::uint32_t colourBefore = 0;
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    int x = offset_;
    for (; x < picture.width(); x += step_) {
      if (row[x].alpha < visibleFrom_) continue;
      const std::uint32_t colour = packRgb(row[x]);
      // Many pixels equal the one before.
      if (weightOfColour == nullptr || colour != colourBefore) {
        weightOfColour = &weights_.at(row[x].red, row[x].green, row[x].blue);
        if (*weightOfColour == 0) colours_.push_back(colour);
        colourBefore = colour;
      }
      *weightOfColour += weight;
    }
    offset_ = x - picture.width();
  }
}

std::vector<RGBQUAD> ColourHistogram::bestPalette(int maximumColours) {
  std::vector<liq_histogram_entry> entries;
  entries.reserve(colours_.size());
  for (const std::uint32_t colour : colours_) {
    const RGBQUAD channels = unpackRgb(colour);
    entries.push_back({{channels.rgbRed, channels.rgbGreen, channels.rgbBlue, 255},
                       weights_.at(channels.rgbRed, channels.rgbGreen, channels.rgbBlue)});
  }
  // The library adds up in as many parts as it has threads, which changes the last bit of its sums: with one,
  // the same pictures give the same palette on every machine.
  omp_set_num_threads(1);
  const Owned<liq_attr, liq_attr_destroy> attributes(liq_attr_create());
  const Owned<liq_histogram, liq_histogram_destroy> histogram(
      attributes ? liq_histogram_create(attributes.get()) : nullptr);
  liq_result* made = nullptr;
  if (!histogram || liq_set_max_colors(attributes.get(), maximumColours) != LIQ_OK ||
      liq_histogram_add_colors(histogram.get(), attributes.get(), entries.data(),
                               static_cast<int>(entries.size()), 0) != LIQ_OK ||
      liq_histogram_quantize(histogram.get(), attributes.get(), &made) != LIQ_OK) {
    throw std::bad_alloc();
  }
  const Owned<liq_result, liq_result_destroy> result(made);
  const liq_palette* palette = liq_get_palette(result.get());
  std::vector<RGBQUAD> colours;
  for (unsigned i = 0; i < palette->count; ++i) {
    const liq_color& colour = palette->entries[i];
    colours.push_back(RGBQUAD{colour.b, colour.g, colour.r, 0});
  }
  return colours;
}

std::vector<RGBQUAD> paletteOf(const BITMAPINFOHEADER* dib) {
  std::vector<RGBQUAD> entries(GetDIBPaletteSize(dib));
  std::memcpy(entries.data(), reinterpret_cast<const BYTE*>(dib) + dib->biSize,
              entries.size() * sizeof(RGBQUAD));
  return entries;
}

std::optional<int> entryOf(const std::vector<RGBQUAD>& palette, RGBQUAD colour) {
  const auto entry = std::find_if(palette.begin(), palette.end(), [colour](const RGBQUAD& other) {
    return other.rgbRed == colour.rgbRed && other.rgbGreen == colour.rgbGreen &&
           other.rgbBlue == colour.rgbBlue;
  });
  if (entry == palette.end()) return std::nullopt;
  return static_cast<int>(entry - palette.begin());
}

}  // namespace host
