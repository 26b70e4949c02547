#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <utility>

#include <dibkit.h>

namespace host {

/// A pixel of a 32-bit image in memory order: straight colour, alpha 0 transparent and 255 opaque.
struct Pixel {
  BYTE blue = 0;
  BYTE green = 0;
  BYTE red = 0;
  BYTE alpha = 0;

  /// All four bytes at once: the compiler would compare one after the other.
  constexpr bool operator==(const Pixel& other) const {
    return std::bit_cast<std::uint32_t>(*this) == std::bit_cast<std::uint32_t>(other);
  }
};
static_assert(sizeof(Pixel) == 4);

/// Width and height in pixels.
struct Size {
  int width = 0;
  int height = 0;

  bool operator==(const Size&) const = default;
  std::int64_t pixels() const { return std::int64_t{width} * height; }
};

/// The largest picture that the program takes or makes: 256 MiB of pixels.
constexpr std::int64_t maximumPixels = std::int64_t{1} << 26;

/// A picture of the library's 32-bit kind. Lines count from the top, whatever their order in memory.
class Picture {
 public:
  Picture() = default;
  /// All pixels transparent. Throws FormatError for a size that is not positive or too large.
  explicit Picture(Size size);
  /// Takes over an image that the library made; throws std::bad_alloc when it could not make one.
  explicit Picture(dibkit::OwnedDib dib);

  Size size() const { return {dib_->biWidth, dib_->biHeight}; }
  int width() const { return dib_->biWidth; }
  int height() const { return dib_->biHeight; }

  Pixel* row(int y) { return const_cast<Pixel*>(std::as_const(*this).row(y)); }
  const Pixel* row(int y) const {
    const auto* rows = reinterpret_cast<const Pixel*>(GetDIBBits(dib_.get()));
    return rows + std::ptrdiff_t{dib_->biHeight - 1 - y} * dib_->biWidth;
  }

  /// For the library's operations, whose source arguments are not const either.
  BITMAPINFOHEADER* dib() const { return dib_.get(); }
  Picture clone() const;

 private:
  dibkit::OwnedDib dib_;
};

/// Whether two pictures of one size show the same; the colour under a transparent pixel does not show.
bool looksEqual(const Picture& a, const Picture& b);

/// Throws FormatError unless both sides are positive, TooManyPixels above maximumPixels.
void requireUsableSize(std::int64_t width, std::int64_t height);

/// Throws FormatError when frames of this size are together more than 1 GiB.
void requireUsableAnimation(Size size, std::int64_t frames);

/// "640x360"
std::string toString(Size size);

}  // namespace host
