#include "platform/standin/clipboard/clipboard_formats.h"

#include <cstring>
#include <optional>
#include <vector>

#include "platform/standin/bitmaps/bitmap_object.h"

namespace dibkit::standin {
namespace {

/// A packed DIB in two parts. A block on the clipboard may end before its last row does; missing bytes are 0.
struct Picture {
  std::vector<BYTE> header;  ///< with masks and colour table
  std::vector<BYTE> rows;

  const BITMAPINFO* info() const { return reinterpret_cast<const BITMAPINFO*>(header.data()); }
};

std::uint64_t headerBytes(const BITMAPINFOHEADER& header) {
  std::uint64_t bytes = header.biSize;
  if (header.biCompression == BI_BITFIELDS) bytes += 3 * sizeof(DWORD);
  if (header.biBitCount > 8) return bytes;
  return bytes +
         (header.biClrUsed != 0 ? header.biClrUsed : std::uint64_t{1} << header.biBitCount) * sizeof(RGBQUAD);
}

std::optional<Picture> readPicture(HGLOBAL dib) {
  const auto* block = static_cast<const BYTE*>(GlobalLock(dib));
  GlobalUnlock(dib);
  const SIZE_T size = GlobalSize(dib);
  PictureFormat format;
  if (size < sizeof(BITMAPINFOHEADER)) return std::nullopt;
  BITMAPINFOHEADER header;
  std::memcpy(&header, block, sizeof(header));
  if (header.biSize < sizeof(header) || headerBytes(header) > size) return std::nullopt;
  const auto before = static_cast<std::size_t>(headerBytes(header));
  Picture picture;
  picture.header.assign(block, block + before);
  if (!readFormat(picture.info(), format)) return std::nullopt;
  picture.rows.resize(static_cast<std::size_t>(format.byteCount()));
  std::memcpy(picture.rows.data(), block + before, std::min(size - before, picture.rows.size()));
  return picture;
}

HBITMAP makeBitmap(const Picture& picture) {
  const BITMAPINFOHEADER& header = picture.info()->bmiHeader;
  const HDC screen = GetDC(nullptr);
  const HDC context = CreateCompatibleDC(screen);
  const auto height = static_cast<UINT>(std::abs(header.biHeight));
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, header.biWidth, static_cast<int>(height));
  const HGDIOBJ before = SelectObject(context, bitmap);
  SetDIBitsToDevice(context, 0, 0, static_cast<DWORD>(header.biWidth), height, 0, 0, 0, height,
                    picture.rows.data(), picture.info(), DIB_RGB_COLORS);
  SelectObject(context, before);
  DeleteDC(context);
  ReleaseDC(nullptr, screen);
  return bitmap;
}

/// A BITMAPV5HEADER has the masks and the colour space after the fields of a BITMAPINFOHEADER; the others are
/// 0.
HGLOBAL makeLongHeader(const Picture& picture) {
  constexpr DWORD longSize = 124;
  constexpr std::size_t masksAt = 40;
  constexpr std::size_t colourSpaceAt = 56;
  constexpr DWORD standardColourSpace = 0x73524742;  // "sRGB"
  const BITMAPINFOHEADER& header = picture.info()->bmiHeader;
  const bool masks = header.biCompression == BI_BITFIELDS;
  const std::size_t tableAt = header.biSize + (masks ? 3 * sizeof(DWORD) : 0);
  const std::size_t tableBytes = picture.header.size() - tableAt;
  const HGLOBAL made =
      GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, longSize + tableBytes + picture.rows.size());
  if (made == nullptr) return nullptr;
  auto* bytes = static_cast<BYTE*>(GlobalLock(made));
  std::memcpy(bytes, &header, sizeof(header));
  std::memcpy(bytes, &longSize, sizeof(longSize));
  if (masks) std::memcpy(bytes + masksAt, picture.header.data() + header.biSize, 3 * sizeof(DWORD));
  std::memcpy(bytes + colourSpaceAt, &standardColourSpace, sizeof(standardColourSpace));
  std::memcpy(bytes + longSize, picture.header.data() + tableAt, tableBytes);
  std::memcpy(bytes + longSize + tableBytes, picture.rows.data(), picture.rows.size());
  GlobalUnlock(made);
  return made;
}

}  // namespace

HANDLE makeOfDib(UINT format, HGLOBAL dib) {
  if (format != CF_BITMAP && format != CF_DIBV5) return nullptr;
  const std::optional<Picture> picture = readPicture(dib);
  if (!picture) return nullptr;
  return format == CF_BITMAP ? static_cast<HANDLE>(makeBitmap(*picture)) : makeLongHeader(*picture);
}

}  // namespace dibkit::standin
