#pragma once

#include "arguments.h"

namespace binding {

/// The library's map of colours to indexes, under keys 0x00RRGGBB. Equal colours have the first one's index.
using ColourMap = CMap<DWORD, DWORD&, int, int&>;
void fillMap(ColourMap& map, const Palette& palette);
/// The colours of a map in the order of their indexes. \param blueHigh the keys are COLORREFs
Palette paletteOfMap(const ColourMap& map, bool blueHigh);

/// Throws unless a palette has from 1 to as many colours as an image of that depth can index.
void requireFits(const Palette& palette, int depth);

/// The reductions to a palette.
void defineReductions(py::module_& module);

}  // namespace binding
