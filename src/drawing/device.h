#pragma once

#include <memory>

#include "platform/win32.h"

/// \file
/// Owners of the objects that the drawing calls use.

namespace dibkit {

template <class Handle>
struct ObjectDeleter {
  using pointer = Handle;
  void operator()(Handle object) const noexcept { DeleteObject(object); }
};

/// Sole owner of a graphics object, which has to be deselected before its owner is destroyed. Stock objects
/// may be owned too: releasing them has no effect.
using OwnedGraphicsObject = std::unique_ptr<void, ObjectDeleter<HGDIOBJ>>;
using OwnedBitmap = std::unique_ptr<HBITMAP, ObjectDeleter<HBITMAP>>;

struct MemoryContextDeleter {
  using pointer = HDC;
  void operator()(HDC context) const noexcept { DeleteDC(context); }
};

/// Sole owner of a context from CreateCompatibleDC.
using MemoryContext = std::unique_ptr<HDC, MemoryContextDeleter>;

struct ScreenContextDeleter {
  using pointer = HDC;
  void operator()(HDC context) const noexcept { ReleaseDC(nullptr, context); }
};

/// Sole owner of the screen's context from GetDC(nullptr).
using ScreenContext = std::unique_ptr<HDC, ScreenContextDeleter>;

/// Selects an object into a context, and on destruction the previous one again.
class SelectedObject {
 public:
  SelectedObject(HDC context, HGDIOBJ object) : context_(context), before_(SelectObject(context, object)) {}
  ~SelectedObject() {
    if (before_ != nullptr) SelectObject(context_, before_);
  }
  SelectedObject(const SelectedObject&) = delete;
  SelectedObject& operator=(const SelectedObject&) = delete;

 private:
  HDC context_;
  HGDIOBJ before_;
};

}  // namespace dibkit
