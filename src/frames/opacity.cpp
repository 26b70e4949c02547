#include "frames/opacity.h"

#include <algorithm>
#include <bit>
#include <vector>

#include "dib/flood.h"
#include "dib/guard.h"
#include "dib/mask_rows.h"
#include "dib/region_spans.h"
#include "frames/frames.h"

namespace dibkit {
namespace {

ConstView viewOfMask(const BITMAPINFOHEADER* mask) { return viewOfDepth(mask, 1); }

/// The opaque pixels of a frame mask, line by line as runs.
class OpaqueRows {
 public:
  explicit OpaqueRows(const ConstView& mask)
      : mask_(mask), words_((static_cast<std::size_t>(mask.width()) + 63) / 64) {}

  /// Bits of line y, 1 for an opaque pixel; valid until the next call.
  const std::uint64_t* operator()(int y) {
    loadMaskRow(mask_.row(y), mask_.width(), words_.data());
    for (std::uint64_t& word : words_) word = ~word;
    if (mask_.width() % 64 != 0) words_.back() &= (std::uint64_t{1} << mask_.width() % 64) - 1;
    return words_.data();
  }

 private:
  ConstView mask_;
  std::vector<std::uint64_t> words_;
};

OwnedRegion opaqueRegion(const ConstView& mask) {
  if (mask.lines() == 0) return nullptr;
  OpaqueRows opaque(mask);
  SpanCollector spans;
  for (int y = 0; y < mask.lines(); ++y) {
    forEachRun(opaque(y), mask.width(), [&](int left, int right) { spans.add(y, left, right); });
  }
  return spans.empty() ? nullptr : spans.region();
}

/// The last set bit of a row that has one.
int lastBit(const std::uint64_t* row, int width) {
  int word = (width - 1) / 64;
  while (row[word] == 0) --word;
  return word * 64 + 63 - std::countl_zero(row[word]);
}

}  // namespace

TransparentEdges transparentEdges(const ConstView& mask) {
  const int width = mask.width();
  const int height = mask.height();
  if (mask.lines() == 0) return {width, height, width, height};
  OpaqueRows opaque(mask);
  int top = 0;
  while (top < height && findBit(opaque(top), 0, width, true) == width) ++top;
  if (top == height) return {width, height, width, height};
  int bottom = 0;
  int left = width;
  int right = width;
  for (int y = top; y < height; ++y) {
    const std::uint64_t* row = opaque(y);
    const int first = findBit(row, 0, width, true);
    if (first == width) {
      ++bottom;
      continue;
    }
    bottom = 0;
    left = std::min(left, first);
    right = std::min(right, width - 1 - lastBit(row, width));
  }
  return {left, top, right, bottom};
}

}  // namespace dibkit

HRGN CalcOpacityAreaRgn(BITMAPINFOHEADER* mask) {
  using namespace dibkit;
  return orOutOfMemory<HRGN>(nullptr, [&] { return opaqueRegion(viewOfMask(mask)).release(); });
}

void CaclOpaqueBoundary(BITMAPINFOHEADER* mask, int* left, int* top, int* right, int* bottom) {
  using namespace dibkit;
  const ConstView view = viewOfMask(mask);
  if (!view || left == nullptr || top == nullptr || right == nullptr || bottom == nullptr) return;
  orOutOfMemory<int>(0, [&] {
    const TransparentEdges edges = transparentEdges(view);
    *left = edges.left;
    *top = edges.top;
    *right = edges.right;
    *bottom = edges.bottom;
    return 1;
  });
}
