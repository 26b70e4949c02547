#pragma once

#include <memory>

#include "platform/win32.h"

/// \file
/// Owners for what the operations return, and their use as out-parameters.
///
/// \code
/// const OwnedRegion selected(MagicWandRegion(frame, nullptr, {0, 0}, seed, tolerance, canvas));
/// OwnedDib piece, mask;
/// if (CropFrame(frame, nullptr, selected.get(), out(piece), out(mask)) == 0) return nullptr;
/// return piece;
/// \endcode

namespace dibkit {

/// Releases a packed DIB in the way that it was allocated.
struct DibDeleter {
  void operator()(BITMAPINFOHEADER* dib) const noexcept { delete[] reinterpret_cast<BYTE*>(dib); }
};

/// Sole owner of a packed DIB.
using OwnedDib = std::unique_ptr<BITMAPINFOHEADER, DibDeleter>;

/// Releases a region.
struct RegionDeleter {
  using pointer = HRGN;
  void operator()(HRGN region) const noexcept { DeleteObject(region); }
};

/// Sole owner of a region.
using OwnedRegion = std::unique_ptr<HRGN, RegionDeleter>;

/// An owner as an out-parameter; out() makes it.
template <class Owner>
class OutPointer {
 public:
  using Pointer = typename Owner::pointer;

  explicit OutPointer(Owner& owner) noexcept : owner_(owner) {}
  OutPointer(const OutPointer&) = delete;
  OutPointer& operator=(const OutPointer&) = delete;
  ~OutPointer() { owner_.reset(written_); }

  /// What the operation writes to.
  operator Pointer*() noexcept { return &written_; }  // NOLINT: an argument like any pointer

 private:
  Owner& owner_;
  Pointer written_ = nullptr;
};

/// Passes an owner where an operation takes a pointer to a pointer. The owner holds the result from the end
/// of the full expression on (of the whole condition in an `if`), and is empty when nothing was written. What
/// it held before is released only then, so the same call may still read it.
template <class Owner>
[[nodiscard]] OutPointer<Owner> out(Owner& owner) noexcept {
  return OutPointer<Owner>(owner);
}

}  // namespace dibkit
