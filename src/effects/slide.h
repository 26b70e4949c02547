#pragma once

#include "effects/effects.h"

/// The incoming frame slides in whole from an edge or a corner.
class CSmoothSlideEffect : public CGeneralEffectFrame {
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
