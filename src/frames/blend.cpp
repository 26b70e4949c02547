#include "cel/mask_on_demand.h"
#include "cel/placed_cel.h"
#include "convert/palette_finish.h"
#include "dib/allocate.h"
#include "dib/view.h"
#include "frames/frames.h"
#include "kernels/mix.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// The pixels where the upper frame is not opaque.
enum class Beside {
  nothing,     ///< transparent, as in the upper frame's own mask
  lowerFrame,  ///< those of the lower frame; where that is not opaque either, transparent in a new mask
};

struct Composite {
  OwnedDib image;  ///< null when its reduction to a palette ran out of memory
  OwnedDib mask;   ///< the new mask; null when it has no transparent pixel
};

/// Pixels of the upper frame and what is below them.
struct Run {
  PlacedCel& upper;
  PlacedCel* lower;    ///< null where the backdrop is the colour
  const BYTE* colour;  ///< a row of it, 24 bits
  std::int64_t x, y;   ///< on the canvas
  int count;

  const BYTE* backdrop() const { return lower != nullptr ? lower->bgr(x, y, count) : colour; }
  const BYTE* top() const { return upper.bgr(x, y, count); }
};

/// Mixes the pixels of a run at one weight.
struct Mixture {
  MixKernels::Row bytes;
  MixKernels::Row bgra32ToBgr24;  ///< the same without decoding both frames first
  WORD weight;

  void operator()(const Run& run, BYTE* mixed) const {
    const auto is32 = [](const PlacedCel* cel) {
      return cel != nullptr && cel->cel().bitCount() == Bgra32::bits;
    };
    if (is32(&run.upper) && is32(run.lower)) {
      bgra32ToBgr24(run.upper.at(run.x, run.y), run.lower->at(run.x, run.y), run.count, weight, mixed);
    } else {
      bytes(run.top(), run.backdrop(), std::ptrdiff_t{run.count} * 3, weight, mixed);
    }
  }
};

/// Composites two frames inside an area of the canvas, row by row from the top.
/// \param lower may be null; where it is not opaque, the colour is the backdrop of the upper frame
/// \param mix mix(run, mixed) makes the pixels where the upper frame is opaque
/// \return nothing when memory runs out for the image or the mask
template <class Mix>
std::optional<Composite> compositeOver(PlacedCel& upper, PlacedCel* lower, Rgb colour, const Box& area,
                                       Beside beside, Mix&& mix) {
  if (area.width() > INT32_MAX || area.height() > INT32_MAX) return std::nullopt;
  const int width = static_cast<int>(area.width());
  const int height = static_cast<int>(area.height());
  OwnedDib work = createDib(width, height, Bgr24::bits, 0, InitialPixels::unwritten);
  if (!work) return std::nullopt;
  const View target(work.get());
  FrameColours colours;
  if (target.lines() == 0) return Composite{colours.finish(std::move(work)), nullptr};
  std::vector<BYTE> plain(static_cast<std::size_t>(width) * 3);
  for (int x = 0; x < width; ++x) Bgr24::put(plain.data(), x, colour);
  BitGrid opaque(width, 2);
  MaskOnDemand transparent(width, height);
  const bool solid = upper.covers(area) && (lower == nullptr || lower->covers(area));
  const auto compositeLine = [&](int y) {
    BYTE* row = target.row(y);
    const std::int64_t canvasY = area.top + y;
    if (solid) {
      mix(Run{upper, lower, plain.data(), area.left, canvasY, width}, row);
      colours.note(row, 0, width);
      return;
    }
    upper.opaqueBits(canvasY, area, opaque.row(0));
    if (lower != nullptr) lower->opaqueBits(canvasY, area, opaque.row(1));
    forEachPairRun(opaque.row(0), opaque.row(1), width, [&](int left, int right, bool above, bool below) {
      BYTE* out = row + std::ptrdiff_t{left} * 3;
      const auto bytes = static_cast<std::size_t>(right - left) * 3;
      if (!above && !(below && beside == Beside::lowerFrame)) {
        std::memset(out, 0, bytes);
        if (beside == Beside::lowerFrame) transparent.mark(y, left, right);
        return;
      }
      const Run run{upper, below ? lower : nullptr, plain.data(), area.left + left, canvasY, right - left};
      if (above) {
        mix(run, out);
      } else {
        std::memcpy(out, run.backdrop(), bytes);
      }
      colours.note(row, left, right);
    });
  };
  // Colours are noted from the top. When there are too many of them the rest is done in the order of memory.
  int y = 0;
  while (y < target.lines() && !colours.overflowed()) compositeLine(y++);
  for (int rest = target.lines(); rest-- > y;) compositeLine(rest);
  if (transparent.failed()) return std::nullopt;
  return Composite{colours.finish(std::move(work)), transparent.take()};
}

/// Fades the upper frame inside its own box; the out mask is a copy of its mask.
int fadeUpper(PlacedCel& upper, BITMAPINFOHEADER* mask, PlacedCel* lower, DWORD colour, BYTE opacity,
              BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask) {
  const MixKernels& mixing = kernels<MixKernels>();
  std::optional<Composite> composite =
      compositeOver(upper, lower, fromColorRef(colour), upper.box(), Beside::nothing,
                    Mixture{mixing.bytesOver255, mixing.bgra32ToBgr24Over255, opacity});
  if (!composite) return 0;
  *outImage = composite->image.release();
  *outMask = CBitmapCreator::Clone(mask);
  return 1;
}

/// Composites both frames inside an area; the out mask is a new one.
template <class Mix>
int mergeInside(const Box& area, PlacedCel& upper, PlacedCel& lower, DWORD colour, Mix&& mix,
                BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition) {
  std::optional<Composite> composite =
      compositeOver(upper, &lower, fromColorRef(colour), area, Beside::lowerFrame, mix);
  if (!composite) return 0;
  *outImage = composite->image.release();
  *outMask = composite->mask.release();
  *outPosition = {static_cast<LONG>(area.left), static_cast<LONG>(area.top)};
  return 1;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int AlphaBlendByColor(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, DWORD colour, BYTE opacity,
                      BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask) {
  return catchOutOfMemory([&] {
    PlacedCel upper(frame, mask, POINT{0, 0});
    if (!upper || outImage == nullptr || outMask == nullptr) return 0;
    return fadeUpper(upper, mask, nullptr, colour, opacity, outImage, outMask);
  });
}

int AlphaBlendByFrame(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                      BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB, DWORD colour,
                      BYTE opacity, BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask) {
  return catchOutOfMemory([&] {
    PlacedCel upper(frameA, maskA, positionA);
    PlacedCel lower(frameB, maskB, positionB);
    if (!upper || !lower || outImage == nullptr || outMask == nullptr) return 0;
    return fadeUpper(upper, maskA, &lower, colour, opacity, outImage, outMask);
  });
}

int MergeFrames(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                BITMAPINFOHEADER** outImage, BITMAPINFOHEADER** outMask, POINT* outPosition) {
  return catchOutOfMemory([&] {
    PlacedCel upper(frameA, maskA, positionA);
    PlacedCel lower(frameB, maskB, positionB);
    if (!upper || !lower || outImage == nullptr || outMask == nullptr || outPosition == nullptr) return 0;
    const auto takeTop = [](const Run& run, BYTE* mixed) {
      std::memcpy(mixed, run.top(), static_cast<std::size_t>(run.count) * 3);
    };
    return mergeInside(unionOf(upper.box(), lower.box()), upper, lower, 0, takeTop, outImage, outMask,
                       outPosition);
  });
}

int AlphaBlendByFrame2(BITMAPINFOHEADER* frameA, BITMAPINFOHEADER* maskA, const POINT& positionA,
                       BITMAPINFOHEADER* frameB, BITMAPINFOHEADER* maskB, const POINT& positionB,
                       DWORD colour, WORD opacity, const SIZE& canvas, BITMAPINFOHEADER** outImage,
                       BITMAPINFOHEADER** outMask, POINT* outPosition) {
  return catchOutOfMemory([&] {
    PlacedCel upper(frameA, maskA, positionA);
    PlacedCel lower(frameB, maskB, positionB);
    if (!upper || !lower || outImage == nullptr || outMask == nullptr || outPosition == nullptr) return 0;
    const Box area =
        intersection(unionOf(upper.box(), lower.box()), placedBox(canvas.cx, canvas.cy, POINT{0, 0}));
    const MixKernels& mixing = kernels<MixKernels>();
    const Mixture mix{mixing.bytesOver256, mixing.bgra32ToBgr24Over256, opacity};
    return mergeInside(area, upper, lower, colour, mix, outImage, outMask, outPosition);
  });
}
