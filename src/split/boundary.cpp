#include <algorithm>

#include "cel/difference.h"
#include "split/split.h"

namespace dibkit {
namespace {

/// The two frames. Pixel (x, y) of the reference frame is (x + dx, y + dy) of the new one.
struct Pair {
  explicit Pair(const CSpiltEmbededDIB& splitter)
      : reference(splitter.m_pRefDIB, splitter.m_pRefMask),
        next(splitter.m_pNewDIB, splitter.m_pNewMask),
        difference(reference, next),
        dx(std::int64_t{splitter.m_ptRef.x} - splitter.m_ptNew.x),
        dy(std::int64_t{splitter.m_ptRef.y} - splitter.m_ptNew.y),
        samePosition(dx == 0 && dy == 0) {}

  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;

  bool usable() const { return reference && next; }
  bool sameWidth() const { return reference.width() == next.width(); }
  bool sameHeight() const { return reference.height() == next.height(); }
  bool sameRightEdge() const { return reference.width() + dx == next.width(); }

  Cel reference;
  Cel next;
  CelDifference difference;
  std::int64_t dx;
  std::int64_t dy;
  bool samePosition;
};

/// A count of equal rows or columns.
struct Scan {
  int count = 0;
  bool outside = false;  ///< it ended at a point of the reference frame outside the new one
};

/// Equal rows from the top, for frames of one position and width.
Scan sameTopRows(const Pair& pair) {
  const int width = pair.reference.width();
  const int height = pair.reference.height();
  if (width == 0) return {height, false};  // no pixels to compare
  const int common = std::min(height, pair.next.height());
  int y = 0;
  while (y < common && pair.difference.first({0, y, 0, y}, width) == width) ++y;
  return {y, y == common && common < height};
}

/// Equal rows from the bottom up to `top`, compared in the columns [left, end), for frames of one position
/// and width.
Scan sameBottomRows(const Pair& pair, int top, int left, int end) {
  const int height = pair.reference.height();
  const int count = end - left;
  if (count <= 0) return {std::max(height - top, 0), false};  // no pixels to compare
  int y = height;
  for (; y > top; --y) {
    if (y > pair.next.height()) return {height - y, true};
    if (pair.difference.first({left, y - 1, left, y - 1}, count) != count) break;
  }
  return {height - y, false};
}

/// Equal columns from the left, compared in the rows from `top` on, for frames of one position and height.
Scan sameLeftColumns(const Pair& pair, int top) {
  const int common = std::min(pair.reference.width(), pair.next.width());
  int same = common;
  for (int y = top; y < pair.reference.height() && same > 0; ++y) {
    same = pair.difference.first({0, y, 0, y}, same);
  }
  return {same, same == common && common < pair.reference.width()};
}

/// Equal columns from the right to `left`, compared in the rows from `top` on, for frames of one top, height
/// and right edge.
Scan sameRightColumns(const Pair& pair, int left, int top) {
  const int width = pair.reference.width();
  const int height = pair.reference.height();
  if (left >= width) return {};
  if (top >= height) return {width - left, false};  // no pixels to compare
  // The column of the reference frame at which the new frame begins.
  const int nextBegin = static_cast<int>(std::max<std::int64_t>(-pair.dx, 0));
  const int begin = std::max(left, nextBegin);
  int end = begin;  // one past the last column that differs
  for (int y = top; y < height && end < width; ++y) {
    end += pair.difference.last({end, y, static_cast<int>(end + pair.dx), y}, width - end);
  }
  return {width - end, end == begin && begin > left};
}

/// As CalcBoundaryTopLeftInfo.
int countTopLeft(const Pair& pair, int& left, int& top) {
  left = top = 0;
  if (!pair.usable()) return 0;
  if (pair.samePosition && pair.sameWidth()) {
    const Scan rows = sameTopRows(pair);
    top = rows.count;
    if (rows.outside) return 0;
  }
  if (top == pair.reference.height()) {
    left = pair.reference.width();
    return 1;
  }
  if (pair.samePosition && pair.sameHeight()) {
    const Scan columns = sameLeftColumns(pair, top);
    left = columns.count;
    if (columns.outside) return 0;
  }
  return left != 0 || top != 0 ? 1 : 0;
}

/// As CalcBoundaryBottomRightInfo.
int countBottomRight(const Pair& pair, int left, int top, int& right, int& bottom) {
  right = bottom = 0;
  if (!pair.usable()) return 0;
  left = std::max(left, 0);
  top = std::max(top, 0);
  if (pair.sameRightEdge() && pair.dy == 0 && pair.sameHeight()) {
    const Scan columns = sameRightColumns(pair, left, top);
    right = columns.count;
    if (columns.outside) return 0;
  }
  if (pair.samePosition && pair.sameWidth()) {
    const Scan rows = sameBottomRows(pair, top, left, pair.reference.width() - right);
    bottom = rows.count;
    if (rows.outside) return 0;
  }
  return bottom != 0 || right != 0 ? 1 : 0;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CSpiltEmbededDIB::Reset(BITMAPINFOHEADER* refDib, BITMAPINFOHEADER* refMask, const POINT& ref,
                             BITMAPINFOHEADER* newDib, BITMAPINFOHEADER* newMask, const POINT& next) {
  m_pRefDIB = refDib;
  m_pRefMask = refMask;
  m_pNewDIB = newDib;
  m_pNewMask = newMask;
  m_ptRef = ref;
  m_ptNew = next;
  m_nLeftSame = m_nTopSame = m_nRightSame = m_nBottomSame = 0;
  if (IsCanSpilt() == 0) return;
  const Pair pair(*this);
  countTopLeft(pair, m_nLeftSame, m_nTopSame);
  countBottomRight(pair, m_nLeftSame, m_nTopSame, m_nRightSame, m_nBottomSame);
}

int CSpiltEmbededDIB::IsCanSpilt() const {
  if (m_pRefDIB == nullptr || m_pNewDIB == nullptr) return 0;
  const std::int64_t refRight = std::int64_t{m_ptRef.x} + m_pRefDIB->biWidth;
  const std::int64_t refBottom = std::int64_t{m_ptRef.y} + m_pRefDIB->biHeight;
  const std::int64_t newRight = std::int64_t{m_ptNew.x} + m_pNewDIB->biWidth;
  const std::int64_t newBottom = std::int64_t{m_ptNew.y} + m_pNewDIB->biHeight;
  if (refRight != newRight || refBottom != newBottom) return 0;
  return m_pRefDIB->biWidth == m_pNewDIB->biWidth || m_pRefDIB->biHeight == m_pNewDIB->biHeight ? 1 : 0;
}

int CSpiltEmbededDIB::IsEqual() const {
  if (m_pNewDIB == nullptr) return 0;
  return m_nLeftSame == m_pNewDIB->biWidth || m_nTopSame == m_pNewDIB->biHeight ? 1 : 0;
}

int CSpiltEmbededDIB::CalcBoundaryTopLeftInfo(int* left, int* top) const {
  return left != nullptr && top != nullptr ? countTopLeft(Pair(*this), *left, *top) : 0;
}

int CSpiltEmbededDIB::CalcBoundaryBottomRightInfo(int left, int top, int* right, int* bottom) {
  return right != nullptr && bottom != nullptr ? countBottomRight(Pair(*this), left, top, *right, *bottom)
                                               : 0;
}
