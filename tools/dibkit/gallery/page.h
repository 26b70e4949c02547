#pragma once

#include <string>
#include <vector>

#include "host/picture.h"

namespace host {

/// One effect and style on the page. Paths are relative to the page.
struct GalleryCard {
  std::string family;
  std::string title;
  std::string style;  ///< its title; empty for an effect without styles
  std::string gif;
  std::string sheet;    ///< an image of all frames, which the page plays
  std::string command;  ///< makes the GIF
};

struct GalleryPage {
  Size size;                ///< of every GIF
  int sheetColumns = 1;     ///< frames in each row of a sheet; its last row may have fewer
  std::vector<int> delays;  ///< of the frames of every GIF, in hundredths of a second
  std::vector<std::string> pictures;
  std::vector<std::string> captions;  ///< one for each picture
  std::vector<GalleryCard> cards;     ///< in an order that keeps families together
};

/// Is among the first lines of every page, and shows that a folder is a gallery.
inline constexpr const char* galleryMark = "<meta name=\"generator\" content=\"dibkit gallery\">";

/// The whole page as one HTML file. Apart from the GIFs and sheets it loads nothing.
std::string htmlOf(const GalleryPage& page);

/// The page to show until all images have been written.
std::string unfinishedHtml();

}  // namespace host
