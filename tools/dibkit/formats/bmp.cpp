#include "formats/bmp.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "errors.h"
#include "formats/byte_reader.h"
#include "formats/formats.h"

namespace host {

namespace {

constexpr std::size_t fileHeaderBytes = 14;

/// Where one colour channel lies in a pixel's number.
class Channel {
 public:
  explicit Channel(std::uint32_t mask) : mask_(mask), shift_(mask != 0 ? std::countr_zero(mask) : 0) {}
  bool exists() const { return mask_ != 0; }
  /// The channel scaled to 0..255, rounded.
  BYTE of(std::uint32_t pixel) const {
    if (mask_ == 0) return 0;
    const std::uint64_t most = mask_ >> shift_;
    return static_cast<BYTE>(((std::uint64_t{pixel & mask_} >> shift_) * 255 + most / 2) / most);
  }

 private:
  std::uint32_t mask_;
  int shift_;
};

Picture readMasked(const BmpHeader& header, const ByteReader& reader) {
  const Channel red(header.masks[0]);
  const Channel green(header.masks[1]);
  const Channel blue(header.masks[2]);
  const Channel alpha(header.masks[3]);
  const std::size_t bytesPerPixel = static_cast<std::size_t>(header.bitCount) / 8;
  Picture picture(header.size);
  for (int y = 0; y < header.size.height; ++y) {
    const std::uint8_t* line = reader.at(header.offsetOfLine(y), header.stride());
    Pixel* row = picture.row(y);
    for (int x = 0; x < header.size.width; ++x, line += bytesPerPixel) {
      std::uint32_t value = line[0] | std::uint32_t{line[1]} << 8;
      if (bytesPerPixel >= 3) value |= std::uint32_t{line[2]} << 16;
      if (bytesPerPixel == 4) value |= std::uint32_t{line[3]} << 24;
      row[x] =
          Pixel{blue.of(value), green.of(value), red.of(value), alpha.exists() ? alpha.of(value) : BYTE{255}};
    }
  }
  return picture;
}

BYTE indexAt(const std::uint8_t* line, int x, int bitCount) {
  switch (bitCount) {
    case 1:
      return Get1BitPixel(line, x);
    case 2:
      return static_cast<BYTE>(line[x / 4] >> (6 - x % 4 * 2) & 3);
    case 4:
      return Get4BitPixel(line, x);
    default:
      return Get8BitPixel(line, x);
  }
}

Pixel colourOf(const std::vector<RGBQUAD>& palette, unsigned index) {
  const RGBQUAD colour = index < palette.size() ? palette[index] : RGBQUAD{};
  return Pixel{colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 255};
}

Picture readIndexed(const BmpHeader& header, const ByteReader& reader) {
  Picture picture(header.size);
  for (int y = 0; y < header.size.height; ++y) {
    const std::uint8_t* line = reader.at(header.offsetOfLine(y), header.stride());
    Pixel* row = picture.row(y);
    for (int x = 0; x < header.size.width; ++x) {
      row[x] = colourOf(header.palette, indexAt(line, x, header.bitCount));
    }
  }
  return picture;
}

/// Run lengths of 4 or 8 bits. Pixels that the runs skip stay transparent.
class RunReader {
 public:
  RunReader(const BmpHeader& header, const ByteReader& reader)
      : header_(header), reader_(reader), offset_(header.pixelOffset), picture_(header.size) {}

  Picture read() && {
    while (y_ < header_.size.height) {
      const std::uint32_t count = reader_.u8(offset_);
      const std::uint32_t value = reader_.u8(offset_ + 1);
      offset_ += 2;
      if (count > 0) {
        for (std::uint32_t i = 0; i < count; ++i) put(nibbles() && i % 2 == 0 ? value >> 4 : low(value));
      } else if (value == 0) {
        x_ = 0;
        ++y_;
      } else if (value == 1) {
        break;
      } else if (value == 2) {
        x_ = std::min(header_.size.width, x_ + static_cast<int>(reader_.u8(offset_)));
        y_ += static_cast<int>(reader_.u8(offset_ + 1));
        offset_ += 2;
      } else {
        putLiteral(value);
      }
    }
    return std::move(picture_);
  }

 private:
  bool nibbles() const { return header_.bitCount == 4; }
  std::uint32_t low(std::uint32_t value) const { return nibbles() ? value & 15 : value; }

  void put(std::uint32_t index) {
    if (x_ >= header_.size.width) return;
    picture_.row(header_.size.height - 1 - y_)[x_++] = colourOf(header_.palette, index);
  }
  void putLiteral(std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint32_t value = reader_.u8(offset_ + (nibbles() ? i / 2 : i));
      put(nibbles() && i % 2 == 0 ? value >> 4 : low(value));
    }
    const std::size_t bytes = nibbles() ? (count + 1) / 2 : count;
    offset_ += (bytes + 1) / 2 * 2;
  }

  const BmpHeader& header_;
  const ByteReader& reader_;
  std::size_t offset_;
  Picture picture_;
  int x_ = 0;
  int y_ = 0;  ///< counts from the bottom, as the runs do
};

}  // namespace

Animation readBmp(ByteView bytes) {
  const ByteReader reader(bytes);
  const BmpHeader header = readBmpHeader(bytes);
  Animation animation;
  animation.format = "BMP";
  animation.bitsPerPixel = header.bitCount;
  animation.palette = header.palette;
  const bool runs =
      header.compression == BmpCompression::runs8 || header.compression == BmpCompression::runs4;
  if (!runs) reader.at(header.pixelOffset, header.stride() * static_cast<std::size_t>(header.size.height));
  animation.frames.push_back({runs                   ? RunReader(header, reader).read()
                              : header.bitCount <= 8 ? readIndexed(header, reader)
                                                     : readMasked(header, reader),
                              0});
  return animation;
}

namespace {

void put32(Bytes& file, std::size_t value) {
  for (int shift = 0; shift < 32; shift += 8) file.push_back(static_cast<std::uint8_t>(value >> shift & 255));
}

/// The headers of a 32-bit file that says where its alpha is: 108 bytes with masks, the rest of them 0.
Bytes headersWithAlpha(const BITMAPINFOHEADER* dib, std::size_t pixelBytes) {
  constexpr std::size_t longHeaderBytes = 108;
  Bytes file{'B', 'M'};
  put32(file, fileHeaderBytes + longHeaderBytes + pixelBytes);
  put32(file, 0);
  put32(file, fileHeaderBytes + longHeaderBytes);
  BITMAPINFOHEADER header = *dib;
  header.biSize = longHeaderBytes;
  header.biCompression = BI_BITFIELDS;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&header);
  file.insert(file.end(), bytes, bytes + sizeof(header));
  for (const std::size_t mask : {0x00FF0000U, 0x0000FF00U, 0x000000FFU, 0xFF000000U}) put32(file, mask);
  file.resize(fileHeaderBytes + longHeaderBytes);
  return file;
}

}  // namespace

Bytes writeBmp(const BITMAPINFOHEADER* dib) {
  const auto* block = reinterpret_cast<const std::uint8_t*>(dib);
  const std::size_t offset = static_cast<std::size_t>(GetDIBBits(dib) - block);
  const std::size_t stride = (static_cast<std::size_t>(dib->biWidth) * dib->biBitCount + 31) / 32 * 4;
  const std::size_t total = offset + stride * static_cast<std::size_t>(dib->biHeight);
  if (dib->biBitCount == 32 && CDIB32::IsFullOpacity32BitsImage(const_cast<BITMAPINFOHEADER*>(dib)) == 0) {
    Bytes file = headersWithAlpha(dib, total - offset);
    file.insert(file.end(), block + offset, block + total);
    return file;
  }
  Bytes file{'B', 'M'};
  put32(file, fileHeaderBytes + total);
  put32(file, 0);
  put32(file, fileHeaderBytes + offset);
  file.insert(file.end(), block, block + total);
  return file;
}

}  // namespace host
