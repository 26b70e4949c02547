#pragma once

#include "image.h"
#include "region.h"

/// \file
/// The families of operations. Each adds its functions to the module.
namespace binding {

void defineAnimations(py::module_& module);
void defineCompositing(py::module_& module);
void defineConversions(py::module_& module);
void defineDrawing(py::module_& module);
void defineEffects(py::module_& module);
void defineFills(py::module_& module);
void defineFilters(py::module_& module);
void defineFrames(py::module_& module);
void defineMasks(py::module_& module);
void defineMerging(py::module_& module);
void defineOverlays(py::module_& module);
void definePalettes(py::module_& module);
void definePictures(py::module_& module);
void defineRipples(py::module_& module);
void defineScaling(py::module_& module);
void defineSelections(py::module_& module);
void defineSplitting(py::module_& module);

}  // namespace binding
