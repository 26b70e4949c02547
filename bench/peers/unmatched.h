#pragma once

#include "row.h"

/// Operations that no other library has, beside a copy of as many bytes.
namespace bench {

/// What such an operation works on, all of one size.
struct Scene {
  std::shared_ptr<BITMAPINFOHEADER> a;      ///< the row's picture
  std::shared_ptr<BITMAPINFOHEADER> b;      ///< the same again, or the row's second picture
  std::shared_ptr<BITMAPINFOHEADER> mask;   ///< 1 bit, transparent where the cartoon is
  std::shared_ptr<BITMAPINFOHEADER> brush;  ///< 8 bits
  std::shared_ptr<dibkit::OwnedRegion> ellipse;

  SIZE size() const { return {a->biWidth, a->biHeight}; }
};

struct Unmatched {
  const char* name;
  const char* picture;
  OwnedDib (*make)(int width, int height);
  /// Gives a new image, or null where the first picture is changed or only read.
  Dib (*run)(const Scene& scene);
  double copiedBytes;          ///< read plus written, of each pixel
  bool restoresFirst = false;  ///< whether the first picture is restored before each call, from the second
  OwnedDib (*second)(int width, int height) = nullptr;
};

void add(Rows& rows, const Unmatched& row);

/// For operations that hand out several images: the first one, without the others.
template <class Call>
Dib firstOf(Call&& call) {
  OwnedDib image, mask;
  POINT position{};
  call(dibkit::out(image), dibkit::out(mask), &position);
  return image.release();
}

}  // namespace bench
