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

/// Cells of a tenth of the picture each way. The eleventh column or row takes what the division left over; it
/// is added whenever the extent isn't a multiple of `test`, even if nothing is left, and then lies outside.
struct CellGrid {
  CellGrid(const SIZE& picture, int test)
      : cellWidth(picture.cx / 10),
        cellHeight(picture.cy / 10),
        columns(picture.cx % test != 0 ? 11 : 10),
        rows(picture.cy % test != 0 ? 11 : 10) {}

  int count() const { return columns * rows; }
  bool covers(const SIZE& picture) const {
    return std::int64_t{columns} * cellWidth >= picture.cx && std::int64_t{rows} * cellHeight >= picture.cy;
  }

  int cellWidth;
  int cellHeight;
  int columns;
  int rows;
};

// The random mosaic tests for 100 where its sweeping sister tests for 10: most pictures get a column and a
// row of cells that show nothing and yet take part in the draws. The order of all cells depends on it.
CellGrid randomGrid(const SIZE& picture) { return {picture, 100}; }
CellGrid sweepingGrid(const SIZE& picture) { return {picture, 10}; }

/// Cells that show, row by row.
using Cells = std::vector<bool>;

int cellsToDraw(const CellGrid& grid, long percent) {
  return static_cast<int>(std::clamp<std::int64_t>(percentOf(grid.count(), percent), 0, grid.count()));
}

/// The region of the cells that show, none when no cell was drawn. Beyond 100 percent the whole picture
/// shows: the cells of a small picture need not reach its right and bottom sides.
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

/// Where a sweep starts: the cells stand in the pool in the order in which it would meet them.
struct Sweep {
  bool byColumns;   ///< column by column, each from the top; else row by row, each from the left
  bool fromFarEnd;  ///< from the last column or row on
};

constexpr Sweep sweeps[] = {{true, false}, {false, false}, {true, true}, {false, true}};

/// The cell that stands at a place of the full pool.
std::size_t cellAt(const CellGrid& grid, const Sweep& sweep, int place) {
  const int lines = sweep.byColumns ? grid.columns : grid.rows;
  const int lineLength = sweep.byColumns ? grid.rows : grid.columns;
  const int line = sweep.fromFarEnd ? lines - 1 - place / lineLength : place / lineLength;
  const int inLine = place % lineLength;
  return static_cast<std::size_t>(sweep.byColumns ? inLine * grid.columns + line
                                                  : line * grid.columns + inLine);
}

Cells drawSweeping(const CellGrid& grid, const SIZE& picture, const Sweep& sweep, long percent) {
  Cells shown(static_cast<std::size_t>(grid.count()));
  OrderedPool pool(grid.count());
  // The front is two lines of cells deep.
  const int span = 2 * (sweep.byColumns ? grid.rows : grid.columns);
  std::srand(static_cast<unsigned>(sweep.byColumns ? picture.cx : picture.cy));
  for (int left = cellsToDraw(grid, percent); left > 0; --left) {
    const int place = pool.take(std::rand() % std::min(span, pool.left()));
    shown[cellAt(grid, sweep, place)] = true;
  }
  return shown;
}

}  // namespace

long fullCoverageMosaicPercent(const SIZE& picture, bool sweeping) {
  const CellGrid grid = sweeping ? sweepingGrid(picture) : randomGrid(picture);
  return grid.covers(picture) ? 100 : 101;
}

BOOL renderMosaic(BITMAPINFOHEADER* source, long amount, EffectOutput& output) {
  const SIZE picture = sizeOf(source);
  const CellGrid grid = randomGrid(picture);
  const Cells cells = drawRandomly(grid, picture, amount);
  return cutPiece(source, regionOf(grid, cells, picture, amount), output);
}

BOOL renderSweepingMosaic(BITMAPINFOHEADER* source, long direction, long amount, EffectOutput& output) {
  if (direction < 0 || direction > 3) return FALSE;
  const SIZE picture = sizeOf(source);
  const CellGrid grid = sweepingGrid(picture);
  const Cells cells = drawSweeping(grid, picture, sweeps[direction], amount);
  return cutPiece(source, regionOf(grid, cells, picture, amount), output);
}

BOOL renderThaw(BITMAPINFOHEADER* source, long amount, EffectOutput& output) {
  const auto [w, h] = sizeOf(source);
  const auto block = static_cast<int>(std::clamp<std::int64_t>(percentOf(40, amount), 0, std::min(w, h)));
  // Below a block of one pixel the picture is as sharp as it can be.
  output.image = block > 0 ? Mosaic32BitsDIB(source, block) : copyOf(source).release();
  output.rect = {0, 0, w, h};
  return TRUE;  // Even without an image, deliberately: hosts test the pointer of this one.
}

}  // namespace dibkit
