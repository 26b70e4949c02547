#include <algorithm>
#include <vector>

#include "dib/guard.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "dib32/sharpen_rule.h"

namespace dibkit {
namespace {

/// sums[i] = the three bytes above each other at i
void addColumns(const BYTE* above, const BYTE* centre, const BYTE* below, std::size_t count,
                std::uint16_t* sums) {
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] = static_cast<std::uint16_t>(above[i] + centre[i] + below[i]);
  }
}

/// Gives each pixel of `to` the opacity that it has in `from`.
void copyOpacity(const BYTE* from, BYTE* to, int count) {
  for (int i = 0; i < count; ++i) {
    Bgra32::put(to, i, (Bgra32::get(to, i) & colourBits) | (Bgra32::get(from, i) & ~colourBits));
  }
}

/// One pass: a row is overwritten while the rows around it are still needed as they were, so that two rows of
/// history stand in for a copy of the image.
void sharpen(const View& image, const SharpenRule& rule) {
  const auto bytes = static_cast<std::size_t>(image.width()) * 4;
  std::vector<BYTE> above(image.row(0), image.row(0) + bytes);
  std::vector<BYTE> centre = above;
  std::vector<std::uint16_t> sums(bytes + 8);
  for (int y = 0; y < image.height(); ++y) {
    const bool last = y + 1 == image.height();
    addColumns(above.data(), centre.data(), last ? centre.data() : image.row(y + 1), bytes, sums.data() + 4);
    std::copy_n(sums.begin() + 4, 4, sums.begin());
    std::copy_n(sums.end() - 8, 4, sums.end() - 4);
    sharpenRow(rule, centre.data(), sums.data(), bytes, image.row(y));
    copyOpacity(centre.data(), image.row(y), image.width());
    if (last) break;
    above.swap(centre);
    std::copy_n(image.row(y + 1), bytes, centre.begin());
  }
}

}  // namespace
}  // namespace dibkit

void CDIB32::Sharpen32BitsImage(BITMAPINFOHEADER* image, int k) {
  const dibkit::View view = dibkit::viewOfDepth(image, 32);
  if (view.width() == 0 || view.height() == 0) return;
  dibkit::orOutOfMemory(false, [&] {
    dibkit::sharpen(view, dibkit::SharpenRule(k));
    return true;
  });
}
