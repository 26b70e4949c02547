#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/recorded.h"
#include "support/golden_dib.h"
#include "support/palettes.h"

/// Memory surfaces for tests, their recorded pixels, and the clipboard.
namespace test {

/// The formats on the open clipboard, in order.
inline std::vector<std::int64_t> listedFormats() {
  std::vector<std::int64_t> formats;
  for (UINT format = 0; (format = EnumClipboardFormats(format)) != 0;) formats.push_back(format);
  return formats;
}

/// Leaves the process's clipboard empty and closed.
class Clipboard : public testing::Test {
 protected:
  void TearDown() override {
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
  }
};

struct ObjectDeleter {
  using pointer = HGDIOBJ;
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using OwnedObject = std::unique_ptr<void, ObjectDeleter>;

/// A context with a bitmap selected into it: 1 bit, or the screen's colours.
class Surface {
 public:
  Surface(int width, int height, bool colour) {
    const HDC screen = GetDC(nullptr);
    context_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateCompatibleBitmap(colour ? screen : context_, width, height);
    before_ = SelectObject(context_, bitmap_);
    ReleaseDC(nullptr, screen);
  }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;
  ~Surface() {
    SelectObject(context_, before_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
  }

  HDC context() const { return context_; }
  HBITMAP bitmap() const { return bitmap_; }
  void origin(std::int64_t x, std::int64_t y) const {
    SetViewportOrgEx(context_, static_cast<int>(x), static_cast<int>(y), nullptr);
  }
  void fill(const RECT& rect, COLORREF colour) const {
    const OwnedObject brush(CreateSolidBrush(colour));
    FillRect(context_, &rect, static_cast<HBRUSH>(brush.get()));
  }

  /// Reads the surface into a DIB of its size; `rows` gets GetDIBits' result.
  OwnedDib read(int bitCount, int* rows = nullptr) const {
    BITMAP size{};
    GetObjectW(bitmap_, sizeof(size), &size);
    OwnedDib dib = image(size.bmWidth, size.bmHeight, bitCount);
    const int read = GetDIBits(context_, bitmap_, 0, static_cast<UINT>(size.bmHeight), GetDIBBits(dib.get()),
                               reinterpret_cast<BITMAPINFO*>(dib.get()), DIB_RGB_COLORS);
    if (rows != nullptr) *rows = read;
    return dib;
  }

 private:
  HDC context_;
  HBITMAP bitmap_;
  HGDIOBJ before_;
};

/// A polyline through the points with a pen of ExtCreatePen, one LineTo for each point after the first.
inline void drawLine(const Surface& surface, const std::vector<POINT>& points, COLORREF colour,
                     std::int64_t width, std::int64_t round) {
  const LOGBRUSH brush{BS_SOLID, colour, 0};
  const DWORD style = static_cast<DWORD>(PS_GEOMETRIC | PS_SOLID | PS_JOIN_ROUND) |
                      static_cast<DWORD>(round != 0 ? PS_ENDCAP_ROUND : PS_ENDCAP_SQUARE);
  const OwnedObject pen(ExtCreatePen(style, static_cast<DWORD>(width), &brush, 0, nullptr));
  const HGDIOBJ before = SelectObject(surface.context(), pen.get());
  MoveToEx(surface.context(), points.at(0).x, points[0].y, nullptr);
  for (std::size_t i = 1; i < points.size(); ++i) LineTo(surface.context(), points[i].x, points[i].y);
  SelectObject(surface.context(), before);
}

/// The pixels of the `which`th `surface` line of a case, as `pixelsOf` gives them, and its size and depth.
struct RecordedPixels {
  int width = 0, height = 0, bitCount = 0;
  std::vector<DWORD> pixels;

  explicit RecordedPixels(const GoldenCase& recorded, int which = 0) {
    for (const GoldenLine& line : recorded.lines) {
      std::istringstream in(line.rest);
      if (line.word == "surface" && which-- == 0) in >> width >> height >> bitCount;
      if (line.word == "r" && which == -1) addRuns(in);
    }
  }

 private:
  void addRuns(std::istringstream& in) {
    int rows = 0, length = 0;
    std::string value;
    std::vector<DWORD> row;
    for (in >> rows; in >> length >> value;) {
      row.insert(row.end(), static_cast<std::size_t>(length),
                 static_cast<DWORD>(std::stoul(value, nullptr, 16)));
    }
    for (; rows > 0; --rows) pixels.insert(pixels.end(), row.begin(), row.end());
  }
};

inline void expectSurface(const RecordedPixels& expected, const Surface& surface) {
  EXPECT_EQ(pixelsOf(surface.read(expected.bitCount)), expected.pixels);
}

/// The header fields in the order of the records.
inline std::vector<std::int64_t> headerOf(const BITMAPINFOHEADER* dib) {
  return {dib->biSize,          dib->biWidth,       dib->biHeight,      dib->biPlanes,
          dib->biBitCount,      dib->biCompression, dib->biSizeImage,   dib->biXPelsPerMeter,
          dib->biYPelsPerMeter, dib->biClrUsed,     dib->biClrImportant};
}
/// A read of the surface beside the recorded `lines`, `header`, `palette` and pixels.
inline void expectRead(const GoldenCase& recorded, const Surface& surface) {
  const RecordedPixels expected(recorded);
  int rows = 0;
  const OwnedDib dib = surface.read(expected.bitCount, &rows);
  EXPECT_EQ(rows, numberOf(recorded, "lines"));
  EXPECT_EQ(headerOf(dib.get()), recorded.at("header").numbers());
  if (const GoldenLine* palette = recorded.find("palette")) {
    EXPECT_EQ(entriesOf(dib), coloursOf(*palette));
  }
  EXPECT_EQ(pixelsOf(dib), expected.pixels);
}

}  // namespace test
