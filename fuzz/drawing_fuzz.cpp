#include <vector>

#include "dib32/dib32.h"
#include "drawing/drawing_surface.h"
#include "frames/frames.h"
#include "support.h"

/// Strokes, shapes and overlays: on the library's own surfaces, and by the drawing calls themselves.

namespace {

using dibkit::OwnedDib;

/// Coordinates that a surface may span: the fuzzer's memory is small.
int nearby(fuzz::Input& input) { return static_cast<std::int8_t>(input.byte()); }
RECT nearRect(fuzz::Input& input) {
  const int left = nearby(input), top = nearby(input);
  return {left, top, nearby(input), nearby(input)};
}
/// Widths of pens: mostly usual ones, now and then any.
int penWidth(fuzz::Input& input) { return input.byte() < 240 ? input.byte() % 50 : input.number(); }

std::vector<POINT> points(fuzz::Input& input, bool near) {
  std::vector<POINT> result(input.byte() % 10);
  for (POINT& point : result) point = near ? POINT{nearby(input), nearby(input)} : input.point();
  return result;
}

dibkit::OwnedRegion clipRegion(fuzz::Input& input) {
  if (input.byte() % 2 == 0) return nullptr;
  const RECT rect = input.rect();
  if (input.byte() % 2 == 0)
    return dibkit::OwnedRegion(CreateRectRgn(rect.left, rect.top, rect.right, rect.bottom));
  return dibkit::OwnedRegion(
      CreateEllipticRgn(rect.left % 500, rect.top % 500, rect.right % 500, rect.bottom % 500));
}

void overlays(fuzz::Input& input) {
  fuzz::Image image(input, 32);
  BITMAPINFOHEADER* canvas = image.get();
  const POINT origin = input.point();
  const int x = input.number(), y = input.number(), phase = input.number();
  CDIB32::Init32DIBBackground(canvas, 1, 2, 3, 4, 5, 6, x, y);
  CDIB32::Init32DIBWithHatedLines(canvas, CPoint(y, x), 0x123456);
  CDIB32::DrawSelectedFlag(canvas, origin, input.rect(), phase);
  CDIB32::DrawLeftHatchedLine(canvas, origin, x, y, input.number(), 1, 2, 3, 4, 5, 6, phase);
}

void strokes(fuzz::Input& input) {
  fuzz::Image picture(input, 1);
  const RECT area = nearRect(input);
  const POINT from = input.point(), to = input.point();
  const int round = input.byte() % 2, margin = input.number();
  const dibkit::OwnedRegion clip = clipRegion(input);
  POINT origin;
  const OwnedDib line(
      CDIB32::GenerateLine(area, from, to, penWidth(input), margin, round, clip.get(), &origin));
  const OwnedDib white(PaintLineOnPic(picture.get(), area, from, to, penWidth(input), round));
  std::vector<POINT> corners = points(input, false);
  const OwnedDib black(PaintLineOnPic2(area, corners.data(), static_cast<int>(corners.size()),
                                       penWidth(input), round, &origin));
}

void shapes(fuzz::Input& input) {
  const RECT rect = nearRect(input);
  const int pen = input.byte() % 60, filled = input.byte() % 2;
  const POINT corner = input.point();
  POINT position;
  const OwnedDib shape(PaintShapeOnPic(rect, pen, input.byte() % 2, filled, corner, &position));
  std::vector<POINT> corners = points(input, true);
  const OwnedDib polygon(
      PaintPolygonOnPic(corners.data(), static_cast<int>(corners.size()), pen, filled, &position));
}

/// The calls on a surface of either kind, with coordinates from anywhere.
void calls(fuzz::Input& input) {
  using dibkit::DrawingSurface;
  const bool colour = input.byte() % 2 != 0;
  constexpr RGBQUAD colours[] = {{0, 0, 0, 0}, {0, 0, 255, 0}, {255, 255, 255, 0}};
  const RECT box = nearRect(input);
  DrawingSurface surface = colour ? DrawingSurface(box, colours, 0xFFFFFF) : DrawingSurface(box, 0xFFFFFF);
  if (!surface) return;
  const HDC context = surface.context();
  const dibkit::OwnedRegion clip = clipRegion(input);
  SelectClipRgn(context, clip.get());
  const dibkit::OwnedGraphicsObject pen(CreatePen(PS_SOLID, penWidth(input), 0));
  const dibkit::OwnedGraphicsObject brush(CreateSolidBrush(0xFF));
  const dibkit::SelectedObject selectedPen(context, pen.get()), selectedBrush(context, brush.get());
  while (!input.empty()) {
    const std::uint8_t call = input.byte() % 7;
    const RECT rect = input.rect();
    if (call == 0) SetViewportOrgEx(context, rect.left, rect.top, nullptr);
    if (call == 1) LineTo(context, rect.left, rect.top);
    if (call == 2) FillRect(context, &rect, static_cast<HBRUSH>(brush.get()));
    if (call == 3)
      RoundRect(context, rect.left, rect.top, rect.right, rect.bottom, input.number(), input.number());
    if (call == 4) {
      const std::vector<POINT> corners = points(input, false);
      Polygon(context, corners.data(), static_cast<int>(corners.size()));
    }
    if (call == 5)
      BitBlt(context, rect.left, rect.top, rect.right, rect.bottom, context, rect.bottom, rect.left, SRCCOPY);
    if (call == 6) SetPixel(context, rect.left, rect.top, GetPixel(context, rect.right, rect.bottom));
  }
  const OwnedDib read(surface.read(8));
}

/// Pictures of any depth put on and copied between sections of any depth.
void transfers(fuzz::Input& input) {
  fuzz::Image picture(input), other(input);
  if (!dibkit::ConstView(picture.get()) || !dibkit::ConstView(other.get())) return;
  const HDC context = CreateCompatibleDC(nullptr), source = CreateCompatibleDC(nullptr);
  const auto section = [](HDC in, BITMAPINFOHEADER* dib) {
    void* bits = nullptr;
    const HBITMAP bitmap =
        CreateDIBSection(in, reinterpret_cast<BITMAPINFO*>(dib), DIB_RGB_COLORS, &bits, nullptr, 0);
    SelectObject(in, bitmap);
    return dibkit::OwnedGraphicsObject(bitmap);
  };
  {
    const dibkit::OwnedGraphicsObject target = section(context, picture.get()),
                                      from = section(source, other.get());
    const RECT rect = input.rect();
    const auto start = static_cast<UINT>(nearby(input)), lines = static_cast<UINT>(input.byte());
    if (start < 64 && start + lines <= static_cast<UINT>(other.get()->biHeight)) {
      SetDIBitsToDevice(context, rect.left, rect.top, static_cast<DWORD>(rect.right),
                        static_cast<DWORD>(rect.bottom), input.number(), input.number(), start, lines,
                        GetDIBBits(other.get()), reinterpret_cast<BITMAPINFO*>(other.get()), DIB_RGB_COLORS);
    }
    BitBlt(context, rect.left, rect.top, rect.right, rect.bottom, source, input.number(), input.number(),
           SRCCOPY);
    BITMAP size{};
    if (GetObjectW(target.get(), sizeof(size), &size) != 0) {
      static constexpr int depths[] = {1, 4, 8, 16, 24, 32};
      const OwnedDib read(
          CBitmapCreator::CreateDibImage(size.bmWidth, size.bmHeight, depths[input.byte() % 6], 0));
      GetDIBits(context, static_cast<HBITMAP>(target.get()), 0, static_cast<UINT>(size.bmHeight),
                GetDIBBits(read.get()), reinterpret_cast<BITMAPINFO*>(read.get()), DIB_RGB_COLORS);
    }
  }
  DeleteDC(context);
  DeleteDC(source);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  constexpr void (*families[])(fuzz::Input&) = {overlays, strokes, shapes, calls, transfers};
  families[input.byte() % 5](input);
  return 0;
}
