#include <algorithm>

#include "platform/bounds.h"

namespace dibkit::standin {
namespace {

/// Sums that wrap around on overflow, as the platform's do.
LONG wrappingSum(LONG a, int b) {
  return static_cast<LONG>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
LONG wrappingDifference(LONG a, int b) {
  return static_cast<LONG>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

}  // namespace
}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

BOOL SetRect(RECT* rect, int left, int top, int right, int bottom) {
  if (rect == nullptr) return FALSE;
  *rect = {left, top, right, bottom};
  return TRUE;
}

BOOL SetRectEmpty(RECT* rect) { return SetRect(rect, 0, 0, 0, 0); }

BOOL IsRectEmpty(const RECT* rect) {
  return rect == nullptr || rect->left >= rect->right || rect->top >= rect->bottom;
}

BOOL IntersectRect(RECT* out, const RECT* a, const RECT* b) {
  if (out == nullptr || a == nullptr || b == nullptr) return FALSE;
  const RECT common{std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                    std::min(a->bottom, b->bottom)};
  const bool overlap = !IsRectEmpty(a) && !IsRectEmpty(b) && !IsRectEmpty(&common);
  *out = overlap ? common : RECT{};
  return overlap;
}

BOOL UnionRect(RECT* out, const RECT* a, const RECT* b) {
  if (out == nullptr || a == nullptr || b == nullptr) return FALSE;
  const bool emptyA = IsRectEmpty(a);
  const bool emptyB = IsRectEmpty(b);
  if (emptyA && emptyB) {
    *out = RECT{};
    return FALSE;
  }
  RECT both = emptyA ? *b : *a;
  if (!emptyA && !emptyB) extend(both, *b);
  *out = both;
  return TRUE;
}

BOOL OffsetRect(RECT* rect, int dx, int dy) {
  if (rect == nullptr) return FALSE;
  *rect = {wrappingSum(rect->left, dx), wrappingSum(rect->top, dy), wrappingSum(rect->right, dx),
           wrappingSum(rect->bottom, dy)};
  return TRUE;
}

BOOL InflateRect(RECT* rect, int dx, int dy) {
  if (rect == nullptr) return FALSE;
  *rect = {wrappingDifference(rect->left, dx), wrappingDifference(rect->top, dy),
           wrappingSum(rect->right, dx), wrappingSum(rect->bottom, dy)};
  return TRUE;
}

BOOL EqualRect(const RECT* a, const RECT* b) {
  return a != nullptr && b != nullptr && a->left == b->left && a->top == b->top && a->right == b->right &&
         a->bottom == b->bottom;
}

BOOL PtInRect(const RECT* rect, POINT point) {
  return rect != nullptr && point.x >= rect->left && point.x < rect->right && point.y >= rect->top &&
         point.y < rect->bottom;
}
