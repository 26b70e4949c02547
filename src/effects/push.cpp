#include <array>
#include <cstring>

#include "dib/allocate.h"
#include "dib/view.h"
#include "effects/effects.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

/// Where the incoming picture comes from: -1 the left or top, 1 the right or bottom, 0 neither.
struct Side {
  int x;
  int y;
};

// Numbered as the sliding effect numbers them.
constexpr std::array<Side, 8> sides = {
    {{-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}}};

/// Places along one axis. Those of [begin, end) lie beside the incoming picture, whose places from `source`
/// on they are; the others show the outgoing picture, pushed by `moved`.
struct Axis {
  int begin;
  int end;
  int source;
  int moved;

  bool isBeside(int place) const { return place >= begin && place < end; }
  /// The outgoing picture's place that shows. Where it has left room beside the incoming one, its mirror
  /// image continues it; along an axis on which nothing moves it stays where it is.
  int pushed(int place) const {
    if (moved == 0) return place;
    return isBeside(place) ? begin + end - 1 - place : place - moved;
  }
};

/// \param side as in Side; 0 is an axis along which nothing is pushed
Axis axisOf(int extent, int side, int percent) {
  const auto arrived = static_cast<int>(percentOf(extent, percent));
  if (side < 0) return {0, arrived, extent - arrived, arrived};
  if (side > 0) return {extent - arrived, extent, 0, -arrived};
  return {0, extent, 0, 0};
}

void copyPixels(BYTE* to, int toX, const BYTE* from, int fromX, int count) {
  std::memcpy(to + std::ptrdiff_t{toX} * 4, from + std::ptrdiff_t{fromX} * 4,
              static_cast<std::size_t>(count) * 4);
}

/// The push transition. Holds its two pictures for one frame only.
class CRunPushEffect {
 public:
  CRunPushEffect(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, long direction,
                 long percent)
      : incoming_(viewOfDepth(incoming, 32)),
        outgoing_(viewOfDepth(outgoing, 32)),
        direction_(direction),
        percent_(clampAmount(percent, 0, 100)) {}

  /// The frame; null for an unknown direction or pictures that don't match.
  OwnedDib compose() const {
    if (!incoming_ || !outgoing_ || direction_ < 0 || direction_ > 7) return nullptr;
    if (incoming_.width() == 0 || incoming_.height() == 0) return nullptr;
    const int w = incoming_.width();
    const int h = incoming_.height();
    if (outgoing_.width() != w || outgoing_.height() != h) return nullptr;
    OwnedDib frame = createDib(w, h, 32, 0, InitialPixels::unwritten);
    if (!frame) return nullptr;
    const Side side = sides[static_cast<std::size_t>(direction_)];
    const Axis x = axisOf(w, side.x, percent_);
    const Axis y = axisOf(h, side.y, percent_);
    const View to(frame.get());
    for (int line = 0; line < h; ++line) composeRow(to.row(line), line, x, y);
    return frame;
  }

 private:
  void composeRow(BYTE* to, int line, const Axis& x, const Axis& y) const {
    const BYTE* pushed = outgoing_.row(y.pushed(line));
    if (y.isBeside(line)) {
      copyPixels(to, x.begin, incoming_.row(line - y.begin + y.source), x.source, x.end - x.begin);
    } else {
      for (int place = x.begin; place < x.end; ++place)
        Bgra32::put(to, place, Bgra32::get(pushed, x.pushed(place)));
    }
    // The rest of the row lies on one side only.
    const int restBegin = x.begin > 0 ? 0 : x.end;
    const int restEnd = x.begin > 0 ? x.begin : incoming_.width();
    copyPixels(to, restBegin, pushed, restBegin - x.moved, restEnd - restBegin);
  }

  ConstView incoming_;
  ConstView outgoing_;
  long direction_;
  int percent_;
};

}  // namespace
}  // namespace dibkit

using namespace dibkit;

BITMAPINFOHEADER* GenerateRunPushEffect(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                                        long direction, long percent) {
  return CRunPushEffect(incoming, outgoing, direction, percent).compose().release();
}
