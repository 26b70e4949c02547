#pragma once

#include "effects/effects.h"

/// The incoming frame grows out of the centre as a shape.
class CSmoothSpreadEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nStyle = a;
    m_nAmount = b;
  }

 private:
  long m_nStyle;
  long m_nAmount;
};

namespace dibkit {

/// A percentage at which a shape covers the whole picture. A shape that is round or that loses its last
/// column to rounding needs more than 100, the more the smaller the picture is.
///
/// \param shape a style of CSmoothSpreadEffect
/// \param picture at least 1 x 1
long coveringSpreadPercent(const SIZE& picture, long shape);

}  // namespace dibkit
