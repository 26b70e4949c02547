#pragma once

#include <vector>

#include "dib/view.h"
#include "dib32/bgra.h"
#include "raster/placement.h"

/// \file
/// Nearest-neighbour scaling: which pixel of a source each pixel of a destination shows. Computed once per
/// call as a table of columns and a table of rows; the drawing operations differ in what they do with it.

namespace dibkit {

/// The part of a destination that is drawn on, in its own pixels, and the source's column and row for each of
/// its columns and rows. All of them are inside the source.
struct Sampling {
  int left = 0;
  int top = 0;
  std::vector<int> columns;
  std::vector<int> rows;
  int columnStep = 0;  ///< the distance of successive columns if it is known to be the same; else 0
  int repeat = 1;      ///< how many successive columns show one of the source; at both ends it may be fewer

  int width() const { return static_cast<int>(columns.size()); }
};

/// The size of an image; a null view has none.
struct Extent {
  int width;
  int height;

  template <class Byte>
  explicit Extent(const BasicView<Byte>& view) : width(view.width()), height(view.height()) {}
};

/// A source enlarged or reduced to scale / 32768 of its size, its origin scaled with it, over a destination
/// at (0, 0). Empty for a scale of 0.
Sampling stretchSampling(Extent destination, Extent source, const POINT& origin, DWORD scale);

/// A source whose pixels become blocks of factor x factor, its origin multiplied with it. Empty for a factor
/// below 1.
Sampling zoomInSampling(Extent destination, const POINT& destinationOrigin, Extent source,
                        const POINT& sourceOrigin, int factor);

/// The area of the destination on which a reduced image may be drawn.
enum class ZoomOutArea {
  placed,     ///< the destination's rectangle
  sizeAsEdge  ///< the same with the right and bottom edge at its width and height, whatever its origin
};

/// A source of which every factor-th pixel of every factor-th row is used, its placed rectangle divided by
/// the factor, towards zero. Empty for a factor below 1.
Sampling zoomOutSampling(Extent destination, const POINT& destinationOrigin, Extent source,
                         const POINT& sourceOrigin, int factor, ZoomOutArea area);

/// Draws scaled source rows onto a 32-bit destination of another image. gather(y, row) writes the scaled
/// source row y, once for all successive destination rows that show it; blend(to, row) draws it on these,
/// from the top. The source rows are taken from the bottom, which is the order of memory.
template <class Gather, class Blend>
void forEachSampledRow(const View& destination, const Sampling& sampling, Gather&& gather, Blend&& blend) {
  std::vector<Bgra> row(sampling.columns.size());
  const auto lineAt = [&](std::size_t i) { return destination.row(sampling.top + static_cast<int>(i)); };
  for (std::size_t end = sampling.rows.size(); end > 0;) {
    const int y = sampling.rows[end - 1];
    std::size_t begin = end - 1;
    while (begin > 0 && sampling.rows[begin - 1] == y) --begin;
    gather(y, row.data());
    for (std::size_t i = begin; i < end; ++i) blend(pixelsOf(lineAt(i)) + sampling.left, row.data());
    end = begin;
  }
}

}  // namespace dibkit
