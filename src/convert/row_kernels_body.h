// The row kernels, included by one source for each instruction set. Everything has internal linkage and calls
// no function from outside. Otherwise the linker could use a function compiled for a newer processor in the
// place of a plain one.

#include <cstdint>
#include <cstring>

#if defined(__SSSE3__)
#include <tmmintrin.h>
#endif

namespace dibkit {
namespace {

using Bytes = BYTE* __restrict;
using ConstBytes = const BYTE* __restrict;

void storeWord(BYTE* to, std::uint32_t word) {
  const WORD value = static_cast<WORD>(word);
  std::memcpy(to, &value, sizeof(value));
}

void bgra32ToBgr24(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    to[3 * x] = from[4 * x];
    to[3 * x + 1] = from[4 * x + 1];
    to[3 * x + 2] = from[4 * x + 2];
  }
}

void rgb555ToBgr24(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    WORD pixel;
    std::memcpy(&pixel, from + 2 * x, sizeof(pixel));
    to[3 * x] = static_cast<BYTE>(pixel << 3 & 0xF8);
    to[3 * x + 1] = static_cast<BYTE>(pixel >> 2 & 0xF8);
    to[3 * x + 2] = static_cast<BYTE>(pixel >> 7 & 0xF8);
  }
}

void bgr24ToRgb555(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const std::uint32_t red = from[3 * x + 2];
    const std::uint32_t green = from[3 * x + 1];
    const std::uint32_t blue = from[3 * x];
    storeWord(to + 2 * x, (red & 0xF8) << 7 | (green & 0xF8) << 2 | blue >> 3);
  }
}

void bgra32ToRgb555(ConstBytes from, int width, Bytes to) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    std::uint32_t pixel;
    std::memcpy(&pixel, from + 4 * x, sizeof(pixel));
    storeWord(to + 2 * x, (pixel >> 9 & 0x7C00) | (pixel >> 6 & 0x03E0) | (pixel >> 3 & 0x001F));
  }
}

void bgr24ToReversed32(ConstBytes from, int width, Bytes to) {
  std::ptrdiff_t x = 0;
#if defined(__SSSE3__)
  // The compiler uses many shuffles to spread three channels to four; one for four pixels is enough. Each
  // load reads four bytes more than it uses, which the row must still contain.
  const __m128i spread = _mm_set_epi8(9, 10, 11, -1, 6, 7, 8, -1, 3, 4, 5, -1, 0, 1, 2, -1);
  for (; x + 6 <= width; x += 4) {
    const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 3 * x));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 4 * x), _mm_shuffle_epi8(pixels, spread));
  }
#endif
  for (; x < width; ++x) {
    to[4 * x] = 0;
    to[4 * x + 1] = from[3 * x + 2];
    to[4 * x + 2] = from[3 * x + 1];
    to[4 * x + 3] = from[3 * x];
  }
}

/// Exact on every target: no two steps may be fused into one instruction.
BYTE grayInDoubles(ConstBytes pixel) {
  return static_cast<BYTE>(pixel[2] * 0.299 + pixel[1] * 0.587 + pixel[0] * 0.114);
}

/// With n = 299 red + 587 green + 114 blue the gray is n / 1000. Only where 1000 divides n may the doubles
/// round to just below a whole number. So a block is computed in integers, and again in doubles if it has
/// such a pixel, which one in a thousand is. In 16 bits: with n = 8 m + rest, n / 1000 = m 33555 / 2^22,
/// truncated, for every n here, and the remainder is small enough to be compared modulo 2^16.
void bgr24ToGray(ConstBytes from, int width, Bytes to) {
  constexpr std::ptrdiff_t block = 64;
  std::ptrdiff_t x = 0;
  for (; x + block <= width; x += block) {
    ConstBytes pixels = from + 3 * x;
    WORD wholes = 0;
    for (std::ptrdiff_t i = 0; i < block; ++i) {
      const WORD red = pixels[3 * i + 2];
      const WORD green = pixels[3 * i + 1];
      const WORD blue = pixels[3 * i];
      const WORD eighths = static_cast<WORD>(37 * red + 73 * green + 14 * blue);
      const WORD rest = static_cast<WORD>(3 * red + 3 * green + 2 * blue);
      const WORD eighth = static_cast<WORD>(eighths + (rest >> 3));
      const WORD gray = static_cast<WORD>(static_cast<WORD>(eighth * 33555U >> 16) >> 6);
      to[x + i] = static_cast<BYTE>(gray);
      wholes = static_cast<WORD>(wholes |
                                 (static_cast<WORD>(gray * 1000) == static_cast<WORD>(8 * eighths + rest)));
    }
    if (wholes == 0) continue;
    for (std::ptrdiff_t i = 0; i < block; ++i) to[x + i] = grayInDoubles(pixels + 3 * i);
  }
  for (; x < width; ++x) to[x] = grayInDoubles(from + 3 * x);
}

constexpr RowKernels kernelsOfThisSource{bgra32ToBgr24,  rgb555ToBgr24,     bgr24ToRgb555,
                                         bgra32ToRgb555, bgr24ToReversed32, bgr24ToGray};

}  // namespace
}  // namespace dibkit
