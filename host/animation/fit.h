#pragma once

#include <string>
#include <vector>

#include "host/picture.h"

namespace host {

/// How a picture of another shape is fitted into a frame.
enum class Fit {
  contain,  ///< all of it, with bars of the background at two sides
  cover,    ///< fills the frame, the middle of it
  stretch,  ///< fills the frame, its shape changed
};

/// Throws UsageError for a name that does not exist.
Fit fitNamed(const std::string& name);
std::vector<std::string> fitNames();

/// The picture at another size: every new pixel is the mean of the area under it, or between four pixels
/// where the picture grows. Colours are weighted by alpha: transparent pixels have no influence.
Picture resampled(const Picture& picture, Size size);

/// The picture in a frame of the given size; one that has that size already stays as it is.
Picture fitted(const Picture& picture, Size frame, Fit fit, Pixel background);

/// Composites the picture over a colour, so that no pixel is transparent.
void compositeOver(Picture& picture, Pixel matte);

}  // namespace host
