#include <algorithm>
#include <vector>

#include "dib/allocate.h"
#include "dib/view.h"
#include "effects/effects.h"
#include "effects/piece.h"
#include "platform/guard.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// Diamonds about the centre, number k reaching k steps out.
struct Diamonds {
  explicit Diamonds(const SIZE& picture)
      : w(picture.cx),
        h(picture.cy),
        centre{picture.cx / 2, picture.cy / 2},
        stepX(std::max<int>(picture.cx / 10, 1)),
        stepY(std::max<int>(picture.cy / 10, 1)) {}

  bool exists(std::int64_t k) const { return k * stepX < 2 * w && k * stepY < 2 * h; }
  /// Whether diamond k holds the whole picture: whether the farthest corner lies inside it.
  bool covers(std::int64_t k) const {
    const std::int64_t reachX = k * stepX;
    const std::int64_t reachY = k * stepY;
    return (w - centre.x) * reachY + (h - centre.y) * reachX < reachX * reachY;
  }

  std::int64_t w, h;
  POINT centre;
  int stepX, stepY;
};

/// The bands: the first diamond, and from the third on every odd one without the one before it. The last
/// diamond counts only when its number is odd.
///
/// Since each diamond lies in the next one, a pixel is in a band when it lies in an odd number of diamonds,
/// and the even-odd rule counts just that when all are drawn as one polygon; the line that leads from each to
/// the next is crossed twice. Diamonds that hold the whole picture may be left out in pairs.
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

constexpr DWORD opaque = 0xFF000000;

/// The weight of the outgoing picture where the frame fades. Its low byte, so that a percentage outside 0 to
/// 100 is a weight too.
BYTE weightAt(int percent) {
  const std::int64_t end = percent > 50 ? 100 : 50;
  return lowByte((end - percent) * 255 / 50);
}

/// byte = (outgoing * weight + incoming * (255 - weight)) / 255, truncated; opaque.
void mixPixels(BYTE* to, const BYTE* in, const BYTE* out, int count, int weight) {
  const int rest = 255 - weight;
  for (int i = 0; i < count * 4; ++i) {
    to[i] = static_cast<BYTE>(static_cast<std::uint16_t>(out[i] * weight + in[i] * rest) / 255);
  }
  for (int i = 0; i < count; ++i) to[i * 4 + 3] = 255;
}

void copyAsOpaque(BYTE* to, const BYTE* from, int count) {
  for (int i = 0; i < count; ++i) Bgra32::put(to, i, Bgra32::get(from, i) | opaque);
}

/// The rows of the outgoing picture, or those of a plain colour, which are all one.
class OutgoingRows {
 public:
  /// Rows of the incoming picture's size, whatever size the outgoing one has; not valid when it has fewer
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
  /// \param fromBottom number of the row in memory
  const BYTE* row(int fromBottom) const { return bottom_ + fromBottom * stride_; }

 private:
  std::vector<DWORD> plain_;
  const BYTE* bottom_ = nullptr;
  std::ptrdiff_t stride_ = 0;
};

/// The diamond transition. Holds its pictures for one frame only.
class CDiamondEffect {
 public:
  CDiamondEffect(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, DWORD colour,
                 bool useColour, int percent)
      : percent_(percent),
        incoming_(viewOfDepth(incoming, 32)),
        outgoing_(viewOfDepth(outgoing, 32)),
        colour_(fromColorRef(colour)),
        useColour_(useColour) {}

  OwnedDib compose() const {
    if (!incoming_ || incoming_.width() == 0 || incoming_.height() == 0) return nullptr;
    const OutgoingRows outgoing =
        useColour_ ? OutgoingRows(colour_, incoming_) : OutgoingRows(outgoing_, incoming_);
    if (!outgoing.valid()) return nullptr;
    const SIZE size{incoming_.width(), incoming_.height()};
    OwnedDib frame = createDib(size.cx, size.cy, 32, 0, InitialPixels::unwritten);
    if (!frame) return nullptr;
    const OwnedRegion region = bandRegion(size);
    const RegionSpans bands(region.get());
    if (!bands.valid()) return nullptr;
    const View to(frame.get());
    for (int y = 0; y < size.cy; ++y) {
      composeRow(to.row(y), incoming_.row(y), outgoing.row(size.cy - 1 - y), y, bands);
    }
    return frame;
  }

 private:
  void composeRow(BYTE* to, const BYTE* in, const BYTE* out, int y, const RegionSpans& bands) const {
    const auto mix = [&](int left, int right) {
      const std::ptrdiff_t offset = std::ptrdiff_t{left} * 4;
      mixPixels(to + offset, in + offset, out + offset, right - left, weightAt(percent_));
    };
    const auto keep = [to](const BYTE* from) {
      return [to, from](int left, int right) {
        const std::ptrdiff_t offset = std::ptrdiff_t{left} * 4;
        copyAsOpaque(to + offset, from + offset, right - left);
      };
    };
    // The bands fade first, the gaps afterwards.
    if (percent_ <= 50) {
      bands.splitRow(y, 0, incoming_.width(), mix, keep(out));
    } else {
      bands.splitRow(y, 0, incoming_.width(), keep(in), mix);
    }
  }

  int percent_;
  ConstView incoming_;
  ConstView outgoing_;
  Rgb colour_;
  bool useColour_;
};

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* DiamondEffectDIB(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                   unsigned long colour, int useColour, int percent) {
  return orOutOfMemory<BITMAPINFOHEADER*>(nullptr, [&] {
    return CDiamondEffect(incoming, outgoing, static_cast<DWORD>(colour), useColour != 0, percent)
        .compose()
        .release();
  });
}
