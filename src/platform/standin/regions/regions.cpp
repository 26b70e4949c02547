#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/guard.h"
#include "platform/region_data.h"
#include "platform/standin/geometry.h"
#include "platform/standin/regions/ellipse_corner.h"
#include "platform/standin/regions/polygon_scan.h"
#include "platform/standin/regions/region_object.h"

namespace dibkit::standin {

namespace {

HRGN newRegion(Region&& region) { return handleOf<HRGN>(new RegionObject(std::move(region))); }

/// The handle of the region that make() gives; null when memory runs out.
template <class Make>
HRGN regionFrom(Make&& make) {
  return catchOutOfMemory([&] { return newRegion(make()); });
}

/// Elliptic and rounded regions are one pixel narrower and lower than their rectangle. For a rectangle
/// without width or height that gives reversed sides.
Region curvedRegion(const RECT& rect, std::int64_t ellipseWidth, std::int64_t ellipseHeight) {
  const std::int64_t left = std::min(rect.left, rect.right);
  const std::int64_t top = std::min(rect.top, rect.bottom);
  const std::int64_t right = std::int64_t{std::max(rect.left, rect.right)} - 1;
  const std::int64_t bottom = std::int64_t{std::max(rect.top, rect.bottom)} - 1;
  const std::int64_t width = std::min(std::abs(ellipseWidth), right - left);
  const std::int64_t height = std::min(std::abs(ellipseHeight), bottom - top);
  const int rightSide = clampedToInt(right);
  const int bottomSide = clampedToInt(bottom);
  const int leftSide = static_cast<int>(left);
  const int topSide = static_cast<int>(top);
  if (width < 2 || height < 2) return Region::ofRectangle(leftSide, topSide, rightSide, bottomSide);
  return RoundedRectangle({leftSide, topSide, rightSide, bottomSide}, clampedToInt(width),
                          clampedToInt(height))
      .region();
}

bool isIdentity(const XFORM& form) {
  return form.eM11 == 1 && form.eM12 == 0 && form.eM21 == 0 && form.eM22 == 1 && form.eDx == 0 &&
         form.eDy == 0;
}

std::optional<Combination> combinationOf(int mode) {
  switch (mode) {
    case RGN_AND:
      return Combination::both;
    case RGN_OR:
      return Combination::either;
    case RGN_XOR:
      return Combination::one;
    case RGN_DIFF:
      return Combination::firstOnly;
    default:
      return std::nullopt;
  }
}

}  // namespace

}  // namespace dibkit::standin

namespace dibkit {

HRGN createRegion(std::vector<RECT>&& bands) { return standin::newRegion(standin::Region(std::move(bands))); }

}  // namespace dibkit

using namespace dibkit;
using namespace dibkit::standin;

HRGN CreateRectRgn(int left, int top, int right, int bottom) {
  return regionFrom([&] { return Region::ofRectangle(left, top, right, bottom); });
}

HRGN CreatePolygonRgn(const POINT* points, int count, int mode) {
  if (count < 0 || (points == nullptr && count > 0) || mode != ALTERNATE) return nullptr;
  return regionFrom([&] { return polygonRegion({points, static_cast<std::size_t>(count)}); });
}

HRGN CreateEllipticRgn(int left, int top, int right, int bottom) {
  const RECT rect{left, top, right, bottom};
  return regionFrom(
      [&] { return curvedRegion(rect, std::int64_t{right} - left, std::int64_t{bottom} - top); });
}

HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight) {
  const RECT rect{left, top, right, bottom};
  return regionFrom([&] { return curvedRegion(rect, ellipseWidth, ellipseHeight); });
}

HRGN ExtCreateRegion(const XFORM* transform, DWORD byteCount, const RGNDATA* data) {
  if (data == nullptr || byteCount < sizeof(RGNDATAHEADER)) return nullptr;
  if (transform != nullptr && !isIdentity(*transform)) return nullptr;
  const RGNDATAHEADER& header = data->rdh;
  const std::uint64_t needed = sizeof(RGNDATAHEADER) + std::uint64_t{header.nCount} * sizeof(RECT);
  if (header.dwSize < sizeof(RGNDATAHEADER) || header.iType != RDH_RECTANGLES || byteCount < needed) {
    return nullptr;
  }
  // The header's bounding box is ignored: it may have any value, even a reversed one.
  return regionFrom([&] {
    return Region::ofRectangles({reinterpret_cast<const RECT*>(data->Buffer), header.nCount});
  });
}

int CombineRgn(HRGN destination, HRGN a, HRGN b, int mode) {
  auto* out = objectOf<RegionObject>(destination);
  const auto* first = objectOf<RegionObject>(a);
  const auto* second = objectOf<RegionObject>(b);
  if (out == nullptr || first == nullptr) return ERROR;
  return catchOutOfMemory([&] {
    if (mode == RGN_COPY) {
      Region copy = first->region;
      out->region = std::move(copy);
      return out->region.complexity();
    }
    const std::optional<Combination> combination = combinationOf(mode);
    if (second == nullptr || !combination) return ERROR;
    out->region = Region::combine(first->region, second->region, *combination);
    return out->region.complexity();
  });
}

int OffsetRgn(HRGN handle, int dx, int dy) {
  auto* object = objectOf<RegionObject>(handle);
  if (object == nullptr || !object->region.offset(dx, dy)) return ERROR;
  return object->region.complexity();
}

int GetRgnBox(HRGN handle, RECT* out) {
  const auto* object = objectOf<RegionObject>(handle);
  if (object == nullptr || out == nullptr) return ERROR;
  *out = object->region.box();
  return object->region.complexity();
}

BOOL PtInRegion(HRGN handle, int x, int y) {
  const auto* object = objectOf<RegionObject>(handle);
  return object != nullptr && object->region.contains(x, y);
}

BOOL EqualRgn(HRGN a, HRGN b) {
  const auto* first = objectOf<RegionObject>(a);
  const auto* second = objectOf<RegionObject>(b);
  return first != nullptr && second != nullptr && first->region == second->region;
}

DWORD GetRegionData(HRGN handle, DWORD byteCount, RGNDATA* data) {
  const auto* object = objectOf<RegionObject>(handle);
  if (object == nullptr) return 0;
  const std::span<const RECT> rectangles = object->region.rectangles();
  const std::uint64_t listBytes = rectangles.size_bytes();
  const std::uint64_t needed = sizeof(RGNDATAHEADER) + listBytes;
  if (needed > std::numeric_limits<DWORD>::max()) return 0;
  if (data == nullptr) return static_cast<DWORD>(needed);
  if (byteCount < needed) return 0;
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(rectangles.size()),
               static_cast<DWORD>(listBytes), object->region.box()};
  if (!rectangles.empty()) std::memcpy(data->Buffer, rectangles.data(), rectangles.size_bytes());
  return static_cast<DWORD>(needed);
}
