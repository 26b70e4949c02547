#include "host/animation/alpha.h"

#include <algorithm>

#include "host/animation/bayer.h"
#include "host/animation/palette.h"

namespace host {

namespace {

constexpr BYTE opaque = 255;

/// Whether a pixel has both opaque and wholly transparent neighbours: smooth edges are one pixel wide.
bool isEdge(const Picture& picture, int x, int y) {
  bool besideOpaque = false;
  bool besideNothing = false;
  for (int row = std::max(y - 1, 0); row <= std::min(y + 1, picture.height() - 1); ++row) {
    const Pixel* pixels = picture.row(row);
    for (int column = std::max(x - 1, 0); column <= std::min(x + 1, picture.width() - 1); ++column) {
      besideOpaque = besideOpaque || pixels[column].alpha == opaque;
      besideNothing = besideNothing || pixels[column].alpha == 0;
    }
  }
  return besideOpaque && besideNothing;
}

/// The smallest alpha of an opaque pixel at that place: 2, 6, ... 254. The pattern differs from that of
/// dithered colours; with the same one, the dots would have mostly one of two colours.
int thresholdAt(int x, int y) { return 4 * bayerRank(x, y) + 2; }

}  // namespace

void ditherAlpha(Picture& picture) {
  if (CDIB32::IsTranslucence32BitsImage(picture.dib()) == 0) return;
  const Picture smooth = picture.clone();
  for (int y = 0; y < picture.height(); ++y) {
    Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) {
      BYTE& alpha = row[x].alpha;
      if (alpha == 0 || alpha == opaque) continue;
      const int threshold = isEdge(smooth, x, y) ? opaqueFrom : thresholdAt(x, y);
      alpha = alpha >= threshold ? opaque : 0;
    }
  }
}

}  // namespace host
