#include <algorithm>
#include <vector>

#include "dib/view.h"
#include "dib32/bgra.h"
#include "dib32/dib32.h"
#include "dib32/sharpen_rule.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// sums[i] = the sum of the three bytes at i
void addColumns(const BYTE* above, const BYTE* centre, const BYTE* below, std::size_t count,
                std::uint16_t* sums) {
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] = static_cast<std::uint16_t>(above[i] + centre[i] + below[i]);
  }
}

/// Copies the alpha of each pixel.
void copyAlpha(const BYTE* from, BYTE* to, int count) {
  for (int i = 0; i < count; ++i) {
    Bgra32::put(to, i, (Bgra32::get(to, i) & colourBits) | (Bgra32::get(from, i) & ~colourBits));
  }
}

/// One pass in place. A row is overwritten while its neighbours still need its old contents, so two rows of
/// history are kept instead of a copy of the image.
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
    copyAlpha(centre.data(), image.row(y), image.width());
    if (last) break;
    above.swap(centre);
    std::copy_n(image.row(y + 1), bytes, centre.begin());
  }
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CDIB32::Sharpen32BitsImage(BITMAPINFOHEADER* image, int k) {
  const View view = viewOfDepth(image, 32);
  if (view.width() == 0 || view.height() == 0) return;
  catchOutOfMemory([&] { sharpen(view, SharpenRule(k)); });
}
