#include <algorithm>

#include "dib/allocate.h"
#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"

namespace dibkit {
namespace {

bool visible(const Bgra& pixel) { return pixel.alpha != 0; }

/// Whether some pixel of [begin, end) is visible. Examines whole blocks, without a branch for each pixel.
bool anyVisible(const Bgra* row, int begin, int end) {
  constexpr int block = 64;
  for (int x = begin; x < end; x += block) {
    DWORD any = 0;
    for (int i = x; i < std::min(x + block, end); ++i) any |= wordAt(row, i);
    if (any > colourBits) return true;
  }
  return false;
}

/// The edges of the visible part of a row range, both in pixels from the left.
struct Columns {
  int first;  ///< first visible column
  int end;    ///< one past the last visible column

  /// Includes a row. Only pixels outside the present edges are examined.
  void include(const Bgra* row, int width) {
    if (anyVisible(row, 0, first)) first = static_cast<int>(std::find_if(row, row + first, visible) - row);
    if (anyVisible(row, end, width)) {
      while (!visible(row[width - 1])) --width;
      end = width;
    }
  }
};

OwnedDib trimmed(const BITMAPINFOHEADER* dib, int left, int top, int right, int bottom) {
  const ConstView source = viewOfDepth(dib, 32);
  if (!source || std::min({left, top, right, bottom}) < 0) return nullptr;
  const std::int64_t width = std::int64_t{source.width()} - left - right;
  const std::int64_t height = std::int64_t{source.height()} - top - bottom;
  if (width < 0 || height < 0) return nullptr;
  return makeImage(static_cast<int>(width), static_cast<int>(height), 32, [&](BYTE* row, int y) {
    std::copy_n(pixelsOf(source.row(top + y)) + left, width, pixelsOf(row));
  });
}

/// Eight pixels of a row from x on as mask bits, 1 where they are transparent.
BYTE transparencyBits(const Bgra* row, int x, int width) {
  unsigned bits = 0;
  for (int i = 0; i < std::min(8, width - x); ++i) {
    bits |= (row[x + i].alpha == 0 ? 0x80U : 0U) >> i;
  }
  return static_cast<BYTE>(bits);
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CDIB32::CheckBlankBorder(BITMAPINFOHEADER* image, int* left, int* top, int* right, int* bottom) {
  const View view = viewOfDepth(image, 32);
  if (!view || left == nullptr || top == nullptr || right == nullptr || bottom == nullptr) return;
  const int width = view.width();
  const auto row = [&](int y) { return pixelsOf(view.row(y)); };
  const auto blank = [&](int y) { return !anyVisible(row(y), 0, width); };
  int first = 0;
  while (first < view.lines() && blank(first)) ++first;
  if (first == view.lines()) {
    // The other three outputs are unchanged: an image without a visible pixel has no left or right margin,
    // and hosts recognise the case by the top one.
    *top = view.height();
    return;
  }
  int last = view.height() - 1;
  while (blank(last)) --last;
  Columns columns{width, 0};
  for (int y = first; y <= last; ++y) columns.include(row(y), width);
  *top = first;
  *left = columns.first;
  *right = width - columns.end;
  *bottom = view.height() - 1 - last;
}

BITMAPINFOHEADER* CDIB32::Trim32BitsDIB(BITMAPINFOHEADER* image, int left, int top, int right, int bottom) {
  return trimmed(image, left, top, right, bottom).release();
}

BITMAPINFOHEADER* CDIB32::CreateIconMaskFromAlphaChannel(BITMAPINFOHEADER* image) {
  const View source = viewOfDepth(image, 32);
  if (!source) return nullptr;
  const auto transparency = [&](BYTE* bits, int y) {
    const Bgra* row = pixelsOf(source.row(y));
    for (int x = 0; x < source.width(); x += 8) bits[x / 8] = transparencyBits(row, x, source.width());
  };
  return makeImage(source.width(), source.height(), 1, transparency).release();
}

BITMAPINFOHEADER* CDIB32::CreateParaShadowDIB(BITMAPINFOHEADER* const image, COLORREF colour) {
  const View source = viewOfDepth(image, 32);
  if (!source) return nullptr;
  const DWORD shade = packRgb(fromColorRef(colour));
  const auto silhouette = [&](BYTE* row, int y) {
    const Bgra* from = pixelsOf(source.row(y));
    for (int x = 0; x < source.width(); ++x) {
      putWord(pixelsOf(row), x, (wordAt(from, x) & ~colourBits) | shade);
    }
  };
  return makeImage(source.width(), source.height(), 32, silhouette).release();
}
