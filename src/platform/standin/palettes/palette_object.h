#pragma once

#include <utility>
#include <vector>

#include "platform/standin/gdi_object.h"

namespace dibkit::standin {

/// The object behind an HPALETTE.
class PaletteObject : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::palette;

  explicit PaletteObject(std::vector<PALETTEENTRY>&& colours)
      : GdiObject(ownKind), entries(std::move(colours)) {}

  int describe(int byteCount, void* out) const override;

  std::vector<PALETTEENTRY> entries;
};

/// The stock palette that every context starts with: the system's twenty reserved colours.
PaletteObject* defaultPalette();

}  // namespace dibkit::standin
