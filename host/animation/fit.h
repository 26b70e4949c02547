#pragma once

#include <string>
#include <vector>

#include "host/picture.h"

namespace host {

/// How a picture of another shape comes into a frame.
enum class Fit {
  contain,  ///< all of it, bars of the background beside it
  cover,    ///< fills the frame, the middle of it
  stretch,  ///< fills the frame, its shape changed
};

/// Throws UsageError for a name that does not exist.
Fit fitNamed(const std::string& name);
std::vector<std::string> fitNames();

/// The picture at another size: every new pixel is the mean of the area under it, or between four pixels
/// where the picture grows. Transparent pixels lend no colour to their neighbours.
Picture resampled(const Picture& picture, Size size);

/// The picture in a frame of the given size; one that has that size already stays as it is.
Picture fitted(const Picture& picture, Size frame, Fit fit, Pixel background);

/// Lays the picture over a colour, so that nothing of it is transparent.
void layOver(Picture& picture, Pixel matte);

}  // namespace host
