#pragma once

#include <optional>

#include "platform/standin/bitmaps/bitmap_object.h"
#include "platform/standin/drawing/drawing_tools.h"
#include "platform/standin/drawing/nib.h"
#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// The object behind an HDC: a bitmap and the tools to draw on it. The context of the screen has no bitmap;
/// it only determines what is compatible with it, and drawing on it has no effect.
class DeviceContext : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::context;

  /// Starts with stock tools and, in a memory context, a bitmap of a single monochrome pixel.
  enum class Target { memory, screen };
  explicit DeviceContext(Target target);
  ~DeviceContext() override;

  /// The pixels to draw on; none for the screen.
  Pixels pixels() const;
  BitmapObject* bitmap() const { return objectOf<BitmapObject>(bitmap_); }
  const PenObject& pen() const { return *objectOf<PenObject>(pen_); }
  /// The tip of the selected pen. Throws std::bad_alloc when there is no memory for its shape.
  const Nib& nib() const {
    if (!nib_) nib_.emplace(pen().width, pen().squareCaps);
    return *nib_;
  }
  const BrushObject& brush() const { return *objectOf<BrushObject>(brush_); }
  int bitCount() const;

  /// Selects an object in place of the one of its kind.
  /// \return the object before; null when this one cannot be selected here
  GdiObject* select(GdiObject* object);
  /// Palettes are not selected by SelectObject.
  GdiObject* selectPalette(GdiObject* palette) { return put(palette_, palette); }

  /// The box of what can be visible: the bitmap's, cut to that of the clip region.
  RECT bounds() const;

  /// Calls use(rect) for the parts of a rectangle, in the bitmap's coordinates, that are inside the bitmap
  /// and the clip region.
  template <class Use>
  void forEachVisible(const RECT& area, Use&& use) const {
    const RECT visible = bounds();
    RECT inside;
    if (!IntersectRect(&inside, &area, &visible)) return;
    if (clip) {
      clip->forEachPart(inside, use);
    } else {
      use(inside);
    }
  }

  POINT origin{};              ///< the bitmap's point for the point (0, 0) of the drawing calls
  POINT position{};            ///< the start of the next line, in the coordinates of the drawing calls
  std::optional<Region> clip;  ///< in the bitmap's coordinates, independent of the origin

 private:
  static GdiObject* put(GdiObject*& place, GdiObject* object);

  GdiObject* bitmap_ = nullptr;
  GdiObject* pen_;
  mutable std::optional<Nib> nib_;  ///< made for the first line; none after another pen was selected
  GdiObject* brush_;
  GdiObject* palette_;
};

/// Sets a point of a context and gives the one before, unless `before` is null; FALSE for a handle of no
/// context.
BOOL exchangePoint(HDC handle, POINT DeviceContext::*point, const POINT& value, POINT* before);

}  // namespace dibkit::standin
