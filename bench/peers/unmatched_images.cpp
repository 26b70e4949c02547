#include "adapters.h"
#include "palette/palette.h"
#include "unmatched.h"

/// 32-bit images, conversions and palettes.
namespace bench {
namespace {

constexpr POINT corner{0, 0};
using Converter = CBitmapConverter;

/// The bytes of a gray photograph, read as narrower indexes.
template <int bitCount>
OwnedDib indexes(int width, int height) {
  const OwnedDib bytes = gray8(width, height);
  OwnedDib dib = dibkit::createDib(width, height, bitCount, 0);
  const dibkit::View to(dib.get());
  for (int y = 0; y < height; ++y) {
    std::memcpy(to.row(y), dibkit::View(bytes.get()).row(y), static_cast<std::size_t>(to.stride()));
  }
  return dib;
}

OwnedDib translucent(int width, int height) {
  return OwnedDib(CDIB32::CreateSimple32BitsDIB(width, height, RGB(40, 90, 160), 100));
}

/// A logical palette of as many colours as the depth has: three bits of red and green, two of blue.
HPALETTE cube(int bitCount) {
  static std::vector<HPALETTE> made(9);
  HPALETTE& palette = made[static_cast<std::size_t>(bitCount)];
  if (palette != nullptr) return palette;
  std::vector<BYTE> block(4 + 4 * 256);
  auto* description = reinterpret_cast<LOGPALETTE*>(block.data());
  description->palVersion = 0x300;
  description->palNumEntries = static_cast<WORD>(1U << bitCount);
  for (int i = 0; i < 256; ++i) {
    description->palPalEntry[i] = {static_cast<BYTE>(i & 0xE0), static_cast<BYTE>(i << 3 & 0xE0),
                                   static_cast<BYTE>(i << 6 & 0xC0), 0};
  }
  return palette = CreatePalette(description);
}

template <UINT bitCount>
Dib matched(const Scene& scene) {
  return ConvertDIBFormat(scene.a.get(), bitCount, cube(bitCount));
}

template <auto operation>
Dib drawn(const Scene& scene) {
  operation(scene.a.get(), corner, scene.b.get(), corner, 9);
  return nullptr;
}

Dib measuredRegion(HRGN region) {
  const dibkit::OwnedRegion owned(region);
  return nullptr;
}

template <int opacity>
Dib filled(const Scene& scene) {
  CDIB32::ExtFillConnectedPixels(scene.a.get(), 0x64285AA0, 0x00404040, 0, opacity, 0, corner, nullptr);
  return nullptr;
}

constexpr Unmatched rowsOfImages[] = {
    {"Convert1BitsTo24Bits", "photo", indexes<1>,
     [](const Scene& s) { return Converter::Convert1BitsTo24Bits(s.a.get(), nullptr); }, 3.125},
    {"Convert4BitsTo24Bits", "photo", indexes<4>,
     [](const Scene& s) { return Converter::Convert4BitsTo24Bits(s.a.get(), nullptr); }, 3.5},
    {"Convert1BitsDibTo8BitsDib", "photo", indexes<1>,
     [](const Scene& s) { return Converter::Convert1BitsDibTo8BitsDib(s.a.get(), nullptr, nullptr); }, 1.125},
    {"Convert8BitsDibTo4BitsDib", "photo", gray8,
     [](const Scene& s) { return Converter::Convert8BitsDibTo4BitsDib(s.a.get(), nullptr, nullptr); }, 1.5},
    {"ConvertDIBFormat, 8 bits", "photo", photo24, matched<8>, 4},
    {"ConvertDIBFormat, 4 bits", "photo", photo24, matched<4>, 3.5},
    {"ConvertDIBFormat, 1 bit", "photo", photo24, matched<1>, 3.125},
    {"GetColorsNumFromTrueDib", "256 colours", photo256,
     [](const Scene& s) {
       CMap<DWORD, DWORD&, int, int&> map;
       keep(CPaletteFuns::GetColorsNumFromTrueDib(s.a.get(), &map));
       return Dib{};
     },
     3},
    {"GetColorsNumFromPaletteDib", "photo", gray8,
     [](const Scene& s) {
       CMap<int, int&, int, int&> map;
       keep(CPaletteFuns::GetColorsNumFromPaletteDib(s.a.get(), &map));
       return Dib{};
     },
     1},
    {"CombineBlock, reduction 9", "opaque photo", opaquePhoto, drawn<CDIB32::CombineBlock>, 12, true},
    {"BitBlt32DIB", "photo", photo, drawn<CDIB32::BitBlt32DIB>, 16, true},
    {"BitBltDIBAlphaChannelPlain", "photo", photo, drawn<CDIB32::BitBltDIBAlphaChannelPlain>, 12, true},
    {"Erase32BitsBlock", "photo", photo,
     [](const Scene& s) {
       CDIB32::Erase32BitsBlock(s.a.get(), corner, s.b.get(), corner, 9);
       return Dib{};
     },
     12, true},
    {"Erase32BitsBlock, mask", "photo", photo,
     [](const Scene& s) {
       CDIB32::Erase32BitsBlock(s.a.get(), corner, s.b.get(), corner, 9, s.brush.get(), corner);
       return Dib{};
     },
     13, true},
    {"Reduce32BitsDIBOpacity", "photo", photo,
     [](const Scene& s) {
       CDIB32::Reduce32BitsDIBOpacity(s.a.get(), 1);
       return Dib{};
     },
     8, true},
    {"IsTranslucence32BitsImage", "cartoon", cartoon,
     [](const Scene& s) {
       keep(CDIB32::IsTranslucence32BitsImage(s.a.get()));
       return Dib{};
     },
     4},
    {"CreateIconMaskFromAlphaChannel", "photo", photo,
     [](const Scene& s) { return CDIB32::CreateIconMaskFromAlphaChannel(s.a.get()); }, 4.125},
    {"Merge32DIBs", "photo", photo,
     [](const Scene& s) {
       OwnedDib out;
       POINT origin;
       CDIB32::Merge32DIBs(s.a.get(), corner, s.b.get(), corner, dibkit::out(out), &origin);
       return out.release();
     },
     12},
    {"ZoomIn32DIB, 2", "photo", photo,
     [](const Scene& s) {
       CDIB32::ZoomIn32DIB(s.a.get(), corner, s.b.get(), corner, 2, 0);
       return Dib{};
     },
     9, true},
    {"ExtFillConnectedPixels, opacity 128", "translucent", translucent, filled<128>, 8, true},
    {"ExtFillConnectedPixels_Mask", "flat", flat,
     [](const Scene& s) {
       CDIB32::ExtFillConnectedPixels_Mask(s.a.get(), 0xFF285AA0, 0x00404040, 90, 255, corner, s.brush.get(),
                                           CPoint(0, 0));
       return Dib{};
     },
     9, true},
    {"ExtFill32BitsDIB", "opaque photo", opaquePhoto,
     [](const Scene& s) {
       CDIB32::ExtFill32BitsDIB(s.a.get(), 0xFF808080, 0x00808080, 9, 60);
       return Dib{};
     },
     8, true},
    {"ExtFill32BitsDIB_Mask", "opaque photo", opaquePhoto,
     [](const Scene& s) {
       CDIB32::ExtFill32BitsDIB_Mask(s.a.get(), 0xFF808080, 0x00808080, 9, 60, s.brush.get(), CPoint(0, 0));
       return Dib{};
     },
     9, true},
    {"ExtFillTransBlock", "cartoon", cartoon,
     [](const Scene& s) {
       CDIB32::ExtFillTransBlock(s.a.get(), 0, 0);
       return Dib{};
     },
     4},
    {"Fill32DIBOpacityArea, ellipse", "flat", flat,
     [](const Scene& s) {
       CDIB32::Fill32DIBOpacityArea(s.a.get(), s.ellipse->get(), 255);
       return Dib{};
     },
     8},
    {"MagicWandRegion, tolerance 255", "opaque photo", opaquePhoto,
     [](const Scene& s) { return measuredRegion(CDIB32::MagicWandRegion(s.a.get(), corner, 255)); }, 4},
    {"MagicWandRegion2", "opaque photo", opaquePhoto,
     [](const Scene& s) {
       return measuredRegion(CDIB32::MagicWandRegion2(s.a.get(), {s.size().cx / 2, s.size().cy / 2}, 20));
     },
     4},
    {"SmoothFillBlock, ellipse", "flat", flat,
     [](const Scene& s) {
       CDIB32::SmoothFillBlock(s.a.get(), s.brush.get(), corner, 254, 7, s.ellipse->get());
       return Dib{};
     },
     9},
    {"GenerateLine, width 9", "flat", flat,
     [](const Scene& s) {
       const auto [w, h] = s.size();
       return CDIB32::GenerateLine({0, 0, w, h}, {9, 9}, {w - 9, h - 9}, 9, 4, 1, nullptr, nullptr);
     },
     1},
};

}  // namespace

void addUnmatchedImages(Rows& rows) {
  for (const Unmatched& row : rowsOfImages) add(rows, row);
}

}  // namespace bench
