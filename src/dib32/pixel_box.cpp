#include "dib32/pixel_box.h"

#include "kernels/match.h"

namespace dibkit {

void markMatches(const Bgra* pixels, int count, const PixelBox& box, BYTE* flags) {
  MatchKernels::Box limits{};
  std::size_t i = 0;
  for (const ByteRange& range : {box.blue, box.green, box.red, box.alpha}) {
    // The limits of an empty range may be no bytes.
    limits.low[i] = range.empty() ? BYTE{255} : static_cast<BYTE>(range.low);
    limits.high[i++] = range.empty() ? BYTE{0} : static_cast<BYTE>(range.high);
  }
  kernels<MatchKernels>().inside32(reinterpret_cast<const BYTE*>(pixels), count, limits, flags);
}

void keepUnderMask(const BYTE* mask, int count, BYTE* flags) {
  for (int i = 0; i < count; ++i) flags[i] = static_cast<BYTE>(flags[i] & (mask[i] != 0));
}

}  // namespace dibkit
