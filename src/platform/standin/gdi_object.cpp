#include "platform/standin/gdi_object.h"

#include <cstring>

namespace dibkit::standin {

int GdiObject::describe(int /*byteCount*/, void* /*out*/) const { return 0; }

// Stock objects are used by several threads at once, so their uses are not counted.
void GdiObject::select() {
  if (!stock_) ++selections_;
}

void GdiObject::deselect() {
  if (!stock_ && --selections_ == 0 && released_) delete this;
}

void GdiObject::release() {
  if (stock_) return;
  if (selected()) {
    released_ = true;
  } else {
    delete this;
  }
}

int giveDescription(const void* description, int size, int byteCount, void* out) {
  if (out == nullptr) return size;
  if (byteCount < size) return 0;
  std::memcpy(out, description, static_cast<std::size_t>(size));
  return size;
}

}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

BOOL DeleteObject(HGDIOBJ handle) {
  auto* object = static_cast<GdiObject*>(handle);
  if (object == nullptr) return FALSE;
  object->release();
  return TRUE;
}

int GetObjectW(HANDLE handle, int byteCount, void* out) {
  const auto* object = static_cast<const GdiObject*>(handle);
  return object != nullptr ? object->describe(byteCount, out) : 0;
}
