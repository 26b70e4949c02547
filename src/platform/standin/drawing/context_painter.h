#pragma once

#include "platform/standin/drawing/device_context.h"
#include "platform/standin/drawing/painter.h"

namespace dibkit::standin {

/// Paints with one colour on the bitmap of a context, inside its clip region.
class ContextPainter : public Painter {
 public:
  ContextPainter(const DeviceContext& context, Colour colour)
      : Painter(context.bounds()),
        surface_(context.pixels()),
        clip_(context.clip ? &*context.clip : nullptr),
        raw_(surface_.rawOfColour(colour)) {}

 private:
  void store(const RECT& rect) override {
    if (clip_ == nullptr) {
      surface_.fill(rect, raw_);
    } else {
      clip_->forEachPart(rect, [this](const RECT& part) { surface_.fill(part, raw_); });
    }
  }

  Pixels surface_;
  const Region* clip_;
  DWORD raw_;
};

}  // namespace dibkit::standin
