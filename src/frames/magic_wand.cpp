#include <vector>

#include "cel/cel.h"
#include "frames/colour_range.h"
#include "frames/frames.h"
#include "platform/guard.h"
#include "raster/flood_fill.h"
#include "raster/index_rows.h"
#include "raster/placement.h"
#include "raster/region_builder.h"

namespace dibkit {
namespace {

/// Pixels of a line as the wand compares them, blue, green, red: the blue of 16-bit pixels stays at 0 to 31
/// on purpose, so that a tolerance reaches eight times as far in it. Selections that users know depend on it.
const BYTE* wandRow(const Cel& frame, int y, int x, int count, BYTE* buffer) {
  if (frame.bitCount() != Rgb555::bits) return frame.bgr(y, x, count, buffer);
  const BYTE* row = frame.view().row(y);
  for (int i = 0; i < count; ++i) {
    const WORD raw = Rgb555::get(row, x + i);
    Rgb colour = Rgb555::colour(raw);
    colour.blue = static_cast<BYTE>(raw & 0x1F);
    Bgr24::put(buffer, i, colour);
  }
  return buffer;
}

OwnedRegion selectOnCanvas(const Cel& frame, const POINT& position, const POINT& seed, int tolerance,
                           const SIZE& canvas) {
  const Box placed = placedBox(frame.width(), frame.height(), position);
  const Box whole = placedBox(canvas.cx, canvas.cy, POINT{0, 0});
  if (!frame || !whole.contains(seed.x, seed.y)) return nullptr;

  const int seedX = static_cast<int>(std::int64_t{seed.x} - placed.left);
  const int seedY = static_cast<int>(std::int64_t{seed.y} - placed.top);
  const bool opaque = placed.contains(seed.x, seed.y) && !frame.mask().transparent(seedX, seedY);
  Rgb colour;
  if (opaque) {
    BYTE buffer[3];
    colour = Bgr24::get(wandRow(frame, seedY, seedX, 1, buffer), 0);
  }
  const ColourRange range(colour, tolerance);

  const Box visible = intersection(placed, whole);
  const int width = static_cast<int>(visible.width());
  const int frameX = static_cast<int>(visible.left - placed.left);
  std::vector<BYTE> bgr(static_cast<std::size_t>(width) * 3);
  std::vector<BYTE> transparent(static_cast<std::size_t>(width));
  std::vector<BYTE> maskBits(static_cast<std::size_t>(width) / 8 + 1);

  const auto match = [&](int y, BYTE* flags) {
    // Canvas beside the frame is transparent.
    std::fill_n(flags, canvas.cx, static_cast<BYTE>(!opaque));
    if (visible.empty() || y < visible.top || y >= visible.bottom) return;
    const int frameY = static_cast<int>(y - placed.top);
    BYTE* inFrame = flags + visible.left;
    if (opaque) {
      range.match(wandRow(frame, frameY, frameX, width, bgr.data()), width, inFrame);
    } else {
      std::fill_n(inFrame, width, BYTE{0});
    }
    if (const BYTE* marked = frame.mask().row(frameY)) {
      copyRowBits(marked, frameX, width, maskBits.data());
      unpackBits(maskBits.data(), width, transparent.data());
      const BYTE* clear = transparent.data();
      for (int x = 0; x < width; ++x) {
        inFrame[x] = static_cast<BYTE>(opaque ? inFrame[x] & ~clear[x] : clear[x]);
      }
    }
  };
  RegionBuilder builder(canvas.cx, canvas.cy);
  floodFill(canvas.cx, canvas.cy, seed, match,
            [&](int y, int left, int right) { builder.add(y, left, right); });
  return builder.region();
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

HRGN MagicWandRegion(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& position,
                     const POINT& seed, int tolerance, const SIZE& canvas) {
  return orOutOfMemory<HRGN>(
      nullptr, [&] { return selectOnCanvas(Cel(frame, mask), position, seed, tolerance, canvas).release(); });
}
