#pragma once

#include "kinds.h"

/// The kinds of objects whose members are operations.
namespace interface_test {

/// An object in two or more states, of which only the first one allows all operations. `Member` is a pointer
/// to one.
template <class Object, std::size_t states>
class ObjectOf : public Parameter {
 public:
  using Type = Object*;
  template <class Result, class... Arguments>
  using Member = Result (Object::*)(Arguments...);

  std::size_t count() const override { return states; }
  Verdict verdict(std::size_t value) const override { return value == 0 ? V::right : V::refused; }
  Object* give() { return &object_; }

 protected:
  Object object_;
};

struct EffectObject : ObjectOf<CGeneralEffectFrame, 1> {
  void choose(std::size_t) override {}
};

/// Running; without a picture; with one of 24 bits.
class Ripple : public ObjectOf<CRippleEffect, 3> {
 public:
  void choose(std::size_t value) override {
    object_.EndToRipple();  // an object does not free its water by itself
    object_ = CRippleEffect(value == 0 ? picture_.dib() : value == 1 ? nullptr : shallow_.dib(), 2);
    object_.StartToRipple();
  }
  /// What a call left behind still runs, or refuses to.
  std::string settle(Verdict) override {
    const dibkit::OwnedDib next(object_.NextToRipple());
    object_.EndToRipple();
    return "";
  }

 private:
  DibBlock picture_{{40, 12, 9, 1, 32, 0, 0, 0, 0, 0, 0}}, shallow_{{40, 12, 9, 1, 24, 0, 0, 0, 0, 0, 0}};
};
/// For an operation that needs no water.
struct AnyRipple : Ripple {
  Verdict verdict(std::size_t value) const override { return value == 0 ? V::right : V::taken; }
};

/// With frames that differ in one pixel; with none.
template <class Object>
class SplitterOf : public ObjectOf<Object, 2> {
 public:
  void choose(std::size_t value) override {
    Set8BitPixel(GetDIBBits(after_.dib()) + 2 * 8, 77, 2);
    this->object_ = {};
    if (value == 0) this->object_.Reset(before_.dib(), nullptr, {0, 0}, after_.dib(), nullptr, {0, 0});
  }
  std::string settle(Verdict) override {
    BITMAPINFOHEADER *image = nullptr, *mask = nullptr;
    POINT position;
    this->object_.SplitTransparency(&image, &mask, &position, nullptr);
    const dibkit::OwnedDib ownedImage(image), ownedMask(mask);
    return "";
  }

 private:
  DibBlock before_{{40, 6, 5, 1, 8, 0, 0, 0, 0, 0, 0}}, after_ = before_;
};
template <class Object>
struct ConstSplitterOf : SplitterOf<Object> {
  template <class Result, class... Arguments>
  using Member = Result (Object::*)(Arguments...) const;
};
using Splitter = SplitterOf<CSpiltEmbededDIB>;
using ConstSplitter = ConstSplitterOf<CSpiltEmbededDIB>;
using ConstSplitterEx = ConstSplitterOf<CSpiltEmbededDIBEx>;
/// Lets the test at what only derived classes may call.
struct OpenCSpiltEmbededDIB : CSpiltEmbededDIB {
  using CSpiltEmbededDIB::CalcBoundaryBottomRightInfo;
  using CSpiltEmbededDIB::CalcBoundaryTopLeftInfo;
};

/// An effect of the catalogue.
struct EffectReference : Parameter {
  using Type = const dibkit::Effect&;
  std::size_t count() const override { return 1; }
  Verdict verdict(std::size_t) const override { return V::right; }
  void choose(std::size_t) override {}
  Type give() { return firstStyledEffect(); }
};
struct ConstEffect : EffectReference {
  using Type = const dibkit::Effect*;
  template <class Result, class... Arguments>
  using Member = Result (dibkit::Effect::*)(Arguments...) const;
  Type give() { return &firstStyledEffect(); }
};

}  // namespace interface_test
