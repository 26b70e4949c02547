#pragma once

#include <utility>

#include "platform/standin/gdi_object.h"
#include "platform/standin/regions/region.h"

namespace dibkit::standin {

/// The object behind an HRGN.
class RegionObject : public GdiObject {
 public:
  static constexpr Kind ownKind = Kind::region;

  explicit RegionObject(Region&& pixels) : GdiObject(ownKind), region(std::move(pixels)) {}

  Region region;
};

}  // namespace dibkit::standin
