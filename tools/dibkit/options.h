#pragma once

#include <string>
#include <utility>
#include <vector>

#include "picture.h"

/// \file
/// Words of the command line as values. What cannot be read throws UsageError with what would do.
namespace host {

/// "640x360"
Size parseSize(const std::string& text);

/// "#rrggbb", "#rgb", or one of a few names; opaque, except for "transparent".
Pixel parseColour(const std::string& text);

/// Throws UsageError when no GIF has that size, or so many frames of it are more than the program makes.
void requireRoomFor(Size size, int frames);

/// The names joined for a message: "a, b, c".
std::string listed(const std::vector<std::string>& names);

/// A message for a name that does not exist, with the nearest one that does.
std::string unknownName(const std::string& kind, const std::string& name,
                        const std::vector<std::string>& known);

}  // namespace host
