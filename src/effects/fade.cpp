#include "effects/fade.h"

#include <algorithm>
#include <cmath>

#include "dib/view.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

bool isOpaque(const BYTE* row, int width) {
  DWORD common = ~DWORD{0};
  for (int x = 0; x < width; ++x) common &= Bgra32::get(row, x);
  return common >> 24 == 255;
}

/// byte = (in * share + out * (255 - share)) / 255, rounded
void fadeOpaqueRow(BYTE* to, const BYTE* in, const BYTE* out, int bytes, std::uint16_t share) {
  const auto rest = static_cast<std::uint16_t>(255 - share);
  for (int i = 0; i < bytes; ++i) {
    const auto sum = static_cast<std::uint16_t>(in[i] * share + out[i] * rest + 127);
    to[i] = static_cast<BYTE>(sum / 255);
  }
}

/// With weightIn = share * alpha of in and weightOut = (255 - share) * alpha of out:
///     alpha = (weightIn + weightOut) / 255, rounded
///     colour = (in * weightIn + out * weightOut) / (weightIn + weightOut), rounded
/// For opaque pixels that is the formula of fadeOpaqueRow.
/// \param shareAt shareAt(x) is the share of the incoming picture in a column, 0 to 255
template <class ShareAt>
void fadeRow(BYTE* __restrict to, const BYTE* in, const BYTE* out, int width, ShareAt&& shareAt) {
  for (int x = 0; x < width; ++x) {
    const int share = shareAt(x);
    const auto p = static_cast<std::int32_t>(Bgra32::get(in, x));
    const auto q = static_cast<std::int32_t>(Bgra32::get(out, x));
    const int weightIn = share * (p >> 24 & 255);
    const int weightOut = (255 - share) * (q >> 24 & 255);
    const int sum = weightIn + weightOut;
    // Numerators are below 2^24 and quotients below 256, so the single-precision quotient truncates to the
    // exact one.
    const float divisor = static_cast<float>(sum + (sum == 0 ? 1 : 0));
    const auto mixed = [&](int shift) {
      const int numerator = (p >> shift & 255) * weightIn + (q >> shift & 255) * weightOut + sum / 2;
      return static_cast<DWORD>(static_cast<int>(static_cast<float>(numerator) / divisor)) << shift;
    };
    const DWORD alpha = static_cast<DWORD>((sum + 127) / 255) << 24;
    Bgra32::put(to, x, alpha | mixed(16) | mixed(8) | mixed(0));
  }
}

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
    if (!isOpaque(picture.row(y), picture.width())) return false;
  }
  return true;
}

OwnedDib fade(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing, double progress) {
  const int share = static_cast<int>(std::lround(progress * 255.0));
  return fadeRows(incoming, outgoing, [&](BYTE* to, const BYTE* in, const BYTE* out, int) {
    const int width = incoming->biWidth;
    if (isOpaque(in, width) && isOpaque(out, width)) {
      fadeOpaqueRow(to, in, out, width * 4, static_cast<std::uint16_t>(share));
    } else {
      fadeRow(to, in, out, width, [share](int) { return share; });
    }
  });
}

OwnedDib fadeByShares(const BITMAPINFOHEADER* incoming, const BITMAPINFOHEADER* outgoing,
                      const BITMAPINFOHEADER* shares) {
  const ConstView share = viewOfDepth(shares, 32);
  return fadeRows(incoming, outgoing, [&](BYTE* to, const BYTE* in, const BYTE* out, int y) {
    const BYTE* row = share.row(y);
    fadeRow(to, in, out, share.width(), [row](int x) { return int{row[std::ptrdiff_t{x} * 4]}; });
  });
}

}  // namespace dibkit
