#pragma once

#include "effects/effects.h"

/// Two halves of the incoming frame slide in from opposite sides.
class CBarSlideEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nStyle = a;
    m_nAmount = b;
  }

 private:
  long m_nAmount;
  long m_nStyle;
};

/// Bars of 4 pixels slide in, every other one from the opposite side.
class CMultiBarSlideEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nStyle = a;
    m_nAmount = b;
  }

 private:
  long m_nAmount;
  long m_nStyle;
};
