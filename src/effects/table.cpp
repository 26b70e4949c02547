#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "effects/composition.h"
#include "effects/numbered.h"

namespace dibkit {
namespace {

using enum AmountUnit;

/// Progress on a scale from `from` to `to`, rounded to the nearest whole number.
long between(double progress, long from, long to) {
  return std::lround(static_cast<double>(from) + static_cast<double>(to - from) * progress);
}

/// Between two amounts that hold for every picture.
template <long from, long to>
long linear(double progress, const SIZE&, int) {
  return between(progress, from, to);
}
/// From 0 to the amount at which a picture of this size is covered.
template <FullCoverage fullCoverage>
long toFull(double progress, const SIZE& picture, int style) {
  return between(progress, 0, fullCoverage(picture, style));
}
/// From 0 to 100, and at the very end the amount at which the picture is covered.
template <FullCoverage fullCoverage>
long toHundredThenFull(double progress, const SIZE& picture, int style) {
  return progress < 1.0 ? between(progress, 0, 100) : fullCoverage(picture, style);
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

constexpr TabledEffect table[] = {
    {{.name = "fade", .title = "Fade", .family = "Fades", .amount = linear<0, 100>, .compose = composeFade}},
    {{.name = "ripple",
      .title = "Ripple",
      .family = "Fades",
      .amount = linear<0, 100>,
      .compose = composeRipple}},
    {{.name = "diamonds",
      .title = "Diamond bands",
      .family = "Fades",
      .amount = linear<0, 100>,
      .compose = composeDiamonds}},
    {{.number = 16,
      .name = "thaw",
      .title = "Thaw",
      .family = "Fades",
      .amount = linear<100, 0>,
      .compose = composeThaw},
     renderThaw},

    {{.number = 12,
      .name = "slide",
      .title = "Slide",
      .family = "Slides",
      .styles = eightDirections,
      .amount = linear<0, 100>,
      .overshoots = true},
     renderSlide},
    {{.name = "push",
      .title = "Push",
      .family = "Slides",
      .styles = fourSides,
      .amount = linear<0, 100>,
      .overshoots = true,
      .compose = composePush}},
    {{.number = 10,
      .name = "halves",
      .title = "Sliding halves",
      .family = "Slides",
      .styles = axes,
      .amount = linear<0, 100>},
     renderHalves},
    {{.number = 11,
      .name = "bars",
      .title = "Sliding bars",
      .family = "Slides",
      .styles = axes,
      .amount = linear<0, 100>},
     renderBars},
    {{.number = 17,
      .name = "roll",
      .title = "Carpet roll",
      .family = "Slides",
      .styles = fourSides,
      .amount = linear<0, 100>},
     renderRoll},
    {{.number = 8,
      .name = "film",
      .title = "Film",
      .family = "Slides",
      .styles = lines,
      .amount = linear<0, 100>,
      .compose = composeFilm},
     renderFilm},

    {{.number = 0,
      .name = "gate",
      .title = "Gate",
      .family = "Turns",
      .styles = hinges,
      .unit = degrees,
      .amount = linear<90, 0>},
     renderGate},
    {{.number = 7,
      .name = "spin",
      .title = "Spin",
      .family = "Turns",
      .styles = centreLines,
      .defaultStyle = 1,
      .unit = degrees,
      .amount = linear<90, 0>},
     renderSpin},

    {{.number = 13,
      .name = "spread",
      .title = "Spread",
      .family = "Shapes",
      .styles = shapes,
      .amount = toFull<fullCoverageOfSpread>},
     renderSpread},
    {{.number = 9,
      .name = "iris",
      .title = "Iris",
      .family = "Shapes",
      .unit = pixels,
      .amount = toFull<fullCoverageOfIris>},
     renderIris},
    {{.number = 3, .name = "star", .title = "Star", .family = "Shapes", .amount = toFull<fullCoverageOfStar>},
     renderStar},

    {{.number = 1,
      .name = "clock",
      .title = "Clock",
      .family = "Clocks",
      .styles = turns,
      .defaultStyle = 1,
      .unit = degrees,
      .amount = linear<0, 360>},
     renderClock},
    {{.number = 2,
      .name = "clocks",
      .title = "Many clocks",
      .family = "Clocks",
      .styles = turns,
      .defaultStyle = 1,
      .unit = degrees,
      .amount = toFull<fullCoverageOfManyClocks>},
     renderManyClocks},
    {{.number = 4,
      .name = "spiral",
      .title = "Spiral",
      .family = "Clocks",
      .styles = turns,
      .defaultStyle = 1,
      .unit = degrees,
      .amount = toFull<fullCoverageOfSpiral>},
     renderSpiral},

    {{.number = 5,
      .name = "mosaic",
      .title = "Mosaic",
      .family = "Pieces",
      .drawsRandomNumbers = true,
      .amount = toHundredThenFull<fullCoverageOfMosaic>},
     renderMosaic},
    {{.number = 6,
      .name = "mosaic-sweep",
      .title = "Sweeping mosaic",
      .family = "Pieces",
      .styles = fourSides,
      .drawsRandomNumbers = true,
      .amount = toHundredThenFull<fullCoverageOfSweepingMosaic>},
     renderSweepingMosaic},
    {{.number = 14,
      .name = "strips",
      .title = "Strips",
      .family = "Pieces",
      .styles = strips,
      .drawsRandomNumbers = true,
      .amount = linear<0, 100>},
     renderStrips},
    {{.number = 15,
      .name = "blinds",
      .title = "Venetian blinds",
      .family = "Pieces",
      .styles = slats,
      .defaultStyle = 1,
      .amount = linear<0, 100>},
     renderBlinds},
};

constexpr auto catalogue = [] {
  std::array<Effect, std::size(table)> effects;
  std::ranges::transform(table, effects.begin(), &TabledEffect::effect);
  return effects;
}();

}  // namespace

std::span<const Effect> effects() { return catalogue; }

const TabledEffect* findNumbered(int number) {
  const auto* found =
      std::ranges::find_if(table, [number](const TabledEffect& row) { return row.effect.number == number; });
  return found != std::end(table) ? found : nullptr;
}

}  // namespace dibkit
