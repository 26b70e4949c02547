#include "raster/region_builder.h"

#include <bit>

#include "platform/region_data.h"
#include "raster/placement.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// The runs of set bits in a row.
std::size_t runsOf(const std::uint64_t* row, std::size_t words) {
  std::size_t runs = 0;
  std::uint64_t before = 0;  // the last bit of the word before, as the lowest
  for (std::size_t i = 0; i < words; ++i) {
    runs += static_cast<std::size_t>(std::popcount(row[i] & ~(row[i] << 1 | before)));
    before = row[i] >> 63;
  }
  return runs;
}

}  // namespace

void RegionBuilder::add(const RECT& rectangle) {
  const Box inside = intersection(toBox(rectangle), {0, 0, width_, height_});
  for (auto y = static_cast<int>(inside.top); y < inside.bottom; ++y) {
    add(y, static_cast<int>(inside.left), static_cast<int>(inside.right));
  }
}

void RegionBuilder::add(HRGN region, int dx, int dy) {
  if (region == nullptr) return;
  const RegionSpans spans(region);
  for (const RECT& span : spans.rectangles()) {
    add({span.left + dx, span.top + dy, span.right + dx, span.bottom + dy});
  }
}

bool RegionBuilder::empty() {
  for (int y = top_; y < bottom_; ++y) {
    if (findBit(bits_.row(y), 0, width_, true) < width_) return false;
  }
  return true;
}

OwnedRegion RegionBuilder::region() {
  const std::size_t words = bits_.wordsPerRow();
  const auto same = [&](int y) { return std::equal(bits_.row(y), bits_.row(y) + words, bits_.row(y + 1)); };
  // Counted first: a region of scattered pixels takes twice the memory of a 32-bit picture, and a list that
  // grows would take as much again.
  std::size_t rectangles = 0;
  for (int y = top_; y < bottom_; ++y) {
    if (y == top_ || !same(y - 1)) rectangles += runsOf(bits_.row(y), words);
  }
  BandBuilder bands;
  bands.reserve(rectangles);
  addRows(bands, top_, bottom_, width_, same, [&](int y) { return bits_.row(y); });
  return OwnedRegion(createRegion(bands.take()));
}

}  // namespace dibkit
