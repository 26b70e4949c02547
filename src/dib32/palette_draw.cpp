#include <algorithm>
#include <array>

#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/sampling.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// A picture of 256 colours with its mask, as rows of 32-bit pixels: alpha is 0 where the colour is drawn and
/// 255 where the mask hides it.
class PaletteSource {
 public:
  PaletteSource(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask)
      : indexes_(viewOfDepth(dib, 8)), mask_(viewOfDepth(mask, 1)) {
    const PaletteTable palette(dib);
    for (std::size_t i = 0; i < colours_.size(); ++i) colours_[i] = withAlpha(rgbOf(palette[i]), 0);
  }

  Extent extent() const { return Extent(indexes_); }

  /// Draws `count` pixels from column x of row y on; the destination's alpha is unchanged.
  void paint(int y, int x, int count, Bgra* to) const {
    const BYTE* const indexes = indexes_.row(y) + x;
    const auto paintPixel = [&](int i) {
      putWord(to, i, (wordAt(to, i) & ~colourBits) | wordAt(colours_.data(), indexes[i]));
    };
    const BYTE* const bits = y < mask_.height() ? mask_.row(y) : nullptr;
    const int masked = bits != nullptr ? std::clamp(mask_.width() - x, 0, count) : 0;
    for (int i = 0; i < masked; ++i) {
      if (Index1::get(bits, x + i) == 0) paintPixel(i);
    }
    for (int i = masked; i < count; ++i) paintPixel(i);
  }

  void gather(int y, const std::vector<int>& columns, Bgra* row) const {
    const BYTE* indexes = indexes_.row(y);
    for (std::size_t x = 0; x < columns.size(); ++x) row[x] = colours_[indexes[columns[x]]];
    // A mask smaller than the picture hides nothing outside itself.
    if (y >= mask_.height()) return;
    const BYTE* bits = mask_.row(y);
    for (std::size_t x = 0; x < columns.size(); ++x) {
      if (columns[x] < mask_.width() && Index1::get(bits, columns[x]) != 0) row[x].alpha = 255;
    }
  }

 private:
  ConstView indexes_;
  ConstView mask_;
  std::array<Bgra, 256> colours_;
};

/// Copies the colours that are not hidden; the destination's alpha is unchanged.
void paintRow(Bgra* to, const Bgra* row, int count) {
  for (int x = 0; x < count; ++x) {
    const DWORD below = wordAt(to, x);
    const DWORD above = wordAt(row, x);
    putWord(to, x, above > colourBits ? below : (below & ~colourBits) | above);
  }
}

/// Draws the picture over the destination, at the places that sample(destination, source) gives.
template <class Sample>
void drawPalette(BITMAPINFOHEADER* destinationDib, BITMAPINFOHEADER* sourceDib, BITMAPINFOHEADER* mask,
                 Sample&& sample) {
  const View destination = viewOfDepth(destinationDib, 32);
  const PaletteSource source(sourceDib, mask);
  catchOutOfMemory([&] {
    const Sampling sampling = sample(Extent(destination), source.extent());
    if (sampling.columnStep == 1 && sampling.width() > 0) {
      for (std::size_t i = sampling.rows.size(); i-- > 0;) {
        Bgra* to = pixelsOf(destination.row(sampling.top + static_cast<int>(i))) + sampling.left;
        source.paint(sampling.rows[i], sampling.columns[0], sampling.width(), to);
      }
      return;
    }
    forEachSampledRow(
        destination, sampling, [&](int y, Bgra* row) { source.gather(y, sampling.columns, row); },
        [&](Bgra* to, const Bgra* row) { paintRow(to, row, sampling.width()); });
  });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CDIB32::BitBlt8BitsDIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                            BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask, const POINT& sourceOrigin) {
  ZoomIn8BitsDIB(destination, destinationOrigin, source, mask, sourceOrigin, 1);
}

void CDIB32::ZoomIn8BitsDIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                            BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask, const POINT& sourceOrigin,
                            int factor) {
  drawPalette(destination, source, mask, [&](Extent to, Extent from) {
    return zoomInSampling(to, destinationOrigin, from, sourceOrigin, factor);
  });
}

void CDIB32::ZoomOut8BitsDIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, BITMAPINFOHEADER* mask, const POINT& sourceOrigin,
                             int factor) {
  drawPalette(destination, source, mask, [&](Extent to, Extent from) {
    return zoomOutSampling(to, destinationOrigin, from, sourceOrigin, factor, ZoomOutArea::placed);
  });
}
