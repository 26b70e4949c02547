#pragma once

#include "effects/effects.h"

/// A slit-scan: the incoming frame is drawn line by line, and the line drawn last is smeared over the rest.
class CProgressiveFilm : public CGeneralEffectFrame {
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
