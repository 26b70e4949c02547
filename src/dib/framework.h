#pragma once

#include "platform/win32.h"

/// \file
/// The three classes of the host's application framework that the interface uses: CMap, CPoint and CPalette.
/// A host that is built with the framework uses the framework's own. Everywhere else these stand in for them,
/// with the members that are needed here. As with standard containers, one thread at a time may change an
/// object.

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

/// A logical palette that it owns.
class CPalette {
 public:
  CPalette() = default;
  ~CPalette() { DeleteObject(); }
  CPalette(const CPalette&) = delete;
  CPalette& operator=(const CPalette&) = delete;

  /// Makes the palette, after the release of an earlier one.
  /// \return FALSE when it could not be made
  BOOL CreatePalette(LOGPALETTE* description) {
    DeleteObject();
    palette_ = ::CreatePalette(description);
    return palette_ != nullptr ? TRUE : FALSE;
  }
  /// The palette, or null.
  HGDIOBJ GetSafeHandle() const { return palette_; }
  /// Transfers the palette to the caller.
  HGDIOBJ Detach() {
    const HGDIOBJ palette = palette_;
    palette_ = nullptr;
    return palette;
  }
  /// Releases the palette.
  /// \return FALSE when there was none
  BOOL DeleteObject() { return palette_ != nullptr ? ::DeleteObject(Detach()) : FALSE; }

 private:
  HPALETTE palette_ = nullptr;
};

#endif
