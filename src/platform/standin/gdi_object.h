#pragma once

#include "platform/win32.h"

namespace dibkit::standin {

/// What a handle stands for: handles are pointers to these, and DeleteObject releases any of them.
class GdiObject {
 public:
  enum class Kind { region, bitmap, pen, brush, palette, context };

  explicit GdiObject(Kind kind) : kind_(kind) {}
  GdiObject(const GdiObject&) = delete;
  GdiObject& operator=(const GdiObject&) = delete;
  virtual ~GdiObject() = default;

  Kind kind() const { return kind_; }
  /// Makes the object one of those that belong to everybody and are never released.
  void makeStock() { stock_ = true; }

  /// What GetObjectW tells about the object: fills at most `byteCount` bytes at `out`, or tells the size of
  /// the description when `out` is null. 0 for an object that has none, or too little room.
  virtual int describe(int byteCount, void* out) const;

  /// A context holds the object from select to deselect. An object that is released in between goes when the
  /// last context lets go of it.
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

/// Puts a structure of the platform's where GetObjectW's caller wants it.
int giveDescription(const void* description, int size, int byteCount, void* out);

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
