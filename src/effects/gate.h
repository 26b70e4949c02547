#pragma once

#include "effects/effects.h"

/// The incoming frame swings shut like a door, in perspective.
class CGate3DEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override;

 private:
  long m_nAngle = 0;
  long m_nOrientation = -1;
  float m_fSine = 0;
  float m_fCosine = 0;
  long m_nDistance = 0;  ///< of the viewer: the extent across which the door opens
};
