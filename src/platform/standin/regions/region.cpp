#include "platform/standin/regions/region.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/bounds.h"

namespace dibkit::standin {

namespace {

using Rectangles = std::span<const RECT>;

bool isEmpty(const RECT& rect) { return rect.left >= rect.right || rect.top >= rect.bottom; }

/// The first band of a list.
Rectangles firstBand(Rectangles list) {
  std::size_t count = 0;
  while (count < list.size() && list[count].top == list.front().top) ++count;
  return list.first(count);
}

/// Whether BandBuilder would make this same list of its rectangles.
bool isCanonical(Rectangles list) {
  Rectangles above;
  while (!list.empty()) {
    const Rectangles band = firstBand(list);
    for (std::size_t i = 0; i < band.size(); ++i) {
      if (isEmpty(band[i]) || band[i].bottom != band[0].bottom) return false;
      if (i > 0 && band[i].left <= band[i - 1].right) return false;
    }
    if (!above.empty() && above[0].bottom > band[0].top) return false;
    if (!above.empty() && above[0].bottom == band[0].top && haveEqualSpans(above, band)) return false;
    above = band;
    list = list.subspan(band.size());
  }
  return true;
}

/// The spans of a band that reach into [left, right).
Rectangles within(Rectangles band, int left, int right) {
  const auto first =
      std::partition_point(band.begin(), band.end(), [left](const RECT& span) { return span.right <= left; });
  const auto last =
      std::partition_point(first, band.end(), [right](const RECT& span) { return span.left < right; });
  return {first, last};
}

bool keeps(Combination combination, bool inA, bool inB) {
  return (static_cast<unsigned>(combination) >> (2 * unsigned{inA} + unsigned{inB}) & 1) != 0;
}

void copyBand(Rectangles band, int top, int bottom, BandBuilder& out) {
  for (const RECT& span : band) out.add(top, bottom, span.left, span.right);
}

/// Iterates over the left and right ends of a band's spans.
class EndsOfSpans {
 public:
  explicit EndsOfSpans(Rectangles band) : band_(band) {}
  /// Whether x is in a span, after pass() of every end up to it.
  bool inside() const { return inside_; }
  std::int64_t next() const {
    if (band_.empty()) return std::numeric_limits<std::int64_t>::max();
    return inside_ ? band_.front().right : band_.front().left;
  }
  void pass(std::int64_t x) {
    if (next() != x) return;
    if (inside_) band_ = band_.subspan(1);
    inside_ = !inside_;
  }

 private:
  Rectangles band_;
  bool inside_ = false;
};

/// Combines rows on which both regions have spans, in one sweep over the ends of both.
void combineBands(Rectangles a, Rectangles b, Combination combination, int top, int bottom,
                  BandBuilder& out) {
  if (combination == Combination::both) {
    // Only the spans in the common columns count, so the rest of a wide region costs nothing.
    const int left = std::max(a.front().left, b.front().left);
    const int right = std::min(a.back().right, b.back().right);
    if (left >= right) return;
    a = within(a, left, right);
    b = within(b, left, right);
  }
  EndsOfSpans endsOfA(a);
  EndsOfSpans endsOfB(b);
  bool kept = false;
  int left = 0;
  for (;;) {
    const std::int64_t x = std::min(endsOfA.next(), endsOfB.next());
    if (x == std::numeric_limits<std::int64_t>::max()) break;
    endsOfA.pass(x);
    endsOfB.pass(x);
    if (keeps(combination, endsOfA.inside(), endsOfB.inside()) == kept) continue;
    if (kept) {
      out.add(top, bottom, left, static_cast<int>(x));
    } else {
      left = static_cast<int>(x);
    }
    kept = !kept;
  }
}

/// Iterates over the bands of a list, split at rows of the caller's choice.
class BandCursor {
 public:
  explicit BandCursor(Rectangles list) : rest_(list) { load(); }
  bool done() const { return band_.empty(); }
  Rectangles spans() const { return band_; }
  std::int64_t top() const { return done() ? std::numeric_limits<std::int64_t>::max() : top_; }
  std::int64_t bottom() const { return done() ? std::numeric_limits<std::int64_t>::max() : band_[0].bottom; }
  /// Goes on to row y, which is in the current band or at its end.
  void advanceTo(std::int64_t y) {
    if (done()) return;
    if (y >= band_[0].bottom) {
      rest_ = rest_.subspan(band_.size());
      load();
    } else if (y > top_) {
      top_ = y;
    }
  }

 private:
  void load() {
    band_ = firstBand(rest_);
    if (!done()) top_ = band_[0].top;
  }

  Rectangles rest_;
  Rectangles band_;
  std::int64_t top_ = 0;
};

/// The union of sorted rectangles, by halves: each step is linear, so the whole costs about as much as a
/// sort.
Region unionOf(Rectangles list) {
  if (list.empty()) return {};
  if (list.size() == 1) return Region::ofRectangle(list[0].left, list[0].top, list[0].right, list[0].bottom);
  const std::size_t half = list.size() / 2;
  return Region::combine(unionOf(list.first(half)), unionOf(list.subspan(half)), Combination::either);
}

}  // namespace

Region Region::ofRectangle(int left, int top, int right, int bottom) {
  BandBuilder bands;
  bands.add(std::min(top, bottom), std::max(top, bottom), std::min(left, right), std::max(left, right));
  return Region(bands.take());
}

Region::Region(std::vector<RECT>&& canonical)
    : rectangles_(std::move(canonical)), box_(boundsOf(rectangles_)) {}

Region Region::ofRectangles(std::span<const RECT> list) {
  if (isCanonical(list)) return Region(std::vector<RECT>(list.begin(), list.end()));
  std::vector<RECT> rectangles;
  std::remove_copy_if(list.begin(), list.end(), std::back_inserter(rectangles), isEmpty);
  std::sort(rectangles.begin(), rectangles.end(), [](const RECT& a, const RECT& b) {
    return std::pair{a.top, a.left} < std::pair{b.top, b.left};
  });
  return unionOf(rectangles);
}

bool Region::contains(int x, int y) const {
  // Rectangles above the pixel, and those to its left in its row, come before it in the list.
  const auto found = std::partition_point(rectangles_.begin(), rectangles_.end(), [x, y](const RECT& rect) {
    return rect.bottom <= y || (rect.top <= y && rect.right <= x);
  });
  return found != rectangles_.end() && found->top <= y && found->left <= x;
}

bool Region::operator==(const Region& other) const {
  return std::equal(rectangles_.begin(), rectangles_.end(), other.rectangles_.begin(),
                    other.rectangles_.end(), [](const RECT& a, const RECT& b) { return EqualRect(&a, &b); });
}

int Region::complexity() const {
  if (empty()) return NULLREGION;
  return rectangles_.size() == 1 && !curved_ ? SIMPLEREGION : COMPLEXREGION;
}

bool Region::offset(int dx, int dy) {
  const auto fits = [](LONG low, LONG high, int by) {
    return std::int64_t{low} + by >= std::numeric_limits<LONG>::min() &&
           std::int64_t{high} + by <= std::numeric_limits<LONG>::max();
  };
  if (empty()) return true;
  if (!fits(box_.left, box_.right, dx) || !fits(box_.top, box_.bottom, dy)) return false;
  OffsetRect(&box_, dx, dy);
  for (RECT& rect : rectangles_) {
    rect = {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
  }
  return true;
}

Region Region::combine(const Region& a, const Region& b, Combination combination) {
  // A region that the operation does not change is returned as it is, also as to markCurved().
  RECT common;
  const bool apart = !IntersectRect(&common, &a.box_, &b.box_);
  if (b.empty() && keeps(combination, true, false)) return a;
  if (apart && combination == Combination::firstOnly) return a;
  if (a.empty() && keeps(combination, false, true)) return b;
  if (apart && combination == Combination::both) return {};

  BandBuilder out;
  BandCursor bandsA(a.rectangles());
  BandCursor bandsB(b.rectangles());
  while (!bandsA.done() || !bandsB.done()) {
    const std::int64_t top = std::min(bandsA.top(), bandsB.top());
    const bool onA = bandsA.top() == top;
    const bool onB = bandsB.top() == top;
    const std::int64_t bottom =
        std::min(onA ? bandsA.bottom() : bandsA.top(), onB ? bandsB.bottom() : bandsB.top());
    const int firstRow = static_cast<int>(top);
    const int endRow = static_cast<int>(bottom);
    if (onA && onB) {
      combineBands(bandsA.spans(), bandsB.spans(), combination, firstRow, endRow, out);
    } else if (keeps(combination, onA, onB)) {
      copyBand(onA ? bandsA.spans() : bandsB.spans(), firstRow, endRow, out);
    }
    if (onA) bandsA.advanceTo(bottom);
    if (onB) bandsB.advanceTo(bottom);
  }
  return Region(out.take());
}

}  // namespace dibkit::standin
