#include "module.h"
#include "palettes.h"
#include "progress.h"

namespace binding {

void defineConversions(py::module_& module) {
  define(
      module,
      {"to_24_bits",
       "CBitmapConverter::ConvertDIBTo24Bits, Convert1BitsTo24Bits, Convert4BitsTo24Bits, "
       "Convert8BitsTo24Bits, "
       "Convert16BitsTo24Bits, Convert32BitsTo24Bits",
       "Convert an image of any depth to 24 bits. Alpha is dropped; 16-bit pixels are read as 5-5-5.",
       "A new image of 24 bits."},
      [](AnyImage image, Callback& progress) {
        return madeWith(
            progress, [&](CQorCommonProgress* p) { return CBitmapConverter::ConvertDIBTo24Bits(image, p); });
      },
      arg("image"), none("progress"));
  define(
      module,
      {"to_16_bits",
       "CBitmapConverter::ConvertDIBTo16Bits, Convert1BitsTo16Bits, Convert4BitsTo16Bits, "
       "Convert8BitsTo16Bits, "
       "Convert24BitsTo16Bits, Convert32BitsTo16Bits",
       "Convert an image of any depth to 16 bits, 5 for each channel: the low three bits are dropped.",
       "A new image of 16 bits."},
      [](AnyImage image, Callback& progress) {
        return madeWith(
            progress, [&](CQorCommonProgress* p) { return CBitmapConverter::ConvertDIBTo16Bits(image, p); });
      },
      arg("image"), none("progress"));
  define(
      module,
      {"to_32_bits", "CDIB32::ConvertTo32BitsDIB, ConvertBitField16BitsDIBTo32BitsDIB",
       "Make an image of 32 bits, with alpha, of one of any depth. The fourth byte of a 32-bit source is "
       "ignored.",
       "A new image of 32 bits. One with fields of bits gets alpha 255, and 0 where the mask is True."},
      [](AnyImage image, Mask mask, Byte alpha, Byte masked_alpha) {
        requireMaskOf(image, mask);
        return made(CDIB32::ConvertTo32BitsDIB(image, mask, alpha, masked_alpha));
      },
      arg("image"), none("mask"), arg("alpha") = 255, arg("masked_alpha") = 0);
  define(
      module,
      {"to_reversed_32_bits", "CBitmapConverter::Convert24BitsTo32Bits",
       "Convert 24 bits to 32 with the bytes of a pixel in reverse: 0, red, green, blue. `flip` turns the "
       "picture "
       "upside down.",
       "A new image of 32 bits."},
      [](Image24 image, bool flip, Callback& progress) {
        return madeWith(progress, [&](CQorCommonProgress* p) {
          return CBitmapConverter::Convert24BitsTo32Bits(image, flip ? 1 : 0, p);
        });
      },
      arg("image"), arg("flip") = false, none("progress"));
  define(
      module,
      {"to_grays", "CBitmapConverter::ConvertDIBTo256Grays, Convert24BitsDIBTo256GraysDIB",
       "Convert an image of any depth to 8 bits of gray: 0.299 red + 0.587 green + 0.114 blue, truncated.",
       "A new image of 8 bits, with an even ramp as palette."},
      [](AnyImage image, Callback& progress) {
        return madeWith(progress, [&](CQorCommonProgress* p) {
          return CBitmapConverter::ConvertDIBTo256Grays(image, p);
        });
      },
      arg("image"), none("progress"));
  define(
      module,
      {"to_black_and_white", "CBitmapConverter::Convert8BitsGrayDibTo1BitsDib",
       "Convert 8 bits to black (index 0) and white (1): white where the index is at least `threshold`.",
       "A new image of 1 bit."},
      [](ImageOf<8> image, Integer threshold, Callback& progress) {
        return madeWith(progress, [&](CQorCommonProgress* p) {
          return CBitmapConverter::Convert8BitsGrayDibTo1BitsDib(image, threshold, p);
        });
      },
      arg("image"), arg("threshold"), none("progress"));
  defineReductions(module);
}

}  // namespace binding
