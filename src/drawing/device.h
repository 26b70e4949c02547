#pragma once

#include <memory>

#include "platform/win32.h"

/// \file
/// Owners for what the drawing calls need.

namespace dibkit {

struct GraphicsObjectDeleter {
  using pointer = HGDIOBJ;
  void operator()(HGDIOBJ object) const noexcept { DeleteObject(object); }
};

/// Sole owner of a pen, a brush or any other graphics object, which must not be selected any more when the
/// owner goes. Stock objects may be owned too: releasing them does nothing.
using OwnedGraphicsObject = std::unique_ptr<void, GraphicsObjectDeleter>;

struct BitmapDeleter {
  using pointer = HBITMAP;
  void operator()(HBITMAP bitmap) const noexcept { DeleteObject(bitmap); }
};

/// Sole owner of a bitmap, which must not be selected any more when the owner goes.
using OwnedBitmap = std::unique_ptr<HBITMAP, BitmapDeleter>;

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

/// Selects an object into a context for its own lifetime, then selects the previous one again.
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
