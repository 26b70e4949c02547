// The blend kernels, included by one source for each instruction set. Everything has internal linkage and
// calls no function from outside. Otherwise the linker could use a function compiled for a newer processor in
// the place of a plain one.

#include <cstring>
#include <type_traits>

namespace dibkit {
namespace {

// Rows are processed in blocks of a fixed size. The compiler turns loops of a known length over local arrays
// into straight vector code, which the interleaved bytes of pixels would otherwise prevent.
constexpr int blockPixels = 32;
constexpr int blockBytes = 4 * blockPixels;

/// A value for each pixel of a block, or for each byte. Changed in place: the compiler copies such an array
/// in pieces narrower than the next loop's loads, which then have to wait for the stores.
template <class Value, std::size_t count>
struct Block {
  Value values[count];
  Value& operator[](int i) { return values[i]; }
  const Value& operator[](int i) const { return values[i]; }
};
using PixelLanes = Block<Lane, blockPixels>;
using ByteLanes = Block<Lane, blockBytes>;
using Bytes = Block<BYTE, blockBytes>;

DWORD pixelAt(const BYTE* block, int i) {
  DWORD pixel;
  std::memcpy(&pixel, block + 4 * i, sizeof(pixel));
  return pixel;
}
void putPixel(BYTE* block, int i, DWORD pixel) { std::memcpy(block + 4 * i, &pixel, sizeof(pixel)); }

/// All bits where the condition holds, none elsewhere.
DWORD bitsWhere(bool condition) { return condition ? ~DWORD{0} : 0; }

/// A value per pixel as a value per byte.
template <class Value>
Block<Value, blockBytes> spread(const Block<Value, blockPixels>& values) {
  Block<Value, blockBytes> lanes;
  for (int i = 0; i < blockPixels; ++i) {
    lanes[4 * i] = lanes[4 * i + 1] = lanes[4 * i + 2] = lanes[4 * i + 3] = values[i];
  }
  return lanes;
}

PixelLanes alphasOf(const BYTE* block) {
  PixelLanes alphas;
  for (int i = 0; i < blockPixels; ++i) alphas[i] = static_cast<Lane>(pixelAt(block, i) >> 24);
  return alphas;
}

template <class ScaleAt>
void scale(PixelLanes& lanes, ScaleAt&& scaleAt) {
  for (int i = 0; i < blockPixels; ++i) lanes[i] = divideBy255(static_cast<Lane>(lanes[i] * scaleAt(i)));
}

/// The source alphas of a block, scaled by the layer's opacity and the mask; a null mask does not scale them.
PixelLanes alphasOf(const BYTE* block, LayerOpacity opacity, const BYTE* mask) {
  PixelLanes lanes = alphasOf(block);
  if (opacity.reduction != 0) {
    const Lane reduction = opacity.reduction;
    for (int i = 0; i < blockPixels; ++i) {
      lanes[i] = static_cast<Lane>((lanes[i] > reduction ? lanes[i] : reduction) - reduction);
    }
  }
  if (opacity.scale != 255) scale(lanes, [&](int) { return opacity.scale; });
  if (mask != nullptr) scale(lanes, [&](int i) { return mask[i]; });
  return lanes;
}

/// 0 when all alphas are 0, opaqueSum when all are 255, else between.
int sumOf(const PixelLanes& alphas) {
  Lane sum = 0;
  for (int i = 0; i < blockPixels; ++i) sum = static_cast<Lane>(sum + alphas[i]);
  return sum;
}
constexpr int opaqueSum = 255 * blockPixels;

// Rules. block() computes a block by the rule's formula. keeps() says whether a block with all a = 0 is
// unchanged; copiesOpaque whether a = 255 gives the source pixel.

struct LinearMix {
  static constexpr bool copiesOpaque = true;
  static bool keeps(const BYTE*) { return true; }

  static void block(BYTE* to, const BYTE* from, const PixelLanes& alphas) {
    PixelLanes weights;
    // 255 has to copy the source, which a weight of 256 does.
    for (int i = 0; i < blockPixels; ++i) weights[i] = static_cast<Lane>(alphas[i] + (alphas[i] == 255));
    const ByteLanes weight = spread(weights);
    Bytes bytes;
    for (int i = 0; i < blockBytes; ++i) bytes[i] = static_cast<BYTE>(mixed(to[i], from[i], weight[i]));
    for (int i = 0; i < blockPixels; ++i) putPixel(to, i, pixelAt(bytes.values, i));
  }
};

struct EvenMix {
  static constexpr bool copiesOpaque = true;
  static bool keeps(const BYTE*) { return true; }

  static void block(BYTE* to, const BYTE* from, const PixelLanes& alphas) {
    PixelLanes weights;
    // f = 32768 a / 255 = 257 a / 2 for a below 255, computed as 128 a + a / 2 to fit 16 bits.
    for (int i = 0; i < blockPixels; ++i) {
      weights[i] = static_cast<Lane>(alphas[i] * 128 + (alphas[i] >> 1));
    }
    const ByteLanes weight = spread(weights);
    Bytes bytes;
    for (int i = 0; i < blockBytes; ++i) {
      const Lane rest = static_cast<Lane>(32768 - weight[i]);
      bytes[i] = static_cast<BYTE>(2 * (multiplyHigh(to[i], rest) + multiplyHigh(from[i], weight[i])));
    }
    Block<DWORD, blockPixels> kept;
    Block<DWORD, blockPixels> copied;
    for (int i = 0; i < blockPixels; ++i) kept[i] = bitsWhere(alphas[i] == 0);
    for (int i = 0; i < blockPixels; ++i) copied[i] = bitsWhere(alphas[i] == 255);
    for (int i = 0; i < blockPixels; ++i) {
      putPixel(to, i,
               (pixelAt(bytes.values, i) & ~(kept[i] | copied[i])) | (pixelAt(to, i) & kept[i]) |
                   (pixelAt(from, i) & copied[i]));
    }
  }
};

struct ExactOver {
  static constexpr bool copiesOpaque = true;
  static bool keeps(const BYTE* to) {
    Lane transparent = 0;
    for (int i = 0; i < blockPixels; ++i) {
      transparent = static_cast<Lane>(transparent | (pixelAt(to, i) <= colourBits));
    }
    return transparent == 0;
  }

  static void block(BYTE* to, const BYTE* from, const PixelLanes& above) {
    const PixelLanes below = alphasOf(to);
    if (sumOf(below) == opaqueSum) return ontoOpaque(to, from, above);
    PixelLanes alphas;
    Block<float, blockPixels> reciprocals;
    for (int i = 0; i < blockPixels; ++i) alphas[i] = unionAlpha(below[i], above[i]);
    // Where the resulting alpha is 0 all sums are 0 too, so any finite divisor will do.
    for (int i = 0; i < blockPixels; ++i) {
      reciprocals[i] = 1.0F / static_cast<float>(int{alphas[i]} + (alphas[i] == 0));
    }
    const ByteLanes belowAlpha = spread(below);
    const ByteLanes aboveAlpha = spread(above);
    const Block<float, blockBytes> reciprocal = spread(reciprocals);
    ByteLanes sums;
    for (int i = 0; i < blockBytes; ++i) sums[i] = weightedSum(belowAlpha[i], aboveAlpha[i], to[i], from[i]);
    // The half prevents exact quotients from being rounded below their whole number; tested for every sum up
    // to 65025 and every alpha.
    Bytes bytes;
    for (int i = 0; i < blockBytes; ++i) {
      bytes[i] =
          static_cast<BYTE>(static_cast<int>((static_cast<float>(int{sums[i]}) + 0.5F) * reciprocal[i]));
    }
    for (int i = 0; i < blockPixels; ++i) {
      putPixel(to, i, (pixelAt(bytes.values, i) & colourBits) | DWORD{alphas[i]} << 24);
    }
  }

  /// With ad = 255 the formula is (d (255 - a) + s a) / 255, and alpha remains 255.
  static void ontoOpaque(BYTE* to, const BYTE* from, const PixelLanes& above) {
    const ByteLanes weight = spread(above);
    Bytes bytes;
    for (int i = 0; i < blockBytes; ++i) {
      const auto sum = static_cast<Lane>(to[i] * (255 - weight[i]) + from[i] * weight[i]);
      bytes[i] = static_cast<BYTE>(divideBy255(sum));
    }
    for (int i = 0; i < blockPixels; ++i) putPixel(to, i, pixelAt(bytes.values, i) | ~colourBits);
  }
};

struct PlainOver {
  static constexpr bool copiesOpaque = false;  // a = 255 still divides by 65280 + ad
  static bool keeps(const BYTE*) { return true; }

  static void block(BYTE* to, const BYTE* from, const PixelLanes& above) {
    const PixelLanes below = alphasOf(to);
    PixelLanes alphas;
    Block<float, blockPixels> divisors;
    for (int i = 0; i < blockPixels; ++i) {
      alphas[i] = static_cast<Lane>((below[i] + above[i]) * 256 - below[i] * above[i]);
    }
    for (int i = 0; i < blockPixels; ++i) {
      divisors[i] = static_cast<float>(int{alphas[i]} + (alphas[i] == 0));
    }
    const ByteLanes belowAlpha = spread(below);
    const ByteLanes aboveAlpha = spread(above);
    const Block<float, blockBytes> divisor = spread(divisors);
    // Dividend and divisor have at most 24 bits. For those the truncated quotient of floats is exact; a
    // multiplication by the reciprocal would not be.
    Bytes bytes;
    for (int i = 0; i < blockBytes; ++i) {
      const int product = static_cast<Lane>(to[i] * belowAlpha[i]);
      const int dividend = product * 256 + (from[i] * 256 - product) * aboveAlpha[i];
      bytes[i] = static_cast<BYTE>(static_cast<int>(static_cast<float>(dividend) / divisor[i]));
    }
    for (int i = 0; i < blockPixels; ++i) {
      const DWORD kept = bitsWhere(above[i] == 0);
      const DWORD blended = (pixelAt(bytes.values, i) & colourBits) | DWORD{alphas[i]} >> 8 << 24;
      putPixel(to, i, (pixelAt(to, i) & kept) | (blended & ~kept));
    }
  }
};

/// The number of pixels that may be read before the first of them is written without a change of the order
/// from the left: the distance of the two rows if they overlap.
int safeBlock(const Bgra* to, const Bgra* from) {
  // Compared as numbers: pointers into two different images have no defined order.
  const auto toAt = reinterpret_cast<std::uintptr_t>(to);
  const auto fromAt = reinterpret_cast<std::uintptr_t>(from);
  const std::uintptr_t pixels = (toAt > fromAt ? toAt - fromAt : fromAt - toAt) / sizeof(Bgra);
  return pixels == 0 || pixels >= blockPixels ? blockPixels : static_cast<int>(pixels);
}

BYTE* bytesAt(Bgra* pixel) { return reinterpret_cast<BYTE*>(pixel); }
const BYTE* bytesAt(const Bgra* pixel) { return reinterpret_cast<const BYTE*>(pixel); }

/// Calls kernel(to, from, mask) for blocks of exactly blockPixels pixels. An incomplete block is processed in
/// a copy.
template <class From, class Kernel>
void forEachBlock(Bgra* to, From* from, int count, const BYTE* mask, Kernel&& kernel) {
  const int step = safeBlock(to, from);
  int x = 0;
  if (step == blockPixels) {
    for (; count - x >= blockPixels; x += blockPixels) {
      kernel(bytesAt(to + x), bytesAt(from + x), mask != nullptr ? mask + x : nullptr);
    }
  }
  for (; x < count; x += step) {
    const auto part = static_cast<std::size_t>(step < count - x ? step : count - x);
    Bytes toCopy{};
    Bytes fromCopy{};
    Block<BYTE, blockPixels> maskCopy{};
    std::memcpy(toCopy.values, to + x, 4 * part);
    std::memcpy(fromCopy.values, from + x, 4 * part);
    if (mask != nullptr) std::memcpy(maskCopy.values, mask + x, part);
    kernel(toCopy.values, fromCopy.values, mask != nullptr ? maskCopy.values : nullptr);
    std::memcpy(bytesAt(to + x), toCopy.values, 4 * part);
    if constexpr (!std::is_const_v<From>) std::memcpy(bytesAt(from + x), fromCopy.values, 4 * part);
  }
}

template <class Rule>
void blend(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  forEachBlock(to, from, count, mask, [opacity](BYTE* d, const BYTE* s, const BYTE* maskBytes) {
    const PixelLanes alphas = alphasOf(s, opacity, maskBytes);
    const int sum = sumOf(alphas);
    if (sum == 0 && Rule::keeps(d)) return;
    if (sum == opaqueSum && Rule::copiesOpaque) {
      std::memmove(d, s, blockBytes);
    } else {
      Rule::block(d, s, alphas);
    }
  });
}

void copyOrShadeBlocks(Bgra* to, Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  forEachBlock(to, from, count, mask, [opacity](BYTE* d, BYTE* s, const BYTE* maskBytes) {
    const PixelLanes alphas = alphasOf(s, opacity, maskBytes);
    if (sumOf(alphas) == 0) return;
    PixelLanes weights;
    // f = 256 a / 255 is a for a below 255; opaque pixels are not shaded.
    for (int i = 0; i < blockPixels; ++i) weights[i] = alphas[i] == 255 ? Lane{0} : alphas[i];
    const ByteLanes weight = spread(weights);
    Bytes shaded;
    // (256 s + (d - s) f) / 256 is the linear mix with the layers exchanged.
    for (int i = 0; i < blockBytes; ++i) shaded[i] = static_cast<BYTE>(mixed(s[i], d[i], weight[i]));
    for (int i = 0; i < blockPixels; ++i) {
      const DWORD copied = bitsWhere(alphas[i] == 255);
      putPixel(d, i, (pixelAt(d, i) & ~copied) | (pixelAt(s, i) & copied));
    }
    for (int i = 0; i < blockPixels; ++i) {
      putPixel(s, i, (pixelAt(s, i) & ~colourBits) | (pixelAt(shaded.values, i) & colourBits));
    }
  });
}

constexpr BlendKernels kernelsOfThisSource{blend<ExactOver>, blend<PlainOver>, blend<LinearMix>,
                                           blend<EvenMix>, copyOrShadeBlocks};

}  // namespace
}  // namespace dibkit
