#include "effects/catalogue.h"

#include <algorithm>
#include <cmath>

#include "dib/view.h"
#include "effects/composition.h"
#include "effects/full_coverage.h"
#include "effects/piece.h"

namespace dibkit {
namespace {

using enum AmountUnit;

/// Progress on a scale that starts at `from` and ends at `to`, rounded to the nearest whole number.
long between(double progress, double from, double to) { return std::lround(from + (to - from) * progress); }

long toHundred(double progress, const SIZE&, int) { return between(progress, 0, 100); }
long fromHundred(double progress, const SIZE&, int) { return between(progress, 100, 0); }
/// From edge-on to flat.
long quarterTurnBack(double progress, const SIZE&, int) { return between(progress, 90, 0); }

long fullTurn(double progress, const SIZE&, int) { return between(progress, 0, 360); }

/// To the amount at which a picture of this size is covered.
template <auto fullCoverage>
long toFull(double progress, const SIZE& picture, int style) {
  return between(progress, 0, static_cast<double>(fullCoverage(picture, style)));
}
/// Through 0 to 100, and on to what covers the picture at the very end.
template <bool sweeping>
long toFullMosaic(double progress, const SIZE& picture, int) {
  return progress < 1.0 ? between(progress, 0, 100) : fullCoverageMosaicPercent(picture, sweeping);
}

constexpr EffectStyle axes[] = {{"horizontal", "Horizontally"}, {"vertical", "Vertically"}};
constexpr EffectStyle centreLines[] = {{"horizontal", "About the horizontal line"},
                                       {"vertical", "About the vertical line"}};
constexpr EffectStyle lines[] = {{"rows", "Row by row"}, {"columns", "Column by column"}};
constexpr EffectStyle turns[] = {{"counter-clockwise", "Counter-clockwise"}, {"clockwise", "Clockwise"}};
constexpr EffectStyle hinges[] = {
    {"left", "Hinged at the left"},
    {"top", "Hinged at the top"},
    {"right", "Hinged at the right"},
    {"bottom", "Hinged at the bottom"},
};
constexpr EffectStyle fourSides[] = {
    {"left", "From the left"},
    {"top", "From the top"},
    {"right", "From the right"},
    {"bottom", "From the bottom"},
};
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

constexpr bool random = true;
constexpr bool fixed = false;
constexpr bool overshoots = true;
constexpr bool stops = false;

constexpr Effect table[] = {
    {-1, "fade", "Fade", "Fades", {}, 0, percent, fixed, toHundred, stops, composeFade},
    {-1, "ripple", "Ripple", "Fades", {}, 0, percent, fixed, toHundred, stops, composeRipple},
    {-1, "diamonds", "Diamond bands", "Fades", {}, 0, percent, fixed, toHundred, stops, composeDiamonds},
    {16, "thaw", "Thaw", "Fades", {}, 0, percent, fixed, fromHundred, stops, composeThaw},

    {12, "slide", "Slide", "Slides", eightDirections, 0, percent, fixed, toHundred, overshoots, nullptr},
    {-1, "push", "Push", "Slides", fourSides, 0, percent, fixed, toHundred, overshoots, composePush},
    {10, "halves", "Sliding halves", "Slides", axes, 0, percent, fixed, toHundred, stops, nullptr},
    {11, "bars", "Sliding bars", "Slides", axes, 0, percent, fixed, toHundred, stops, nullptr},
    {17, "roll", "Carpet roll", "Slides", fourSides, 0, percent, fixed, toHundred, stops, nullptr},
    {8, "film", "Film", "Slides", lines, 0, percent, fixed, toHundred, stops, composeFilm},

    {0, "gate", "Gate", "Turns", hinges, 0, degrees, fixed, quarterTurnBack, stops, nullptr},
    {7, "spin", "Spin", "Turns", centreLines, 1, degrees, fixed, quarterTurnBack, stops, nullptr},

    {13, "spread", "Spread", "Shapes", shapes, 0, percent, fixed, toFull<fullCoverageSpreadPercent>, stops,
     nullptr},
    {9, "iris", "Iris", "Shapes", {}, 0, pixels, fixed, toFull<fullCoverageIris>, stops, nullptr},
    {3, "star", "Star", "Shapes", {}, 0, percent, fixed, toFull<fullCoverageStarPercent>, stops, nullptr},

    {1, "clock", "Clock", "Clocks", turns, 1, degrees, fixed, fullTurn, stops, nullptr},
    {2, "clocks", "Many clocks", "Clocks", turns, 1, degrees, fixed, toFull<fullCoverageManyClocksAngle>,
     stops, nullptr},
    {4, "spiral", "Spiral", "Clocks", turns, 1, degrees, fixed, toFull<fullCoverageSpiralAngle>, stops,
     nullptr},

    {5, "mosaic", "Mosaic", "Pieces", {}, 0, percent, random, toFullMosaic<false>, stops, nullptr},
    {6, "mosaic-sweep", "Sweeping mosaic", "Pieces", fourSides, 0, percent, random, toFullMosaic<true>, stops,
     nullptr},
    {14, "strips", "Strips", "Pieces", strips, 0, percent, random, toHundred, stops, nullptr},
    {15, "blinds", "Venetian blinds", "Pieces", slats, 1, percent, fixed, toHundred, stops, nullptr},
};

}  // namespace

EffectParameters Effect::parameters(double progress, const SIZE& picture, int style) const {
  // Written so that a progress that is no number counts as 0.
  const double reached = progress > 0.0 ? std::min(progress, 1.0) : 0.0;
  const SIZE size{std::max<LONG>(picture.cx, 1), std::max<LONG>(picture.cy, 1)};
  const long moved = amount(reached, size, style);
  return styles.empty() ? EffectParameters{moved, 0} : EffectParameters{style, moved};
}

OwnedDib Effect::frame(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style,
                       double progress) const {
  const View in = viewOfDepth(incoming, 32);
  const View out = viewOfDepth(outgoing, 32);
  if (!in || !out || in.width() != out.width() || in.height() != out.height()) return nullptr;
  if (in.width() == 0 || in.height() == 0) return nullptr;
  const int count = std::max(1, static_cast<int>(styles.size()));
  if (style < 0 || style >= count) return nullptr;

  if (overshoots && (progress < 0.0 || progress > 1.0)) {
    // Styles are the sides all around, in the order of their numbers.
    const bool arrived = progress > 1.0;
    const double share = arrived ? std::min(progress, 2.0) - 1.0 : std::max(progress, -1.0);
    return moveOn(arrived ? incoming : outgoing, 8 / count * style, share);
  }
  if (!(progress > 0.0)) return copyOf(outgoing);
  if (progress >= 1.0) return copyOf(incoming);
  if (compose != nullptr) return compose(incoming, outgoing, style, progress);
  const auto [a, b] = parameters(progress, sizeOf(incoming), style);
  return composePiece(number, incoming, outgoing, a, b);
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
