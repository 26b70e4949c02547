#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// The rows of a closed polygon, from the top, by the even-odd rule: a pixel belongs to it if an odd number
/// of edges is at or left of its integer coordinates, so that left and top sides belong to it and right and
/// bottom ones do not.
///
/// The memory grows with the edges, the time with their crossings of the rows; neither depends on how far
/// the coordinates are outside the area.
class PolygonScan {
 public:
  /// Begins with the first row.
  /// \param area rows outside it are left out, and of the others at least what is beside it
  /// Throws std::bad_alloc when memory runs out, and std::length_error for more than 2^28 crossings.
  PolygonScan(std::span<const POINT> corners, const RECT& area);

  bool done() const { return y_ >= end_; }
  int row() const { return y_; }
  /// Where the row's spans begin and end, in turns: two values for each span, from the left.
  std::span<const int> ends() const { return {ends_.data(), count_}; }
  void nextRow() {
    ++y_;
    findEnds();
  }

 private:
  /// An edge that is not horizontal and its crossing with a row: computed exactly from row to row, rounded
  /// up. Whole part and fraction are separate, so that no product needs more than 64 bits.
  class Edge {
   public:
    /// `upper` has to be above `lower`.
    Edge(const POINT& upper, const POINT& lower);
    int top() const { return top_; }
    int bottom() const { return bottom_; }
    /// Moves from the upper end down to row y.
    void startAt(int y);
    std::int64_t crossing() const { return x_ + (fraction_ != 0 ? 1 : 0); }
    void nextRow();

   private:
    std::int64_t x_;
    std::int64_t step_;
    std::uint32_t fractionStep_;
    std::uint32_t denominator_;
    std::uint32_t fraction_ = 0;
    int top_;
    int bottom_;
  };

  void addEdges(std::span<const POINT> corners);
  void findEnds();
  void sortEnds();

  std::vector<Edge> edges_;  ///< first those that cross the row, then those below, sorted by their upper ends
  std::size_t crossing_ = 0;
  std::size_t below_ = 0;
  std::vector<int> ends_;
  std::size_t count_ = 0;
  std::vector<std::uint64_t> flips_;  ///< bits of the columns, for rows of many crossings
  int left_ = 0;
  int right_ = 0;
  int y_ = 0;
  int end_ = 0;
};

/// The pixels of a polygon on the rows from -2^20 to 2^20: no image is larger, and a polygon that spans all
/// coordinates remains cheap. Throws std::length_error for more than 2^24 rectangles.
Region polygonRegion(std::span<const POINT> corners);

}  // namespace dibkit::standin
