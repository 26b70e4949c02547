#include <array>
#include <memory>
#include <new>

#include "dib/view.h"
#include "effects/numbered.h"
#include "platform/guard.h"

CGeneralEffectFrame::~CGeneralEffectFrame() = default;
BOOL CGeneralEffectFrame::GenerateFrame(EffectOutput*) { return FALSE; }
void CGeneralEffectFrame::SetParameters(long, long) {}

namespace dibkit {
namespace {

/// An effect that takes its style first and its amount second.
template <StyledEffect render>
class StyledEffectFrame final : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override { return render(m_pSrcDib, style_, amount_, *output); }
  void SetParameters(long a, long b) override {
    style_ = a;
    amount_ = b;
  }

 private:
  long style_ = 0;
  long amount_ = 0;
};

/// An effect without styles, which takes its amount first and nothing else.
template <PlainEffect render>
class PlainEffectFrame final : public CGeneralEffectFrame {
 public:
  using CGeneralEffectFrame::CGeneralEffectFrame;
  BOOL GenerateFrame(EffectOutput* output) override { return render(m_pSrcDib, amount_, *output); }
  void SetParameters(long a, long) override { amount_ = a; }

 private:
  long amount_ = 0;
};

using Factory = CGeneralEffectFrame* (*)(BITMAPINFOHEADER* source);

template <StyledEffect render>
CGeneralEffectFrame* styled(BITMAPINFOHEADER* source) {
  return new (std::nothrow) StyledEffectFrame<render>(source);
}
template <PlainEffect render>
CGeneralEffectFrame* plain(BITMAPINFOHEADER* source) {
  return new (std::nothrow) PlainEffectFrame<render>(source);
}

constexpr std::array<Factory, 18> factories = {
    styled<renderGate>,            // 0
    styled<renderClock>,           // 1
    styled<renderManyClocks>,      // 2
    plain<renderStar>,             // 3
    styled<renderSpiral>,          // 4
    plain<renderMosaic>,           // 5
    styled<renderSweepingMosaic>,  // 6
    styled<renderSpin>,            // 7
    styled<renderFilm>,            // 8
    plain<renderIris>,             // 9
    styled<renderHalves>,          // 10
    styled<renderBars>,            // 11
    styled<renderSlide>,           // 12
    styled<renderSpread>,          // 13
    styled<renderStrips>,          // 14
    styled<renderBlinds>,          // 15
    plain<renderThaw>,             // 16
    styled<renderRoll>,            // 17
};

std::unique_ptr<CGeneralEffectFrame> makeEffect(int number, BITMAPINFOHEADER* source) {
  const auto index = static_cast<unsigned>(number);
  if (index >= factories.size()) return nullptr;
  return std::unique_ptr<CGeneralEffectFrame>(factories[index](source));
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int GeneralEffectFrame(int effect, BITMAPINFOHEADER* source, long a, long b, BITMAPINFOHEADER** outImage,
                       RECT* outRect) {
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
