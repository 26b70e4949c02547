// Vectors of 24-bit pixels, for the sources with vector instructions. Included once for each instruction set,
// so it has the guard that Highway has for such headers.

#if defined(DIBKIT_KERNELS_BGR24_SIMD_H) == defined(HWY_TARGET_TOGGLE)
#ifdef DIBKIT_KERNELS_BGR24_SIMD_H
#undef DIBKIT_KERNELS_BGR24_SIMD_H
#else
#define DIBKIT_KERNELS_BGR24_SIMD_H
#endif

#include <array>
#include <cstddef>
#include <cstdint>

#include "kernels/vectors_simd.h"

HWY_BEFORE_NAMESPACE();
namespace dibkit::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

/// How many of the first pixels of a row of 24 bits may be processed a vector at a time, when each access
/// touches vectorBytes() bytes and vectorPixels() pixels use only three quarters of them: the last access has
/// to stay in the row.
HWY_INLINE std::ptrdiff_t inWholeVectors24(std::ptrdiff_t width) {
  const auto pixels = static_cast<std::ptrdiff_t>(vectorPixels());
  const std::ptrdiff_t beyond = (pixels + 2) / 3;  // pixels of 24 bits in the last quarter
  return width < pixels + beyond ? 0 : (width - beyond) / pixels * pixels;
}

/// Where TableLookupBytes and TableLookupLanes find what they move.
struct Moves {
  alignas(HWY_MAX_BYTES) std::uint8_t bytes[HWY_MAX_BYTES];
  alignas(HWY_MAX_BYTES) std::uint32_t words[HWY_MAX_BYTES / 4];
};

/// \param order for each byte of a pixel of 32 bits: which byte of the 24-bit pixel it is, or 0x80 for zero
constexpr Moves movesFrom24(std::array<std::uint8_t, 4> order) {
  Moves moves{};
  for (std::size_t i = 0; i < HWY_MAX_BYTES; ++i) {
    const std::uint8_t source = order[i % 4];
    moves.bytes[i] = source == 0x80 ? source : static_cast<std::uint8_t>(i % 16 / 4 * 3 + source);
  }
  // Each block of 16 bytes gets the three words that have its four pixels.
  for (std::size_t i = 0; i < HWY_MAX_BYTES / 4; ++i) {
    moves.words[i] = static_cast<std::uint32_t>(i / 4 * 3 + (i % 4 == 3 ? 2 : i % 4));
  }
  return moves;
}

constexpr Moves movesTo24() {
  Moves moves{};
  for (std::size_t i = 0; i < HWY_MAX_BYTES; ++i) {
    const std::size_t at = i % 16;
    moves.bytes[i] = static_cast<std::uint8_t>(at < 12 ? at / 3 * 4 + at % 3 : 0x80);
  }
  constexpr std::size_t used = HWY_MAX_BYTES / 16 * 3;
  for (std::size_t i = 0; i < HWY_MAX_BYTES / 4; ++i) {
    moves.words[i] = static_cast<std::uint32_t>(i < used ? i / 3 * 4 + i % 3 : 3);
  }
  return moves;
}

using WordIndices = decltype(hn::SetTableIndices(U32(), static_cast<const std::uint32_t*>(nullptr)));

/// Loads vectorPixels() pixels of 24 bits as pixels of 32 bits, whose bytes are in the order that
/// movesFrom24() has. Reads at most vectorBytes() bytes.
template <const Moves& moves>
class Bgr24Loader {
 public:
  // A constructor made by the compiler would be compiled without the instruction set; so would a lambda.
  HWY_INLINE Bgr24Loader()
      : bytes_(hn::Load(U8(), moves.bytes)), words_(hn::SetTableIndices(U32(), moves.words)) {}

  HWY_INLINE VU8 operator()(const std::uint8_t* from) const {
    if constexpr (HWY_MAX_BYTES == 16) {
      return hn::TableLookupBytesOr0(hn::LoadU(U8(), from), bytes_);
    } else if constexpr (HWY_MAX_BYTES == 32) {
      // Two loads take less time than one and a permutation across the halves.
      const hn::Half<U8> half;
      const VU8 blocks = hn::Combine(U8(), hn::LoadU(half, from + 12), hn::LoadU(half, from));
      return hn::TableLookupBytesOr0(blocks, bytes_);
    } else {
      const VU8 loaded = hn::LoadU(U8(), from);
      const auto blocks = hn::TableLookupLanes(hn::BitCast(U32(), loaded), words_);
      return hn::TableLookupBytesOr0(hn::BitCast(U8(), blocks), bytes_);
    }
  }

  /// The same for the last pixels of a row: reads no byte after them, but four before them.
  HWY_INLINE VU8 last(const std::uint8_t* from) const {
    const VU8 bytes = hn::Add(bytes_, hn::Set(U8(), 4));  // 0x80 and above give zero
    const auto two = [](auto half, const std::uint8_t* at) HWY_ATTR {
      const hn::Half<decltype(half)> block;
      return hn::Combine(half, hn::LoadU(block, at + 8), hn::LoadU(block, at - 4));
    };
    if constexpr (HWY_MAX_BYTES == 16) {
      return hn::TableLookupBytesOr0(hn::LoadU(U8(), from - 4), bytes);
    } else if constexpr (HWY_MAX_BYTES == 32) {
      return hn::TableLookupBytesOr0(two(U8(), from), bytes);
    } else {
      const hn::Half<U8> half;
      return hn::TableLookupBytesOr0(hn::Combine(U8(), two(half, from + 24), two(half, from)), bytes);
    }
  }

 private:
  VU8 bytes_;
  WordIndices words_;
};

/// Stores the first three bytes of each of vectorPixels() pixels of 32 bits. Writes at most vectorBytes()
/// bytes, the last quarter of which has no meaning: what is stored after it replaces them.
class Bgr24Storer {
 public:
  HWY_INLINE Bgr24Storer()
      : bytes_(hn::Load(U8(), moves.bytes)), words_(hn::SetTableIndices(U32(), moves.words)) {}

  HWY_INLINE void operator()(VU8 pixels, std::uint8_t* to) const {
    const VU8 packed = hn::TableLookupBytesOr0(pixels, bytes_);
    if constexpr (HWY_MAX_BYTES == 16) {
      hn::StoreU(packed, U8(), to);
    } else if constexpr (HWY_MAX_BYTES == 32) {
      const hn::Half<U8> half;
      hn::StoreU(hn::LowerHalf(half, packed), half, to);
      hn::StoreU(hn::UpperHalf(half, packed), half, to + 12);
    } else {
      hn::StoreU(hn::BitCast(U8(), hn::TableLookupLanes(hn::BitCast(U32(), packed), words_)), U8(), to);
    }
  }

 private:
  static constexpr Moves moves = movesTo24();
  VU8 bytes_;
  WordIndices words_;
};

#endif

}  // namespace dibkit::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
