#include "frames/trim.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

#include "dib/view.h"
#include "frames/frames.h"
#include "platform/guard.h"
#include "platform/region_data.h"
#include "raster/mask_rows.h"
#include "raster/region_builder.h"

namespace dibkit {
namespace {

ConstView viewOfMask(const BITMAPINFOHEADER* mask) { return viewOfDepth(mask, 1); }

/// The words of a BitGrid row of the mask's width.
std::size_t wordsOf(const ConstView& mask) { return (static_cast<std::size_t>(mask.width()) + 63) / 64; }

/// The opaque pixels of line y of a frame mask as set bits, in wordsOf(mask) words.
void loadOpaque(const ConstView& mask, int y, std::uint64_t* words) {
  loadMaskRow(mask.row(y), mask.width(), words);
  const std::size_t count = wordsOf(mask);
  for (std::size_t i = 0; i < count; ++i) words[i] = ~words[i];
  if (mask.width() % 64 != 0) words[count - 1] &= (std::uint64_t{1} << mask.width() % 64) - 1;
}

OwnedRegion opaqueRegion(const ConstView& mask) {
  if (mask.lines() == 0) return nullptr;
  std::vector<std::uint64_t> words(wordsOf(mask));
  const auto bytes = (static_cast<std::size_t>(mask.width()) + 7) / 8;
  BandBuilder bands;
  addRows(
      bands, 0, mask.lines(), mask.width(),
      [&](int y) { return std::memcmp(mask.row(y), mask.row(y + 1), bytes) == 0; },
      [&](int y) {
        loadOpaque(mask, y, words.data());
        return words.data();
      });
  return bands.empty() ? nullptr : OwnedRegion(createRegion(bands.take()));
}

/// The last set bit of a row that has one.
int lastBit(const std::uint64_t* row, int width) {
  int word = (width - 1) / 64;
  while (row[word] == 0) --word;
  return word * 64 + 63 - std::countl_zero(row[word]);
}

}  // namespace

TransparentEdges transparentEdges(const ConstView& mask) {
  const int width = mask.width();
  const int height = mask.height();
  if (mask.lines() == 0) return {width, height, width, height};
  std::vector<std::uint64_t> words(wordsOf(mask));
  const auto opaque = [&](int y) {
    loadOpaque(mask, y, words.data());
    return words.data();
  };
  int top = 0;
  while (top < height && findBit(opaque(top), 0, width, true) == width) ++top;
  if (top == height) return {width, height, width, height};
  int bottom = 0;
  int left = width;
  int right = width;
  for (int y = top; y < height; ++y) {
    const std::uint64_t* row = opaque(y);
    const int first = findBit(row, 0, width, true);
    if (first == width) {
      ++bottom;
      continue;
    }
    bottom = 0;
    left = std::min(left, first);
    right = std::min(right, width - 1 - lastBit(row, width));
  }
  return {left, top, right, bottom};
}

bool keepRegionForGood(const RECT& rect, HRGN& kept) {
  // The leak checker knows the region by this function, which a call in its last place would replace.
  kept = CreateRectRgn(static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right),
                       static_cast<int>(rect.bottom));
  return kept != nullptr;
}

int cropTrimmed(BITMAPINFOHEADER* image, BITMAPINFOHEADER* mask, const TransparentEdges& edges,
                BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask) {
  HRGN kept = nullptr;
  const RECT shown{edges.left, edges.top, image->biWidth - edges.right, image->biHeight - edges.bottom};
  if (!keepRegionForGood(shown, kept)) return 0;
  return CropFrame(image, mask, kept, outImage, outMask);
}

}  // namespace dibkit

using namespace dibkit;

HRGN CalcOpacityAreaRgn(BITMAPINFOHEADER* mask) {
  return catchOutOfMemory([&] { return opaqueRegion(viewOfMask(mask)).release(); });
}

void CaclOpaqueBoundary(BITMAPINFOHEADER* mask, int* left, int* top, int* right, int* bottom) {
  const ConstView view = viewOfMask(mask);
  if (!view || left == nullptr || top == nullptr || right == nullptr || bottom == nullptr) return;
  catchOutOfMemory([&] {
    const TransparentEdges edges = transparentEdges(view);
    *left = edges.left;
    *top = edges.top;
    *right = edges.right;
    *bottom = edges.bottom;
  });
}
