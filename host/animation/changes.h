#pragma once

#include <optional>
#include <vector>

#include <dibkit.h>

#include "host/formats/gif_writer.h"
#include "host/picture.h"

namespace host {

/// A rectangle of an animation's canvas, lines from the top. A cell is what a pixel shows: a palette index or
/// a colour.
template <class Cell>
struct Patch {
  RECT place{};
  std::vector<Cell> cells;

  explicit Patch(const RECT& covered = {}, Cell cell = {})
      : place(covered), cells(static_cast<std::size_t>(width()) * static_cast<std::size_t>(height()), cell) {}

  int width() const { return place.right - place.left; }
  int height() const { return place.bottom - place.top; }
  /// The line that has this y on the canvas, as far as the patch reaches.
  Cell* line(int y) { return const_cast<Cell*>(std::as_const(*this).line(y)); }
  const Cell* line(int y) const { return cells.data() + std::ptrdiff_t{y - place.top} * width(); }
  /// The cell at this place on the canvas.
  Cell* at(int x, int y) { return line(y) + (x - place.left); }
  const Cell* at(int x, int y) const { return line(y) + (x - place.left); }
};

/// What is to be stored of a frame.
template <class Cell>
struct Change {
  int frame = 0;                      ///< which of the frames it is, from 0; the first one of equal frames
  std::vector<Patch<Cell>> versions;  ///< at least one; all show the same
  Disposal disposal = Disposal::keep;
  int delay = 0;  ///< in hundredths of a second
};

/// Finds what changes from each frame of an animation to the next: the rectangle, and in it the cells that
/// may be left out since they are on the canvas already. Frames that show the same become one. Pixels that
/// become transparent again have the frame before them cleared away. Holds two canvases; the work for a frame
/// is that of the patch in which it may differ from the one before.
template <class Cell>
class ChangeFinder {
 public:
  /// \param transparent the cell that shows nothing, or leaves what is on the canvas; nothing when no cell is
  /// free for that, and then every cell shows something
  ChangeFinder(Size canvas, std::optional<Cell> transparent);

  /// Takes the next frame. Gives the change of the frame before, which is complete now unless the two are
  /// merged.
  /// \param patch the frame as far as it may differ from the one before; all of the first one
  std::optional<Change<Cell>> next(const Patch<Cell>& patch, int delay);
  /// The change of the last frame, after at least one.
  Change<Cell> finish() { return change(RECT{}); }

 private:
  bool lengthens(const Patch<Cell>& patch, int delay) const;
  RECT vanishing(const Patch<Cell>& patch) const;
  RECT changed() const;
  Change<Cell> change(const RECT& vanishing);
  Patch<Cell> version(const RECT& place, const RECT& complete) const;
  void advance(const Patch<Cell>& patch, int delay, const RECT& cleared);

  std::optional<Cell> transparent_;
  Patch<Cell> before_;  ///< on the canvas when the frame is drawn
  Patch<Cell> now_;     ///< on the canvas after that
  RECT touched_;        ///< where the two may differ
  int frame_ = 0;
  int frames_ = 0;  ///< taken so far
  int delay_ = 0;
};

extern template class ChangeFinder<std::uint8_t>;
extern template class ChangeFinder<std::uint32_t>;

}  // namespace host
