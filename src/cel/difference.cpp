#include "cel/difference.h"

#include <algorithm>

#include "raster/index_rows.h"

namespace dibkit {
namespace {

/// Pixels compared at a time, in buffers on the stack: whole bytes at every depth.
constexpr int chunk = 512;

/// Whether two rows agree in all bits of the mask. The differences are accumulated and there is no early
/// exit, so that the loop vectorises.
template <class Word>
bool sameMasked(const BYTE* a, const BYTE* b, int count, Word mask) {
  Word difference = 0;
  for (int i = 0; i < count; ++i) {
    Word wordA;
    Word wordB;
    std::memcpy(&wordA, a + static_cast<std::size_t>(i) * sizeof(Word), sizeof(Word));
    std::memcpy(&wordB, b + static_cast<std::size_t>(i) * sizeof(Word), sizeof(Word));
    difference = static_cast<Word>(difference | (wordA ^ wordB));
  }
  return (difference & mask) == 0;
}

bool sameColours(const PaletteTable& a, const PaletteTable& b, int bitCount) {
  for (std::size_t i = 0; i < std::size_t{1} << bitCount; ++i) {
    if (rgbOf(a[i]) != rgbOf(b[i])) return false;
  }
  return true;
}

/// The transparency of `count` pixels from x on, one byte each.
void unpackTransparency(const BYTE* maskRow, int x, int count, BYTE* flags) {
  if (maskRow == nullptr) {
    std::memset(flags, 0, static_cast<std::size_t>(count));
    return;
  }
  BYTE bits[chunk / 8];
  copyRowBits(maskRow, x, count, bits);
  unpackBits(bits, count, flags);
}

}  // namespace

CelDifference::CelDifference(const Cel& a, const Cel& b)
    : a_(a),
      b_(b),
      sameFormat_(a.bitCount() == b.bitCount() && hasFormat(a.bitCount()) &&
                  (a.bitCount() > 8 || sameColours(a.palette(), b.palette(), a.bitCount()))) {}

/// Whether the stored pixels are equal, which means equal colours without decoding. False when it cannot be
/// decided so.
bool CelDifference::sameStored(const At& start, int count) const {
  if (!sameFormat_) return false;
  const std::int64_t bits = a_.bitCount();
  if (start.xA * bits % 8 != 0 || start.xB * bits % 8 != 0 || count * bits % 8 != 0) return false;
  const BYTE* a = a_.view().row(start.yA) + start.xA * bits / 8;
  const BYTE* b = b_.view().row(start.yB) + start.xB * bits / 8;
  // The bits that show no colour may differ.
  if (bits == 32) return sameMasked<DWORD>(a, b, count, 0x00FFFFFF);
  if (bits == 16) return sameMasked<WORD>(a, b, count, 0x7FFF);
  return std::memcmp(a, b, static_cast<std::size_t>(count * bits / 8)) == 0;
}

/// Whether the stored mask bits show that both frames are transparent in the same pixels.
bool CelDifference::sameTransparency(const At& start, int count) const {
  const BYTE* a = a_.mask().row(start.yA);
  const BYTE* b = b_.mask().row(start.yB);
  if (a == nullptr && b == nullptr) return true;
  if (a == nullptr || b == nullptr || start.xA % 8 != 0 || start.xB % 8 != 0 || count % 8 != 0) return false;
  return std::memcmp(a + start.xA / 8, b + start.xB / 8, static_cast<std::size_t>(count / 8)) == 0;
}

/// \return one byte for each pixel of a chunk, 0 where both are the same; null when all are
const BYTE* CelDifference::differing(const At& start, int count, BYTE* flags) const {
  if (sameTransparency(start, count) && sameStored(start, count)) return nullptr;
  BYTE bufferA[chunk * 3];
  BYTE bufferB[chunk * 3];
  BYTE transparentA[chunk];
  BYTE transparentB[chunk];
  const BYTE* a = a_.bgr(start.yA, start.xA, count, bufferA);
  const BYTE* b = b_.bgr(start.yB, start.xB, count, bufferB);
  unpackTransparency(a_.mask().row(start.yA), start.xA, count, transparentA);
  unpackTransparency(b_.mask().row(start.yB), start.xB, count, transparentB);
  for (int i = 0; i < count; ++i, a += 3, b += 3) {
    const int colours = (a[0] ^ b[0]) | (a[1] ^ b[1]) | (a[2] ^ b[2]);
    flags[i] =
        static_cast<BYTE>(transparentA[i] != transparentB[i] || (transparentA[i] == 0 && colours != 0));
  }
  return flags;
}

bool CelDifference::sameLines(int top, int bottom) const {
  const ConstView& a = a_.view();
  const ConstView& b = b_.view();
  if (!sameFormat_ || a_.mask().present() || b_.mask().present() || a.stride() != b.stride()) return false;
  // Rows are stored from the bottom.
  const auto bytes = static_cast<std::size_t>(a.stride()) * static_cast<std::size_t>(bottom - top);
  return std::memcmp(a.row(bottom - 1), b.row(bottom - 1), bytes) == 0;
}

int CelDifference::first(At start, int count) const {
  BYTE buffer[chunk];
  for (int done = 0; done < count; done += chunk) {
    const int size = std::min(chunk, count - done);
    const At at{start.xA + done, start.yA, start.xB + done, start.yB};
    if (const BYTE* flags = differing(at, size, buffer)) {
      const auto* found = static_cast<const BYTE*>(std::memchr(flags, 1, static_cast<std::size_t>(size)));
      if (found != nullptr) return done + static_cast<int>(found - flags);
    }
  }
  return count;
}

int CelDifference::last(At start, int count) const {
  BYTE buffer[chunk];
  // Chunks are counted from the left, so that each starts at a whole byte if the row does.
  for (int end = count; end > 0;) {
    const int begin = (end - 1) / chunk * chunk;
    const At at{start.xA + begin, start.yA, start.xB + begin, start.yB};
    if (const BYTE* flags = differing(at, end - begin, buffer)) {
      for (int i = end - begin; i > 0; --i) {
        if (flags[i - 1] != 0) return begin + i;
      }
    }
    end = begin;
  }
  return 0;
}

}  // namespace dibkit
