#include <algorithm>
#include <limits>

#include "dib32/dib32.h"

namespace dibkit {
namespace {

/// Whether two rectangles share a whole edge, so that their union is a rectangle without new pixels.
bool shareEdge(const RECT& a, const RECT& b) {
  const bool sameColumns = a.left == b.left && a.right == b.right;
  const bool sameRows = a.top == b.top && a.bottom == b.bottom;
  return (sameColumns && (a.top == b.bottom || a.bottom == b.top)) ||
         (sameRows && (a.left == b.right || a.right == b.left));
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CDIB32::AddRect(RECT* list, int count, const RECT& rect) {
  if (list == nullptr || count < 0 || count == std::numeric_limits<int>::max()) return 0;
  RECT current = rect;
  int total = count + 1;
  for (int scanned = count;;) {
    RECT* const end = list + scanned;
    RECT* const found = std::find_if(
        list, end, [&](const RECT& e) { return EqualRect(&e, &current) != FALSE || shareEdge(e, current); });
    if (found == end) break;
    if (EqualRect(found, &current) != FALSE) return total - 1;
    UnionRect(&current, &current, found);
    std::copy(found + 1, end, found);
    // The slot that the removal freed is deliberately scanned too: it repeats the last rectangle, and if
    // there is an empty rectangle, that repetition decides the count.
    scanned = --total;
  }
  // Empty rectangles may merge with the repetition until no slot is left.
  if (total > 0) list[total - 1] = current;
  return total;
}
