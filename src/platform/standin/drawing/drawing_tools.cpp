#include "platform/standin/drawing/drawing_tools.h"

#include <array>

#include "platform/guard.h"
#include "platform/standin/palettes/palette_object.h"

namespace dibkit::standin {

namespace {

/// The stock objects with the numbers 0 to 8.
struct StockTools {
  std::array<BrushObject, 6> brushes{{{white, false},
                                      {0xC0C0C0, false},
                                      {0x808080, false},
                                      {0x404040, false},
                                      {black, false},
                                      {black, true}}};
  std::array<PenObject, 3> pens{
      {{0, white, false, false}, {0, black, false, false}, {0, black, false, true}}};

  StockTools() {
    for (BrushObject& brush : brushes) brush.makeStock();
    for (PenObject& pen : pens) pen.makeStock();
  }
};

HPEN newPen(int width, COLORREF colour, bool squareCaps, bool null) {
  return catchOutOfMemory(
      [&] { return handleOf<HPEN>(new PenObject(width, colourOf(colour), squareCaps, null)); });
}

}  // namespace

GdiObject* stockObject(int number) {
  static StockTools tools;
  if (number == DEFAULT_PALETTE) return defaultPalette();
  if (number >= WHITE_BRUSH && number <= NULL_BRUSH) return &tools.brushes[static_cast<std::size_t>(number)];
  if (number >= WHITE_PEN && number <= NULL_PEN)
    return &tools.pens[static_cast<std::size_t>(number - WHITE_PEN)];
  return nullptr;
}

}  // namespace dibkit::standin

using namespace dibkit;
using namespace dibkit::standin;

HGDIOBJ GetStockObject(int number) {
  return catchOutOfMemory([&]() -> HGDIOBJ { return stockObject(number); });
}

HPEN CreatePen(int style, int width, COLORREF colour) {
  if (style != PS_SOLID && style != PS_NULL) return nullptr;
  return newPen(width, colour, false, style == PS_NULL);
}

HPEN ExtCreatePen(DWORD style, DWORD width, const LOGBRUSH* brush, DWORD styleCount,
                  const DWORD* /*lengths*/) {
  constexpr DWORD caps = PS_ENDCAP_SQUARE;
  if (brush == nullptr || brush->lbStyle != BS_SOLID || styleCount != 0) return nullptr;
  if ((style & ~caps) != (PS_GEOMETRIC | PS_SOLID | PS_JOIN_ROUND)) return nullptr;
  const auto signedWidth = static_cast<int>(width);
  return newPen(signedWidth, brush->lbColor, (style & caps) != 0, false);
}

HBRUSH CreateSolidBrush(COLORREF colour) {
  return catchOutOfMemory([&] { return handleOf<HBRUSH>(new BrushObject(colourOf(colour), false)); });
}
