#include "host/animation/changes.h"

#include <algorithm>

namespace host {

namespace {

RECT unionOf(const RECT& a, const RECT& b) {
  RECT both{};
  UnionRect(&both, &a, &b);
  return both;
}

bool isEmpty(const RECT& rect) { return IsRectEmpty(&rect) != 0; }

/// The box of the cells of `area` for which a test of their values in two patches holds.
template <class Cell, class Test>
RECT boxOf(const RECT& area, const Patch<Cell>& a, const Patch<Cell>& b, Test test) {
  RECT box{area.right, area.bottom, area.left, area.top};
  const auto width = static_cast<std::size_t>(area.right - area.left);
  for (int y = area.top; y < area.bottom; ++y) {
    const Cell* left = a.at(area.left, y);
    const Cell* right = b.at(area.left, y);
    // Most lines are equal, and this comparison is by far the fastest.
    if (std::equal(left, left + width, right)) continue;
    int first = area.left;
    while (first < area.right && !test(*left, *right)) ++first, ++left, ++right;
    if (first == area.right) continue;
    int last = area.right;
    while (!test(*a.at(last - 1, y), *b.at(last - 1, y))) --last;
    box = {std::min<LONG>(box.left, first), std::min<LONG>(box.top, y), std::max<LONG>(box.right, last),
           y + 1};
  }
  return isEmpty(box) ? RECT{} : box;
}

template <class Cell>
void copy(const RECT& area, const Patch<Cell>& from, Patch<Cell>& to) {
  for (int y = area.top; y < area.bottom; ++y)
    std::copy_n(from.at(area.left, y), area.right - area.left, to.at(area.left, y));
}

}  // namespace

template <class Cell>
ChangeFinder<Cell>::ChangeFinder(Size canvas, std::optional<Cell> transparent)
    : transparent_(transparent),
      before_({0, 0, canvas.width, canvas.height}, transparent.value_or(Cell{})),
      now_(before_.place),
      touched_(before_.place) {}

template <class Cell>
std::optional<Change<Cell>> ChangeFinder<Cell>::next(const Patch<Cell>& patch, int delay) {
  if (frames_++ == 0) {
    now_ = patch;
    delay_ = delay;
    return std::nullopt;
  }
  if (lengthens(patch, delay)) {
    delay_ += delay;
    return std::nullopt;
  }
  const RECT gone = vanishing(patch);
  Change<Cell> complete = change(gone);
  advance(patch, delay, complete.disposal == Disposal::background ? complete.versions.front().place : RECT{});
  return complete;
}

/// Whether a frame shows the same as the one before and can be one with it.
template <class Cell>
bool ChangeFinder<Cell>::lengthens(const Patch<Cell>& patch, int delay) const {
  constexpr int longestDelay = 65535;
  // Viewers prolong frames of less than two hundredths; merged, they would show for less time.
  constexpr int shortestTrueDelay = 2;
  if (std::min(delay_, delay) < shortestTrueDelay || delay_ + delay > longestDelay) return false;
  for (int y = patch.place.top; y < patch.place.bottom; ++y) {
    const Cell* line = patch.line(y);
    if (!std::equal(line, line + patch.width(), now_.at(patch.place.left, y))) return false;
  }
  return true;
}

/// The box of the cells that the next frame makes transparent again.
template <class Cell>
RECT ChangeFinder<Cell>::vanishing(const Patch<Cell>& patch) const {
  if (!transparent_) return {};
  return boxOf(patch.place, now_, patch, [transparent = *transparent_](Cell now, Cell next) {
    return next == transparent && now != transparent;
  });
}

/// The box of what the frame changes.
template <class Cell>
RECT ChangeFinder<Cell>::changed() const {
  // The canvas is empty before the first frame, which covers all of it.
  if (frame_ == 0) return now_.place;
  return boxOf(touched_, before_, now_, [](Cell before, Cell now) { return before != now; });
}

template <class Cell>
Change<Cell> ChangeFinder<Cell>::change(const RECT& vanishing) {
  const RECT box = changed();
  // Only disposal makes cells transparent again, so the frame has to cover them.
  RECT place = unionOf(box, vanishing);
  // A rectangle without pixels cannot be stored: one unchanged pixel is.
  if (isEmpty(place)) place = {0, 0, 1, 1};
  Change<Cell> change{frame_, {}, isEmpty(vanishing) ? Disposal::keep : Disposal::background, delay_};
  // A version that leaves cells out is mostly smaller.
  if (transparent_ && frame_ > 0) {
    change.versions.push_back(version(place, RECT{}));
    if (!isEmpty(box) && EqualRect(&box, &place) == 0) change.versions.push_back(version(place, box));
  }
  Patch<Cell> whole = version(place, place);
  if (change.versions.empty() || change.versions.front().cells != whole.cells)
    change.versions.push_back(std::move(whole));
  return change;
}

/// The frame at a place: all cells of a rectangle in it, and of the others those that change.
template <class Cell>
Patch<Cell> ChangeFinder<Cell>::version(const RECT& place, const RECT& complete) const {
  Patch<Cell> version(place);
  for (int y = place.top; y < place.bottom; ++y) {
    const Cell* before = before_.at(place.left, y);
    const Cell* now = now_.at(place.left, y);
    Cell* to = version.line(y);
    const bool anyComplete = y >= complete.top && y < complete.bottom;
    const auto from = anyComplete ? complete.left - place.left : 0;
    const auto until = anyComplete ? complete.right - place.left : 0;
    const auto leaveOut = [&](LONG first, LONG last) {
      for (LONG x = first; x < last; ++x) to[x] = now[x] == before[x] ? *transparent_ : now[x];
    };
    leaveOut(0, from);
    std::copy(now + from, now + until, to + from);
    leaveOut(until, version.width());
  }
  return version;
}

template <class Cell>
void ChangeFinder<Cell>::advance(const Patch<Cell>& patch, int delay, const RECT& cleared) {
  copy(touched_, now_, before_);
  for (int y = cleared.top; y < cleared.bottom; ++y)
    std::fill_n(before_.at(cleared.left, y), cleared.right - cleared.left, *transparent_);
  copy(patch.place, patch, now_);
  touched_ = unionOf(patch.place, cleared);
  frame_ = frames_ - 1;
  delay_ = delay;
}

template class ChangeFinder<std::uint8_t>;
template class ChangeFinder<std::uint32_t>;

}  // namespace host
