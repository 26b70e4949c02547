#pragma once

#include <vector>

#include <dibkit.h>
#include <pybind11/pybind11.h>

#include "image.h"

namespace binding {

namespace py = pybind11;

/// A set of pixels that Python owns; never null.
class Region : public Zeroed {
 public:
  /// Takes over a region of the library. Throws std::bad_alloc for none.
  explicit Region(dibkit::OwnedRegion region);
  Region() : Region(dibkit::OwnedRegion(CreateRectRgn(0, 0, 0, 0))) {}

  /// Throws py::type_error for an object that was never initialised.
  HRGN get() const {
    if (!region_) throw py::type_error("this Region has not been initialised");
    return region_.get();
  }
  /// The smallest rectangle that holds it; all 0 for an empty one.
  RECT box() const;
  /// Its rectangles by rows from the top, in each row from the left.
  std::vector<RECT> rectangles() const;

 private:
  dibkit::OwnedRegion region_;
};

/// The union of rectangles. Empty ones count for nothing.
Region regionOf(const std::vector<RECT>& rectangles);

void defineRegion(py::module_& module);

}  // namespace binding
