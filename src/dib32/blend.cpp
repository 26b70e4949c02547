#include "dib32/blend.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace dibkit {
namespace {

// Rows are worked on in blocks of a fixed size: loops of a known length over local arrays turn into straight
// vector code, which the bytes of interleaved pixels otherwise prevent.
constexpr int blockPixels = 32;
constexpr int blockBytes = 4 * blockPixels;
using PixelLanes = std::array<Lane, blockPixels>;
using ByteLanes = std::array<Lane, blockBytes>;
using Bytes = std::array<BYTE, blockBytes>;

Bytes bytesOf(const BYTE* block) {
  Bytes bytes;
  std::memcpy(bytes.data(), block, blockBytes);
  return bytes;
}

/// A value per pixel as a value per byte.
template <class Value>
std::array<Value, blockBytes> spread(const std::array<Value, blockPixels>& values) {
  std::array<Value, blockBytes> lanes;
  for (std::size_t i = 0; i < blockPixels; ++i) {
    lanes[4 * i] = lanes[4 * i + 1] = lanes[4 * i + 2] = lanes[4 * i + 3] = values[i];
  }
  return lanes;
}

PixelLanes alphasOf(const BYTE* block) {
  PixelLanes alphas;
  for (int i = 0; i < blockPixels; ++i) {
    alphas[static_cast<std::size_t>(i)] = static_cast<Lane>(Bgra32::get(block, i) >> 24);
  }
  return alphas;
}

PixelLanes scaledBy(PixelLanes lanes, const auto& scaleAt) {
  for (std::size_t i = 0; i < blockPixels; ++i) {
    lanes[i] = divideBy255(static_cast<Lane>(lanes[i] * scaleAt(i)));
  }
  return lanes;
}

/// The source opacities of a block as they count; a null mask does not scale them.
PixelLanes opacitiesOf(const BYTE* block, LayerOpacity opacity, const BYTE* mask) {
  PixelLanes lanes = alphasOf(block);
  if (opacity.reduction != 0) {
    for (Lane& lane : lanes)
      lane = static_cast<Lane>(std::max(lane, Lane{opacity.reduction}) - opacity.reduction);
  }
  if (opacity.scale != 255) lanes = scaledBy(lanes, [&](std::size_t) { return opacity.scale; });
  if (mask != nullptr) lanes = scaledBy(lanes, [&](std::size_t i) { return mask[i]; });
  return lanes;
}

/// 0 when all opacities are 0, opaqueSum when all are 255, else between.
int sumOf(const PixelLanes& opacities) {
  Lane sum = 0;
  for (const Lane opacity : opacities) sum = static_cast<Lane>(sum + opacity);
  return sum;
}
constexpr int opaqueSum = 255 * blockPixels;

// Rules. block() does a block by the rule's formula. keeps() tells whether a block with all a = 0 stays as it
// is; copiesOpaque whether a = 255 gives the source pixel.

struct LinearMix {
  static constexpr bool copiesOpaque = true;
  static bool keeps(const BYTE*) { return true; }

  static constexpr Lane mix(Lane d, Lane s, Lane weight) {
    return static_cast<Lane>(d * (256 - weight) + s * weight) >> 8;
  }

  static void block(BYTE* to, const BYTE* from, PixelLanes opacities) {
    // A weight of 256 copies, which is what 255 has to do.
    for (Lane& a : opacities) a = static_cast<Lane>(a + (a == 255));
    const ByteLanes weight = spread(opacities);
    Bytes bytes = bytesOf(to);
    for (std::size_t i = 0; i < blockBytes; ++i) bytes[i] = lowByte(mix(bytes[i], from[i], weight[i]));
    std::memcpy(to, bytes.data(), blockBytes);
  }
};

struct EvenMix {
  static constexpr bool copiesOpaque = true;
  static bool keeps(const BYTE*) { return true; }

  static void block(BYTE* to, const BYTE* from, const PixelLanes& opacities) {
    std::array<DWORD, blockPixels> kept;
    std::array<DWORD, blockPixels> copied;
    PixelLanes weights;
    for (std::size_t i = 0; i < blockPixels; ++i) kept[i] = opacities[i] == 0 ? ~DWORD{0} : 0;
    for (std::size_t i = 0; i < blockPixels; ++i) copied[i] = opacities[i] == 255 ? ~DWORD{0} : 0;
    // 32768 a / 255 = 257 a / 2 for a below 255, as the sum 128 a + a / 2 to stay in 16 bits.
    for (std::size_t i = 0; i < blockPixels; ++i) {
      weights[i] = static_cast<Lane>(opacities[i] * 128 + (opacities[i] >> 1));
    }
    const ByteLanes weight = spread(weights);
    Bytes mixed = bytesOf(to);
    for (std::size_t i = 0; i < blockBytes; ++i) {
      const Lane rest = static_cast<Lane>(32768 - weight[i]);
      mixed[i] = lowByte(2 * (multiplyHigh(mixed[i], rest) + multiplyHigh(from[i], weight[i])));
    }
    for (int i = 0; i < blockPixels; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const DWORD word = (Bgra32::get(mixed.data(), i) & ~(kept[at] | copied[at])) |
                         (Bgra32::get(to, i) & kept[at]) | (Bgra32::get(from, i) & copied[at]);
      Bgra32::put(mixed.data(), i, word);
    }
    std::memcpy(to, mixed.data(), blockBytes);
  }
};

struct ExactOver {
  static constexpr bool copiesOpaque = true;
  static bool keeps(const BYTE* to) {
    Lane transparent = 0;
    for (const Lane alpha : alphasOf(to)) transparent = static_cast<Lane>(transparent | (alpha == 0));
    return transparent == 0;
  }

  static void block(BYTE* to, const BYTE* from, const PixelLanes& above) {
    const PixelLanes below = alphasOf(to);
    if (sumOf(below) == opaqueSum) return ontoOpaque(to, from, above);
    PixelLanes alphas;
    std::array<float, blockPixels> reciprocals;
    for (std::size_t i = 0; i < blockPixels; ++i) alphas[i] = unionOpacity(below[i], above[i]);
    // With opacity 0 all sums are 0 too, so any finite value does.
    for (std::size_t i = 0; i < blockPixels; ++i) {
      reciprocals[i] = 1.0F / static_cast<float>(int{alphas[i]} + (alphas[i] == 0));
    }
    const ByteLanes belowAlpha = spread(below);
    const ByteLanes aboveAlpha = spread(above);
    const std::array<float, blockBytes> reciprocal = spread(reciprocals);
    ByteLanes sums;
    for (std::size_t i = 0; i < blockBytes; ++i) {
      sums[i] = weightedSum(belowAlpha[i], aboveAlpha[i], to[i], from[i]);
    }
    // The half keeps quotients that are whole numbers from falling below them; tested for every sum up to
    // 65025 and every opacity.
    Bytes bytes;
    for (std::size_t i = 0; i < blockBytes; ++i) {
      bytes[i] = lowByte(static_cast<int>((static_cast<float>(int{sums[i]}) + 0.5F) * reciprocal[i]));
    }
    for (int i = 0; i < blockPixels; ++i) {
      const DWORD alpha = alphas[static_cast<std::size_t>(i)];
      Bgra32::put(to, i, (Bgra32::get(bytes.data(), i) & colourBits) | alpha << 24);
    }
  }

  /// With ad = 255 the formula comes down to (d (255 - a) + s a) / 255, and opacity stays 255.
  static void ontoOpaque(BYTE* to, const BYTE* from, const PixelLanes& above) {
    const ByteLanes weight = spread(above);
    Bytes bytes = bytesOf(to);
    for (std::size_t i = 0; i < blockBytes; ++i) {
      const auto sum = static_cast<Lane>(bytes[i] * (255 - weight[i]) + from[i] * weight[i]);
      bytes[i] = lowByte(divideBy255(sum));
    }
    for (int i = 0; i < blockPixels; ++i) Bgra32::put(to, i, Bgra32::get(bytes.data(), i) | ~colourBits);
  }
};

struct PlainOver {
  static constexpr bool copiesOpaque = false;  // a = 255 still divides by 65280 + ad
  static bool keeps(const BYTE*) { return true; }

  static void block(BYTE* to, const BYTE* from, const PixelLanes& above) {
    const PixelLanes below = alphasOf(to);
    PixelLanes alphas;
    std::array<float, blockPixels> divisors;
    for (std::size_t i = 0; i < blockPixels; ++i) {
      alphas[i] = static_cast<Lane>((below[i] + above[i]) * 256 - below[i] * above[i]);
    }
    for (std::size_t i = 0; i < blockPixels; ++i) {
      divisors[i] = static_cast<float>(int{alphas[i]} + (alphas[i] == 0));
    }
    const ByteLanes belowAlpha = spread(below);
    const ByteLanes aboveAlpha = spread(above);
    const std::array<float, blockBytes> divisor = spread(divisors);
    // Dividend and divisor have at most 24 bits, for which a division of floats, truncated, is exact. A
    // multiplication by the reciprocal would not be.
    Bytes bytes;
    for (std::size_t i = 0; i < blockBytes; ++i) {
      const int product = static_cast<Lane>(to[i] * belowAlpha[i]);
      const int dividend = product * 256 + (from[i] * 256 - product) * aboveAlpha[i];
      bytes[i] = lowByte(static_cast<int>(static_cast<float>(dividend) / divisor[i]));
    }
    for (int i = 0; i < blockPixels; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const DWORD kept = above[at] == 0 ? ~DWORD{0} : 0;
      const DWORD blended = (Bgra32::get(bytes.data(), i) & colourBits) | DWORD{alphas[at]} >> 8 << 24;
      Bgra32::put(to, i, (Bgra32::get(to, i) & kept) | (blended & ~kept));
    }
  }
};

/// Pixels that may be read before the first of them is written without losing the order from the left: the
/// distance of the two rows when they lie in each other.
int safeBlock(const Bgra* to, const Bgra* from) {
  // As numbers, since the rows of two images have no order as pointers.
  const auto toAt = reinterpret_cast<std::uintptr_t>(to);
  const auto fromAt = reinterpret_cast<std::uintptr_t>(from);
  const std::uintptr_t pixels = (toAt > fromAt ? toAt - fromAt : fromAt - toAt) / sizeof(Bgra);
  return pixels == 0 || pixels >= blockPixels ? blockPixels : static_cast<int>(pixels);
}

BYTE* bytesAt(Bgra* pixel) { return reinterpret_cast<BYTE*>(pixel); }
const BYTE* bytesAt(const Bgra* pixel) { return reinterpret_cast<const BYTE*>(pixel); }

/// Calls kernel(to, from, mask) for blocks of exactly blockPixels pixels. Parts of a block go through copies.
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
    const auto part = static_cast<std::size_t>(std::min(step, count - x));
    Bytes toCopy{};
    Bytes fromCopy{};
    std::array<BYTE, blockPixels> maskCopy{};
    std::memcpy(toCopy.data(), to + x, 4 * part);
    std::memcpy(fromCopy.data(), from + x, 4 * part);
    if (mask != nullptr) std::memcpy(maskCopy.data(), mask + x, part);
    kernel(toCopy.data(), fromCopy.data(), mask != nullptr ? maskCopy.data() : nullptr);
    std::memcpy(bytesAt(to + x), toCopy.data(), 4 * part);
    if constexpr (!std::is_const_v<From>) std::memcpy(bytesAt(from + x), fromCopy.data(), 4 * part);
  }
}

template <class Rule>
void blendRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  forEachBlock(to, from, count, mask, [opacity](BYTE* d, const BYTE* s, const BYTE* maskBytes) {
    const PixelLanes opacities = opacitiesOf(s, opacity, maskBytes);
    const int sum = sumOf(opacities);
    if (sum == 0 && Rule::keeps(d)) return;
    if (sum == opaqueSum && Rule::copiesOpaque) {
      std::memmove(d, s, blockBytes);
    } else {
      Rule::block(d, s, opacities);
    }
  });
}

}  // namespace

void overRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  blendRow<ExactOver>(to, from, count, opacity, mask);
}

void plainOverRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity) {
  blendRow<PlainOver>(to, from, count, opacity, nullptr);
}

void linearMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity) {
  blendRow<LinearMix>(to, from, count, opacity, nullptr);
}

void evenMixRow(Bgra* to, const Bgra* from, int count, LayerOpacity opacity, const BYTE* mask) {
  blendRow<EvenMix>(to, from, count, opacity, mask);
}

void copyOrShadeRow(Bgra* to, Bgra* from, int count, LayerOpacity opacity) {
  forEachBlock(to, from, count, nullptr, [opacity](BYTE* d, BYTE* s, const BYTE* mask) {
    const PixelLanes opacities = opacitiesOf(s, opacity, mask);
    if (sumOf(opacities) == 0) return;
    PixelLanes weights;
    // 256 a / 255 is a itself below 255; opaque pixels are not shaded.
    for (std::size_t i = 0; i < blockPixels; ++i) {
      weights[i] = opacities[i] == 255 ? Lane{0} : opacities[i];
    }
    const ByteLanes weight = spread(weights);
    Bytes shaded;
    // (256 s + (d - s) f) / 256 is the mix of the other two blends with the layers exchanged.
    for (std::size_t i = 0; i < blockBytes; ++i) shaded[i] = lowByte(LinearMix::mix(s[i], d[i], weight[i]));
    for (int i = 0; i < blockPixels; ++i) {
      const DWORD copied = opacities[static_cast<std::size_t>(i)] == 255 ? ~DWORD{0} : 0;
      Bgra32::put(d, i, (Bgra32::get(d, i) & ~copied) | (Bgra32::get(s, i) & copied));
    }
    for (int i = 0; i < blockPixels; ++i) {
      Bgra32::put(s, i, (Bgra32::get(s, i) & ~colourBits) | (Bgra32::get(shaded.data(), i) & colourBits));
    }
  });
}

void copyOrShade(Bgra& to, Bgra& from, BYTE opacity) {
  if (opacity == 255) {
    to = from;
  } else if (opacity > 0) {
    const auto shade = [opacity](BYTE s, BYTE d) { return lowByte(LinearMix::mix(s, d, opacity)); };
    from.blue = shade(from.blue, to.blue);
    from.green = shade(from.green, to.green);
    from.red = shade(from.red, to.red);
  }
}

}  // namespace dibkit
