#pragma once

#include "effects/effects.h"

/// The incoming frame turns about a centre line, drawn flat.
class CSpinEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nAxis = a;
    m_nAngle = b;
  }

 private:
  long m_nAxis = 0;
  long m_nAngle = 0;
};
