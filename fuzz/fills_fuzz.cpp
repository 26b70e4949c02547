#include "dib32/dib32.h"
#include "support.h"

/// Fills, wands and filters of 32-bit images with arguments of all kinds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::uint8_t operation = input.byte();
  const POINT seed = input.point();
  const CPoint origin(input.point());
  const auto target = static_cast<DWORD>(input.number());
  const auto colour = static_cast<COLORREF>(input.number());
  const int amount = input.number();
  const int extent = input.number();
  const RECT rect = input.rect();
  fuzz::Image image(input, 32);
  fuzz::Image mask(input, 8);
  fuzz::Image reference(input, 32);
  const dibkit::OwnedRegion region(operation & 64 ? CreateEllipticRgn(-3, -3, 20, 30) : nullptr);
  RECT bounds;
  switch (operation % 16) {
    case 0:
      CDIB32::ExtFillConnectedPixels(image.get(), target, colour, operation & 32, amount, extent, seed,
                                     operation & 128 ? &bounds : nullptr);
      break;
    case 1:
      CDIB32::ExtFillConnectedPixels_Mask(image.get(), target, colour, amount, extent, seed, mask.get(),
                                          origin);
      break;
    case 2:
      CDIB32::ExtFill32BitsDIB(image.get(), target, colour, amount, extent);
      break;
    case 3:
      CDIB32::ExtFill32BitsDIB_Mask(image.get(), target, colour, amount, extent, mask.get(), origin);
      break;
    case 4:
      CDIB32::ExtFillConnectedTransPixels(image.get(), colour, amount, seed);
      break;
    case 5:
      CDIB32::ExtFillConnectedTransPixels_Mask(image.get(), colour, amount, seed, mask.get(), origin);
      break;
    case 6:
      CDIB32::ExtFillTransBlock(image.get(), colour, amount);
      break;
    case 7:
      CDIB32::ExtFillTransBlock_Mask(image.get(), colour, amount, mask.get(), origin);
      break;
    case 8:
      CDIB32::Fill32DIBOpacityArea(image.get(), rect, static_cast<BYTE>(amount));
      break;
    case 9:
      CDIB32::Fill32DIBOpacityArea(image.get(), region.get(), static_cast<BYTE>(amount));
      break;
    case 10:
      dibkit::OwnedRegion(CDIB32::MagicWandRegion(image.get(), seed, extent));
      break;
    case 11:
      dibkit::OwnedRegion(CDIB32::MagicWandRegion2(image.get(), seed, extent));
      break;
    case 12:
      CDIB32::MedianFilter32BitsImage(image.get(), extent);
      break;
    case 13:
      CDIB32::Sharpen32BitsImage(image.get(), extent);
      break;
    case 14:
      CDIB32::SmoothBlock(image.get(), mask.get(), origin, amount, extent, region.get());
      break;
    default:
      if (operation & 32) {
        CDIB32::SmoothFillBlock(image.get(), mask.get(), reference.get(), origin, amount, extent,
                                region.get());
      } else {
        CDIB32::SmoothFillBlock(image.get(), mask.get(), origin, amount, extent, region.get());
      }
  }
  return 0;
}
