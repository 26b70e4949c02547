#include "host/animation/gif_images.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "host/animation/colour_table.h"

namespace host {

namespace {

/// A version of a change on its palette, its pixels not compressed yet.
struct Indexed {
  Bytes indices;
  std::vector<RGBQUAD> palette;
  std::optional<int> transparent;
};

/// Nothing when the version has more than 256 colours.
std::optional<Indexed> onOwnPalette(const std::vector<std::uint32_t>& colours,
                                    std::optional<std::uint32_t> transparent) {
  Indexed indexed{Bytes(colours.size()), {}, {}};
  ColourTable table;
  std::uint8_t index = 0;
  for (std::size_t i = 0; i < colours.size(); ++i) {
    if (i == 0 || colours[i] != colours[i - 1]) {
      const std::optional<std::uint8_t> entry = table.findOrAdd(colours[i]);
      if (!entry) return std::nullopt;
      index = *entry;
    }
    indexed.indices[i] = index;
  }
  if (transparent) indexed.transparent = table.find(*transparent);
  indexed.palette = table.palette();
  return indexed;
}

/// Keeps of several images the one that takes the fewest bytes.
class Smallest {
 public:
  explicit Smallest(LzwEncoder& encoder) : encoder_(&encoder) {}

  void offer(const RECT& place, ByteView indices, std::vector<RGBQUAD> palette,
             std::optional<int> transparent) {
    GifImage image{place, {}, std::move(palette), transparent};
    const std::size_t withoutPixels = image.storedSize();
    if (withoutPixels >= size_) return;
    image.pixels = encoder_->encode(indices, size_ - withoutPixels);
    if (image.pixels.empty()) return;
    size_ = image.storedSize();
    best_ = std::move(image);
  }
  template <class Cell>
  GifImage take(const Change<Cell>& change) {
    if (best_.pixels.empty()) throw TooManyColours("a frame changes more than 256 colours at once");
    best_.disposal = change.disposal;
    best_.delay = change.delay;
    return std::move(best_);
  }

 private:
  LzwEncoder* encoder_;
  GifImage best_;
  std::size_t size_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace

GifImage smallestImage(const Change<std::uint8_t>& change, std::optional<std::uint8_t> transparent,
                       LzwEncoder& encoder) {
  Smallest smallest(encoder);
  for (const Patch<std::uint8_t>& version : change.versions) {
    const bool used = transparent && std::find(version.cells.begin(), version.cells.end(), *transparent) !=
                                         version.cells.end();
    smallest.offer(version.place, version.cells, {}, used ? transparent : std::nullopt);
  }
  return smallest.take(change);
}

GifImage smallestImage(const Change<std::uint32_t>& change, std::optional<std::uint32_t> transparent,
                       LzwEncoder& encoder) {
  Smallest smallest(encoder);
  for (const Patch<std::uint32_t>& version : change.versions) {
    std::optional<Indexed> indexed = onOwnPalette(version.cells, transparent);
    if (indexed)
      smallest.offer(version.place, indexed->indices, std::move(indexed->palette), indexed->transparent);
  }
  return smallest.take(change);
}

}  // namespace host
