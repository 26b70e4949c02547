#include "split/split.h"

#include "cel/mask_on_demand.h"
#include "cel/placed_cel.h"
#include "convert/palette_finish.h"
#include "dib/view.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// The new frame on the canvas without the equal rows and columns at its edges; empty when that is not inside
/// the frame.
Box pieceArea(const Box& frame, const CSpiltEmbededDIB& splitter) {
  const Box area{frame.left + splitter.m_nLeftSame, frame.top + splitter.m_nTopSame,
                 frame.right - splitter.m_nRightSame, frame.bottom - splitter.m_nBottomSame};
  const bool inside = area.left >= frame.left && area.top >= frame.top && area.right <= frame.right &&
                      area.bottom <= frame.bottom;
  return inside && !area.empty() ? area : Box{};
}

/// The rectangle of the new frame that is cut out, compared with the reference frame line by line.
class ChangedPiece {
 public:
  explicit ChangedPiece(const CSpiltEmbededDIB& splitter)
      : reference_(splitter.m_pRefDIB, splitter.m_pRefMask, splitter.m_ptRef),
        next_(splitter.m_pNewDIB, splitter.m_pNewMask, splitter.m_ptNew),
        area_(pieceArea(next_.box(), splitter)),
        opaque_(width(), 1),
        shown_(width(), 1),
        same_(width(), 1),
        flags_(same_.wordsPerRow() * 64) {}

  /// False also for a piece without pixels.
  bool usable() const { return reference_ && next_ && !area_.empty(); }
  int width() const { return static_cast<int>(area_.width()); }
  int height() const { return static_cast<int>(area_.height()); }
  const Box& area() const { return area_; }

  /// Compares line y of the piece.
  /// \return false when a pixel turned from opaque to transparent
  bool compare(int y, bool makeSameTransparent) {
    const std::int64_t canvasY = area_.top + y;
    next_.opaqueBits(canvasY, area_, opaque_.row(0));
    reference_.opaqueBits(canvasY, area_, shown_.row(0));
    std::uint64_t lost = 0;
    for (std::size_t i = 0; i < opaque_.wordsPerRow(); ++i) lost |= shown_.row(0)[i] & ~opaque_.row(0)[i];
    if (lost != 0) return false;
    findSame(canvasY);
    for (std::size_t i = 0; i < opaque_.wordsPerRow(); ++i) {
      const std::uint64_t same = same_.row(0)[i];
      foundSame_ = foundSame_ || same != 0;
      shown_.row(0)[i] = opaque_.row(0)[i] & ~(makeSameTransparent ? same : 0);
    }
    return true;
  }
  bool foundSame() const { return foundSame_; }

  /// Calls run(left, right, opaque, shown) for the runs of the compared line: whether the new frame is opaque
  /// there, and whether the piece will be.
  template <class Run>
  void forEachComparedRun(Run&& run) {
    forEachPairRun(opaque_.row(0), shown_.row(0), width(), run);
  }

  /// The new frame's pixels from column x of the piece on, as blue, green, red bytes.
  const BYTE* bgr(int x, int y, int count) { return next_.bgr(area_.left + x, area_.top + y, count); }
  /// The same for an 8-bit frame, as palette indexes.
  const BYTE* indexes(int x, int y) const {
    return next_.cel().view().row(static_cast<int>(area_.top + y - next_.box().top)) +
           (area_.left + x - next_.box().left);
  }

 private:
  /// Marks where both frames are opaque and of one colour. `shown_` holds the opaque pixels of the reference
  /// frame, which the new one has too.
  void findSame(std::int64_t canvasY) {
    std::fill(flags_.begin(), flags_.end(), BYTE{0});
    forEachRun(shown_.row(0), width(), [&](int left, int right) {
      const BYTE* a = reference_.bgr(area_.left + left, canvasY, right - left);
      const BYTE* b = next_.bgr(area_.left + left, canvasY, right - left);
      for (int x = left; x < right; ++x, a += 3, b += 3) {
        const int difference = (a[0] ^ b[0]) | (a[1] ^ b[1]) | (a[2] ^ b[2]);
        flags_[static_cast<std::size_t>(x)] = static_cast<BYTE>(difference == 0);
      }
    });
    packFlags(flags_.data(), same_.wordsPerRow(), same_.row(0));
  }

  PlacedCel reference_;
  PlacedCel next_;
  Box area_;
  BitGrid opaque_;  ///< pixels of the new frame that are opaque
  BitGrid shown_;   ///< pixels of the piece that are opaque
  BitGrid same_;    ///< pixels of one colour in both frames
  std::vector<BYTE> flags_;
  bool foundSame_ = false;
};

/// The out-parameters of a cut, written only when it has succeeded.
struct Outputs {
  BITMAPINFOHEADER** image;
  BITMAPINFOHEADER** mask;
  POINT* position;
  int* sameFound;

  bool usable() const { return image != nullptr && mask != nullptr && position != nullptr; }
  int give(const ChangedPiece& piece, OwnedDib pieceImage, OwnedDib pieceMask) const {
    *image = pieceImage.release();
    *mask = pieceMask.release();
    *position = {static_cast<LONG>(piece.area().left), static_cast<LONG>(piece.area().top)};
    // Never cleared here: the caller does that.
    if (sameFound != nullptr && piece.foundSame()) *sameFound = 1;
    return 1;
  }
};

/// Cuts line by line and marks the transparent pixels of the piece.
/// \param copyRun copyRun(y, left, right, opaque, shown) writes the piece's pixels
/// \return false when the piece cannot be cut
template <class CopyRun>
bool cutLines(ChangedPiece& piece, bool makeSameTransparent, MaskOnDemand& mask, CopyRun&& copyRun) {
  for (int y = 0; y < piece.height(); ++y) {
    if (!piece.compare(y, makeSameTransparent)) return false;
    piece.forEachComparedRun([&](int left, int right, bool opaque, bool shown) {
      if (!shown) mask.mark(y, left, right);
      copyRun(y, left, right, opaque, shown);
    });
  }
  return !mask.failed();
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

CSpiltEmbededDIB::CSpiltEmbededDIB() = default;
CSpiltEmbededDIB::CSpiltEmbededDIB(const CSpiltEmbededDIB& other) = default;
CSpiltEmbededDIB& CSpiltEmbededDIB::operator=(const CSpiltEmbededDIB& other) = default;
CSpiltEmbededDIB::~CSpiltEmbededDIB() = default;

int CSpiltEmbededDIB::SplitOpacity(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask,
                                   POINT* outPosition, int* outSameFound) const {
  return CropEmbededDIB(outImage, outMask, outPosition, 0, outSameFound);
}

int CSpiltEmbededDIB::SplitTransparency(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask,
                                        POINT* outPosition, int* ignored) const {
  static_cast<void>(ignored);
  return CropEmbededDIB(outImage, outMask, outPosition, 1, nullptr);
}

int CSpiltEmbededDIB::CropEmbededDIB(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask,
                                     POINT* outPosition, int makeSameTransparent, int* outSameFound) const {
  const Outputs outputs{outImage, outMask, outPosition, outSameFound};
  return catchOutOfMemory([&] {
    if (!outputs.usable() || m_pNewDIB == nullptr || m_pNewDIB->biBitCount != Index8::bits) return 0;
    ChangedPiece piece(*this);
    if (!piece.usable()) return 0;
    OwnedDib image =
        createDib(piece.width(), piece.height(), Index8::bits, static_cast<int>(m_pNewDIB->biClrUsed));
    if (!image) return 0;
    copyPalette(m_pNewDIB, image.get());
    const View rows(image.get());
    MaskOnDemand mask(piece.width(), piece.height());
    const auto copyIndexes = [&](int y, int left, int right, bool opaque, bool) {
      if (opaque)
        std::memcpy(rows.row(y) + left, piece.indexes(left, y), static_cast<std::size_t>(right - left));
    };
    if (!cutLines(piece, makeSameTransparent != 0, mask, copyIndexes)) return 0;
    return outputs.give(piece, std::move(image), mask.take());
  });
}

int CSpiltEmbededDIBEx::CropEmbededDIB(BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask,
                                       POINT* outPosition, int makeSameTransparent, int* outSameFound) const {
  const Outputs outputs{outImage, outMask, outPosition, outSameFound};
  return catchOutOfMemory([&] {
    if (!outputs.usable()) return 0;
    ChangedPiece piece(*this);
    if (!piece.usable()) return 0;
    OwnedDib work = createDib(piece.width(), piece.height(), Bgr24::bits, 0);
    if (!work) return 0;
    const View rows(work.get());
    MaskOnDemand mask(piece.width(), piece.height());
    FrameColours colours;
    const auto copyColours = [&](int y, int left, int right, bool, bool shown) {
      if (!shown) return;
      std::memcpy(rows.row(y) + std::ptrdiff_t{left} * 3, piece.bgr(left, y, right - left),
                  static_cast<std::size_t>(right - left) * 3);
      colours.note(rows.row(y), left, right);
    };
    if (!cutLines(piece, makeSameTransparent != 0, mask, copyColours)) return 0;
    OwnedDib image = colours.finish(std::move(work));
    return image ? outputs.give(piece, std::move(image), mask.take()) : 0;
  });
}
