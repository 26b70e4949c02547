#include "platform/standin/gdi_object.h"

using dibkit::standin::GdiObject;

BOOL DeleteObject(HGDIOBJ handle) {
  auto* object = static_cast<GdiObject*>(handle);
  if (object == nullptr) return FALSE;
  if (!object->stock) delete object;
  return TRUE;
}
