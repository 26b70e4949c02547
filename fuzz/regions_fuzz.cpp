#include <cstdlib>
#include <vector>

#include "raster/region_spans.h"
#include "support.h"

/// Making, moving and combining regions, with laws that any two sets of pixels obey.

namespace {

using dibkit::OwnedRegion;

OwnedRegion listed(fuzz::Input& input) {
  const std::size_t count = input.byte() % 40;
  std::vector<DWORD> block(sizeof(RGNDATAHEADER) / 4 + count * 4);
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(count), 0, input.rect()};
  for (std::size_t i = 0; i < count; ++i) {
    const RECT rect = input.rect();
    std::memcpy(data->Buffer + i * sizeof(RECT), &rect, sizeof(RECT));
  }
  if (input.byte() > 250) data->rdh.nCount = static_cast<DWORD>(input.number());
  return OwnedRegion(ExtCreateRegion(nullptr, static_cast<DWORD>(block.size() * 4), data));
}

OwnedRegion made(fuzz::Input& input) {
  const std::uint8_t kind = input.byte() % 5;
  if (kind == 0) return listed(input);
  if (kind == 1) {
    std::vector<POINT> corners(input.byte() % 12);
    for (POINT& corner : corners) corner = input.point();
    return OwnedRegion(CreatePolygonRgn(corners.data(), static_cast<int>(corners.size()), ALTERNATE));
  }
  const RECT rect = input.rect();
  if (kind == 2) return OwnedRegion(CreateRectRgn(rect.left, rect.top, rect.right, rect.bottom));
  if (kind == 3) return OwnedRegion(CreateEllipticRgn(rect.left, rect.top, rect.right, rect.bottom));
  const int width = input.number();
  return OwnedRegion(CreateRoundRectRgn(rect.left, rect.top, rect.right, rect.bottom, width, input.number()));
}

OwnedRegion combined(const OwnedRegion& a, const OwnedRegion& b, int mode) {
  OwnedRegion result(CreateRectRgn(0, 0, 0, 0));
  CombineRgn(result.get(), a.get(), b.get(), mode);
  return result;
}

void require(bool law) {
  if (!law) std::abort();
}

void checkLaws(const OwnedRegion& a, const OwnedRegion& b) {
  const OwnedRegion both = combined(a, b, RGN_AND);
  const OwnedRegion either = combined(a, b, RGN_OR);
  const OwnedRegion onlyA = combined(a, b, RGN_DIFF);
  const OwnedRegion onlyB = combined(b, a, RGN_DIFF);
  const OwnedRegion one = combined(a, b, RGN_XOR);
  require(EqualRgn(combined(onlyA, both, RGN_OR).get(), a.get()) != FALSE);
  require(EqualRgn(combined(onlyA, onlyB, RGN_OR).get(), one.get()) != FALSE);
  require(EqualRgn(combined(one, both, RGN_XOR).get(), either.get()) != FALSE);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const OwnedRegion a = made(input);
  const OwnedRegion b = made(input);
  if (a && b) checkLaws(a, b);
  OffsetRgn(a.get(), input.number(), input.number());
  const POINT point = input.point();
  PtInRegion(a.get(), point.x, point.y);
  RECT box{};
  GetRgnBox(b.get(), &box);
  const dibkit::RegionSpans spans(a.get());
  int covered = 0;
  const int y = input.number();
  const auto count = [&](int, int) { ++covered; };
  spans.splitRow(y, input.number(), input.number(), count, count);
  return 0;
}
