#include "host/formats/formats.h"

namespace host {

namespace {

constexpr std::size_t fileHeaderBytes = 14;

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
