#pragma once

#include "convert/convert.h"
#include "random_frames.h"

namespace test {

/// A 24-bit picture that notes every colour written to it and ends as the frame operations do, one pixel and
/// one map entry at a time.
class PlainPicture {
 public:
  PlainPicture(int width, int height) : picture_(image(width, height, 24)) {}

  DWORD at(int x, int y) const { return pixel(picture_, x, y); }
  void put(int x, int y, DWORD colour) { setPixel(picture_, x, y, colour); }
  void note(DWORD colour) {
    int index = 0;
    if (overflow_ || map_.Lookup(colour, index)) return;
    if (map_.GetCount() == 256) {
      overflow_ = true;
    } else {
      index = static_cast<int>(map_.GetCount());
      map_.SetAt(colour, index);
    }
  }
  OwnedDib finish() {
    if (overflow_) return std::move(picture_);
    DWORD black = 0;
    int first = 0;
    if (map_.IsEmpty()) map_.SetAt(black, first);
    return OwnedDib(Convert24BitsDIBToLowerBitsDIB(picture_.get(), map_));
  }

 private:
  OwnedDib picture_;
  CMap<DWORD, DWORD&, int, int&> map_;
  bool overflow_ = false;
};

/// A mask as the frame operations make one: palette black and white.
inline OwnedDib newMask(int width, int height) {
  OwnedDib mask = image(width, height, 1);
  reinterpret_cast<RGBQUAD*>(mask.get() + 1)[1] = {255, 255, 255, 0};
  return mask;
}

/// What an operation with out pointers gave.
struct Given {
  int result = 0;
  OwnedDib image;
  OwnedDib mask;
  POINT position{-77, -77};
};

template <class Operation>
Given given(Operation&& operation) {
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  Given got;
  got.result = operation(&image, &mask, &got.position);
  got.image.reset(image);
  got.mask.reset(mask);
  return got;
}

/// Whether two images that may be null are the same to the byte.
inline bool sameBytes(const OwnedDib& a, const BITMAPINFOHEADER* b) {
  if (!a || b == nullptr) return !a && b == nullptr;
  return bytesOf(a) == bytesOf(b);
}

/// Few flat colours or many random ones, so that both ends of the reduction are seen.
inline OwnedDib anyFrame(int width, int height, Random& random) {
  const int depth = allDepths[below(random, 6)];
  return below(random, 2) == 0 ? flatFrame(width, height, depth, 1 + below(random, 6), random)
                               : randomFrame(width, height, depth, random);
}

}  // namespace test
