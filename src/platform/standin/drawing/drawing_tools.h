#pragma once

#include "platform/standin/bitmaps/pixels.h"
#include "platform/standin/gdi_object.h"

namespace dibkit::standin {

/// What an HPEN stands for.
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

/// What an HBRUSH stands for.
class BrushObject : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::brush;

  BrushObject(Colour brushColour, bool none) : GdiObject(ownKind), colour(brushColour), null(none) {}

  Colour colour;
  bool null;  ///< fills nothing
};

/// The tools and the palette that belong to everybody; null for a number that has none.
GdiObject* stockObject(int number);

}  // namespace dibkit::standin
