#pragma once

#include <exception>

#include "operation.h"

namespace binding {

/// Work was cancelled by its progress function. Python's Cancelled.
class Cancelled : public std::exception {};

/// A progress function of Python, or None. It is called with the interpreter's lock, which the work around it
/// does not hold, and only when the share has grown by a hundredth.
class Callback {
 public:
  Callback() = default;
  explicit Callback(py::object function) : function_(std::move(function)) {}

  explicit operator bool() const { return function_ && !function_.is_none(); }

  /// \return false for a cancel: the function returned False, raised, or Ctrl-C was pressed
  bool show(double share);
  /// Throws what the function raised, and Cancelled if it returned False.
  void rethrow() const;

 private:
  py::object function_;
  double shown_ = -1;
  bool cancelled_ = false;
  std::exception_ptr raised_;
};

/// The library's progress object for a function of Python.
class Progress : public CQorCommonProgress {
 public:
  /// \param callback must outlive the object
  explicit Progress(Callback& callback) : callback_(&callback) {}

  float SetProgress(float fraction) override {
    if (!callback_->show(static_cast<double>(ScaledFraction(fraction)))) m_bCancel = 1;
    return fraction;
  }

 private:
  Callback* callback_;
};

/// The image that work(progress) makes, where `progress` is the library's object or null.
template <class Work>
Image madeWith(Callback& callback, Work&& work) {
  if (!callback) return made(work(static_cast<CQorCommonProgress*>(nullptr)));
  Progress progress(callback);
  dibkit::OwnedDib dib(work(static_cast<CQorCommonProgress*>(&progress)));
  callback.rethrow();
  return Image(std::move(dib));
}

}  // namespace binding

namespace pybind11::detail {

template <>
struct type_caster<binding::Callback> {
  PYBIND11_TYPE_CASTER(binding::Callback, const_name("Optional[Progress]"));
  bool load(handle source, bool) {
    if (!source.is_none() && PyCallable_Check(source.ptr()) == 0)
      throw type_error(std::string("a function is needed for the progress, not ") +
                       Py_TYPE(source.ptr())->tp_name);
    value = binding::Callback(reinterpret_borrow<object>(source));
    return true;
  }
};

}  // namespace pybind11::detail

namespace binding {
template <>
struct TypeName<Callback> {
  static std::string text() { return "callable, optional"; }
};
}  // namespace binding
