#include <algorithm>
#include <string>

#include <png.h>

#include "host/errors.h"
#include "host/formats/formats.h"

namespace host {

namespace {

/// Releases what libpng's simplified interface holds on every way out.
struct PngImage {
  png_image image{};
  PngImage() { image.version = PNG_IMAGE_VERSION; }
  PngImage(const PngImage&) = delete;
  PngImage& operator=(const PngImage&) = delete;
  ~PngImage() { png_image_free(&image); }

  [[noreturn]] void fail() const { throw FormatError("PNG: " + std::string(image.message)); }
};

/// Lines as libpng takes them: from the top, one byte a pixel for a palette.
struct PngLines {
  Size size;
  std::uint32_t format = 0;
  Bytes bytes;
  Bytes palette{};  ///< in the format's own channels
};

const BYTE* lineOf(const BITMAPINFOHEADER* dib, int y) {
  const std::size_t stride = (static_cast<std::size_t>(dib->biWidth) * dib->biBitCount + 31) / 32 * 4;
  return GetDIBBits(dib) + static_cast<std::size_t>(dib->biHeight - 1 - y) * stride;
}

IndexedPicture indicesOf(const BITMAPINFOHEADER* dib) {
  const auto* entry = reinterpret_cast<const RGBQUAD*>(reinterpret_cast<const BYTE*>(dib) + dib->biSize);
  IndexedPicture picture{{dib->biWidth, dib->biHeight}, {}, {entry, entry + GetDIBPaletteSize(dib)}, {}};
  // A PNG's depth follows from its palette: black entries keep it from being less than the image's.
  const std::size_t leastForDepth = dib->biBitCount == 8 ? 17 : dib->biBitCount == 4 ? 5 : 1;
  picture.palette.resize(std::max(picture.palette.size(), leastForDepth));
  picture.indices.reserve(static_cast<std::size_t>(picture.size.pixels()));
  for (int y = 0; y < dib->biHeight; ++y) {
    const BYTE* line = lineOf(dib, y);
    for (int x = 0; x < dib->biWidth; ++x) {
      picture.indices.push_back(dib->biBitCount == 1   ? Get1BitPixel(line, x)
                                : dib->biBitCount == 4 ? Get4BitPixel(line, x)
                                                       : Get8BitPixel(line, x));
    }
  }
  return picture;
}

PngLines trueColourLines(const BITMAPINFOHEADER* dib) {
  const bool alpha = dib->biBitCount == 32;
  PngLines lines{{dib->biWidth, dib->biHeight},
                 alpha ? std::uint32_t{PNG_FORMAT_BGRA} : std::uint32_t{PNG_FORMAT_BGR},
                 {}};
  for (int y = 0; y < dib->biHeight; ++y) {
    const BYTE* line = lineOf(dib, y);
    if (dib->biBitCount != 16) {
      lines.bytes.insert(lines.bytes.end(), line, line + std::ptrdiff_t{dib->biWidth} * (alpha ? 4 : 3));
      continue;
    }
    for (int x = 0; x < dib->biWidth; ++x) {
      const unsigned word = line[2 * x] | unsigned{line[2 * x + 1]} << 8;
      for (const unsigned shift : {0U, 5U, 10U}) {
        const unsigned five = word >> shift & 31;
        lines.bytes.push_back(static_cast<std::uint8_t>(five << 3 | five >> 2));
      }
    }
  }
  return lines;
}

Bytes fileOf(const PngLines& lines) {
  PngImage png;
  png.image.width = static_cast<png_uint_32>(lines.size.width);
  png.image.height = static_cast<png_uint_32>(lines.size.height);
  png.image.format = lines.format;
  png.image.colormap_entries =
      static_cast<png_uint_32>(lines.palette.size() / PNG_IMAGE_SAMPLE_CHANNELS(lines.format));
  Bytes file(PNG_IMAGE_PNG_SIZE_MAX(png.image));
  png_alloc_size_t length = file.size();
  if (png_image_write_to_memory(&png.image, file.data(), &length, 0, lines.bytes.data(), 0,
                                lines.palette.data()) == 0) {
    png.fail();
  }
  file.resize(length);
  return file;
}

}  // namespace

Bytes writePng(const IndexedPicture& picture) {
  PngLines lines{
      picture.size,
      picture.transparent ? std::uint32_t{PNG_FORMAT_RGBA_COLORMAP} : std::uint32_t{PNG_FORMAT_RGB_COLORMAP},
      picture.indices};
  int index = 0;
  for (const RGBQUAD& colour : picture.palette) {
    lines.palette.insert(lines.palette.end(), {colour.rgbRed, colour.rgbGreen, colour.rgbBlue});
    if (picture.transparent) lines.palette.push_back(index == *picture.transparent ? 0 : 255);
    ++index;
  }
  return fileOf(lines);
}

Bytes writePng(const BITMAPINFOHEADER* dib) {
  return dib->biBitCount <= 8 ? writePng(indicesOf(dib)) : fileOf(trueColourLines(dib));
}

}  // namespace host
