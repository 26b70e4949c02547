#include "dib32/dib32.h"
#include "support.h"

/// Making, blitting, merging, scaling and trimming 32-bit images.

namespace {

using dibkit::OwnedDib;
using Dib = BITMAPINFOHEADER*;

/// What an operation may draw its arguments from.
struct Scene {
  fuzz::Input& input;
  Dib first;
  Dib second;
  Dib mask8;
  Dib mask1;

  POINT nearPoint() {
    // A result that covers two images must stay small enough to be made.
    const int x = static_cast<std::int8_t>(input.byte());
    return {x, static_cast<std::int8_t>(input.byte())};
  }
  RECT nearRect() {
    const POINT corner = nearPoint();
    const POINT other = nearPoint();
    return {corner.x, corner.y, other.x, other.y};
  }
};

void release(Dib dib) { OwnedDib{dib}; }

using Block = void (*)(Dib, const POINT&, Dib, const POINT&, BYTE);
void runBlock(Scene& scene, Block block) {
  const POINT to = scene.input.point();
  const POINT from = scene.input.point();
  block(scene.first, to, scene.second, from, scene.input.byte());
}

using Zoom = void (*)(Dib, const POINT&, Dib, const POINT&, int, BYTE);
void runZoom(Scene& scene, Zoom zoom) {
  const POINT to = scene.input.point();
  const POINT from = scene.input.point();
  const int factor = scene.input.number();
  zoom(scene.first, to, scene.second, from, factor, scene.input.byte());
}

using Stretch = void (*)(Dib, Dib, const POINT&, DWORD, BYTE);
void runStretch(Scene& scene, Stretch stretch) {
  const POINT from = scene.input.point();
  const DWORD scale = static_cast<DWORD>(scene.input.number());
  stretch(scene.first, scene.second, from, scene.input.byte() % 2 != 0 ? scale << 12 : scale,
          scene.input.byte());
}

using Operation = void (*)(Scene&);
const Operation operations[] = {
    [](Scene& s) { runBlock(s, CDIB32::CombineBlock); },
    [](Scene& s) { runBlock(s, CDIB32::BitBlt32DIBPlain); },
    [](Scene& s) { runBlock(s, CDIB32::BitBlt32DIBMMX); },
    [](Scene& s) { runBlock(s, CDIB32::BitBlt32DIB); },
    [](Scene& s) { runBlock(s, CDIB32::Mix32BitsDIBMMX); },
    [](Scene& s) { runBlock(s, CDIB32::BitBltDIBAlphaChannelPlain); },
    [](Scene& s) { runBlock(s, CDIB32::Erase32BitsBlock); },
    [](Scene& s) { runBlock(s, CDIB32::CopyBlock); },
    [](Scene& s) {
      const POINT to = s.input.point();
      const POINT from = s.input.point();
      CDIB32::TransformBlock(s.first, to, s.second, from);
      CDIB32::TransformAlphaChannelBlock(s.first, from, s.second, to);
    },
    [](Scene& s) {
      const POINT to = s.input.point();
      const POINT from = s.input.point();
      const CPoint mask(s.input.point());
      const BYTE strength = s.input.byte();
      CDIB32::Mix32BitsDIBMMX_Mask(s.first, to, s.second, from, strength, s.mask8, mask);
      CDIB32::Erase32BitsBlock(s.first, to, s.second, from, strength, s.mask8, mask);
    },
    [](Scene& s) { runZoom(s, CDIB32::ZoomIn32DIB); },
    [](Scene& s) { runZoom(s, CDIB32::ZoomIn32DIBMMX); },
    [](Scene& s) { runZoom(s, CDIB32::ZoomOut32DIB); },
    [](Scene& s) { runZoom(s, CDIB32::ZoomOut32DIBMMX); },
    [](Scene& s) { runStretch(s, CDIB32::Stretch32DIB); },
    [](Scene& s) { runStretch(s, CDIB32::Stretch32DIBMMX); },
    [](Scene& s) {
      const POINT to = s.input.point();
      const POINT from = s.input.point();
      const int factor = s.input.number();
      CDIB32::BitBlt8BitsDIB(s.first, to, s.mask8, s.mask1, from);
      CDIB32::ZoomIn8BitsDIB(s.first, to, s.mask8, s.mask1, from, factor);
      CDIB32::ZoomOut8BitsDIB(s.first, to, s.mask8, s.mask1, from, factor);
    },
    [](Scene& s) {
      Dib out = nullptr;
      POINT origin{0, 0};
      const POINT first = s.nearPoint();
      const POINT second = s.nearPoint();
      const BYTE reduction = s.input.byte();
      CDIB32::CombineDIBs(s.first, first, reduction, s.second, second, s.input.byte(), &out, &origin);
      release(out);
      out = nullptr;
      CDIB32::Merge32DIBs(s.first, first, s.second, second, &out, &origin);
      release(out);
    },
    [](Scene& s) {
      Dib out = nullptr;
      POINT origin{0, 0};
      POINT first = s.nearPoint();
      POINT second = s.nearPoint();
      const RECT rect = s.nearRect();
      CDIB32::Merge32BitsDIB(s.first, first, s.second, second, &out, &origin);
      release(out);
      CDIB32::Merge32BitsDIB(s.first, first, rect, &out, &origin);
      release(out);
      CDIB32::Merge32BitsDIB(s.first, first, 0x102030, rect, &out, &origin);
      release(out);
    },
    [](Scene& s) {
      const BYTE normal = s.input.byte();
      release(CDIB32::ConvertTo32BitsDIB(s.second, s.mask1, normal, s.input.byte()));
      release(CDIB32::ConvertBitField16BitsDIBTo32BitsDIB(s.second, s.mask1));
      release(CDIB32::CreateIconMaskFromAlphaChannel(s.first));
      release(CDIB32::CreateParaShadowDIB(s.first, normal));
      CDIB32::IsIn32BitsDIB(s.first, s.input.point());
    },
    [](Scene& s) {
      int margins[4] = {s.input.number(), s.input.number(), s.input.number(), s.input.number()};
      release(CDIB32::Trim32BitsDIB(s.first, margins[0], margins[1], margins[2], margins[3]));
      CDIB32::CheckBlankBorder(s.first, &margins[0], &margins[1], &margins[2], &margins[3]);
      CDIB32::Reduce32BitsDIBOpacity(s.first, s.input.byte());
      CDIB32::IsFullOpacity32BitsImage(s.first);
      CDIB32::IsTranslucence32BitsImage(s.first);
      CDIB32::Make32BitsSimpleColorDIB(s.first, 0x123456);
      CDIB32::MakeAllPixelsSameOpacity(s.first, 7);
      CDIB32::Fill32DIBBackground(s.first, 1, 2, 3);
    },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::uint8_t choice = input.byte();
  fuzz::Image first(input, choice % 16 == 0 ? 0 : 32);
  fuzz::Image second(input, choice % 16 == 1 ? 0 : 32);
  fuzz::Image mask8(input, 8);
  fuzz::Image mask1(input, 1);
  // Now and then source and destination are one image.
  Scene scene{input, first.get(), input.byte() % 8 == 0 ? first.get() : second.get(), mask8.get(),
              mask1.get()};
  for (int i = 0; i < 4 && !input.empty(); ++i) operations[input.byte() % std::size(operations)](scene);
  return 0;
}
