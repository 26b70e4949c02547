#pragma once

#include "effects/effects.h"

/// A four-pointed star between the middles of the edges fattens until it fills the frame.
class CIrisEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long) override { m_nAmount = a; }

 private:
  long m_nAmount = 0;
};

/// A five-pointed star grows out of the centre.
class CStarWipeEffect : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override;
  void SetParameters(long a, long) override { m_nAmount = a; }

 private:
  long m_nAmount = 0;
};

namespace dibkit {

/// The half opening, in pixels, at which the iris covers a picture.
long coveringIris(const SIZE& picture);

/// The percentage at which the five-pointed star covers a picture.
long coveringStarPercent(const SIZE& picture);

}  // namespace dibkit
