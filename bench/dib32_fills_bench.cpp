#include <functional>

#include "dib32/dib32.h"
#include "raster/region_spans.h"
#include "support.h"

namespace {

using bench::OwnedDib;
using Dib = BITMAPINFOHEADER*;
using dibkit::Bgra32;

OwnedDib flat(int width, int height) {
  return OwnedDib(CDIB32::CreateSimple32BitsDIB(width, height, RGB(40, 90, 160), 255));
}

OwnedDib translucent(int width, int height) {
  return OwnedDib(CDIB32::CreateSimple32BitsDIB(width, height, RGB(40, 90, 160), 100));
}

/// One corridor of four pixels' width that winds through the picture between walls of one pixel.
OwnedDib maze(int width, int height) {
  OwnedDib dib = flat(width, height);
  const dibkit::View view(dib.get());
  for (int y = 4; y < height; y += 5) {
    const bool openLeft = y / 5 % 2 == 0;
    for (int x = openLeft ? 4 : 0; x < (openLeft ? width : width - 4); ++x)
      Bgra32::put(view.row(y), x, 0xFF000000);
  }
  return dib;
}

/// Corridors that stand upright: every row is cut into many runs.
OwnedDib fence(int width, int height) {
  OwnedDib dib = flat(width, height);
  const dibkit::View view(dib.get());
  for (int x = 2; x < width; x += 3) {
    const bool openTop = x / 3 % 2 == 0;
    for (int y = openTop ? 1 : 0; y < (openTop ? height : height - 1); ++y)
      Bgra32::put(view.row(y), x, 0xFF000000);
  }
  return dib;
}

/// A line of one pixel's width from the top to the bottom: the smallest area in the tallest picture.
OwnedDib stroke(int width, int height) {
  OwnedDib dib = flat(width, height);
  const dibkit::View view(dib.get());
  for (int y = 0; y < height; ++y) Bgra32::put(view.row(y), width / 2, 0xFFFFFFFF);
  return dib;
}

OwnedDib opaquePhoto(int width, int height) {
  OwnedDib dib = bench::photo(width, height);
  CDIB32::MakeAllPixelsSameOpacity(dib.get(), 255);
  return dib;
}

DWORD pixelAt(Dib dib, POINT point) {
  return Bgra32::get(dibkit::View(dib).row(static_cast<int>(point.y)), static_cast<int>(point.x));
}

POINT middle(Dib dib) { return {dib->biWidth / 2, dib->biHeight / 2}; }

struct Operation {
  const char* name;
  OwnedDib (*picture)(int width, int height);
  /// \param brush 8 bits, all of its bytes in use and different
  std::function<void(Dib dib, Dib brush, HRGN clip)> run;
  /// Whether only the pixels connected with the middle count.
  bool connected = false;
};

/// Connected fills paint with another colour each time, so that the area stays what it is.
template <int opacity>
void fillConnected(Dib dib, Dib, HRGN) {
  static COLORREF colour = 0x00404040;
  colour ^= 0x00C0C0C0;
  const POINT seed = middle(dib);
  CDIB32::ExtFillConnectedPixels(dib, pixelAt(dib, seed), colour, 0, opacity, 0, seed, nullptr);
}

void fillConnectedUnderMask(Dib dib, Dib brush, HRGN) {
  const POINT seed{0, 0};
  CDIB32::ExtFillConnectedPixels_Mask(dib, pixelAt(dib, seed), 0x00404040, 90, 255, seed, brush,
                                      CPoint(0, 0));
}

template <HRGN (*wand)(Dib, POINT, int), int tolerance>
void select(Dib dib, Dib, HRGN) {
  DeleteObject(wand(dib, middle(dib), tolerance));
}

template <int n>
void median(Dib dib, Dib, HRGN) {
  CDIB32::MedianFilter32BitsImage(dib, n);
}

using Box = HRGN (*)(Dib, POINT, int);
constexpr Box wand = &CDIB32::MagicWandRegion;
constexpr Box wand2 = &CDIB32::MagicWandRegion2;

const Operation operations[] = {
    {"ExtFillConnectedPixels/flat", flat, fillConnected<255>, true},
    {"ExtFillConnectedPixels/flatHalf", flat, fillConnected<128>, true},
    {"ExtFillConnectedPixels/translucent", translucent,
     [](Dib dib, Dib brush, HRGN clip) {
       CDIB32::MakeAllPixelsSameOpacity(dib, 100);  // or the picture would soon be opaque
       fillConnected<128>(dib, brush, clip);
     },
     true},
    {"ExtFillConnectedPixels/maze", maze, fillConnected<255>, true},
    {"ExtFillConnectedPixels/fence", fence, fillConnected<255>, true},
    {"ExtFillConnectedPixels/cartoon", bench::cartoon, fillConnected<255>, true},
    {"ExtFillConnectedPixels/stroke", stroke, fillConnected<255>, true},
    {"ExtFillConnectedPixels_Mask/flat", flat, fillConnectedUnderMask},
    {"ExtFill32BitsDIB/photo", opaquePhoto,
     [](Dib dib, Dib, HRGN) { CDIB32::ExtFill32BitsDIB(dib, 0xFF808080, 0x00808080, 9, 60); }},
    {"ExtFill32BitsDIB_Mask/photo", opaquePhoto,
     [](Dib dib, Dib brush, HRGN) {
       CDIB32::ExtFill32BitsDIB_Mask(dib, 0xFF808080, 0x00808080, 9, 60, brush, CPoint(0, 0));
     }},
    {"ExtFillTransBlock/cartoon", bench::cartoon,
     [](Dib dib, Dib, HRGN) { CDIB32::ExtFillTransBlock(dib, 0, 0); }},
    {"Fill32DIBOpacityArea/rectangle", flat,
     [](Dib dib, Dib, HRGN) {
       CDIB32::Fill32DIBOpacityArea(dib, RECT{0, 0, dib->biWidth, dib->biHeight}, 255);
     }},
    {"Fill32DIBOpacityArea/ellipse", flat,
     [](Dib dib, Dib, HRGN clip) { CDIB32::Fill32DIBOpacityArea(dib, clip, 255); }},
    {"MagicWandRegion/flat", flat, select<wand, 0>, true},
    {"MagicWandRegion/maze", maze, select<wand, 0>, true},
    {"MagicWandRegion/cartoon", bench::cartoon, select<wand, 0>, true},
    {"MagicWandRegion/cartoonAll", bench::cartoon, select<wand, 255>},
    {"MagicWandRegion2/flat", flat, select<wand2, 0>},
    {"MagicWandRegion2/cartoon", bench::cartoon, select<wand2, 20>},
    {"MagicWandRegion2/photo", opaquePhoto, select<wand2, 20>},
    {"MedianFilter32BitsImage/3", opaquePhoto, median<3>},
    {"MedianFilter32BitsImage/7", opaquePhoto, median<7>},
    {"MedianFilter32BitsImage/15", opaquePhoto, median<15>},
    {"Sharpen32BitsImage/1", opaquePhoto, [](Dib dib, Dib, HRGN) { CDIB32::Sharpen32BitsImage(dib, 1); }},
    {"Sharpen32BitsImage/3", opaquePhoto, [](Dib dib, Dib, HRGN) { CDIB32::Sharpen32BitsImage(dib, 3); }},
    {"SmoothBlock/7", flat,
     [](Dib dib, Dib brush, HRGN) {
       CDIB32::SmoothBlock(dib, brush, {0, 0}, 1, 7, nullptr);
     }},
    {"SmoothFillBlock/31", flat,
     [](Dib dib, Dib brush, HRGN) {
       CDIB32::SmoothFillBlock(dib, brush, {0, 0}, 254, 31, nullptr);
     }},
    {"SmoothFillBlock/ellipse", flat,
     [](Dib dib, Dib brush, HRGN clip) {
       CDIB32::SmoothFillBlock(dib, brush, {0, 0}, 254, 7, clip);
     }},
};

/// The number of pixels that a connected operation takes.
double areaOf(Dib dib) {
  const dibkit::OwnedRegion region(CDIB32::MagicWandRegion(dib, middle(dib), 0));
  double pixels = 0;
  for (const RECT& rect : dibkit::RegionSpans(region.get()).rectangles()) {
    pixels += static_cast<double>(rect.right - rect.left) * (rect.bottom - rect.top);
  }
  return pixels;
}

void measure(benchmark::State& state, const Operation& operation, int width, int height) {
  const OwnedDib dib = operation.picture(width, height);
  OwnedDib brush = dibkit::createDib(width, height, 8, 0);
  const dibkit::View view(brush.get());
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) view.row(y)[x] = static_cast<BYTE>(1 + (x + y) % 255);
  }
  const dibkit::OwnedRegion clip(CreateEllipticRgn(0, 0, width, height));
  for (auto _ : state) {
    operation.run(dib.get(), brush.get(), clip.get());
    benchmark::ClobberMemory();
  }
  const double pixels = operation.connected ? areaOf(dib.get()) : static_cast<double>(width) * height;
  bench::reportPixels(state, pixels);
}

const bool registered = bench::registerAll("Dib32", operations, measure);

}  // namespace
