#pragma once

#include "effects/effects.h"

/// A clock hand sweeps about the centre and shows what it has passed.
class CSweepClockEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override;

 private:
  long m_nAngle = 0;
  long m_nDirection = -1;
  long m_nDiagonal = 0;  ///< angle of the hand that points into the top right corner, in whole degrees
};

/// Many small clock hands, one a tile.
class CMultiSweepClock : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nDirection = a;
    m_nAngle = b;
  }

 private:
  long m_nAngle;
  long m_nDirection;
};
