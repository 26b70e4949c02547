#include "gallery/page.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <utility>

#include "page_assets.h"

namespace host {

namespace {

std::string escaped(const std::string& text) {
  std::string html;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += letter;
    }
  }
  return html;
}

/// A command as HTML. Its options are spans, which the style sheet keeps from being broken at their hyphens.
std::string htmlOfCommand(const std::string& command) {
  std::string html;
  std::istringstream words(command);
  for (std::string word; words >> word;) {
    if (!html.empty()) html += ' ';
    html += word.starts_with('-') ? "<span>" + escaped(word) + "</span>" : escaped(word);
  }
  return html;
}

/// The name of a family as the id of its section.
std::string anchorOf(const std::string& family) {
  std::string anchor;
  for (const char letter : family) {
    anchor += std::isalnum(static_cast<unsigned char>(letter)) != 0
                  ? static_cast<char>(std::tolower(static_cast<unsigned char>(letter)))
                  : '-';
  }
  return anchor;
}

const std::string documentStart =
    std::string("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n") + galleryMark +
    "\n";

void putHead(std::ostream& out, const GalleryPage& page) {
  out << documentStart
      << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<title>Every transition of dibkit</title>\n"
         "<link rel=\"icon\" href=\"data:,\">\n"
         "<style>\n"
      << pageCss << "</style>\n</head>\n<body>\n<header>\n<h1>Every transition</h1>\n"
      << "<p>All that <code>dibkit transition</code> can do between these two pictures. Pull a slider to "
         "look at a single stage; click a command to copy it.</p>\n"
         "<p><button class=\"all\" type=\"button\">Stop all</button></p>\n<div class=\"sources\">\n";
  for (std::size_t i = 0; i < page.pictures.size(); ++i) {
    const std::string caption = escaped(page.captions[i]);
    out << "<figure><img src=\"" << escaped(page.pictures[i]) << "\" alt=\"" << caption << "\" width=\""
        << page.size.width << "\" height=\"" << page.size.height << "\"><figcaption>" << caption
        << "</figcaption></figure>\n";
  }
  out << "</div>\n</header>\n";
}

void putNavigation(std::ostream& out, const GalleryPage& page) {
  out << "<nav aria-label=\"Families\"><div>\n";
  std::string last;
  for (const GalleryCard& card : page.cards) {
    if (card.family != last)
      out << "<a href=\"#" << anchorOf(card.family) << "\">" << escaped(card.family) << "</a>\n";
    last = card.family;
  }
  out << "</div></nav>\n";
}

void putCard(std::ostream& out, const GalleryCard& card, const GalleryPage& page) {
  const std::string name = escaped(card.title + (card.style.empty() ? "" : ", " + card.style));
  const std::string size = " width=\"" + std::to_string(page.size.width) + "\" height=\"" +
                           std::to_string(page.size.height) + "\"";
  out << "<article class=\"card\">\n<h3>" << escaped(card.title);
  if (!card.style.empty()) out << " <small>" << escaped(card.style) << "</small>";
  // Browsers can neither stop a GIF nor report its current frame, so the page plays the frames on a canvas.
  out << "</h3>\n<div class=\"stage\"><canvas role=\"img\" aria-label=\"" << name << "\"" << size
      << " data-sheet=\"" << escaped(card.sheet) << "\"></canvas><noscript><img src=\"" << escaped(card.gif)
      << "\" alt=\"" << name << "\"" << size << " loading=\"lazy\"></noscript></div>\n"
      << "<div class=\"controls\"><button class=\"play\" type=\"button\" aria-label=\"Stop " << name
      << "\">❚❚</button><input type=\"range\" min=\"0\" max=\"" << page.delays.size() - 1
      << "\" value=\"0\" aria-label=\"Stage of " << name << "\"><a href=\"" << escaped(card.gif)
      << "\" aria-label=\"GIF of " << name << "\">GIF</a></div>\n"
      << "<button class=\"copy\" type=\"button\"><span class=\"unseen\">Copy the command for " << name
      << ": </span><code>" << htmlOfCommand(card.command) << "</code></button>\n</article>\n";
}

void putMain(std::ostream& out, const GalleryPage& page) {
  out << "<main style=\"--frame: " << page.size.width << "px\" data-columns=\"" << page.sheetColumns
      << "\" data-delays=\"";
  const char* between = "";
  for (const int delay : page.delays) out << std::exchange(between, " ") << delay * 10;
  out << "\">\n";
  std::string family;
  for (const GalleryCard& card : page.cards) {
    if (card.family != family) {
      if (!family.empty()) out << "</div></section>\n";
      out << "<section id=\"" << anchorOf(card.family) << "\"><h2>" << escaped(card.family)
          << "</h2>\n<div class=\"cards\">\n";
    }
    family = card.family;
    putCard(out, card, page);
  }
  if (!family.empty()) out << "</div></section>\n";
  out << "</main>\n";
}

}  // namespace

std::string htmlOf(const GalleryPage& page) {
  std::ostringstream out;
  putHead(out, page);
  putNavigation(out, page);
  putMain(out, page);
  out << "<footer>Made by <code>dibkit gallery</code>.</footer>\n<p class=\"unseen\" "
         "role=\"status\"></p>\n<script>\n"
      << pageJs << "</script>\n</body>\n</html>\n";
  return out.str();
}

std::string unfinishedHtml() {
  return documentStart +
         "<title>A gallery in the making</title>\n</head>\n<body>\n"
         "<p>This gallery is not complete. If nothing works on it any more, make it "
         "again.</p>\n</body>\n</html>\n";
}

}  // namespace host
