#include "cel/cel.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "frames/frames.h"
#include "platform/guard.h"
#include "raster/placement.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// The bounding box of a region and its overlap with an image.
struct Cut {
  Cut(const RECT& regionBox, const ConstView& source)
      : box(toBox(regionBox)),
        overlap(overlapOf<2>({box, placedBox(source.width(), source.height(), POINT{0, 0})})) {}

  int width() const { return static_cast<int>(std::min<std::int64_t>(box.width(), INT32_MAX)); }
  int height() const { return static_cast<int>(std::min<std::int64_t>(box.height(), INT32_MAX)); }

  Box box;
  Overlap<2> overlap;
  const Overlap<2>::Start& inPiece() const { return overlap.start[0]; }
  const Overlap<2>::Start& inSource() const { return overlap.start[1]; }
  /// Whether the source covers the whole box, so that every pixel of the piece is written.
  bool whole() const { return overlap.width == box.width() && overlap.height == box.height(); }
};

OwnedDib cropPixels(const BITMAPINFOHEADER* dib, const ConstView& source, const Cut& cut) {
  const int bitCount = source.bitCount();
  // Pixels of a depth that no DIB has stay 0: only header, palette and mask of such a frame can be cut.
  OwnedDib piece =
      createDib(cut.width(), cut.height(), bitCount, static_cast<int>(dib->biClrUsed),
                cut.whole() && hasFormat(bitCount) ? InitialPixels::unwritten : InitialPixels::cleared);
  if (!piece) return nullptr;
  copyPalette(dib, piece.get());
  const View target(piece.get());
  for (int y = cut.overlap.height; y-- > 0;) {  // in the order of memory
    copyPixels(bitCount, source.row(cut.inSource().y + y), cut.inSource().x, cut.overlap.width,
               target.row(cut.inPiece().y + y), cut.inPiece().x);
  }
  return piece;
}

/// Writes the mask of a piece, whose bits are still 0. Transparent pixels are those that the frame's mask
/// marks, those outside the region, and those outside the frame.
/// \return whether any pixel is transparent
bool cropMask(const Cel& frame, const RegionSpans& region, const Cut& cut, const View& mask) {
  const int left = static_cast<int>(cut.box.left);
  const int begin = cut.inPiece().x;
  const int end = begin + cut.overlap.width;
  bool found = !cut.whole();
  for (int y = 0; y < mask.height(); ++y) {
    BYTE* row = mask.row(y);
    const int inOverlap = y - cut.inPiece().y;
    if (inOverlap < 0 || inOverlap >= cut.overlap.height) {
      fillMaskRow(row, 0, mask.width(), true);
      continue;
    }
    const int sourceY = cut.inSource().y + inOverlap;
    if (const BYTE* marked = frame.mask().row(sourceY)) {
      copyPixels(1, marked, cut.inSource().x, cut.overlap.width, row, begin);
      found = found || std::any_of(row, row + mask.stride(), [](BYTE bits) { return bits != 0; });
    }
    fillMaskRow(row, 0, begin, true);
    fillMaskRow(row, end, mask.width(), true);
    region.splitRow(
        sourceY, left + begin, left + end, [](int, int) {},
        [&](int x0, int x1) {
          fillMaskRow(row, x0 - left, x1 - left, true);
          found = true;
        });
  }
  return found;
}

OwnedDib crop32(const ConstView& source, const RegionSpans& region) {
  if (!source || !region.valid()) return nullptr;
  const Cut cut(region.box(), source);
  OwnedDib piece = createDib(cut.width(), cut.height(), 32, 0,
                             cut.whole() ? InitialPixels::unwritten : InitialPixels::cleared);
  if (!piece) return nullptr;
  const View target(piece.get());
  const int left = static_cast<int>(cut.box.left);
  for (int y = cut.overlap.height; y-- > 0;) {  // in the order of memory
    const int sourceY = cut.inSource().y + y;
    const BYTE* from = source.row(sourceY);
    BYTE* to = target.row(cut.inPiece().y + y);
    region.splitRow(
        sourceY, cut.inSource().x, cut.inSource().x + cut.overlap.width,
        [&](int x0, int x1) {
          std::memcpy(to + std::ptrdiff_t{x0 - left} * 4, from + std::ptrdiff_t{x0} * 4,
                      static_cast<std::size_t>(x1 - x0) * 4);
        },
        [&](int x0, int x1) {
          for (int x = x0; x < x1; ++x) Bgra32::put(to, x - left, Bgra32::get(from, x) & 0x00FFFFFF);
        });
  }
  return piece;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CropFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, HRGN region, BITMAPINFOHEADER** outImage,
              BITMAPINFOHEADER** outMask) {
  const Cel source(frame, mask);
  const RegionSpans spans(region);
  if (!source || !spans.valid() || outImage == nullptr || outMask == nullptr) return 0;

  const Cut cut(spans.box(), source.view());
  OwnedDib piece = cropPixels(frame, source.view(), cut);
  if (!piece) return 0;
  OwnedDib pieceMask = createMask(cut.width(), cut.height());
  if (!pieceMask) return 0;
  if (!cropMask(source, spans, cut, View(pieceMask.get()))) pieceMask.reset();
  *outImage = piece.release();
  *outMask = pieceMask.release();
  return 1;
}

BITMAPINFOHEADER* Crop32BitsDIB(BITMAPINFOHEADER* image, HRGN region) {
  return crop32(ConstView(image, 32), RegionSpans(region)).release();
}
