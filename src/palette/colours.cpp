#include "dib/view.h"
#include "palette/map_entries.h"
#include "palette/palette.h"
#include "palette/remap_table.h"

namespace dibkit {
namespace {

constexpr int squaredDistance(Rgb a, Rgb b) {
  const int red = a.red - b.red;
  const int green = a.green - b.green;
  const int blue = a.blue - b.blue;
  return red * red + green * green + blue * blue;
}

constexpr bool isGray(DWORD key, std::int64_t level) {
  return (key & 0xFF) == level && (key >> 8 & 0xFF) == level && (key >> 16 & 0xFF) == level;
}

bool isGrayRamp(const BITMAPINFOHEADER* dib) {
  if (!ConstView(dib)) return false;
  const PaletteTable palette(dib, sizeof(BITMAPINFOHEADER));
  const std::int64_t size = GetDIBPaletteSize(dib);
  if (size > 256) return false;  // no byte equals the number of the last entry
  for (std::int64_t i = 0; i < size; ++i) {
    if (!isGray(packEntry(palette[static_cast<std::size_t>(i)]), i)) return false;
  }
  return true;
}

void setGray(RGBQUAD& entry, BYTE gray) {
  entry.rgbRed = gray;
  entry.rgbGreen = gray;
  entry.rgbBlue = gray;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CPaletteFuns::IsGrayScaleImage(BITMAPINFOHEADER* dib) { return isGrayRamp(dib) ? TRUE : FALSE; }

void CPaletteFuns::GrayPalette(RGBQUAD* palette, int count) {
  if (palette == nullptr) return;
  for (int i = 0; i < count; ++i) {
    // Other weights than those of image pixels, on purpose; the doubles are added in this order.
    const RGBQUAD& colour = palette[i];
    setGray(palette[i],
            static_cast<BYTE>(colour.rgbRed * 0.3 + colour.rgbGreen * 0.59 + colour.rgbBlue * 0.11));
  }
}

void CPaletteFuns::MakeGrayPalette(RGBQUAD* palette, int count) {
  if (palette == nullptr || count < 2) return;
  // The division truncates, so the last entry need not be white: three entries end at 254.
  const std::int64_t step = 255 / (count - 1);
  for (int i = 0; i < count; ++i) setGray(palette[i], lowByte(i * step));
}

BYTE CPaletteFuns::GetNearestPaletteIndex(RGBQUAD* palette, int count, DWORD colour) {
  if (palette == nullptr || count < 1) return 0;
  const Rgb wanted = fromColorRef(colour);
  int best = 0;
  int bestDistance = squaredDistance(rgbOf(palette[0]), wanted);
  for (int i = 1; i < count; ++i) {
    const int distance = squaredDistance(rgbOf(palette[i]), wanted);
    if (distance > bestDistance) continue;  // of equal ones the highest index
    best = i;
    bestDistance = distance;
  }
  return lowByte(best);
}

int CPaletteFuns::GetMaxDifferenceColor(RGBQUAD* palette, int count, BYTE red, BYTE green, BYTE blue) {
  if (palette == nullptr || count < 1) return 0;
  const Rgb from{red, green, blue};
  int best = 0;
  int bestDistance = squaredDistance(rgbOf(palette[0]), from);
  for (int i = 1; i < count; ++i) {
    const int distance = squaredDistance(rgbOf(palette[i]), from);
    if (distance <= bestDistance) continue;  // of equal ones the lowest index
    best = i;
    bestDistance = distance;
  }
  return best;
}
