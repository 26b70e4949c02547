#pragma once

#include "effects/effects.h"

/// The incoming frame unrolls from one side like a carpet.
class CSideRollEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nSide = a;
    m_nAmount = b;
  }

 private:
  long m_nSide;
  long m_nAmount;
};
