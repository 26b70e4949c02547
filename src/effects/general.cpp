#include <array>
#include <memory>
#include <new>

#include "dib/guard.h"
#include "dib/view.h"
#include "effects/bars.h"
#include "effects/effects.h"
#include "effects/slide.h"
#include "effects/spread.h"
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
    nullptr,                     // 0
    nullptr,                     // 1
    nullptr,                     // 2
    nullptr,                     // 3
    nullptr,                     // 4
    nullptr,                     // 5
    nullptr,                     // 6
    nullptr,                     // 7
    nullptr,                     // 8
    nullptr,                     // 9
    make<CBarSlideEffect>,       // 10
    make<CMultiBarSlideEffect>,  // 11
    make<CSmoothSlideEffect>,    // 12
    make<CSmoothSpreadEffect>,   // 13
    make<CNarrowBarEffect>,      // 14
    make<CJalousieEffect>,       // 15
    nullptr,                     // 16
    nullptr,                     // 17
};

std::unique_ptr<CGeneralEffectFrame> makeEffect(int number, BITMAPINFOHEADER* source) {
  const auto index = static_cast<unsigned>(number);
  if (index >= factories.size() || factories[index] == nullptr) return nullptr;
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
