#pragma once

#include "effects/catalogue.h"
#include "effects/effects.h"

/// \file
/// The functions that make the numbered effects, for the table that lists them. GeneralEffectFrame documents
/// what each shows, its styles and its amounts.
namespace dibkit {

/// Makes the piece of a stage.
/// \param source a 32-bit image with pixels
/// \param style,amount may be any numbers; the style is ignored by effects without styles
/// \return TRUE with `output` written; FALSE when nothing shows or memory ran out, which may also throw
///         std::bad_alloc
using Render = BOOL(BITMAPINFOHEADER* source, long style, long amount, EffectOutput& output);

/// The minimum amount at which an effect covers the whole picture, where that depends on the picture's size.
/// \param picture at least 1 x 1
using FullCoverage = long(const SIZE& picture, long style);

Render renderGate, renderClock, renderManyClocks, renderStar, renderSpiral, renderMosaic,
    renderSweepingMosaic, renderSpin, renderFilm, renderIris, renderHalves, renderBars, renderSlide,
    renderSpread, renderStrips, renderBlinds, renderThaw, renderRoll;

FullCoverage fullCoverageOfManyClocks, fullCoverageOfStar, fullCoverageOfSpiral, fullCoverageOfMosaic,
    fullCoverageOfSweepingMosaic, fullCoverageOfIris, fullCoverageOfSpread;

/// A row of the table: what the catalogue says of an effect, and the function that makes its piece.
struct TabledEffect {
  Effect effect;
  Render* render = nullptr;  ///< null for a transition of whole frames
};

/// The effect with a number for GeneralEffectFrame, or null.
const TabledEffect* findNumbered(int number);

}  // namespace dibkit
