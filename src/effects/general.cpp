#include "dib/view.h"
#include "effects/numbered.h"
#include "platform/guard.h"

CGeneralEffectFrame::~CGeneralEffectFrame() = default;
BOOL CGeneralEffectFrame::GenerateFrame(EffectOutput*) { return FALSE; }
void CGeneralEffectFrame::SetParameters(long, long) {}

using namespace dibkit;

int GeneralEffectFrame(int effect, BITMAPINFOHEADER* source, long a, long b, BITMAPINFOHEADER** outImage,
                       RECT* outRect) {
  const View picture = viewOfDepth(source, 32);
  if (!picture || picture.width() == 0 || picture.height() == 0) return 0;
  const TabledEffect* found = findNumbered(effect);
  if (found == nullptr || outImage == nullptr || outRect == nullptr) return 0;
  const bool styled = !found->effect.styles.empty();
  return catchOutOfMemory([&] {
    EffectOutput output{};
    if (found->render(source, styled ? a : 0, styled ? b : a, output) == FALSE) return 0;
    *outImage = output.image;
    *outRect = output.rect;
    return 1;
  });
}
