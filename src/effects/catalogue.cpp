#include "effects/catalogue.h"

#include <algorithm>
#include <cmath>

#include "dib/guard.h"
#include "effects/fade.h"
#include "effects/spread.h"

namespace dibkit {
namespace {

using enum StyleParameter;
using enum AmountUnit;

/// Progress on a scale that starts at `from` and ends at `to`, rounded to the nearest whole number.
long between(double progress, double from, double to) { return std::lround(from + (to - from) * progress); }

long toHundred(double progress, const SIZE&, int) { return between(progress, 0, 100); }
long toCoveringSpread(double progress, const SIZE& picture, int style) {
  return between(progress, 0, static_cast<double>(coveringSpreadPercent(picture, style)));
}

OwnedDib composeFade(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  return fade(incoming, outgoing, progress);
}

constexpr EffectStyle axes[] = {{"horizontal", "Horizontally"}, {"vertical", "Vertically"}};
constexpr EffectStyle eightDirections[] = {
    {"left", "From the left"},     {"top-left", "From the top left"},
    {"top", "From the top"},       {"top-right", "From the top right"},
    {"right", "From the right"},   {"bottom-right", "From the bottom right"},
    {"bottom", "From the bottom"}, {"bottom-left", "From the bottom left"},
};
constexpr EffectStyle shapes[] = {{"circle", "Circle"},
                                  {"rectangle", "Rectangle"},
                                  {"ellipse", "Ellipse"},
                                  {"rounded", "Rounded rectangle"},
                                  {"diamond", "Diamond"}};
constexpr EffectStyle strips[] = {{"columns", "Random columns"}, {"rows", "Random rows"},
                                  {"left", "From the left"},     {"right", "From the right"},
                                  {"top", "From the top"},       {"bottom", "From the bottom"}};
constexpr EffectStyle slats[] = {{"vertical", "Vertical slats"}, {"horizontal", "Horizontal slats"}};

constexpr Effect table[] = {
    {-1, "fade", "Fade", "Fades", {}, 0, none, percent, false, toHundred, composeFade},
    {12, "slide", "Slide", "Slides", eightDirections, 0, a, percent, false, toHundred, nullptr},
    {10, "halves", "Sliding halves", "Slides", axes, 0, a, percent, false, toHundred, nullptr},
    {11, "bars", "Sliding bars", "Slides", axes, 0, a, percent, false, toHundred, nullptr},
    {13, "spread", "Spread", "Shapes", shapes, 0, a, percent, false, toCoveringSpread, nullptr},
    {14, "strips", "Strips", "Strips", strips, 0, a, percent, true, toHundred, nullptr},
    {15, "blinds", "Venetian blinds", "Strips", slats, 1, a, percent, false, toHundred, nullptr},
};

}  // namespace

EffectParameters Effect::parameters(double progress, const SIZE& picture, int style) const {
  // Written so that a progress that is no number counts as 0.
  const double reached = progress > 0.0 ? std::min(progress, 1.0) : 0.0;
  const long moved = amount(reached, picture, style);
  switch (styleParameter) {
    case a:
      return {style, moved};
    case b:
      return {moved, style};
    default:
      return {moved, 0};
  }
}

std::span<const Effect> effects() { return table; }

const Effect* findEffect(std::string_view name) {
  const auto found =
      std::ranges::find(table, name, [](const Effect& effect) { return std::string_view(effect.name); });
  return found != std::end(table) ? found : nullptr;
}

int findStyle(const Effect& effect, std::string_view name) {
  const auto found = std::ranges::find(effect.styles, name,
                                       [](const EffectStyle& style) { return std::string_view(style.name); });
  return found != effect.styles.end() ? static_cast<int>(found - effect.styles.begin()) : -1;
}

}  // namespace dibkit
