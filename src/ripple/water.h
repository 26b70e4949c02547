#pragma once

#include "dib/view.h"

namespace dibkit {

/// Sums of heights wrap around when they overflow.
constexpr int wrapped(std::uint32_t value) { return static_cast<int>(value); }
constexpr std::uint32_t bitsOf(int value) { return static_cast<std::uint32_t>(value); }

/// A page of the height field, line by line from the top.
struct HeightPage {
  int* cells;
  int width;
  int height;

  int* line(int y) const { return cells + std::ptrdiff_t{y} * width; }
};

/// Adds `rise` to the cells nearer to (x, y) than `radius`, except the page's outermost ones.
void raiseDisc(const HeightPage& page, std::int64_t x, std::int64_t y, std::int64_t radius, int rise);

/// The height of the library's own drops.
constexpr int dropHeight = 50;

/// The damping of the library's own waves.
constexpr int waveDensity = 5;

/// Adds a drop to the middle of every 100 x 100 cells.
void addDrops(const HeightPage& page);

/// One step of the 3 x 3 wave: `page`, the heights before those of `other`, becomes the heights after them.
/// \param density 0 to 31
void stepWave(const HeightPage& page, const HeightPage& other, int density);
/// One step of the 5 x 5 wave.
void stepBroadWave(const HeightPage& page, const HeightPage& other, int density);

/// The alpha of displaced pixels.
enum class RefractedAlpha {
  full,   ///< 255
  moved,  ///< the pixel's own, displaced with it
};

/// The picture seen through the water. Its outermost pixels are unchanged.
/// \param picture 32 bits, of the page's size
/// \return null when memory runs out
OwnedDib refract(const ConstView& picture, const HeightPage& page, RefractedAlpha alpha);

}  // namespace dibkit
