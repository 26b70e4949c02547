#include "dib32/paint.h"

#include <algorithm>

#include "dib32/opacity.h"
#include "kernels/blend.h"

namespace dibkit {
namespace {

/// (below rest + share) / 255, with rest = 255 - opacity and share = above opacity: compositing over an
/// opaque pixel.
BYTE overOpaque(BYTE below, Lane rest, Lane share) {
  return lowByte(divideBy255(static_cast<Lane>(below * rest + share)));
}

void compositeOverOpaque(const Bgra& layer, Bgra* run, int count) {
  const auto share = [&](BYTE channel) { return static_cast<Lane>(channel * layer.alpha); };
  const Lane blue = share(layer.blue), green = share(layer.green), red = share(layer.red);
  const Lane alpha = share(255);  // alpha remains 255, so that all four bytes have one formula
  const auto rest = static_cast<Lane>(255 - layer.alpha);
  for (int i = 0; i < count; ++i) {
    run[i].blue = overOpaque(run[i].blue, rest, blue);
    run[i].green = overOpaque(run[i].green, rest, green);
    run[i].red = overOpaque(run[i].red, rest, red);
    run[i].alpha = overOpaque(run[i].alpha, rest, alpha);
  }
}

}  // namespace

void CompositeColour::operator()(Bgra* run, int count) {
  if (count <= 0) return;
  const BYTE below = run->alpha;
  if (layer_.alpha == 255 || below == 0) {
    // The backdrop does not show through. Alpha 0 over alpha 0 has no colour either.
    std::fill_n(run, count, layer_.alpha != 0 ? layer_ : Bgra{});
    return;
  }
  if (count == 1) {
    *run = over(*run, layer_);
    return;
  }
  if (below == 255) {
    compositeOverOpaque(layer_, run, count);
    return;
  }
  if (tableAlpha_ != below) {
    tableAlpha_ = below;
    for (std::size_t value = 0; value < table_.size(); ++value) {
      const BYTE channel = static_cast<BYTE>(value);
      table_[value] = over({channel, channel, channel, below}, layer_);
    }
  }
  for (int i = 0; i < count; ++i) {
    run[i] = {table_[run[i].blue].blue, table_[run[i].green].green, table_[run[i].red].red, table_[0].alpha};
  }
}

void CompositeColour::operator()(Bgra* run, const BYTE* mask, int count) const {
  constexpr int size = std::tuple_size_v<decltype(row_)>;
  for (int begin = 0; begin < count; begin += size) {
    kernels<BlendKernels>().over(bytesOf(run + begin), bytesOf(row_.data()), std::min(size, count - begin),
                                 {}, mask + begin);
  }
}

void PutColour::operator()(Bgra* run, int count) const { std::fill_n(run, count, pixel_); }

void PutColour::operator()(Bgra* run, const BYTE* mask, int count) const {
  for (int i = 0; i < count; ++i) {
    Bgra pixel = pixel_;
    pixel.alpha = scaled(pixel.alpha, mask[i]);
    run[i] = mask[i] != 0 ? pixel : run[i];
  }
}

void SetAlpha::operator()(Bgra* run, int count) const {
  for (int i = 0; i < count; ++i) run[i].alpha = alpha_;
}

}  // namespace dibkit
