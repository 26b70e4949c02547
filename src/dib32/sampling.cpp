#include "dib32/sampling.h"

namespace dibkit {
namespace {

/// Fills both tables for `area`, in the coordinates in which the destination's corner is at `origin`, with
/// sourceX(x) and sourceY(y).
template <class SourceX, class SourceY>
Sampling sample(const Box& area, const POINT& origin, SourceX&& sourceX, SourceY&& sourceY) {
  Sampling sampling;
  if (area.empty()) return sampling;
  sampling.left = static_cast<int>(area.left - origin.x);
  sampling.top = static_cast<int>(area.top - origin.y);
  sampling.columns.resize(static_cast<std::size_t>(area.width()));
  sampling.rows.resize(static_cast<std::size_t>(area.height()));
  std::int64_t x = area.left;
  for (int& column : sampling.columns) column = sourceX(x++);
  std::int64_t y = area.top;
  for (int& row : sampling.rows) row = sourceY(y++);
  return sampling;
}

constexpr int unity = 32768;

/// position scale / 32768, rounded. The product wraps at 32 bits. The quotient is truncated towards zero and
/// then rounded up by the low 15 bits of the product in two's complement, which moves most negative edges up
/// by one. Deliberate: hosts place their selections by the same formula.
int scaledEdge(std::int64_t position, DWORD scale) {
  const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(position) * scale);
  return product / unity + ((product & (unity - 1)) >= unity / 2 ? 1 : 0);
}

/// 32768 position / scale - origin, rounded with an exact half going down, and clamped to the source.
int nearest(std::int64_t position, DWORD scale, std::int64_t origin, int size) {
  const std::int64_t quotient = position * unity / scale;
  const std::int64_t remainder = position * unity % scale;
  const std::int64_t rounded = quotient + (remainder > scale / 2 ? 1 : 0);
  return static_cast<int>(std::clamp<std::int64_t>(rounded - origin, 0, size - 1));
}

}  // namespace

Sampling stretchSampling(Extent destination, Extent source, const POINT& origin, DWORD scale) {
  if (scale == 0 || source.width == 0 || source.height == 0) return {};
  const Box scaled{scaledEdge(origin.x, scale), scaledEdge(origin.y, scale),
                   scaledEdge(std::int64_t{origin.x} + source.width, scale),
                   scaledEdge(std::int64_t{origin.y} + source.height, scale)};
  return sample(
      intersection(scaled, {0, 0, destination.width, destination.height}), {0, 0},
      [&](std::int64_t x) { return nearest(x, scale, origin.x, source.width); },
      [&](std::int64_t y) { return nearest(y, scale, origin.y, source.height); });
}

Sampling zoomInSampling(Extent destination, const POINT& destinationOrigin, Extent source,
                        const POINT& sourceOrigin, int factor) {
  if (factor < 1) return {};
  const std::int64_t left = std::int64_t{sourceOrigin.x} * factor;
  const std::int64_t top = std::int64_t{sourceOrigin.y} * factor;
  const Box zoomed{left, top, left + std::int64_t{source.width} * factor,
                   top + std::int64_t{source.height} * factor};
  const Box area = intersection(zoomed, placedBox(destination.width, destination.height, destinationOrigin));
  // position / factor for successive positions, without a division for each
  const auto quotients = [factor](std::int64_t first) {
    return [factor, quotient = static_cast<int>(first / factor),
            rest = static_cast<int>(first % factor)](std::int64_t) mutable {
      const int result = quotient;
      if (++rest == factor) {
        rest = 0;
        ++quotient;
      }
      return result;
    };
  };
  Sampling sampling = sample(area, destinationOrigin, quotients(area.left - left), quotients(area.top - top));
  sampling.repeat = factor;
  if (factor == 1) sampling.columnStep = 1;
  return sampling;
}

Sampling zoomOutSampling(Extent destination, const POINT& destinationOrigin, Extent source,
                         const POINT& sourceOrigin, int factor, ZoomOutArea area) {
  if (factor < 1) return {};
  // Truncated towards zero at both ends, so that the last pixel is never outside the source.
  const Box reduced{sourceOrigin.x / factor, sourceOrigin.y / factor,
                    (std::int64_t{sourceOrigin.x} + source.width) / factor,
                    (std::int64_t{sourceOrigin.y} + source.height) / factor};
  Box drawn = intersection(reduced, placedBox(destination.width, destination.height, destinationOrigin));
  if (area == ZoomOutArea::sizeAsEdge) {
    drawn = intersection(drawn,
                         {destinationOrigin.x, destinationOrigin.y, destination.width, destination.height});
  }
  Sampling sampling = sample(
      drawn, destinationOrigin, [&](std::int64_t x) { return static_cast<int>((x - reduced.left) * factor); },
      [&](std::int64_t y) { return static_cast<int>((y - reduced.top) * factor); });
  sampling.columnStep = factor;
  return sampling;
}

}  // namespace dibkit
