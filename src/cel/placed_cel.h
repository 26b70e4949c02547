#pragma once

#include <vector>

#include "cel/cel.h"
#include "raster/bit_grid.h"
#include "raster/placement.h"

namespace dibkit {

/// A cel with its place on the canvas. Coordinates are those of the canvas; lines may be outside the cel.
class PlacedCel {
 public:
  PlacedCel(const BITMAPINFOHEADER* dib, const BITMAPINFOHEADER* mask, const POINT& position);

  explicit operator bool() const { return static_cast<bool>(cel_); }
  const Box& box() const { return box_; }
  const Cel& cel() const { return cel_; }

  /// Whether all pixels of an area are opaque pixels of the cel, as far as that shows without a look at a
  /// mask.
  bool covers(const Box& area) const {
    const Box common = intersection(box_, area);
    return !cel_.mask().present() && common.width() == area.width() && common.height() == area.height();
  }
  /// Gives the opaque pixels on line y in the columns of `area`: bit x of `bits` is 1 where the cel has an
  /// opaque pixel at area.left + x.
  void opaqueBits(std::int64_t y, const Box& area, std::uint64_t* bits);

  /// The first byte of the pixel (x, y) inside the cel, for depths of whole bytes.
  const BYTE* at(std::int64_t x, std::int64_t y) const {
    return cel_.view().row(static_cast<int>(y - box_.top)) + (x - box_.left) * cel_.bitCount() / 8;
  }
  /// `count` pixels to the right of (x, y), all inside the cel, as blue, green, red bytes; valid until the
  /// next call.
  const BYTE* bgr(std::int64_t x, std::int64_t y, int count) {
    return cel_.bgr(static_cast<int>(y - box_.top), static_cast<int>(x - box_.left), count, buffer_.data());
  }

 private:
  Cel cel_;
  Box box_;
  std::vector<BYTE> buffer_;
  std::vector<BYTE> maskPiece_;
  std::vector<std::uint64_t> maskBits_;
};

}  // namespace dibkit
