#pragma once

#include <string>
#include <vector>

#include "host/picture.h"

namespace host {

/// One effect and style on the page. Files are named as the page sees them.
struct GalleryCard {
  std::string family;
  std::string title;
  std::string style;  ///< its title; empty for an effect without styles
  std::string gif;
  std::string sheet;    ///< the frames of the GIF side by side, for the page to play
  std::string command;  ///< makes the GIF
};

struct GalleryPage {
  Size size;                ///< of every GIF
  int sheetColumns = 1;     ///< frames in each row of a sheet, but for its last
  std::vector<int> delays;  ///< of the frames of every GIF, in hundredths of a second
  std::vector<std::string> pictures;
  std::vector<std::string> captions;  ///< one for each picture
  std::vector<GalleryCard> cards;     ///< those of a family side by side
};

/// Is in the first lines of every page, so that a gallery knows its folder again.
inline constexpr const char* galleryMark = "<meta name=\"generator\" content=\"dibkit gallery\">";

/// The whole page: one file of HTML that asks nothing of the outside.
std::string htmlOf(const GalleryPage& page);

/// What is in its place until all pictures are there.
std::string unfinishedHtml();

}  // namespace host
