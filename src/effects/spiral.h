#pragma once

#include "effects/effects.h"

/// A spiral arm winds outward.
class CSolenoidWipeEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nDirection = a;
    m_nAngle = b;
  }

 private:
  long m_nAngle = 0;
  long m_nDirection = 0;
};

namespace dibkit {

/// The angle, in degrees, at which the spiral has covered a picture: its radius reaches the corners after two
/// turns, and has to hold out for one more.
long coveringSpiralAngle(const SIZE& picture);

}  // namespace dibkit
