#pragma once

#include "effects/effects.h"

/// The incoming frame comes in by strips of one pixel, in a random or a sweeping order.
class CNarrowBarEffect : public CGeneralEffectFrame {
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

/// The incoming frame opens like a venetian blind.
class CJalousieEffect : public CGeneralEffectFrame {
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
