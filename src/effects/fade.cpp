#include "effects/fade.h"

#include <algorithm>
#include <cmath>

#include "dib/allocate.h"
#include "dib/pixel_format.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

bool isOpaque(const BYTE* row, int width) {
  BYTE opacity = 255;
  for (int x = 0; x < width; ++x) opacity &= row[x * 4 + 3];
  return opacity == 255;
}

/// byte = (in * weight + out * (255 - weight)) / 255, rounded
void fadeOpaqueRow(BYTE* to, const BYTE* in, const BYTE* out, int bytes, std::uint16_t weight) {
  const auto rest = static_cast<std::uint16_t>(255 - weight);
  for (int i = 0; i < bytes; ++i) {
    const auto sum = static_cast<std::uint16_t>(in[i] * weight + out[i] * rest + 127);
    to[i] = static_cast<BYTE>(sum / 255);
  }
}

/// opacity = (weight of in + weight of out) / 255, a picture's weight being its share times its opacity;
/// colour = the mean of both, by these weights. Opaque pixels come out as in fadeOpaqueRow.
void fadeRow(BYTE* __restrict to, const BYTE* in, const BYTE* out, int width, int weight) {
  for (int x = 0; x < width; ++x) {
    const auto p = static_cast<std::int32_t>(Bgra32::get(in, x));
    const auto q = static_cast<std::int32_t>(Bgra32::get(out, x));
    const int weightIn = weight * (p >> 24 & 255);
    const int weightOut = (255 - weight) * (q >> 24 & 255);
    const int sum = weightIn + weightOut;
    // Numerators stay below 2^24 and quotients below 256, so that the single-precision quotient truncates
    // to the exact one.
    const float divisor = static_cast<float>(sum + (sum == 0 ? 1 : 0));
    const auto mixed = [&](int shift) {
      const int numerator = (p >> shift & 255) * weightIn + (q >> shift & 255) * weightOut + sum / 2;
      return static_cast<DWORD>(static_cast<int>(static_cast<float>(numerator) / divisor)) << shift;
    };
    const DWORD opacity = static_cast<DWORD>((sum + 127) / 255) << 24;
    Bgra32::put(to, x, opacity | mixed(16) | mixed(8) | mixed(0));
  }
}

}  // namespace

OwnedDib fade(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, double progress) {
  const ConstView in = viewOfDepth(incoming, 32);
  const ConstView out = viewOfDepth(outgoing, 32);
  if (!in || !out || in.width() != out.width() || in.height() != out.height()) return nullptr;
  if (in.width() == 0 || in.height() == 0) return nullptr;
  const int weight = progress > 0.0 ? static_cast<int>(std::lround(std::min(progress, 1.0) * 255.0)) : 0;
  // At the ends the colour of transparent pixels is kept as well.
  if (weight == 0) return copyOf(outgoing);
  if (weight == 255) return copyOf(incoming);

  OwnedDib frame = createDib(in.width(), in.height(), 32, 0, Pixels::unwritten);
  if (!frame) return nullptr;
  const View to(frame.get());
  for (int y = 0; y < to.height(); ++y) {
    if (isOpaque(in.row(y), to.width()) && isOpaque(out.row(y), to.width())) {
      fadeOpaqueRow(to.row(y), in.row(y), out.row(y), to.width() * 4, static_cast<std::uint16_t>(weight));
    } else {
      fadeRow(to.row(y), in.row(y), out.row(y), to.width(), weight);
    }
  }
  return frame;
}

}  // namespace dibkit
