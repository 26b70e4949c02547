#include "host/animation/palette.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <unordered_map>

#include <libimagequant.h>
#include <omp.h>

#include "host/cancel.h"

namespace host {

namespace {

constexpr std::uint32_t keyOf(const Pixel& pixel) {
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

/// How often each colour shows, over at most about two million pixels spread evenly over all frames.
std::vector<liq_histogram_entry> histogramOf(std::span<const Frame> frames) {
  constexpr std::int64_t mostSamples = 2'000'000;
  std::int64_t pixels = 0;
  for (const Frame& frame : frames) pixels += frame.picture.size().pixels();
  const int step = static_cast<int>(std::max<std::int64_t>(1, pixels / mostSamples));
  std::unordered_map<std::uint32_t, std::uint32_t> counts;
  std::vector<std::uint32_t> order;
  int offset = 0;
  for (const Frame& frame : frames) {
    throwIfCancelled();
    const Size size = frame.picture.size();
    const auto weight = static_cast<std::uint32_t>(std::clamp(frame.delay, 1, 200));
    for (int y = 0; y < size.height; ++y) {
      const Pixel* row = frame.picture.row(y);
      int x = offset;
      for (; x < size.width; x += step) {
        if (row[x].alpha < opaqueFrom) continue;
        const auto [entry, isNew] = counts.try_emplace(keyOf(row[x]), 0);
        if (isNew) order.push_back(entry->first);
        entry->second += weight;
      }
      offset = x - size.width;
    }
  }
  std::vector<liq_histogram_entry> entries;
  entries.reserve(order.size());
  for (const std::uint32_t key : order) {
    const auto channel = [key](int shift) { return static_cast<unsigned char>(key >> shift & 255); };
    entries.push_back({{channel(16), channel(8), channel(0), 255}, counts[key]});
  }
  return entries;
}

constexpr RGBQUAD entryOf(std::uint32_t key) {
  const auto channel = [key](int shift) { return static_cast<BYTE>(key >> shift & 255); };
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
  constexpr std::size_t mostListed = 256;
  for (int x = 0; x < count; ++x) {
    // Most pixels are as the one before.
    if (x > 0 && pixels[x] == pixels[x - 1]) continue;
    if (pixels[x].alpha < visibleFrom_) {
      anyTransparent_ = true;
      continue;
    }
    const std::uint32_t key = keyOf(pixels[x]);
    if (shown_[key]) continue;
    shown_[key] = true;
    if (count_++ < mostListed) first_.push_back(entryOf(key));
  }
}

std::vector<RGBQUAD> bestPalette(std::span<const Frame> frames, int mostColours) {
  // The library adds up in as many parts as it has threads, which changes the last bit of its sums: with one,
  // the same pictures give the same palette on every machine.
  omp_set_num_threads(1);
  std::vector<liq_histogram_entry> entries = histogramOf(frames);
  const Owned<liq_attr, liq_attr_destroy> attributes(liq_attr_create());
  const Owned<liq_histogram, liq_histogram_destroy> histogram(
      attributes ? liq_histogram_create(attributes.get()) : nullptr);
  liq_result* made = nullptr;
  if (!histogram || liq_set_max_colors(attributes.get(), mostColours) != LIQ_OK ||
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

}  // namespace host
