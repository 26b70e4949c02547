#pragma once

#include "platform/win32.h"

namespace dibkit::standin {

/// The object behind a handle. Handles are pointers to these, and DeleteObject releases any of them.
class GdiObject {
 public:
  enum class Kind { region, bitmap, pen, brush, palette, context };

  explicit GdiObject(Kind kind) : kind_(kind) {}
  GdiObject(const GdiObject&) = delete;
  GdiObject& operator=(const GdiObject&) = delete;
  virtual ~GdiObject() = default;

  Kind kind() const { return kind_; }
  /// Makes it a stock object, which all contexts share and nothing releases.
  void makeStock() { stock_ = true; }

  /// Does the work of GetObjectW: writes the object's description to the `byteCount` bytes at `out`, unless
  /// that is null.
  /// \return the size of the description; 0 for an object that has none and for too little room
  virtual int describe(int byteCount, void* out) const;

  /// A context uses the object from select to deselect. An object that is released in between is deleted when
  /// the last context deselects it.
  void select();
  void deselect();
  bool selected() const { return selections_ > 0; }
  void release();

 private:
  Kind kind_;
  bool stock_ = false;
  bool released_ = false;
  int selections_ = 0;
};

/// Copies a description of `size` bytes, as GdiObject::describe has to.
int giveDescription(const void* description, int size, int byteCount, void* out);

/// The object behind a handle; null for a null handle and for one of another kind than `Object::ownKind`.
template <class Object>
Object* objectOf(void* handle) {
  auto* object = static_cast<GdiObject*>(handle);
  return object != nullptr && object->kind() == Object::ownKind ? static_cast<Object*>(object) : nullptr;
}

/// The handle of an object, in the type that the calls use.
template <class Handle>
Handle handleOf(GdiObject* object) {
  return reinterpret_cast<Handle>(object);
}

}  // namespace dibkit::standin
