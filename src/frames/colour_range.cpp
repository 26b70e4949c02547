#include "frames/colour_range.h"

#include "raster/byte_range.h"

namespace dibkit {

ColourRange::ColourRange(Rgb centre, int tolerance) : box_{} {
  const BYTE channels[3] = {centre.blue, centre.green, centre.red};
  for (std::size_t i = 0; i < 3; ++i) {
    const ByteRange range = ByteRange::around(channels[i], tolerance);
    // The limits of an empty range may be no bytes.
    box_.low[i] = range.empty() ? BYTE{255} : static_cast<BYTE>(range.low);
    box_.high[i] = range.empty() ? BYTE{0} : static_cast<BYTE>(range.high);
  }
}

void ColourRange::match(const BYTE* bgr, int count, BYTE* flags) const {
  kernels<MatchKernels>().inside24(bgr, count, box_, flags);
}

}  // namespace dibkit
