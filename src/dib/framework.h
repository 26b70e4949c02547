#pragma once

#include "platform/win32.h"

/// \file
/// The few classes of the host's application framework that cross the library's boundary. A host that is
/// built with the framework uses the framework's own; elsewhere these have just the members that are used.

#if defined(__AFX_H__)
#include <afxtempl.h>
#include <afxwin.h>
#else

#include "dib/colour_map.h"

/// A POINT with constructors.
class CPoint : public POINT {
 public:
  CPoint() : POINT{0, 0} {}
  CPoint(int initX, int initY) : POINT{initX, initY} {}
  CPoint(const POINT& point) : POINT(point) {}  // NOLINT: the framework's class converts implicitly
  bool operator==(const POINT& other) const { return x == other.x && y == other.y; }
  bool operator!=(const POINT& other) const { return !(*this == other); }
};

/// A logical palette and its owner.
class CPalette {
 public:
  CPalette() = default;
  ~CPalette() { DeleteObject(); }
  CPalette(const CPalette&) = delete;
  CPalette& operator=(const CPalette&) = delete;

  BOOL CreatePalette(LOGPALETTE* description) {
    DeleteObject();
    palette_ = ::CreatePalette(description);
    return palette_ != nullptr ? TRUE : FALSE;
  }
  HGDIOBJ GetSafeHandle() const { return palette_; }
  /// Transfers the palette to the caller.
  HGDIOBJ Detach() {
    const HGDIOBJ palette = palette_;
    palette_ = nullptr;
    return palette;
  }
  BOOL DeleteObject() { return palette_ != nullptr ? ::DeleteObject(Detach()) : FALSE; }

 private:
  HPALETTE palette_ = nullptr;
};

#endif
