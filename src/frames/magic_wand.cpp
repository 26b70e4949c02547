#include <algorithm>
#include <array>

#include "cel/placed_cel.h"
#include "frames/colour_range.h"
#include "frames/frames.h"
#include "platform/guard.h"
#include "raster/flood_fill.h"
#include "raster/region_builder.h"

namespace dibkit {
namespace {

/// Pixels of a line as the wand compares them, blue, green, red. The blue of 16-bit pixels is 0 to 31, not
/// scaled, so that a tolerance covers eight times as much of it, on purpose: existing selections depend on
/// it.
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

OwnedRegion selectOnCanvas(PlacedCel& frame, const POINT& seed, int tolerance, const SIZE& canvas) {
  const Box whole = placedBox(canvas.cx, canvas.cy, POINT{0, 0});
  if (!frame || !whole.contains(seed.x, seed.y)) return nullptr;

  std::array<BYTE, std::size_t{floodBlock} * 3> buffer;
  const auto rowAt = [&](int x, int y, int count) {
    return wandRow(frame.cel(), static_cast<int>(y - frame.box().top), static_cast<int>(x - frame.box().left),
                   count, buffer.data());
  };
  // Of the seed alone: a canvas may be far wider than the memory that the fill can have.
  std::uint64_t seedBits = 0;
  frame.opaqueBits(seed.y, placedBox(1, 1, seed), &seedBits);
  const bool seedIsOpaque = seedBits != 0;
  const ColourRange range(seedIsOpaque ? Bgr24::get(rowAt(seed.x, seed.y, 1), 0) : Rgb{}, tolerance);

  const auto match = [&](int y, int x, int count, BYTE* flags) {
    std::fill_n(flags, count, static_cast<BYTE>(!seedIsOpaque));
    std::uint64_t opaque[floodBlock / 64];
    frame.opaqueBits(y, placedBox(count, 1, {x, y}), opaque);
    forEachRun(opaque, count, [&](int left, int right) {
      if (seedIsOpaque) {
        range.match(rowAt(x + left, y, right - left), right - left, flags + left);
      } else {
        std::fill(flags + left, flags + right, BYTE{0});
      }
    });
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
  return catchOutOfMemory([&] {
    PlacedCel placed(frame, mask, position);
    return selectOnCanvas(placed, seed, tolerance, canvas).release();
  });
}
