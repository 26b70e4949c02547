#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>

#include "dib/view.h"
#include "platform/bounds.h"

namespace dibkit {

/// A rectangle in 64 bits, which hold the sum of any two 32-bit coordinates.
struct Box {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = 0;   ///< exclusive
  std::int64_t bottom = 0;  ///< exclusive

  std::int64_t width() const { return right - left; }
  std::int64_t height() const { return bottom - top; }
  bool empty() const { return right <= left || bottom <= top; }
  bool contains(std::int64_t x, std::int64_t y) const {
    return x >= left && x < right && y >= top && y < bottom;
  }
};

/// The rectangle that an image covers if its top-left pixel is at `origin`.
inline Box placedBox(std::int64_t width, std::int64_t height, const POINT& origin) {
  return {origin.x, origin.y, origin.x + width, origin.y + height};
}

inline Box toBox(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

/// The common part, all zeros when there is none.
inline Box intersection(const Box& a, const Box& b) {
  const Box common{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                   std::min(a.bottom, b.bottom)};
  return common.empty() ? Box{} : common;
}

/// The bounding box of both; an empty one is ignored, two empty ones give all zeros.
inline Box unionOf(const Box& a, const Box& b) {
  if (a.empty()) return b.empty() ? Box{} : b;
  if (b.empty()) return a;
  Box box = a;
  extend(box, b);
  return box;
}

/// Where several placed images overlap: the size of the common part, and the pixel of each image that is at
/// its top-left corner.
template <std::size_t Count>
struct Overlap {
  struct Start {
    int x = 0;
    int y = 0;
  };
  int width = 0;
  int height = 0;
  std::array<Start, Count> start{};
};

template <std::size_t Count>
Overlap<Count> overlapOf(const std::array<Box, Count>& boxes) {
  Box common = boxes[0];
  for (const Box& box : boxes) common = intersection(common, box);
  Overlap<Count> overlap;
  if (common.empty()) return overlap;
  overlap.width = static_cast<int>(common.width());
  overlap.height = static_cast<int>(common.height());
  for (std::size_t i = 0; i < Count; ++i) {
    overlap.start[i] = {static_cast<int>(common.left - boxes[i].left),
                        static_cast<int>(common.top - boxes[i].top)};
  }
  return overlap;
}

/// A view with the point of its top-left pixel, in a space that it shares with others.
template <class Byte>
struct Placed {
  BasicView<Byte> view;
  POINT origin;

  Box box() const { return placedBox(view.width(), view.height(), origin); }
  /// The byte of line y that has the first bit of column x.
  Byte* at(int x, int y) const { return view.row(y) + std::int64_t{x} * view.bitCount() / 8; }
};
template <class Byte>
Placed(BasicView<Byte>, POINT) -> Placed<Byte>;

/// An image that has to have the given depth; a null view for any other image.
inline Placed<BYTE> placedOfDepth(BITMAPINFOHEADER* dib, int bitCount, const POINT& origin) {
  return {viewOfDepth(dib, bitCount), origin};
}

/// Calls use(count, bytes...) for every row of the common part of placed views, from the top: the number of
/// pixels and, for each view, the first of their bytes. For depths of whole bytes. A null view has no common
/// part with any other.
template <class Use, class... Byte>
void forEachCommonRow(Use&& use, const Placed<Byte>&... placed) {
  const auto overlap = overlapOf<sizeof...(Byte)>({placed.box()...});
  for (int y = 0; y < overlap.height; ++y) {
    std::size_t next = 0;
    const auto start = [&](const auto& one) {
      const auto& corner = overlap.start[next++];
      return one.at(corner.x, corner.y + y);
    };
    // Braces, since they fix the order in which the starts are taken.
    std::apply(use, std::tuple{overlap.width, start(placed)...});
  }
}

/// The same for operations on separate images, in the order of memory: rows that follow each other without a
/// gap are passed as one long row. Views of one image are passed row by row from the top, since there the
/// order can change the result.
template <class Use, class... Byte>
void forEachCommonStretch(Use&& use, const Placed<Byte>&... placed) {
  const auto overlap = overlapOf<sizeof...(Byte)>({placed.box()...});
  if (overlap.height == 0) return;
  const std::array bottoms{static_cast<const void*>(placed.view.row(placed.view.height() - 1))...};
  const bool separate = [&] {
    for (std::size_t i = 1; i < bottoms.size(); ++i) {
      if (std::find(bottoms.begin(), bottoms.begin() + i, bottoms[i]) != bottoms.begin() + i) return false;
    }
    return true;
  }();
  if (!separate) return forEachCommonRow(use, placed...);
  const bool gapless =
      ((std::int64_t{overlap.width} * placed.view.bitCount() / 8 == placed.view.stride()) && ...);
  const int rows = gapless ? std::min(overlap.height, INT32_MAX / overlap.width) : 1;
  for (int bottom = overlap.height; bottom > 0; bottom -= rows) {
    const int count = std::min(rows, bottom);
    std::size_t next = 0;
    const auto start = [&](const auto& one) {
      const auto& corner = overlap.start[next++];
      return one.at(corner.x, corner.y + bottom - 1);
    };
    std::apply(use, std::tuple{overlap.width * count, start(placed)...});
  }
}

}  // namespace dibkit
