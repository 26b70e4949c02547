#include <algorithm>
#include <array>
#include <string>

#include <png.h>

#include "errors.h"
#include "formats/byte_reader.h"
#include "formats/formats.h"

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

std::uint32_t bigEndian(const std::uint8_t* byte) {
  return std::uint32_t{byte[0]} << 24 | std::uint32_t{byte[1]} << 16 | std::uint32_t{byte[2]} << 8 | byte[3];
}

/// Bits a pixel, and the palette if there is one, from the chunks in front of the picture.
void readHead(ByteView bytes, Animation& animation) {
  constexpr std::array<int, 7> channelsOfType{1, 0, 3, 1, 2, 0, 4};
  const ByteReader reader(bytes);
  const std::uint32_t type = reader.u8(25);
  animation.bitsPerPixel =
      static_cast<int>(reader.u8(24)) * (type < channelsOfType.size() ? channelsOfType[type] : 0);
  for (std::size_t chunk = 8; chunk + 12 <= bytes.size();) {
    const std::uint8_t* head = reader.at(chunk, 8);
    const std::size_t length = bigEndian(head);
    const std::string name(reinterpret_cast<const char*>(head) + 4, 4);
    if (name == "IDAT") return;
    if (name == "PLTE" && type == 3) {
      const std::uint8_t* entry = reader.at(chunk + 8, length);
      for (std::size_t i = 0; i + 3 <= length; i += 3, entry += 3) {
        animation.palette.push_back(RGBQUAD{entry[2], entry[1], entry[0], 0});
      }
    }
    chunk += length + 12;
  }
}

/// Deflate packs at most 1,032 to 1: a picture that needs more bytes than that is not in the file.
void requireBytesFor(const png_image& image, int bitsPerPixel, std::size_t fileBytes) {
  requireUsableSize(image.width, image.height);
  const std::uint64_t rows =
      (std::uint64_t{image.width} * static_cast<unsigned>(bitsPerPixel) + 7) / 8 * image.height;
  if (rows / 1032 > fileBytes) throw FormatError("the file is truncated");
}

}  // namespace

Animation readPng(ByteView bytes) {
  PngImage png;
  if (png_image_begin_read_from_memory(&png.image, bytes.data(), bytes.size()) == 0) png.fail();
  Animation animation;
  animation.format = "PNG";
  readHead(bytes, animation);
  requireBytesFor(png.image, animation.bitsPerPixel, bytes.size());
  const Size size{static_cast<int>(png.image.width), static_cast<int>(png.image.height)};
  Picture picture(size);
  png.image.format = PNG_FORMAT_BGRA;
  png.image.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
  // A negative stride: the first line of the buffer is the picture's bottom one.
  if (png_image_finish_read(&png.image, nullptr, picture.row(size.height - 1), -size.width * 4, nullptr) ==
      0) {
    png.fail();
  }
  animation.frames.push_back({std::move(picture), 0});
  return animation;
}

namespace {

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
