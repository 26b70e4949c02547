#include <algorithm>

#include "dib/allocate.h"
#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "kernels/blend.h"
#include "kernels/copy.h"
#include "raster/placement.h"

namespace dibkit {
namespace {

/// A new transparent black image that covers two boxes. Null when it would be too large or memory runs out.
struct Canvas {
  OwnedDib dib;
  POINT origin{0, 0};

  /// \param first the box whose pixels are written first, all of them; the image is not cleared for it if
  /// that is all of the image
  explicit Canvas(const Box& box, const Box& first = {})
      : origin{static_cast<LONG>(box.left), static_cast<LONG>(box.top)} {
    if (box.width() <= INT32_MAX && box.height() <= INT32_MAX) {
      const bool isWhole = first.width() == box.width() && first.height() == box.height();
      dib = createDib(static_cast<int>(box.width()), static_cast<int>(box.height()), 32, 0,
                      isWhole ? InitialPixels::unwritten : InitialPixels::cleared);
    }
  }

  Placed<BYTE> placed() const { return {View(dib.get()), origin}; }

  /// Calls row(to, from, count) for every row of the part under the image.
  template <class Row>
  void forEachRowUnder(const Placed<BYTE>& image, Row&& row) const {
    forEachCommonRow([&](int count, BYTE* to, const BYTE* from) { row(pixelsOf(to), pixelsOf(from), count); },
                     placed(), image);
  }

  void paste(const Placed<BYTE>& image) const {
    forEachRowUnder(image, [](Bgra* to, const Bgra* from, int count) { std::copy_n(from, count, to); });
  }

  void fill(const RECT& rect, const Bgra& pixel) const {
    const Box inside = intersection(placed().box(), toBox(rect));
    const View view = placed().view;
    for (std::int64_t y = inside.top; y < inside.bottom; ++y) {
      Bgra* row = pixelsOf(view.row(static_cast<int>(y - origin.y)));
      std::fill_n(row + (inside.left - origin.x), inside.width(), pixel);
    }
  }

  /// Transfers the image and its origin to the caller.
  BOOL release(BITMAPINFOHEADER** out, POINT* outOrigin) {
    *out = dib.release();
    *outOrigin = origin;
    return *out != nullptr;
  }
};

/// Sets byte 12 of a row to 255 if some pixel of the row is visible. In a row of fewer than four pixels that
/// byte is outside the row, in one further up the picture; above the top row it is dropped. Deliberate: hosts
/// rely on these bytes.
void markVisibleRows(const Canvas& canvas, const Placed<BYTE>& image) {
  constexpr std::ptrdiff_t markedByte = 12;
  const View view = canvas.placed().view;
  const std::ptrdiff_t left = std::ptrdiff_t{image.origin.x} - canvas.origin.x;
  const BYTE* end = view.height() > 0 ? view.row(0) + view.stride() : nullptr;
  canvas.forEachRowUnder(image, [&](Bgra* to, const Bgra* from, int count) {
    BYTE* row = reinterpret_cast<BYTE*>(to - left);
    if (end - row <= markedByte) return;
    if (std::any_of(from, from + count, [](const Bgra& pixel) { return pixel.alpha != 0; })) {
      row[markedByte] = 255;
    }
  });
}

void pasteVisibleColours(const Canvas& canvas, const Placed<BYTE>& image) {
  canvas.forEachRowUnder(image, [](Bgra* to, const Bgra* from, int count) {
    for (int i = 0; i < count; ++i) {
      const DWORD pixel = wordAt(from, i);
      putWord(to, i, pixel > colourBits ? pixel & colourBits : wordAt(to, i));
    }
  });
}

void pasteVisible(const Canvas& canvas, const Placed<BYTE>& image) {
  canvas.forEachRowUnder(image, [](Bgra* to, const Bgra* from, int count) {
    for (int i = 0; i < count; ++i) {
      const DWORD pixel = wordAt(from, i);
      putWord(to, i, pixel > colourBits ? pixel : wordAt(to, i));
    }
  });
}

/// The operations that write their out parameters in every case and refuse an empty union. They differ in
/// draw(canvas), which begins with all pixels of the first box.
template <class Draw>
BOOL mergeInto(bool usable, const Box& first, const Box& second, BITMAPINFOHEADER** out, POINT* outOrigin,
               Draw&& draw) {
  if (out == nullptr || outOrigin == nullptr) return FALSE;
  const Box box = unionOf(first, second);
  *out = nullptr;
  *outOrigin = {static_cast<LONG>(box.left), static_cast<LONG>(box.top)};
  if (!usable || box.empty()) return FALSE;
  Canvas canvas(box, first);
  if (!canvas.dib) return FALSE;
  draw(canvas);
  return canvas.release(out, outOrigin);
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BOOL CDIB32::CombineDIBs(BITMAPINFOHEADER* bottom, const POINT& bottomOrigin, BYTE bottomReduction,
                         BITMAPINFOHEADER* top, const POINT& topOrigin, BYTE topReduction,
                         BITMAPINFOHEADER** out, POINT* outOrigin) {
  const auto below = placedOfDepth(bottom, 32, bottomOrigin);
  const auto above = placedOfDepth(top, 32, topOrigin);
  if (!below.view || !above.view || out == nullptr || outOrigin == nullptr) return FALSE;
  Canvas canvas(unionOf(below.box(), above.box()), below.box());
  if (!canvas.dib) return FALSE;
  forEachCommonStretch(
      [=](int count, BYTE* to, const BYTE* from) {
        kernels<CopyKernels>().lowered(to, from, count, bottomReduction);
      },
      canvas.placed(), below);
  forEachCommonStretch(
      [=](int count, BYTE* to, const BYTE* from) {
        kernels<BlendKernels>().over(to, from, count, {topReduction}, nullptr);
      },
      canvas.placed(), above);
  return canvas.release(out, outOrigin);
}

BOOL CDIB32::Merge32DIBs(BITMAPINFOHEADER* first, const POINT& firstOrigin, BITMAPINFOHEADER* second,
                         const POINT& secondOrigin, BITMAPINFOHEADER** out, POINT* outOrigin) {
  const auto below = placedOfDepth(first, 32, firstOrigin);
  const auto above = placedOfDepth(second, 32, secondOrigin);
  if (!below.view || !above.view || out == nullptr || outOrigin == nullptr) return FALSE;
  Canvas canvas(unionOf(below.box(), above.box()));
  if (!canvas.dib) return FALSE;
  pasteVisibleColours(canvas, below);
  pasteVisibleColours(canvas, above);
  // The marks are written before the colours and remain visible: a visible fourth pixel is followed by its
  // own row's mark, and the pixels that a narrow row's mark changes are further up and are already done.
  markVisibleRows(canvas, below);
  markVisibleRows(canvas, above);
  return canvas.release(out, outOrigin);
}

BOOL CDIB32::Merge32BitsDIB(BITMAPINFOHEADER* bottom, POINT& bottomOrigin, BITMAPINFOHEADER* top,
                            POINT& topOrigin, BITMAPINFOHEADER** out, POINT* outOrigin) {
  const auto below = placedOfDepth(bottom, 32, bottomOrigin);
  const auto above = placedOfDepth(top, 32, topOrigin);
  return mergeInto(below.view && above.view, below.box(), above.box(), out, outOrigin,
                   [&](const Canvas& canvas) {
                     canvas.paste(below);
                     pasteVisible(canvas, above);
                   });
}

BOOL CDIB32::Merge32BitsDIB(BITMAPINFOHEADER* image, POINT& origin, const RECT& rect, BITMAPINFOHEADER** out,
                            POINT* outOrigin) {
  const auto placed = placedOfDepth(image, 32, origin);
  return mergeInto(bool{placed.view}, placed.box(), toBox(rect), out, outOrigin, [&](const Canvas& canvas) {
    canvas.paste(placed);
    canvas.fill(rect, {});
  });
}

BOOL CDIB32::Merge32BitsDIB(BITMAPINFOHEADER* image, POINT& origin, COLORREF colour, const RECT& rect,
                            BITMAPINFOHEADER** out, POINT* outOrigin) {
  const auto placed = placedOfDepth(image, 32, origin);
  return mergeInto(bool{placed.view}, toBox(rect), placed.box(), out, outOrigin, [&](const Canvas& canvas) {
    canvas.fill(rect, withAlpha(fromColorRef(colour), 255));
    canvas.paste(placed);
  });
}
