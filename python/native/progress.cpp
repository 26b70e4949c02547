#include "progress.h"

namespace binding {

bool Callback::show(double share) {
  if (cancelled_) return false;
  if (share < shown_ + 0.01 && share < 1) return true;
  shown_ = share;
  const py::gil_scoped_acquire locked;
  try {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    const py::object answer = function_(share);
    cancelled_ = answer.ptr() == Py_False;
  } catch (...) {
    cancelled_ = true;
    raised_ = std::current_exception();
  }
  return !cancelled_;
}

void Callback::rethrow() const {
  if (raised_) std::rethrow_exception(raised_);
  if (cancelled_) throw Cancelled();
}

}  // namespace binding
