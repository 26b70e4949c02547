#include "cel/placed_cel.h"
#include "convert/palette_finish.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "frames/colour_range.h"
#include "frames/frames.h"
#include "frames/tint.h"
#include "platform/guard.h"
#include "raster/flood_fill.h"

namespace dibkit {
namespace {

/// A frame decoded to 24 bits for a fill; transparent pixels are black.
class FillWork {
 public:
  FillWork(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask)
      : frame_(dib, mask, POINT{0, 0}), opaque_(width(), 1) {
    if (frame_) image_ = createDib(frame_.cel().width(), height(), Bgr24::bits, 0, InitialPixels::unwritten);
    if (image_) rows_ = View(image_.get());
  }

  bool usable() const { return static_cast<bool>(rows_); }
  /// Pixels of a line; 0 for an image without lines, which needs no buffers, even if its header has a width.
  int width() const { return height() > 0 ? frame_.cel().width() : 0; }
  int height() const { return frame_.cel().height(); }
  int lines() const { return rows_.lines(); }
  BYTE* row(int y) const { return rows_.row(y); }

  /// Bits of the opaque pixels of a line, or of `count` of them from x on; valid until the next call.
  const std::uint64_t* opaque(int y) { return opaque(y, 0, width()); }
  const std::uint64_t* opaque(int y, int x, int count) {
    frame_.opaqueBits(y, placedBox(count, 1, {x, y}), opaque_.row(0));
    return opaque_.row(0);
  }

  void decodeRow(int y) {
    std::memset(row(y), 0, static_cast<std::size_t>(width()) * 3);
    forEachRun(opaque(y), width(), [&](int left, int right) {
      std::memcpy(row(y) + std::ptrdiff_t{left} * 3, frame_.bgr(left, y, right - left),
                  static_cast<std::size_t>(right - left) * 3);
    });
  }

  void noteRow(int y) {
    forEachRun(opaque(y), width(), [&](int left, int right) { colours_.note(row(y), left, right); });
  }

  /// Marks the opaque ones of `count` pixels of a line inside a range, one byte each.
  void match(int y, int x, int count, const ColourRange& range, BYTE* flags) {
    range.match(row(y) + std::ptrdiff_t{x} * 3, count, flags);
    if (!frame_.cel().mask().present()) return;
    const std::uint64_t* bits = opaque(y, x, count);
    for (int i = 0; i < count; ++i) flags[i] = static_cast<BYTE>(flags[i] & (bits[i / 64] >> i % 64));
  }

  OwnedDib finish() { return colours_.finish(std::move(image_)); }

 private:
  PlacedCel frame_;
  BitGrid opaque_;
  OwnedDib image_;
  View rows_;
  FrameColours colours_;
};

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int ExtFillFrame(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill, int percent,
                 int tolerance, BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask) {
  return catchOutOfMemory([&] {
    FillWork work(frame, mask);
    if (!work.usable() || outImage == nullptr || outMask == nullptr) return 0;
    const ColourRange range(fromColorRef(target), tolerance);
    const Tint tint(fromColorRef(fill), percent, work.width());
    BitGrid matched(work.width(), 1);
    std::vector<BYTE> flags(matched.wordsPerRow() * 64);
    for (int y = 0; y < work.lines(); ++y) {
      work.decodeRow(y);
      work.match(y, 0, work.width(), range, flags.data());
      packFlags(flags.data(), matched.wordsPerRow(), matched.row(0));
      forEachRun(matched.row(0), work.width(),
                 [&](int left, int right) { tint.apply(work.row(y), left, right); });
      work.noteRow(y);
    }
    OwnedDib image = work.finish();
    OwnedDib maskCopy(CBitmapCreator::Clone(mask));
    if (mask != nullptr && !maskCopy) return 0;
    *outImage = image.release();
    *outMask = maskCopy.release();
    return 1;
  });
}

int ExtFillAdjacentArea(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD target, DWORD fill,
                        int percent, int tolerance, const POINT& seed, BITMAPINFOHEADER** outImage,
                        BITMAPINFOHEADER** outMask) {
  return catchOutOfMemory([&] {
    FillWork work(frame, mask);
    if (!work.usable() || outImage == nullptr || outMask == nullptr) return 0;
    if (seed.x < 0 || seed.x >= work.width() || seed.y < 0 || seed.y >= work.height()) return 0;
    for (int y = 0; y < work.lines(); ++y) work.decodeRow(y);

    // The results of a flood fill that runs out of memory.
    *outImage = nullptr;
    *outMask = nullptr;
    const ColourRange range(fromColorRef(target), tolerance);
    const Tint tint(fromColorRef(fill), percent, work.width());
    floodFill(
        work.width(), work.height(), seed,
        [&](int y, int x, int count, BYTE* flags) { work.match(y, x, count, range, flags); },
        [&](int y, int left, int right) { tint.apply(work.row(y), left, right); });

    for (int y = 0; y < work.lines(); ++y) work.noteRow(y);
    OwnedDib image = work.finish();
    if (!image) return 0;
    OwnedDib maskCopy(CBitmapCreator::Clone(mask));
    // Without memory for the mask there is no image either, but the result is 1, on purpose: callers test the
    // images.
    if (mask != nullptr && !maskCopy) return 1;
    *outImage = image.release();
    *outMask = maskCopy.release();
    return 1;
  });
}
