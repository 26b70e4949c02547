#include <cmath>
#include <vector>

#include "effects/angles.h"
#include "effects/full_coverage.h"
#include "effects/numbered.h"
#include "effects/piece.h"
#include "raster/region_builder.h"

namespace dibkit {
namespace {

/// Degrees by which the arm's tip is ahead, so that the first triangle is not empty.
constexpr int lead = 20;

/// Twice the signed area of the triangle centre, a, b.
std::int64_t turn(const POINT& centre, const POINT& a, const POINT& b) {
  return (std::int64_t{a.x} - centre.x) * (std::int64_t{b.y} - centre.y) -
         (std::int64_t{a.y} - centre.y) * (std::int64_t{b.x} - centre.x);
}

/// Triangles that share the centre. Adjacent ones of the same orientation become one polygon with exactly the
/// pixels of its triangles.
class Fan {
 public:
  Fan(RegionBuilder& builder, const POINT& centre) : builder_(builder), centre_(centre) {}

  void addTriangle(const POINT& from, const POINT& to) {
    const std::int64_t sense = turn(centre_, from, to);
    if (sense == 0) return;
    if (!continuesWith(from, to, sense)) {
      close();
      outline_.push_back(from);
      sense_ = sense;
    }
    outline_.push_back(to);
  }

  void close() {
    if (outline_.empty()) return;
    outline_.push_back(centre_);
    const OwnedRegion region(CreatePolygonRgn(outline_.data(), static_cast<int>(outline_.size()), ALTERNATE));
    builder_.add(region.get());
    outline_.clear();
  }

 private:
  /// Whether the next triangle starts where the fan ends, has the same orientation and leaves the fan less
  /// than half a turn wide, so that no two triangles overlap.
  bool continuesWith(const POINT& from, const POINT& to, std::int64_t sense) const {
    if (outline_.empty() || from.x != outline_.back().x || from.y != outline_.back().y) return false;
    const std::int64_t span = turn(centre_, outline_.front(), to);
    return (sense > 0) == (sense_ > 0) && span != 0 && (span > 0) == (sense_ > 0);
  }

  RegionBuilder& builder_;
  POINT centre_;
  std::vector<POINT> outline_;  ///< the outer vertices so far
  std::int64_t sense_ = 0;
};

/// An angle, in degrees, at which the spiral is sure to cover the picture: its radius reaches the corners
/// after two turns, and one more turn covers all directions.
long enoughAngle(const SIZE& picture) {
  const double radius = diagonalOf(picture) / 2.0;
  // Three pixels more allow for truncation and for the straight sides of the triangles.
  return static_cast<long>(std::ceil(720.0 * (radius * 1.001 + 3.0) / radius)) + 360;
}

OwnedRegion spiralRegion(const SIZE& picture, long amount, bool clockwise) {
  const POINT centre{picture.cx / 2, picture.cy / 2};
  const double radius = diagonalOf(picture) / 2.0;
  const int angle = clampAmount(amount, 0, static_cast<int>(enoughAngle(picture)));
  RegionBuilder builder(picture.cx, picture.cy);
  builder.add(RECT{centre.x, centre.y, centre.x + 1, centre.y + 1});
  Fan fan(builder, centre);
  POINT last{centre.x + 1, centre.y};
  for (int i = 0; i < angle; ++i) {
    const int reached = std::min(i + lead, angle);
    const double distance = reached * radius / 720.0;
    const double direction = radians(clockwise ? 360 - reached : reached);
    const POINT tip{static_cast<int>(std::cos(direction) * distance + picture.cx / 2.0),
                    static_cast<int>(picture.cy / 2.0 - std::sin(direction) * distance)};
    fan.addTriangle(last, tip);
    last = tip;
  }
  fan.close();
  return builder.region();
}

}  // namespace

long fullCoverageOfSpiral(const SIZE& picture, long direction) {
  return minimumFullCoverage(picture, enoughAngle(picture),
                             [&](long angle) { return spiralRegion(picture, angle, direction == 1); });
}

BOOL renderSpiral(BITMAPINFOHEADER* source, long direction, long angle, EffectOutput& output) {
  return cutPiece(source, spiralRegion(sizeOf(source), angle, direction == 1), output);
}

}  // namespace dibkit
