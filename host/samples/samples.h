#pragma once

#include "host/picture.h"

/// \file
/// Pictures to try the effects on, drawn by formulas: gradients like a photograph's, fine lines, noise, and
/// transparent corners with soft edges.
namespace host {

/// A mountain lake at dusk, under the first stars.
Picture drawLake(Size size);

/// A dahlia among its leaves on a bright morning.
Picture drawDahlia(Size size);

}  // namespace host
