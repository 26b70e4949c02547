#include "effects/fade.h"

#include <algorithm>
#include <cmath>

#include "dib/view.h"
#include "effects/piece.h"
#include "kernels/copy.h"
#include "kernels/mix.h"

namespace dibkit {
namespace {

/// A new frame; put(to, in, out, y) writes each row.
template <class PutRow>
OwnedDib fadeRows(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, PutRow&& put) {
  const ConstView in = viewOfDepth(incoming, 32);
  const ConstView out = viewOfDepth(outgoing, 32);
  return makeRows(in, [&](BYTE* row, int y) { put(row, in.row(y), out.row(y), y); });
}

}  // namespace

bool isOpaque(const ConstView& picture) {
  for (int y = 0; y < picture.lines(); ++y) {
    if (kernels<CopyKernels>().commonBits(picture.row(y), picture.width()) < opaqueAlpha) return false;
  }
  return true;
}

OwnedDib fade(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, double progress) {
  const auto share = static_cast<std::uint16_t>(std::lround(progress * 255.0));
  return fadeRows(incoming, outgoing, [&](BYTE* to, const BYTE* in, const BYTE* out, int) {
    kernels<MixKernels>().fade(in, out, incoming->biWidth, share, to);
  });
}

OwnedDib fadeByShares(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing,
                      const BITMAPINFOHEADER* shares) {
  const ConstView share = viewOfDepth(shares, 32);
  return fadeRows(incoming, outgoing, [&](BYTE* to, const BYTE* in, const BYTE* out, int y) {
    const BYTE* row = share.row(y);
    for (std::ptrdiff_t at = 0; at < std::ptrdiff_t{share.width()} * 4; at += 4) {
      fadePixel(in + at, out + at, row[at], to + at);
    }
  });
}

}  // namespace dibkit
