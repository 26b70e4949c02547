#pragma once

#include "platform/standin/bitmaps/pixels.h"
#include "platform/standin/gdi_object.h"

namespace dibkit::standin {

/// The object behind an HPEN.
class PenObject : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::pen;

  PenObject(int penWidth, Colour penColour, bool square, bool none)
      : GdiObject(ownKind), width(penWidth), colour(penColour), squareCaps(square), null(none) {}

  int width;
  Colour colour;
  bool squareCaps;
  bool null;  ///< draws nothing
};

/// The object behind an HBRUSH.
class BrushObject : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::brush;

  BrushObject(Colour brushColour, bool none) : GdiObject(ownKind), colour(brushColour), null(none) {}

  Colour colour;
  bool null;  ///< fills nothing
};

/// The stock pen, brush or palette of a number; null for any other number.
GdiObject* stockObject(int number);

}  // namespace dibkit::standin
