#pragma once

#include "platform/win32.h"

namespace dibkit::standin {

/// What a handle stands for: handles are pointers to these, and DeleteObject releases any of them.
class GdiObject {
 public:
  enum class Kind { region };

  explicit GdiObject(Kind kind) : kind_(kind) {}
  GdiObject(const GdiObject&) = delete;
  GdiObject& operator=(const GdiObject&) = delete;
  virtual ~GdiObject() = default;

  Kind kind() const { return kind_; }
  /// Stock objects belong to everybody and are never released.
  bool stock = false;

 private:
  Kind kind_;
};

/// The object behind a handle, null for a null handle or one of another kind. `Object` names its kind in
/// `Object::ownKind`.
template <class Object>
Object* objectOf(void* handle) {
  auto* object = static_cast<GdiObject*>(handle);
  return object != nullptr && object->kind() == Object::ownKind ? static_cast<Object*>(object) : nullptr;
}

/// The handle of an object, as the type that the calls name.
template <class Handle>
Handle handleOf(GdiObject* object) {
  return reinterpret_cast<Handle>(object);
}

}  // namespace dibkit::standin
