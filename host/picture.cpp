#include "host/picture.h"

#include <cstring>
#include <new>

#include "host/errors.h"

namespace host {

namespace {

dibkit::OwnedDib blank(Size size) {
  requireUsableSize(size.width, size.height);
  return dibkit::OwnedDib(CBitmapCreator::CreateDibImage(size.width, size.height, 32, 0));
}

}  // namespace

Picture::Picture(Size size) : Picture(blank(size)) {}

Picture::Picture(dibkit::OwnedDib dib) : dib_(std::move(dib)) {
  if (!dib_) throw std::bad_alloc();
}

Picture Picture::clone() const { return Picture(dibkit::OwnedDib(CBitmapCreator::Clone(dib_.get()))); }

bool looksEqual(const Picture& a, const Picture& b) {
  if (a.size() != b.size()) return false;
  for (int y = 0; y < a.height(); ++y) {
    const Pixel* left = a.row(y);
    const Pixel* right = b.row(y);
    if (std::memcmp(left, right, static_cast<std::size_t>(a.width()) * sizeof(Pixel)) == 0) continue;
    for (int x = 0; x < a.width(); ++x) {
      if (left[x] != right[x] && (left[x].alpha != 0 || right[x].alpha != 0)) return false;
    }
  }
  return true;
}

void requireUsableSize(std::int64_t width, std::int64_t height) {
  if (width <= 0 || height <= 0) throw FormatError("the picture has no pixels");
  if (width > maximumPixels / height) {
    throw TooManyPixels(std::to_string(width) + "x" + std::to_string(height) +
                        " pixels are too many, the limit is " + std::to_string(maximumPixels));
  }
}

void requireUsableAnimation(Size size, std::int64_t frames) {
  constexpr std::int64_t maximumPixelsOfAll = 4 * maximumPixels;
  if (frames > maximumPixelsOfAll / size.pixels()) {
    throw FormatError(std::to_string(frames) + " frames of " + toString(size) +
                      " pixels are too many, the limit is " + std::to_string(maximumPixelsOfAll) +
                      " pixels together");
  }
}

std::string toString(Size size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

}  // namespace host
