#include <algorithm>
#include <vector>

#include "dib/view.h"
#include "effects/effects.h"
#include "effects/piece.h"
#include "kernels/mix.h"
#include "platform/guard.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// Diamonds around the centre; number k extends k steps from it.
struct Diamonds {
  explicit Diamonds(const SIZE& picture)
      : w(picture.cx),
        h(picture.cy),
        centre{picture.cx / 2, picture.cy / 2},
        stepX(std::max<int>(picture.cx / 10, 1)),
        stepY(std::max<int>(picture.cy / 10, 1)) {}

  bool exists(std::int64_t k) const { return k * stepX < 2 * w && k * stepY < 2 * h; }
  /// Whether diamond k contains the whole picture, that is, its farthest corner (x, y) from the centre:
  /// x / halfWidth + y / halfHeight < 1.
  bool covers(std::int64_t k) const {
    const std::int64_t halfWidth = k * stepX;
    const std::int64_t halfHeight = k * stepY;
    return (w - centre.x) * halfHeight + (h - centre.y) * halfWidth < halfWidth * halfHeight;
  }

  std::int64_t w, h;
  POINT centre;
  int stepX, stepY;
};

/// The bands: diamond 1, diamond 3 without diamond 2, diamond 5 without diamond 4 and so on. A last diamond
/// with an even number is left out.
///
/// Each diamond is inside the next one, so a pixel is in a band when an odd number of diamonds contain it.
/// That is the even-odd rule, so one polygon draws them all; the line from each diamond to the next has no
/// effect, because it is drawn twice. Pairs of diamonds that contain the whole picture are left out.
OwnedRegion bandRegion(const SIZE& picture) {
  const Diamonds diamonds(picture);
  std::vector<POINT> points;
  const auto addDiamond = [&](int k) {
    const int x = k * diamonds.stepX;
    const int y = k * diamonds.stepY;
    const auto [cx, cy] = diamonds.centre;
    const POINT top{cx, cy - y};
    points.insert(points.end(), {top, {cx + x, cy}, {cx, cy + y}, {cx - x, cy}, top});
  };
  addDiamond(1);
  for (int k = 3; diamonds.exists(k) && !diamonds.covers(k - 2); k += 2) {
    addDiamond(k - 1);
    addDiamond(k);
  }
  return OwnedRegion(CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE));
}

/// The weight of the outgoing picture where the frame fades, modulo 256 for a percentage outside 0 to 100.
BYTE weightAt(int percent) {
  const std::int64_t end = percent > 50 ? 100 : 50;
  return lowByte((end - percent) * 255 / 50);
}

void copyAsOpaque(BYTE* to, const BYTE* from, int count) {
  for (int i = 0; i < count; ++i) Bgra32::put(to, i, Bgra32::get(from, i) | opaqueAlpha);
}

/// The rows of the outgoing picture, or of a single colour.
class OutgoingRows {
 public:
  /// The outgoing picture's pixels in rows of the incoming picture's width; not valid when it has fewer
  /// pixels.
  OutgoingRows(const ConstView& outgoing, const ConstView& incoming) : stride_(incoming.stride()) {
    const std::int64_t needed = incoming.stride() * std::int64_t{incoming.height()};
    if (!outgoing || outgoing.stride() * std::int64_t{outgoing.height()} < needed) return;
    bottom_ = outgoing.row(outgoing.height() - 1);
  }
  OutgoingRows(Rgb colour, const ConstView& incoming)
      : plain_(static_cast<std::size_t>(incoming.width()), packRgb(colour)),
        bottom_(reinterpret_cast<const BYTE*>(plain_.data())) {}

  OutgoingRows(const OutgoingRows&) = delete;
  OutgoingRows& operator=(const OutgoingRows&) = delete;

  bool valid() const { return bottom_ != nullptr; }
  /// \param fromBottom number of the row, 0 at the bottom
  const BYTE* row(int fromBottom) const { return bottom_ + fromBottom * stride_; }

 private:
  std::vector<DWORD> plain_;
  const BYTE* bottom_ = nullptr;
  std::ptrdiff_t stride_ = 0;
};

/// The frame; null for unusable pictures.
OwnedDib diamondFrame(const ConstView& incoming, const OutgoingRows& outgoing, int percent) {
  const SIZE size{incoming.width(), incoming.height()};
  if (!outgoing.valid() || size.cx == 0 || size.cy == 0) return nullptr;
  const OwnedRegion region = bandRegion(size);
  const RegionSpans bands(region.get());
  if (!bands.valid()) return nullptr;
  const BYTE weight = weightAt(percent);
  return makeRows(incoming, [&](BYTE* to, int y) {
    const BYTE* in = incoming.row(y);
    const BYTE* out = outgoing.row(size.cy - 1 - y);
    // The whole row fades; what does not is copied over it.
    kernels<MixKernels>().opaqueOver255(out, in, size.cx, weight, to);
    const auto leave = [](int, int) {};
    const auto copy = [to](const BYTE* from) {
      return [to, from](int left, int right) {
        const std::ptrdiff_t offset = std::ptrdiff_t{left} * 4;
        copyAsOpaque(to + offset, from + offset, right - left);
      };
    };
    // First the bands fade, then the gaps between them.
    if (percent <= 50) {
      bands.splitRow(y, 0, size.cx, leave, copy(out));
    } else {
      bands.splitRow(y, 0, size.cx, copy(in), leave);
    }
  });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* DiamondEffectDIB(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                   unsigned long colour, int useColour, int percent) {
  return catchOutOfMemory([&] {
    const ConstView in = viewOfDepth(static_cast<const BITMAPINFOHEADER*>(incoming), 32);
    const ConstView out = viewOfDepth(static_cast<const BITMAPINFOHEADER*>(outgoing), 32);
    return diamondFrame(in,
                        useColour != 0 ? OutgoingRows(fromColorRef(static_cast<DWORD>(colour)), in)
                                       : OutgoingRows(out, in),
                        percent)
        .release();
  });
}
