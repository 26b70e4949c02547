#include <array>
#include <memory>
#include <new>

#include "dib/guard.h"
#include "dib/view.h"
#include "effects/bars.h"
#include "effects/clock.h"
#include "effects/effects.h"
#include "effects/film.h"
#include "effects/gate.h"
#include "effects/mosaic.h"
#include "effects/roll.h"
#include "effects/slide.h"
#include "effects/spin.h"
#include "effects/spiral.h"
#include "effects/spread.h"
#include "effects/star.h"
#include "effects/strips.h"

CGeneralEffectFrame::~CGeneralEffectFrame() = default;
BOOL CGeneralEffectFrame::GenerateFrame(EffectOutput*) { return FALSE; }
void CGeneralEffectFrame::SetParameters(long, long) {}

namespace dibkit {
namespace {

using Factory = CGeneralEffectFrame* (*)(BITMAPINFOHEADER* source);

template <class Effect>
CGeneralEffectFrame* make(BITMAPINFOHEADER* source) {
  return new (std::nothrow) Effect(source);
}

constexpr std::array<Factory, 18> factories = {
    make<CGate3DEffect>,          // 0
    make<CSweepClockEffect>,      // 1
    make<CMultiSweepClock>,       // 2
    make<CStarWipeEffect>,        // 3
    make<CSolenoidWipeEffect>,    // 4
    make<CMosaicEffect>,          // 5
    make<CDirectionSenceMosaic>,  // 6
    make<CSpinEffect>,            // 7
    make<CProgressiveFilm>,       // 8
    make<CIrisEffect>,            // 9
    make<CBarSlideEffect>,        // 10
    make<CMultiBarSlideEffect>,   // 11
    make<CSmoothSlideEffect>,     // 12
    make<CSmoothSpreadEffect>,    // 13
    make<CNarrowBarEffect>,       // 14
    make<CJalousieEffect>,        // 15
    make<CThawingEffect>,         // 16
    make<CSideRollEffect>,        // 17
};

std::unique_ptr<CGeneralEffectFrame> makeEffect(int number, BITMAPINFOHEADER* source) {
  const auto index = static_cast<unsigned>(number);
  if (index >= factories.size()) return nullptr;
  return std::unique_ptr<CGeneralEffectFrame>(factories[index](source));
}

}  // namespace
}  // namespace dibkit

int GeneralEffectFrame(int effect, BITMAPINFOHEADER* source, long a, long b, BITMAPINFOHEADER** outImage,
                       RECT* outRect) {
  using namespace dibkit;
  const View picture = viewOfDepth(source, 32);
  if (!picture || picture.width() == 0 || picture.height() == 0) return 0;
  if (outImage == nullptr || outRect == nullptr) return 0;
  return orOutOfMemory(0, [&] {
    const auto stage = makeEffect(effect, source);
    if (!stage) return 0;
    EffectOutput output{};
    stage->SetParameters(a, b);
    if (stage->GenerateFrame(&output) == FALSE) return 0;
    *outImage = output.image;
    *outRect = output.rect;
    return 1;
  });
}
