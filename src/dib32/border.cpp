#include <algorithm>

#include "dib/allocate.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"

namespace dibkit {
namespace {

bool visible(const Bgra& pixel) { return pixel.alpha != 0; }

/// Whether some pixel of [begin, end) is visible; looks at blocks whole, without a branch per pixel.
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

  /// Takes in a row: looks only at what lies outside so far.
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
  OwnedDib result = createDib(static_cast<int>(width), static_cast<int>(height), 32, 0, Pixels::unwritten);
  if (!result) return nullptr;
  const View view(result.get());
  for (int y = 0; y < view.height(); ++y) {
    std::copy_n(pixelsOf(source.row(top + y)) + left, view.width(), pixelsOf(view.row(y)));
  }
  return result;
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

void CDIB32::CheckBlankBorder(BITMAPINFOHEADER* image, int* left, int* top, int* right, int* bottom) {
  const dibkit::View view = dibkit::viewOfDepth(image, 32);
  if (!view || left == nullptr || top == nullptr || right == nullptr || bottom == nullptr) return;
  const auto row = [&](int y) { return dibkit::pixelsOf(view.row(y)); };
  const int width = view.width();
  int first = 0;
  while (first < view.height() && !dibkit::anyVisible(row(first), 0, width)) ++first;
  *top = first;
  // The other three keep what they hold: an image without a visible pixel has no left or right margin to
  // speak of, and hosts tell the case by the top one.
  if (first == view.height()) return;

  int last = view.height() - 1;
  while (!dibkit::anyVisible(row(last), 0, width)) --last;
  dibkit::Columns columns{width, 0};
  for (int y = first; y <= last; ++y) columns.include(row(y), width);
  *left = columns.first;
  *right = width - columns.end;
  *bottom = view.height() - 1 - last;
}

BITMAPINFOHEADER* CDIB32::Trim32BitsDIB(BITMAPINFOHEADER* image, int left, int top, int right, int bottom) {
  return dibkit::trimmed(image, left, top, right, bottom).release();
}

BITMAPINFOHEADER* CDIB32::CreateIconMaskFromAlphaChannel(BITMAPINFOHEADER* image) {
  const dibkit::View source = dibkit::viewOfDepth(image, 32);
  if (!source) return nullptr;
  dibkit::OwnedDib mask = dibkit::createDib(source.width(), source.height(), 1, 0, dibkit::Pixels::unwritten);
  if (!mask) return nullptr;
  const dibkit::View bits(mask.get());
  for (int y = 0; y < source.height(); ++y) {
    const dibkit::Bgra* row = dibkit::pixelsOf(source.row(y));
    for (int x = 0; x < source.width(); x += 8) {
      bits.row(y)[x / 8] = dibkit::transparencyBits(row, x, source.width());
    }
  }
  return mask.release();
}

BITMAPINFOHEADER* CDIB32::CreateParaShadowDIB(BITMAPINFOHEADER* const image, COLORREF colour) {
  const dibkit::View source = dibkit::viewOfDepth(image, 32);
  if (!source) return nullptr;
  dibkit::OwnedDib shadow =
      dibkit::createDib(source.width(), source.height(), 32, 0, dibkit::Pixels::unwritten);
  if (!shadow) return nullptr;
  const dibkit::View view(shadow.get());
  const DWORD shade = dibkit::entryKey(dibkit::fromColorRef(colour));
  for (int y = 0; y < source.height(); ++y) {
    const dibkit::Bgra* from = dibkit::pixelsOf(source.row(y));
    dibkit::Bgra* to = dibkit::pixelsOf(view.row(y));
    for (int x = 0; x < source.width(); ++x) {
      dibkit::putWord(to, x, (dibkit::wordAt(from, x) & ~dibkit::colourBits) | shade);
    }
  }
  return shadow.release();
}
