#include "drawing/drawing_surface.h"

#include <algorithm>
#include <limits>

#include "dib/allocate.h"
#include "dib/layout.h"
#include "platform/bounds.h"

namespace dibkit {

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();

}  // namespace

DrawingSurface::DrawingSurface(const RECT& box, COLORREF background) {
  if (!resize(box)) return;
  // A bitmap has the colours of the context that it is made compatible with: a new memory context is
  // monochrome.
  context_.reset(CreateCompatibleDC(nullptr));
  prepare(CreateCompatibleBitmap(context_.get(), width_, height_), box, background);
}

DrawingSurface::DrawingSurface(const RECT& box, std::span<const RGBQUAD> colours, COLORREF background) {
  if (!resize(box)) return;
  struct {
    BITMAPINFOHEADER header{};
    RGBQUAD colours[16]{};
  } format;
  format.header.biSize = sizeof(BITMAPINFOHEADER);
  format.header.biWidth = width_;
  format.header.biHeight = height_;
  format.header.biPlanes = 1;
  format.header.biBitCount = 4;
  format.header.biClrUsed = static_cast<DWORD>(colours.size());
  std::copy(colours.begin(), colours.end(), format.colours);
  context_.reset(CreateCompatibleDC(nullptr));
  prepare(CreateDIBSection(context_.get(), reinterpret_cast<BITMAPINFO*>(&format), DIB_RGB_COLORS, &indexes_,
                           nullptr, 0),
          box, background);
}

bool DrawingSurface::resize(const RECT& box) {
  const std::int64_t width = std::int64_t{box.right} - box.left;
  const std::int64_t height = std::int64_t{box.bottom} - box.top;
  if (width <= 0 || height <= 0 || width > highest || height > highest || box.left == lowest ||
      box.top == lowest) {
    return false;
  }
  width_ = static_cast<int>(width);
  height_ = static_cast<int>(height);
  return true;
}

void DrawingSurface::prepare(HBITMAP bitmap, const RECT& box, COLORREF background) {
  bitmap_.reset(bitmap);
  if (!context_ || !bitmap_) return;
  origin_ = {box.left, box.top};
  selected_.emplace(context_.get(), bitmap_.get());
  // A new bitmap's contents are undefined.
  const OwnedGraphicsObject brush(CreateSolidBrush(background));
  const RECT all{0, 0, width_, height_};
  usable_ = FillRect(context_.get(), &all, static_cast<HBRUSH>(brush.get())) != 0 &&
            SetViewportOrgEx(context_.get(), -static_cast<int>(box.left), -static_cast<int>(box.top),
                             nullptr) != FALSE;
}

bool DrawingSurface::put(const BITMAPINFOHEADER* picture) const {
  if (picture->biWidth == 0 || picture->biHeight == 0) return true;
  return SetDIBitsToDevice(context_.get(), static_cast<int>(origin_.x), static_cast<int>(origin_.y),
                           static_cast<DWORD>(picture->biWidth), static_cast<DWORD>(picture->biHeight), 0, 0,
                           0, static_cast<UINT>(picture->biHeight), GetDIBBits(picture),
                           reinterpret_cast<const BITMAPINFO*>(picture), DIB_RGB_COLORS) != 0;
}

bool DrawingSurface::drawLine(const POINT* points, int count, int penWidth, bool roundEnds,
                              COLORREF colour) const {
  const LOGBRUSH brush{BS_SOLID, colour, 0};
  const int style =
      PS_GEOMETRIC | PS_SOLID | PS_JOIN_ROUND | (roundEnds ? PS_ENDCAP_ROUND : PS_ENDCAP_SQUARE);
  const OwnedGraphicsObject pen(
      ExtCreatePen(static_cast<DWORD>(style), static_cast<DWORD>(std::max(penWidth, 0)), &brush, 0, nullptr));
  if (!pen) return false;
  const SelectedObject selected(context_.get(), pen.get());
  MoveToEx(context_.get(), static_cast<int>(points[0].x), static_cast<int>(points[0].y), nullptr);
  for (int i = 1; i < count; ++i) {
    if (LineTo(context_.get(), static_cast<int>(points[i].x), static_cast<int>(points[i].y)) == FALSE) {
      return false;
    }
  }
  return true;
}

OwnedDib DrawingSurface::read(int bitCount) {
  OwnedDib dib = createDib(width_, height_, bitCount, 0, InitialPixels::unwritten);
  if (!dib) return nullptr;
  // The platform reads a bitmap only while it is not selected into a context.
  selected_.reset();
  const int rows = GetDIBits(context_.get(), bitmap_.get(), 0, static_cast<UINT>(height_),
                             GetDIBBits(dib.get()), reinterpret_cast<BITMAPINFO*>(dib.get()), DIB_RGB_COLORS);
  selected_.emplace(context_.get(), bitmap_.get());
  return rows != 0 ? std::move(dib) : nullptr;
}

const BYTE* DrawingSurface::row(int y) const {
  return static_cast<const BYTE*>(indexes_) +
         static_cast<std::ptrdiff_t>(strideOf(width_, 4)) * (height_ - 1 - std::ptrdiff_t{y});
}

RECT widened(const RECT& rect, std::int64_t margin) {
  const auto within = [](std::int64_t value) {
    return static_cast<LONG>(std::clamp(value, lowest, highest));
  };
  return {within(rect.left - margin), within(rect.top - margin), within(rect.right + margin),
          within(rect.bottom + margin)};
}

RECT boxAround(const POINT* points, int count, std::int64_t margin) {
  if (points == nullptr || count <= 0) return {};
  RECT box{points[0].x, points[0].y, points[0].x, points[0].y};
  for (int i = 1; i < count; ++i) extend(box, RECT{points[i].x, points[i].y, points[i].x, points[i].y});
  return widened(box, margin);
}

}  // namespace dibkit
