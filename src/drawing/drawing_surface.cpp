#include "drawing/drawing_surface.h"

#include <algorithm>
#include <limits>

#include "dib/allocate.h"
#include "platform/bounds.h"

namespace dibkit {

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();

}  // namespace

DrawingSurface::DrawingSurface(const RECT& box, Colours colours, COLORREF background)
    : origin_{box.left, box.top} {
  const std::int64_t width = std::int64_t{box.right} - box.left;
  const std::int64_t height = std::int64_t{box.bottom} - box.top;
  if (width <= 0 || height <= 0 || width > highest || height > highest || box.left == lowest ||
      box.top == lowest) {
    return;
  }
  width_ = static_cast<int>(width);
  height_ = static_cast<int>(height);
  // A bitmap has the colours of the context that it is made compatible with: a new memory context is
  // monochrome.
  const ScreenContext screen(GetDC(nullptr));
  context_.reset(CreateCompatibleDC(colours == Colours::screen ? screen.get() : nullptr));
  bitmap_.reset(
      CreateCompatibleBitmap(colours == Colours::screen ? screen.get() : context_.get(), width_, height_));
  if (!bitmap_) return;
  selected_.emplace(context_.get(), bitmap_.get());
  // A new bitmap's contents are undefined.
  const OwnedGraphicsObject brush(CreateSolidBrush(background));
  const RECT all{0, 0, width_, height_};
  FillRect(context_.get(), &all, static_cast<HBRUSH>(brush.get()));
  SetViewportOrgEx(context_.get(), -static_cast<int>(box.left), -static_cast<int>(box.top), nullptr);
}

void DrawingSurface::put(const BITMAPINFOHEADER* picture) const {
  SetDIBitsToDevice(context_.get(), static_cast<int>(origin_.x), static_cast<int>(origin_.y),
                    static_cast<DWORD>(picture->biWidth), static_cast<DWORD>(picture->biHeight), 0, 0, 0,
                    static_cast<UINT>(picture->biHeight), GetDIBBits(picture),
                    reinterpret_cast<const BITMAPINFO*>(picture), DIB_RGB_COLORS);
}

void DrawingSurface::drawLine(const POINT* points, int count, int penWidth, bool roundEnds,
                              COLORREF colour) const {
  const LOGBRUSH brush{BS_SOLID, colour, 0};
  const int style =
      PS_GEOMETRIC | PS_SOLID | PS_JOIN_ROUND | (roundEnds ? PS_ENDCAP_ROUND : PS_ENDCAP_SQUARE);
  const OwnedGraphicsObject pen(
      ExtCreatePen(static_cast<DWORD>(style), static_cast<DWORD>(std::max(penWidth, 0)), &brush, 0, nullptr));
  const SelectedObject selected(context_.get(), pen.get());
  MoveToEx(context_.get(), static_cast<int>(points[0].x), static_cast<int>(points[0].y), nullptr);
  for (int i = 1; i < count; ++i)
    LineTo(context_.get(), static_cast<int>(points[i].x), static_cast<int>(points[i].y));
}

OwnedDib DrawingSurface::read(int bitCount) {
  OwnedDib dib = createDib(width_, height_, bitCount, 0);
  if (!dib) return nullptr;
  // The platform reads a bitmap only while it is not selected into a context.
  selected_.reset();
  const int rows = GetDIBits(context_.get(), bitmap_.get(), 0, static_cast<UINT>(height_),
                             GetDIBBits(dib.get()), reinterpret_cast<BITMAPINFO*>(dib.get()), DIB_RGB_COLORS);
  selected_.emplace(context_.get(), bitmap_.get());
  return rows != 0 ? std::move(dib) : nullptr;
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
