#include <functional>

#include "dib32/dib32.h"
#include "support.h"

namespace {

using bench::OwnedDib;

/// An operation with what it works on: a lower and an upper image and an 8-bit mask of the same size.
struct Operation {
  const char* name;
  std::function<void(BITMAPINFOHEADER* to, BITMAPINFOHEADER* from, BITMAPINFOHEADER* mask)> run;
  bool flatColours = false;  ///< measured on the cartoon, not on the photo
  double drawn = 1;          ///< the part of the lower image that is written, for the time per pixel
  bool ontoOpaque = false;   ///< measured on an opaque lower image
};

constexpr POINT corner{0, 0};

OwnedDib maskOf(const BITMAPINFOHEADER* picture) {
  OwnedDib mask = dibkit::createDib(picture->biWidth, picture->biHeight, 8, 0);
  const dibkit::View view(mask.get());
  const dibkit::ConstView pixels(picture);
  for (int y = 0; y < view.height(); ++y) {
    for (int x = 0; x < view.width(); ++x) view.row(y)[x] = pixels.row(y)[std::ptrdiff_t{x} * 4];
  }
  return mask;
}

void release(BITMAPINFOHEADER* dib) { OwnedDib{dib}; }

using Dib = BITMAPINFOHEADER*;
const Operation operations[] = {
    {"CombineBlock", [](Dib to, Dib from, Dib) { CDIB32::CombineBlock(to, corner, from, corner, 0); }},
    {"CombineBlockCartoon", [](Dib to, Dib from, Dib) { CDIB32::CombineBlock(to, corner, from, corner, 0); },
     true},
    {"CombineBlockOntoOpaque",
     [](Dib to, Dib from, Dib) { CDIB32::CombineBlock(to, corner, from, corner, 0); }, false, 1, true},
    {"BitBlt32DIBPlain",
     [](Dib to, Dib from, Dib) { CDIB32::BitBlt32DIBPlain(to, corner, from, corner, 0); }},
    {"BitBlt32DIBMMX", [](Dib to, Dib from, Dib) { CDIB32::BitBlt32DIBMMX(to, corner, from, corner, 0); }},
    {"BitBlt32DIB", [](Dib to, Dib from, Dib) { CDIB32::BitBlt32DIB(to, corner, from, corner, 0); }},
    {"Mix32BitsDIBMMX", [](Dib to, Dib from, Dib) { CDIB32::Mix32BitsDIBMMX(to, corner, from, corner, 0); }},
    {"Mix32BitsDIBMMX_Mask",
     [](Dib to, Dib from, Dib mask) {
       CDIB32::Mix32BitsDIBMMX_Mask(to, corner, from, corner, 0, mask, corner);
     }},
    {"BitBltDIBAlphaChannelPlain",
     [](Dib to, Dib from, Dib) { CDIB32::BitBltDIBAlphaChannelPlain(to, corner, from, corner, 0); }},
    {"Erase32BitsBlock",
     [](Dib to, Dib from, Dib) { CDIB32::Erase32BitsBlock(to, corner, from, corner, 9); }},
    {"Erase32BitsBlockMask",
     [](Dib to, Dib from, Dib mask) { CDIB32::Erase32BitsBlock(to, corner, from, corner, 9, mask, corner); }},
    {"CopyBlock", [](Dib to, Dib from, Dib) { CDIB32::CopyBlock(to, corner, from, corner, 9); }},
    {"TransformBlock", [](Dib to, Dib from, Dib) { CDIB32::TransformBlock(to, corner, from, corner); }},
    {"TransformAlphaChannelBlock",
     [](Dib to, Dib from, Dib) { CDIB32::TransformAlphaChannelBlock(to, corner, from, corner); }},
    {"Reduce32BitsDIBOpacity", [](Dib to, Dib, Dib) { CDIB32::Reduce32BitsDIBOpacity(to, 1); }},
    {"IsTranslucence32BitsImage",
     [](Dib, Dib from, Dib) { benchmark::DoNotOptimize(CDIB32::IsTranslucence32BitsImage(from)); }, true},
    {"Stretch32DIB1.5", [](Dib to, Dib from, Dib) { CDIB32::Stretch32DIB(to, from, corner, 49152); }, true},
    {"Stretch32DIBMMX1.5", [](Dib to, Dib from, Dib) { CDIB32::Stretch32DIBMMX(to, from, corner, 49152); }},
    {"ZoomIn32DIB2", [](Dib to, Dib from, Dib) { CDIB32::ZoomIn32DIB(to, corner, from, corner, 2, 0); },
     true},
    {"ZoomIn32DIB2Photo", [](Dib to, Dib from, Dib) { CDIB32::ZoomIn32DIB(to, corner, from, corner, 2, 0); }},
    {"ZoomOut32DIB2", [](Dib to, Dib from, Dib) { CDIB32::ZoomOut32DIB(to, corner, from, corner, 2, 0); },
     true, 0.25},
    {"ZoomOut32DIBMMX2",
     [](Dib to, Dib from, Dib) { CDIB32::ZoomOut32DIBMMX(to, corner, from, corner, 2, 0); }, false, 0.25},
    {"BitBlt8BitsDIB",
     [](Dib to, Dib, Dib mask) { CDIB32::BitBlt8BitsDIB(to, corner, mask, nullptr, corner); }},
    {"CheckBlankBorder",
     [](Dib, Dib from, Dib) {
       int margins[4];
       CDIB32::CheckBlankBorder(from, &margins[0], &margins[1], &margins[2], &margins[3]);
       benchmark::DoNotOptimize(margins);
     },
     true},
    {"CreateIconMaskFromAlphaChannel",
     [](Dib, Dib from, Dib) { release(CDIB32::CreateIconMaskFromAlphaChannel(from)); }},
    {"ConvertTo32BitsDIB",
     [](Dib, Dib from, Dib) { release(CDIB32::ConvertTo32BitsDIB(from, nullptr, 9, 9)); }},
    {"CombineDIBs",
     [](Dib to, Dib from, Dib) {
       Dib out = nullptr;
       POINT origin;
       CDIB32::CombineDIBs(to, corner, 0, from, corner, 0, &out, &origin);
       release(out);
     }},
    {"Merge32DIBs",
     [](Dib to, Dib from, Dib) {
       Dib out = nullptr;
       POINT origin;
       CDIB32::Merge32DIBs(to, corner, from, corner, &out, &origin);
       release(out);
     }},
};

void measure(benchmark::State& state, const Operation& operation, int width, int height) {
  const OwnedDib to = operation.flatColours ? bench::cartoon(width, height) : bench::photo(width, height);
  const OwnedDib from = operation.flatColours ? bench::cartoon(width, height) : bench::photo(width, height);
  const OwnedDib mask = maskOf(from.get());
  if (operation.ontoOpaque) CDIB32::MakeAllPixelsSameOpacity(to.get(), 255);
  const OwnedDib toBefore(CBitmapCreator::Clone(to.get()));
  const OwnedDib fromBefore(CBitmapCreator::Clone(from.get()));
  for (auto _ : state) {
    // Opacities grow towards 255 with every blend, which would make the next one cheaper.
    state.PauseTiming();
    CDIB32::TransformBlock(to.get(), corner, toBefore.get(), corner);
    CDIB32::TransformBlock(from.get(), corner, fromBefore.get(), corner);
    state.ResumeTiming();
    operation.run(to.get(), from.get(), mask.get());
    benchmark::ClobberMemory();
  }
  const double pixels = static_cast<double>(width) * height * operation.drawn;
  bench::reportPixels(state, pixels);
}

const bool registered = bench::registerAll("Dib32", operations, measure);

}  // namespace
