#include "effects/ripple_fade.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "dib/view.h"
#include "effects/fade.h"
#include "ripple/water.h"

namespace dibkit {
namespace {

/// Wave steps from the first frame to the last, enough for the rings of neighbouring drops to meet.
constexpr int steps = 64;

}  // namespace

OwnedDib rippleFade(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, double progress) {
  OwnedDib below = fade(incoming, outgoing, progress);
  if (!below) return nullptr;
  const ConstView picture(below.get());
  const std::size_t cells =
      static_cast<std::size_t>(picture.width()) * static_cast<std::size_t>(picture.height());
  std::vector<int> first(cells);
  std::vector<int> second(cells);
  const HeightPage pages[] = {{first.data(), picture.width(), picture.height()},
                              {second.data(), picture.width(), picture.height()}};
  addDrops(pages[0]);
  const int count = 2 * static_cast<int>(std::lround(progress * steps / 2));
  for (int i = 0; i < count; ++i) stepWave(pages[i % 2], pages[1 - i % 2], waveDensity);
  // Wave heights are scaled by 4 progress (1 - progress): 0 at both ends, 1 half way.
  const auto strength = static_cast<int>(std::lround(4.0 * progress * (1.0 - progress) * 256.0));
  for (int& height : first) height = height * strength / 256;
  return refract(picture, pages[0], RefractedAlpha::moved);
}

}  // namespace dibkit
