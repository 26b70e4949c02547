#pragma once

#include "effects/effects.h"

/// The numbered effects, one function each. Styles and amounts are those of GeneralEffectFrame, which says
/// what they mean; either may be any number. The source is a 32-bit image with pixels. TRUE comes with the
/// record written, FALSE when there is nothing to show or memory ran out; std::bad_alloc may be thrown as
/// well.
namespace dibkit {

using StyledEffect = BOOL(BITMAPINFOHEADER* source, long style, long amount, EffectOutput& output);
using PlainEffect = BOOL(BITMAPINFOHEADER* source, long amount, EffectOutput& output);

StyledEffect renderGate;            ///< swings shut like a door, in perspective
StyledEffect renderClock;           ///< a clock hand sweeps about the centre and shows what it has passed
StyledEffect renderManyClocks;      ///< many small clock hands, one a tile
PlainEffect renderStar;             ///< a five-pointed star grows out of the centre
StyledEffect renderSpiral;          ///< a spiral arm winds outward
PlainEffect renderMosaic;           ///< comes in by cells in a random order
StyledEffect renderSweepingMosaic;  ///< the same, sweeping across the frame from one side
StyledEffect renderSpin;            ///< turns about a centre line, drawn flat
StyledEffect renderFilm;            ///< drawn line by line, the line drawn last smeared over the rest
PlainEffect renderIris;             ///< a four-pointed star between the middles of the edges fattens
StyledEffect renderHalves;          ///< two halves slide in from opposite sides
StyledEffect renderBars;            ///< bars of 4 pixels slide in, every other one from the opposite side
StyledEffect renderSlide;           ///< slides in whole from an edge or a corner
StyledEffect renderSpread;          ///< grows out of the centre as a shape
StyledEffect renderStrips;          ///< comes in by strips of one pixel, in a random or a sweeping order
StyledEffect renderBlinds;          ///< opens like a venetian blind
PlainEffect renderThaw;             ///< shows whole and pixelated; the smaller the amount, the sharper
StyledEffect renderRoll;            ///< unrolls from one side like a carpet

}  // namespace dibkit
