#include "dib32/paint.h"

#include <algorithm>
#include <array>

#include "dib32/blend.h"

namespace dibkit {
namespace {

/// (below rest + share) / 255, with rest = 255 - opacity and share = above opacity: what laying comes to over
/// an opaque pixel.
BYTE overOpaque(BYTE below, Lane rest, Lane share) {
  return lowByte(divideBy255(static_cast<Lane>(below * rest + share)));
}

void layOverOpaque(const Bgra& layer, Bgra* run, int count) {
  const auto share = [&](BYTE channel) { return static_cast<Lane>(channel * layer.alpha); };
  const Lane blue = share(layer.blue), green = share(layer.green), red = share(layer.red);
  const Lane alpha = share(255);  // keeps the opacity at 255, so that all four bytes have one formula
  const auto rest = static_cast<Lane>(255 - layer.alpha);
  for (int i = 0; i < count; ++i) {
    run[i].blue = overOpaque(run[i].blue, rest, blue);
    run[i].green = overOpaque(run[i].green, rest, green);
    run[i].red = overOpaque(run[i].red, rest, red);
    run[i].alpha = overOpaque(run[i].alpha, rest, alpha);
  }
}

/// Lays the layer over pixels of any opacity, through a row of its own that is used again and again.
void layPieces(const Bgra& layer, Bgra* run, int count, const BYTE* mask) {
  constexpr int size = 256;
  std::array<Bgra, size> above;
  std::fill_n(above.begin(), std::min(size, count), layer);
  for (int begin = 0; begin < count; begin += size) {
    overRow(run + begin, above.data(), std::min(size, count - begin), {},
            mask != nullptr ? mask + begin : nullptr);
  }
}

}  // namespace

void LayColour::operator()(Bgra* run, int count) const {
  if (count <= 0) return;
  const BYTE below = run->alpha;
  if (layer_.alpha == 255 || below == 0) {
    // Nothing of what was there shows through. No opacity over none leaves no colour either.
    std::fill_n(run, count, over(*run, layer_));
  } else if (below == 255) {
    layOverOpaque(layer_, run, count);
  } else {
    layPieces(layer_, run, count, nullptr);
  }
}

void LayColour::operator()(Bgra* run, const BYTE* mask, int count) const {
  layPieces(layer_, run, count, mask);
}

void PutColour::operator()(Bgra* run, int count) const { std::fill_n(run, count, pixel_); }

void PutColour::operator()(Bgra* run, const BYTE* mask, int count) const {
  for (int i = 0; i < count; ++i) {
    Bgra pixel = pixel_;
    pixel.alpha = scaled(pixel.alpha, mask[i]);
    run[i] = mask[i] != 0 ? pixel : run[i];
  }
}

void SetOpacity::operator()(Bgra* run, int count) const {
  for (int i = 0; i < count; ++i) run[i].alpha = opacity_;
}

}  // namespace dibkit
