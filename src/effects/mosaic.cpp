#include <cstdlib>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "effects/full_coverage.h"
#include "effects/numbered.h"
#include "effects/ordered_pool.h"
#include "effects/piece.h"
#include "frames/frames.h"
#include "raster/region_spans.h"

namespace dibkit {
namespace {

/// Cells of a tenth of the picture's width and height. An eleventh column or row is for the remainder of the
/// division. It is added when the width or height is not a multiple of `divisor`, even without a remainder;
/// its cells are then outside the picture.
struct CellGrid {
  CellGrid(const SIZE& picture, int divisor)
      : cellWidth(picture.cx / 10),
        cellHeight(picture.cy / 10),
        columns(picture.cx % divisor != 0 ? 11 : 10),
        rows(picture.cy % divisor != 0 ? 11 : 10) {}

  int count() const { return columns * rows; }
  bool covers(const SIZE& picture) const {
    return std::int64_t{columns} * cellWidth >= picture.cx && std::int64_t{rows} * cellHeight >= picture.cy;
  }

  int cellWidth;
  int cellHeight;
  int columns;
  int rows;
};

// The divisor of the random mosaic is 100 and that of the sweeping one 10, on purpose. So most pictures of
// the random one have cells outside the picture, which change nothing but the order in which the others
// appear.
CellGrid randomGrid(const SIZE& picture) { return {picture, 100}; }
CellGrid sweepingGrid(const SIZE& picture) { return {picture, 10}; }

/// Cells that show, row by row.
using Cells = std::vector<bool>;

int cellsToDraw(const CellGrid& grid, long percent) {
  return static_cast<int>(std::clamp<std::int64_t>(percentOf(grid.count(), percent), 0, grid.count()));
}

/// The region of the cells that show; null when no cell was drawn. Beyond 100 percent it is the whole
/// picture, which the cells of a small picture do not cover at its right and bottom sides.
OwnedRegion regionOf(const CellGrid& grid, const Cells& cells, const SIZE& picture, long percent) {
  if (percent > 100) return OwnedRegion(CreateRectRgn(0, 0, picture.cx, picture.cy));
  if (cellsToDraw(grid, percent) == 0) return nullptr;
  std::vector<RECT> rectangles;
  for (int row = 0; row < grid.rows; ++row) {
    for (int column = 0; column < grid.columns; ++column) {
      if (!cells[static_cast<std::size_t>(row * grid.columns + column)]) continue;
      const int left = column * grid.cellWidth;
      const int top = row * grid.cellHeight;
      rectangles.push_back({left, top, left + grid.cellWidth, top + grid.cellHeight});
    }
  }
  return regionOfRectangles(rectangles);
}

Cells drawRandomly(const CellGrid& grid, const SIZE& picture, long percent) {
  Cells shown(static_cast<std::size_t>(grid.count()));
  std::vector<std::size_t> pool(shown.size());
  std::iota(pool.begin(), pool.end(), std::size_t{0});
  std::srand(static_cast<unsigned>(picture.cx));
  for (int left = cellsToDraw(grid, percent); left > 0; --left) {
    const auto taken = static_cast<std::size_t>(std::rand()) % pool.size();
    shown[pool[taken]] = true;
    std::swap(pool[taken], pool.back());
    pool.pop_back();
  }
  return shown;
}

/// The order of the cells in the pool of a sweep.
struct Sweep {
  bool byColumns;   ///< column by column, each from the top; else row by row, each from the left
  bool fromFarEnd;  ///< starting with the last column or row
};

constexpr Sweep sweeps[] = {{true, false}, {false, false}, {true, true}, {false, true}};

/// The cell with a number in the order of a sweep.
std::size_t cellAt(const CellGrid& grid, const Sweep& sweep, int number) {
  const int lines = sweep.byColumns ? grid.columns : grid.rows;
  const int lineLength = sweep.byColumns ? grid.rows : grid.columns;
  const int line = sweep.fromFarEnd ? lines - 1 - number / lineLength : number / lineLength;
  const int inLine = number % lineLength;
  return static_cast<std::size_t>(sweep.byColumns ? inLine * grid.columns + line
                                                  : line * grid.columns + inLine);
}

Cells drawSweeping(const CellGrid& grid, const SIZE& picture, const Sweep& sweep, long percent) {
  Cells shown(static_cast<std::size_t>(grid.count()));
  OrderedPool pool(grid.count());
  // Draws are from the next two lines of cells.
  const int span = 2 * (sweep.byColumns ? grid.rows : grid.columns);
  std::srand(static_cast<unsigned>(sweep.byColumns ? picture.cx : picture.cy));
  for (int left = cellsToDraw(grid, percent); left > 0; --left) {
    const int number = pool.take(std::rand() % std::min(span, pool.left()));
    shown[cellAt(grid, sweep, number)] = true;
  }
  return shown;
}

}  // namespace

long fullCoverageOfMosaic(const SIZE& picture, long) {
  return randomGrid(picture).covers(picture) ? 100 : 101;
}

long fullCoverageOfSweepingMosaic(const SIZE& picture, long) {
  return sweepingGrid(picture).covers(picture) ? 100 : 101;
}

BOOL renderMosaic(BITMAPINFOHEADER* source, long, long percent, EffectOutput& output) {
  const SIZE picture = sizeOf(source);
  const CellGrid grid = randomGrid(picture);
  const Cells cells = drawRandomly(grid, picture, percent);
  return cutPiece(source, regionOf(grid, cells, picture, percent), output);
}

BOOL renderSweepingMosaic(BITMAPINFOHEADER* source, long direction, long percent, EffectOutput& output) {
  if (direction < 0 || direction > 3) return FALSE;
  const SIZE picture = sizeOf(source);
  const CellGrid grid = sweepingGrid(picture);
  const Cells cells = drawSweeping(grid, picture, sweeps[direction], percent);
  return cutPiece(source, regionOf(grid, cells, picture, percent), output);
}

BOOL renderThaw(BITMAPINFOHEADER* source, long, long percent, EffectOutput& output) {
  const auto [w, h] = sizeOf(source);
  const auto block = static_cast<int>(std::clamp<std::int64_t>(percentOf(40, percent), 0, std::min(w, h)));
  output.image = block > 0 ? Mosaic32BitsDIB(source, block) : copyOf(source).release();
  output.rect = {0, 0, w, h};
  return TRUE;  // Also without an image, on purpose: hosts test the pointer.
}

}  // namespace dibkit
