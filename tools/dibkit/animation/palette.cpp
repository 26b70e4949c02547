#include "animation/palette.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <unordered_map>
#include <utility>

#include <libimagequant.h>
#include <omp.h>

#include "errors.h"
#include "interrupt.h"

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
    throwIfInterrupted();
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

ShownColours::ShownColours() : shown_(std::size_t{1} << 24) {}

void ShownColours::add(const Picture& picture, const Picture* before) {
  constexpr std::size_t mostListed = 256;
  std::size_t last = shown_.size();
  const std::size_t rowBytes = static_cast<std::size_t>(picture.width()) * sizeof(Pixel);
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    if (before != nullptr && std::memcmp(row, before->row(y), rowBytes) == 0) continue;
    for (int x = 0; x < picture.width(); ++x) {
      if (row[x].alpha < opaqueFrom) {
        anyTransparent_ = true;
        continue;
      }
      const std::uint32_t key = keyOf(row[x]);
      if (key == last) continue;
      last = key;
      if (shown_[key]) continue;
      shown_[key] = true;
      if (count_++ < mostListed) first_.push_back(entryOf(key));
    }
  }
}

RGBQUAD ShownColours::unused() const {
  return entryOf(static_cast<std::uint32_t>(std::find(shown_.begin(), shown_.end(), false) - shown_.begin()));
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

PaletteIndex::PaletteIndex(std::vector<RGBQUAD> colours)
    : colours_(std::move(colours)),
      memory_(std::size_t{1} << 16),
      transparent_(static_cast<int>(colours_.size())) {
  int index = 0;
  for (const RGBQUAD& colour : colours_)
    byGreen_.push_back({colour.rgbBlue, colour.rgbGreen, colour.rgbRed, index++});
  std::stable_sort(byGreen_.begin(), byGreen_.end(),
                   [](const Entry& a, const Entry& b) { return a.green < b.green; });
}

int PaletteIndex::nearest(int red, int green, int blue) const {
  // Weighted squares of the differences; the search goes from the nearest green both ways and ends where
  // green alone is too far. Equal distances go to the lower index.
  constexpr int redWeight = 3;
  constexpr int greenWeight = 4;
  constexpr int blueWeight = 2;
  int best = std::numeric_limits<int>::max();
  int bestIndex = 0;
  const auto tooFar = [&](const Entry& entry) {
    const int away = entry.green - green;
    return greenWeight * away * away > best;
  };
  const auto look = [&](const Entry& entry) {
    const int dr = entry.red - red;
    const int dg = entry.green - green;
    const int db = entry.blue - blue;
    const int distance = redWeight * dr * dr + greenWeight * dg * dg + blueWeight * db * db;
    if (distance < best || (distance == best && entry.index < bestIndex)) {
      best = distance;
      bestIndex = entry.index;
    }
  };
  const auto middle = std::lower_bound(byGreen_.begin(), byGreen_.end(), green,
                                       [](const Entry& entry, int value) { return entry.green < value; });
  auto above = middle;
  auto below = std::make_reverse_iterator(middle);
  while (above != byGreen_.end() || below != byGreen_.rend()) {
    if (above != byGreen_.end()) {
      if (tooFar(*above)) {
        above = byGreen_.end();
      } else {
        look(*above++);
      }
    }
    if (below != byGreen_.rend()) {
      if (tooFar(*below)) {
        below = byGreen_.rend();
      } else {
        look(*below++);
      }
    }
  }
  return bestIndex;
}

int PaletteIndex::indexOf(int red, int green, int blue) {
  const std::uint32_t key = static_cast<std::uint32_t>(red << 16 | green << 8 | blue) + 1;
  Remembered& memory = memory_[key * 2654435761U >> 16];
  if (memory.key != key) memory = {key, static_cast<std::uint32_t>(nearest(red, green, blue))};
  return static_cast<int>(memory.index);
}

int PaletteIndex::ditheredIndexOf(const Pixel& pixel, int x, int y) {
  const int plain = indexOf(pixel.red, pixel.green, pixel.blue);
  const RGBQUAD& colour = colours_[static_cast<std::size_t>(plain)];
  if (colour.rgbRed == pixel.red && colour.rgbGreen == pixel.green && colour.rgbBlue == pixel.blue)
    return plain;
  // Bayer's matrix of order 8: the bits of x ^ y and y interleaved, from the lowest to the highest place.
  const int mixed = x ^ y;
  const int rank =
      (mixed & 1) << 5 | (y & 1) << 4 | (mixed & 2) << 2 | (y & 2) << 1 | (mixed & 4) >> 1 | (y & 4) >> 2;
  constexpr int amplitude = 20;  // about the distance of neighbours among 256 well chosen colours
  const int shift = (2 * rank - 63) * amplitude / 126;
  const auto shifted = [shift](int value) { return std::clamp(value + shift, 0, 255); };
  return indexOf(shifted(pixel.red), shifted(pixel.green), shifted(pixel.blue));
}

Bytes PaletteIndex::indicesOf(const Picture& picture, Dither dither) {
  Bytes indices(static_cast<std::size_t>(picture.size().pixels()));
  std::uint8_t* index = indices.data();
  for (int y = 0; y < picture.height(); ++y) {
    const Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) {
      const Pixel& pixel = row[x];
      // Undithered runs of a colour need no search.
      if (dither == Dither::none && x > 0 && pixel == row[x - 1]) {
        *index = index[-1];
        ++index;
        continue;
      }
      const int found = pixel.alpha < opaqueFrom    ? transparent_
                        : dither == Dither::ordered ? ditheredIndexOf(pixel, x, y)
                                                    : indexOf(pixel.red, pixel.green, pixel.blue);
      *index++ = static_cast<std::uint8_t>(found);
    }
  }
  return indices;
}

}  // namespace host
