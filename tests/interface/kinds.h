#pragma once

#include <array>
#include <string_view>

#include "image_parameter.h"

/// The kinds of parameters that operations.txt names.
namespace interface_test {

/// One handle of each kind, for the life of the program.
struct Handles {
  dibkit::OwnedRegion part{CreateRectRgn(1, 1, 4, 3)}, empty{CreateRectRgn(0, 0, 0, 0)},
      distant{CreateRectRgn(1000, 1000, 2000, 2000)}, all{CreateRectRgn(INT_MIN, INT_MIN, INT_MAX, INT_MAX)};
  HBITMAP bitmap = CreateBitmap(5, 4, 1, 1, nullptr);
  HPALETTE palette = [] {
    LOGPALETTE description{0x300, 1, {{1, 2, 3, 0}}};
    return CreatePalette(&description);
  }();
  ~Handles() {
    DeleteObject(bitmap);
    DeleteObject(palette);
  }
};
inline Handles& handles() {
  static Handles all;
  return all;
}
inline HRGN foreignRegion() { return reinterpret_cast<HRGN>(handles().palette); }
template <class Handle>
Handle regionAs() {
  return reinterpret_cast<Handle>(handles().part.get());
}

inline POINT usualPoints[3] = {{1, 1}, {8, 2}, {3, 7}};
inline POINT extremePoints[3] = {{INT_MIN, INT_MAX}, {0, 0}, {INT_MAX, INT_MIN}};
inline const dibkit::Effect& firstStyledEffect() {
  return *std::ranges::find_if(dibkit::effects(), [](const auto& effect) { return !effect.styles.empty(); });
}

/// \name Out parameters
/// @{
using OutImage = Out<BITMAPINFOHEADER*, V::refused>;
using OutPoint = Out<POINT, V::refused>;
using OutRect = Out<RECT, V::refused>;
using OutNumber = Out<int, V::refused>;
using OutByte = Out<BYTE, V::refused>;
using OutEffect = Out<EffectOutput, V::taken>;
using OptionalOutPoint = Out<POINT, V::taken, true>;
using OptionalOutRect = Out<RECT, V::taken>;
using OptionalOutNumber = Out<int, V::taken>;
using OptionalOutByte = Out<BYTE, V::taken>;
/// Written in every case: null for no image.
using ClearedOutImage = Out<BITMAPINFOHEADER*, V::refused, true>;
using WrittenOutPoint = Out<POINT, V::refused, true>;
using WrittenOutNumber = Out<int, V::refused, true>;
/// @}

/// An array of the caller's, or null.
template <class T, std::size_t size, bool changed = false, Verdict nullIs = V::refused>
class ArrayOf : public Parameter {
 public:
  using Type = T*;
  std::size_t count() const override { return 2; }
  Verdict verdict(std::size_t value) const override { return value == 0 ? V::right : nullIs; }
  void choose(std::size_t value) override {
    std::memset(cells_.data(), filling, sizeof(cells_));
    given_ = value == 0 ? cells_.data() : nullptr;
  }
  std::string settle(Verdict call) override {
    const auto* bytes = reinterpret_cast<const BYTE*>(cells_.data());
    const bool same = std::all_of(bytes, bytes + sizeof(cells_), [](BYTE byte) { return byte == filling; });
    if (changed && call == V::right) return same ? "did not change" : "";
    return same || (changed && call == V::taken) ? "" : "was changed";
  }
  T* give() { return given_; }

 private:
  static constexpr BYTE filling = 4;  // an index that the palettes here have
  std::array<T, size> cells_;
  T* given_ = nullptr;
};
using Row = ArrayOf<BYTE, 16, false, V::taken>;
using Entries = ArrayOf<RGBQUAD, 16>;
using ChangedEntries = ArrayOf<RGBQUAD, 16, true>;
using MaskRows = ArrayOf<BYTE, 16, true>;
using RectList = ArrayOf<RECT, 3, true>;
struct Pixel : ArrayOf<BYTE, 4> {
  using Type = const void*;
  std::size_t count() const override { return 1; }
};

/// A colour map, whose second value has indexes beyond all palettes. T is a pointer or a reference to it.
template <class T, Verdict nullIs = V::refused>
class MapOf : public Parameter {
 public:
  using Type = T;
  std::size_t count() const override { return std::is_pointer_v<T> ? 3 : 2; }
  Verdict verdict(std::size_t value) const override {
    return value == 0 ? V::right : value == 1 ? V::taken : nullIs;
  }
  void choose(std::size_t value) override {
    isNull_ = value == 2;
    map_.RemoveAll();
    for (auto [key, index] : {std::pair{7, value == 0 ? 0 : INT_MAX}, {9, value == 0 ? 1 : INT_MIN}}) {
      auto own = static_cast<Key>(key);
      map_.SetAt(own, index);
    }
  }
  T give() {
    if constexpr (std::is_pointer_v<T>) {
      return isNull_ ? nullptr : &map_;
    } else {
      return map_;
    }
  }

 private:
  using Map = std::remove_pointer_t<std::remove_reference_t<T>>;
  using Key = std::conditional_t<std::is_same_v<Map, CMap<int, int&, int, int&>>, int, DWORD>;
  Map map_;
  bool isNull_ = false;
};
using Map = MapOf<CMap<DWORD, DWORD&, int, int&>*>;
using OptionalMap = MapOf<CMap<DWORD, DWORD&, int, int&>*, V::taken>;
using MapReference = MapOf<CMap<DWORD, DWORD&, int, int&>&>;
using IndexMap = MapOf<CMap<int, int&, int, int&>*>;

#include "image_kinds.inc"
#include "kinds.inc"

struct ConstBlock : Block {
  using Type = const BITMAPINFOHEADER*;
};

}  // namespace interface_test
