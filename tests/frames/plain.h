#pragma once

#include "convert/convert.h"
#include "frames/frames.h"
#include "support/bitmap_regions.h"

/// Random frames on a canvas, the plain way to look at them, and pictures made one pixel at a time.
namespace test {

constexpr int channel(DWORD colour, int shift) { return static_cast<int>(colour >> shift & 255); }

/// The COLORREF's bytes as 0xRRGGBB, and back.
constexpr DWORD swapped(DWORD colour) {
  return (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255);
}

/// rule(top, under) for each channel of two colours, its low byte.
template <class Rule>
DWORD mixed(DWORD top, DWORD under, Rule&& rule) {
  DWORD result = 0;
  for (const int shift : {0, 8, 16}) {
    result |= static_cast<DWORD>(rule(channel(top, shift), channel(under, shift)) & 255) << shift;
  }
  return result;
}
inline DWORD wordBlend(DWORD top, DWORD under, int w) {
  return mixed(top, under, [w](int t, int u) { return (t * w + u * 256 - u * w) >> 8; });
}
inline bool nearby(DWORD a, DWORD b, int tolerance) {
  bool all = true;
  for (const int shift : {0, 8, 16})
    all = all && std::abs(channel(a, shift) - channel(b, shift)) <= tolerance;
  return all;
}

inline bool marked(const OwnedDib& mask, int x, int y) {
  return mask && y < mask->biHeight && pixel(mask, x, y) != 0;
}

/// The colour of a frame's pixel, 0xRRGGBB.
inline DWORD colourAt(const OwnedDib& dib, int x, int y) {
  BYTE red = 0, green = 0, blue = 0;
  GetPixelRGB(rowOf(dib.get(), y), x, dib->biBitCount, reinterpret_cast<RGBQUAD*>(dib.get() + 1), &red,
              &green, &blue);
  return DWORD{red} << 16 | DWORD{green} << 8 | blue;
}

/// A mask whose palette is counted, as hosts make them.
inline OwnedDib randomMask(int width, int height, int percent, Random& random) {
  OwnedDib mask = image(width, height, 1, {0, 0xFFFFFF});
  forEachPixel({0, 0, width, height},
               [&](int x, int y) { setPixel(mask, x, y, below(random, 100) < percent); });
  return mask;
}

/// A frame near the canvas's corner, with a mask or without. Half of them have few flat colours, so that both
/// ends of the reduction to a palette are met; palettes may be shorter than their depth allows, masks than
/// the frame.
struct Shot {
  OwnedDib dib, mask;
  POINT at{0, 0};

  explicit Shot(Random& random, int depth = 0, int maxWidth = 24, int maxHeight = 12) {
    static constexpr int depths[] = {1, 4, 8, 16, 24, 32};
    if (depth == 0) depth = depths[below(random, 6)];
    const int width = 1 + below(random, maxWidth), height = 1 + below(random, maxHeight);
    std::vector<DWORD> palette(depth > 8 ? 0 : static_cast<std::size_t>(1 + below(random, 1 << depth)));
    for (DWORD& entry : palette) entry = random() & 0xFFFFFF;
    dib = image(width, height, depth, palette);
    const DWORD few[3] = {static_cast<DWORD>(random()), static_cast<DWORD>(random()), 0};
    const bool flat = below(random, 2) == 0;
    forEachPixel({0, 0, width, height}, [&](int x, int y) {
      const DWORD value = flat ? few[(x / 3 + y / 2) % 3] : static_cast<DWORD>(random());
      setPixel(dib, x, y, palette.empty() ? value : value % static_cast<DWORD>(palette.size()));
    });
    const int lines = below(random, 6) != 0 ? height : 1 + below(random, height);
    if (below(random, 3) != 0) mask = randomMask(width, lines, below(random, 3) * 40 + 5, random);
    at = {below(random, 16) - 8, below(random, 16) - 8};
  }

  RECT box() const { return {at.x, at.y, at.x + dib->biWidth, at.y + dib->biHeight}; }
  /// Whether the canvas point is in the frame and opaque there.
  bool shows(int x, int y) const {
    const RECT area = box();
    return x >= area.left && y >= area.top && x < area.right && y < area.bottom &&
           !marked(mask, x - at.x, y - at.y);
  }
  DWORD colour(int x, int y) const { return colourAt(dib, x - at.x, y - at.y); }
};

/// What an operation with out pointers gave.
struct Given {
  int result = 0;
  OwnedDib image, mask;
  POINT position{-77, -77};
};

template <class Operation>
Given given(Operation&& operation) {
  BITMAPINFOHEADER *image = nullptr, *mask = nullptr;
  Given got;
  got.result = operation(&image, &mask, &got.position);
  got.image.reset(image), got.mask.reset(mask);
  return got;
}
/// The same for an operation whose last parameters are pointers to an image, a mask and perhaps a position.
template <class... Parameters, class First, class... Others>
Given given(int (*operation)(Parameters...), const First& first, const Others&... others) {
  return given([&](auto image, auto mask, POINT* at) {
    if constexpr (sizeof...(Parameters) == sizeof...(Others) + 4) {
      return operation(first, others..., image, mask, at);
    } else {
      return operation(first, others..., image, mask);
    }
  });
}

/// Whether two images that may be null are the same to the byte.
inline bool same(const OwnedDib& a, const OwnedDib& b) {
  return !a || !b ? !a && !b : bytesOf(a) == bytesOf(b);
}
inline bool same(const Given& a, const Given& b) {
  return a.result == b.result && same(a.image, b.image) && same(a.mask, b.mask) &&
         a.position.x == b.position.x && a.position.y == b.position.y;
}

/// A mask as the library makes one.
inline OwnedDib newMask(int width, int height) {
  OwnedDib mask = image(width, height, 1);
  reinterpret_cast<RGBQUAD*>(mask.get() + 1)[1] = {255, 255, 255, 0};
  return mask;
}

/// A 24-bit picture of a part of the canvas that ends as the frame operations do, one pixel and one map entry
/// at a time.
class PlainPicture {
 public:
  explicit PlainPicture(const RECT& area)
      : area_(area),
        picture_(image(area.right - area.left, area.bottom - area.top, 24)),
        mask_(newMask(area.right - area.left, area.bottom - area.top)) {}

  DWORD at(int x, int y) const { return pixel(picture_, x - area_.left, y - area_.top); }
  /// Writes without entering the colour in the palette.
  void write(int x, int y, DWORD colour) { setPixel(picture_, x - area_.left, y - area_.top, colour); }
  void put(int x, int y, DWORD colour) {
    write(x, y, colour);
    int index = static_cast<int>(map_.GetCount());
    int known = 0;
    if (overflow_ || map_.Lookup(colour, known)) return;
    overflow_ = index == 256;
    if (!overflow_) map_.SetAt(colour, index);
  }
  void leaveOut(int x, int y) {
    setPixel(mask_, x - area_.left, y - area_.top, 1);
    leftOut_ = true;
  }
  Given finish() {
    Given end{1, std::move(picture_), nullptr, {area_.left, area_.top}};
    DWORD black = 0;
    int first = 0;
    if (map_.IsEmpty()) map_.SetAt(black, first);
    if (!overflow_) end.image.reset(Convert24BitsDIBToLowerBitsDIB(end.image.get(), map_));
    if (leftOut_) end.mask = std::move(mask_);
    return end;
  }
  /// For operations that hand back a copy of the mask that they came with, and no place.
  Given finishWith(const OwnedDib& mask) {
    Given end = finish();
    end.mask = copyOf(mask);
    end.position = Given().position;
    return end;
  }

 private:
  RECT area_;
  OwnedDib picture_, mask_;
  CMap<DWORD, DWORD&, int, int&> map_;
  bool overflow_ = false, leftOut_ = false;
};

}  // namespace test
