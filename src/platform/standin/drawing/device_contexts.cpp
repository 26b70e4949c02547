#include <utility>

#include "platform/guard.h"
#include "platform/standin/drawing/device_context.h"
#include "platform/standin/regions/region_object.h"

namespace dibkit::standin {

namespace {

constexpr int screenBitCount = 32;

/// The bitmap of a memory context until another one is selected.
GdiObject* placeholderBitmap() {
  static BitmapObject* const bitmap = [] {
    static BitmapObject single(
        PictureFormat{1, 1, 1, true, false, {monochromeColours.begin(), monochromeColours.end()}}, false);
    single.makeStock();
    return &single;
  }();
  return bitmap;
}

HDC newContext(DeviceContext::Target target) {
  return catchOutOfMemory([&] { return handleOf<HDC>(new DeviceContext(target)); });
}

/// The bitmap's pixel for a pixel of the drawing calls; nothing if it is outside the bitmap or clipped.
std::optional<POINT> visiblePixel(const DeviceContext* context, int x, int y) {
  if (context == nullptr) return std::nullopt;
  RECT place{x, y, x, y};
  OffsetRect(&place, context->origin.x, context->origin.y);
  const POINT pixel{place.left, place.top};
  const RECT bounds = context->pixels().bounds();
  if (!PtInRect(&bounds, pixel) || (context->clip && !context->clip->contains(pixel.x, pixel.y)))
    return std::nullopt;
  return pixel;
}

}  // namespace

DeviceContext::DeviceContext(Target target)
    : GdiObject(ownKind),
      pen_(stockObject(BLACK_PEN)),
      brush_(stockObject(WHITE_BRUSH)),
      palette_(stockObject(DEFAULT_PALETTE)) {
  if (target == Target::memory) bitmap_ = placeholderBitmap();
}

DeviceContext::~DeviceContext() {
  for (GdiObject* object : {bitmap_, pen_, brush_, palette_}) {
    if (object != nullptr) object->deselect();
  }
}

Pixels DeviceContext::pixels() const { return bitmap_ != nullptr ? bitmap()->pixels() : Pixels{}; }

int DeviceContext::bitCount() const {
  return bitmap_ != nullptr ? bitmap()->format.bitCount : screenBitCount;
}

GdiObject* DeviceContext::select(GdiObject* object) {
  GdiObject** place = nullptr;
  switch (object->kind()) {
    case Kind::bitmap:
      // A bitmap can be selected into one memory context at a time.
      if (bitmap_ != nullptr && (object == bitmap_ || !object->selected())) place = &bitmap_;
      break;
    case Kind::pen:
      place = &pen_;
      nib_.reset();
      break;
    case Kind::brush:
      place = &brush_;
      break;
    default:
      break;
  }
  return place != nullptr ? put(*place, object) : nullptr;
}

GdiObject* DeviceContext::put(GdiObject*& place, GdiObject* object) {
  object->select();
  GdiObject* before = std::exchange(place, object);
  before->deselect();
  return before;
}

RECT DeviceContext::bounds() const {
  RECT box = pixels().bounds();
  if (clip) IntersectRect(&box, &box, &clip->box());
  return box;
}

BOOL exchangePoint(HDC handle, POINT DeviceContext::*point, const POINT& value, POINT* before) {
  auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr) return FALSE;
  const POINT old = std::exchange(context->*point, value);
  if (before != nullptr) *before = old;
  return TRUE;
}

}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

HDC CreateCompatibleDC(HDC /*reference*/) { return newContext(DeviceContext::Target::memory); }

BOOL DeleteDC(HDC handle) { return objectOf<DeviceContext>(handle) != nullptr && DeleteObject(handle); }

HDC GetDC(HWND window) { return window == nullptr ? newContext(DeviceContext::Target::screen) : nullptr; }

int ReleaseDC(HWND /*window*/, HDC handle) { return DeleteDC(handle); }

HGDIOBJ SelectObject(HDC handle, HGDIOBJ object) {
  auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr || object == nullptr) return nullptr;
  if (objectOf<RegionObject>(object) != nullptr) {
    // A region becomes the clip region, and the result is its complexity instead of a handle.
    return reinterpret_cast<HGDIOBJ>(
        static_cast<std::uintptr_t>(SelectClipRgn(handle, static_cast<HRGN>(object))));
  }
  return context->select(static_cast<GdiObject*>(object));
}

int SelectClipRgn(HDC handle, HRGN region) {
  auto* context = objectOf<DeviceContext>(handle);
  if (context == nullptr) return ERROR;
  const auto* clip = objectOf<RegionObject>(region);
  if (clip == nullptr) {
    context->clip.reset();
    return SIMPLEREGION;
  }
  return catchOutOfMemory([&] {
    context->clip = clip->region;
    return context->clip->complexity();
  });
}

BOOL SetViewportOrgEx(HDC handle, int x, int y, POINT* before) {
  return exchangePoint(handle, &DeviceContext::origin, {x, y}, before);
}

COLORREF GetPixel(HDC handle, int x, int y) {
  const auto* context = objectOf<DeviceContext>(handle);
  const std::optional<POINT> pixel = visiblePixel(context, x, y);
  if (!pixel) return CLR_INVALID;
  const Pixels surface = context->pixels();
  return colorRefOf(surface.colourOfRaw(surface.rawAt(pixel->x, pixel->y)));
}

COLORREF SetPixel(HDC handle, int x, int y, COLORREF colour) {
  const auto* context = objectOf<DeviceContext>(handle);
  const std::optional<POINT> pixel = visiblePixel(context, x, y);
  if (!pixel) return CLR_INVALID;
  const Pixels surface = context->pixels();
  const DWORD raw = surface.rawOfColour(colourOf(colour));
  surface.setRaw(pixel->x, pixel->y, raw);
  return colorRefOf(surface.colourOfRaw(raw));
}

BOOL GdiFlush() { return TRUE; }
