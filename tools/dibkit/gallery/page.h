#pragma once

#include <string>
#include <vector>

#include "picture.h"

namespace host {

/// One effect and style on the page. Files are named as the page sees them.
struct GalleryCard {
  std::string family;
  std::string title;
  std::string style;  ///< its title; empty for an effect without styles
  std::string gif;
  std::string strip;    ///< all frames from the first picture to the second, below each other
  int frames = 0;       ///< in the strip
  std::string command;  ///< makes the GIF
};

struct GalleryPage {
  Size size;  ///< of every GIF
  std::vector<std::string> pictures;
  std::vector<std::string> captions;  ///< one for each picture
  std::vector<GalleryCard> cards;     ///< those of a family side by side
};

/// The whole page: one file of HTML that asks nothing of the outside.
std::string htmlOf(const GalleryPage& page);

}  // namespace host
