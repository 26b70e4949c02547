#pragma once

#include "effects/effects.h"

/// The incoming frame comes in by cells in a random order.
class CMosaicEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long) override { m_nAmount = a; }

 private:
  long m_nAmount = 0;
};

/// The same, sweeping across the frame from one side.
class CDirectionSenceMosaic : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long b) override {
    m_nDirection = a;
    m_nAmount = b;
  }

 private:
  long m_nDirection;
  long m_nAmount;
};

/// The whole incoming frame, pixelated; the smaller the amount, the sharper.
class CThawingEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long) override { m_nAmount = a; }

 private:
  long m_nAmount;
};

namespace dibkit {

/// The percentage at which a mosaic covers a picture: 100, or 101 for a small picture whose cells leave some
/// of it over.
///
/// \param sweeping whether it is CDirectionSenceMosaic
long coveringMosaicPercent(const SIZE& picture, bool sweeping);

}  // namespace dibkit
