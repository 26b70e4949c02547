#include "dib/placement.h"
#include "dib32/dib32.h"
#include "dib32/opacity.h"

BYTE CDIB32::CalcuOpacity(BYTE a, BYTE b) { return dibkit::unionOpacity(a, b); }

BYTE CDIB32::CalcuRGBValue(BYTE dstAlpha, BYTE srcAlpha, BYTE dstColour, BYTE srcColour, BYTE outAlpha) {
  return dibkit::overChannel(dstAlpha, srcAlpha, dstColour, srcColour, outAlpha);
}

void CDIB32::CombineBlock(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                          BITMAPINFOHEADER* source, const POINT& sourceOrigin, BYTE reduction) {
  const dibkit::Placed below{dibkit::viewOfDepth(destination, 32), destinationOrigin};
  const dibkit::Placed above{dibkit::viewOfDepth(source, 32), sourceOrigin};
  dibkit::forEachCommonRow(
      [reduction](int count, BYTE* to, const BYTE* from) {
        dibkit::overRow(dibkit::pixelsOf(to), dibkit::pixelsOf(to), 0, dibkit::pixelsOf(from), reduction,
                        count);
      },
      below, above);
}
