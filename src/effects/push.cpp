#include <array>

#include "dib/view.h"
#include "effects/effects.h"
#include "effects/piece.h"
#include "raster/mask_rows.h"

namespace dibkit {
namespace {

/// Where the incoming picture comes from: -1 the left or top, 1 the right or bottom, 0 neither.
struct Side {
  int x;
  int y;
};

// In the order of effect 12's styles.
constexpr std::array<Side, 8> sides = {
    {{-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}}};

/// Columns or rows of the frame. Those of [begin, end) may show the incoming picture, from its column or row
/// `source` on; the others show the outgoing picture, moved by `moved`.
struct Axis {
  int begin;
  int end;
  int source;
  int moved;

  bool isIncoming(int position) const { return position >= begin && position < end; }
  /// The outgoing picture's column or row for a position. In [begin, end) it is mirrored, unless nothing
  /// moves along this axis.
  int outgoing(int position) const {
    if (moved == 0) return position;
    return isIncoming(position) ? begin + end - 1 - position : position - moved;
  }
};

/// \param side as in Side; nothing moves along an axis of side 0
Axis axisOf(int extent, int side, int percent) {
  const auto arrived = static_cast<int>(percentOf(extent, percent));
  if (side < 0) return {0, arrived, extent - arrived, arrived};
  if (side > 0) return {extent - arrived, extent, 0, -arrived};
  return {0, extent, 0, 0};
}

/// The frame; null for an unknown direction or pictures of different sizes.
OwnedDib pushFrame(const BITMAPINFOHEADER* incomingDib, const BITMAPINFOHEADER* outgoingDib, long direction,
                   int percent) {
  const ConstView incoming = viewOfDepth(incomingDib, 32);
  const ConstView outgoing = viewOfDepth(outgoingDib, 32);
  const int w = incoming.width();
  const int h = incoming.height();
  if (w == 0 || h == 0 || outgoing.width() != w || outgoing.height() != h) return nullptr;
  if (direction < 0 || direction > 7) return nullptr;
  const Side side = sides[static_cast<std::size_t>(direction)];
  const Axis columns = axisOf(w, side.x, percent);
  const Axis rows = axisOf(h, side.y, percent);
  // The columns beside [begin, end) are all on one side.
  const int restBegin = columns.begin > 0 ? 0 : columns.end;
  const int restEnd = columns.begin > 0 ? columns.begin : w;
  return makeRows(incoming, [&](BYTE* to, int y) {
    const BYTE* out = outgoing.row(rows.outgoing(y));
    if (rows.isIncoming(y)) {
      const BYTE* in = incoming.row(y - rows.begin + rows.source);
      copyPixels(Bgra32::bits, in, columns.source, columns.end - columns.begin, to, columns.begin);
    } else {
      for (int x = columns.begin; x < columns.end; ++x)
        Bgra32::put(to, x, Bgra32::get(out, columns.outgoing(x)));
    }
    copyPixels(Bgra32::bits, out, restBegin - columns.moved, restEnd - restBegin, to, restBegin);
  });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* GenerateRunPushEffect(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                        long direction, long percent) {
  return pushFrame(incoming, outgoing, direction, clampAmount(percent, 0, 100)).release();
}
