#include "frames/colour_range.h"

#include "raster/byte_range.h"

namespace dibkit {

ColourRange::ColourRange(Rgb centre, int tolerance) {
  const BYTE channels[3] = {centre.blue, centre.green, centre.red};
  for (int i = 0; i < block * 3; ++i) {
    const ByteRange range = ByteRange::around(channels[i % 3], tolerance);
    // The limits of an empty range may be no bytes.
    low_[i] = range.empty() ? BYTE{255} : static_cast<BYTE>(range.low);
    high_[i] = range.empty() ? BYTE{0} : static_cast<BYTE>(range.high);
  }
}

void ColourRange::match(const BYTE* bgr, int count, BYTE* flags) const {
  const auto inside = [&](int i) {
    return static_cast<BYTE>((bgr[i] >= low_[i] ? 1 : 0) & (bgr[i] <= high_[i] ? 1 : 0));
  };
  for (; count >= block; count -= block, bgr += block * 3, flags += block) {
    BYTE channels[block * 3];
    for (int i = 0; i < block * 3; ++i) channels[i] = inside(i);
    for (int i = 0; i < block; ++i) {
      flags[i] = static_cast<BYTE>(channels[i * 3] & channels[i * 3 + 1] & channels[i * 3 + 2]);
    }
  }
  for (int i = 0; i < count; ++i) {
    flags[i] = static_cast<BYTE>(inside(i * 3) & inside(i * 3 + 1) & inside(i * 3 + 2));
  }
}

}  // namespace dibkit
