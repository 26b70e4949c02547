#pragma once

#include <optional>

#include "platform/standin/bitmaps/bitmap_object.h"
#include "platform/standin/drawing/drawing_tools.h"
#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// What an HDC stands for: the bitmap that is drawn on and the tools that it is drawn with. The context of
/// the screen has no bitmap: nothing shows there, it only says what is compatible with it.
class DeviceContext : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::context;

  /// The tools are the stock ones, the bitmap of a memory context is a single monochrome pixel.
  enum class Target { memory, screen };
  explicit DeviceContext(Target target);
  ~DeviceContext() override;

  /// The surface; without a height on the screen.
  Pixels pixels() const;
  BitmapObject* bitmap() const { return objectOf<BitmapObject>(bitmap_); }
  const PenObject& pen() const { return *objectOf<PenObject>(pen_); }
  const BrushObject& brush() const { return *objectOf<BrushObject>(brush_); }
  int bitCount() const;

  /// Puts an object in the place of the one of its kind and returns that; null when it can not be selected
  /// here.
  GdiObject* select(GdiObject* object);
  /// Palettes have a way of their own to be selected.
  GdiObject* selectPalette(GdiObject* palette) { return put(palette_, palette); }

  /// Paints the part of an area, in the surface's coordinates, that lies on the surface and in the clip
  /// region.
  void paint(const Region& area, Colour colour) const;

  /// Calls use(rect) for the rectangles of the part of an area that shows.
  template <class Use>
  void forEachVisible(const Region& area, Use&& use) const {
    const Region clipped = clip ? Region::combine(area, *clip, Combination::both) : Region();
    const RECT bounds = pixels().bounds();
    for (const RECT& rect : (clip ? clipped : area).rectangles()) {
      RECT visible;
      if (IntersectRect(&visible, &rect, &bounds)) use(visible);
    }
  }

  POINT origin{};              ///< where the point (0, 0) of the drawing calls lies on the surface
  POINT position{};            ///< where the next line starts, in the drawing calls' coordinates
  std::optional<Region> clip;  ///< in the surface's coordinates, whatever the origin

 private:
  static GdiObject* put(GdiObject*& place, GdiObject* object);

  GdiObject* bitmap_ = nullptr;
  GdiObject* pen_;
  GdiObject* brush_;
  GdiObject* palette_;
};

}  // namespace dibkit::standin
