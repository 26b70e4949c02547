#include "gallery/page.h"

#include <algorithm>
#include <cctype>
#include <sstream>

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

/// A command whose options a browser does not break at their hyphens.
std::string htmlOfCommand(const std::string& command) {
  std::string html;
  std::istringstream words(command);
  for (std::string word; words >> word;) {
    if (!html.empty()) html += ' ';
    html += word.starts_with('-') ? "<span>" + escaped(word) + "</span>" : escaped(word);
  }
  return html;
}

/// A family's name as an anchor.
std::string anchorOf(const std::string& family) {
  std::string anchor;
  for (const char letter : family) {
    anchor += std::isalnum(static_cast<unsigned char>(letter)) != 0
                  ? static_cast<char>(std::tolower(static_cast<unsigned char>(letter)))
                  : '-';
  }
  return anchor;
}

void putHead(std::ostream& out, const GalleryPage& page) {
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<title>Every transition of dibkit</title>\n"
         "<link rel=\"icon\" href=\"data:,\">\n"
         "<style>\n"
      << pageCss << "</style>\n</head>\n<body>\n<header>\n<h1>Every transition</h1>\n"
      << "<p>All that <code>dibkit transition</code> can do between these two pictures. Pull a slider to "
         "look at a "
         "single stage; click a command to copy it.</p>\n<div class=\"sources\">\n";
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

void putCard(std::ostream& out, const GalleryCard& card, Size size) {
  const std::string name = card.title + (card.style.empty() ? "" : ", " + card.style);
  out << "<article class=\"card\">\n<h3>" << escaped(card.title);
  if (!card.style.empty()) out << " <small>" << escaped(card.style) << "</small>";
  out << "</h3>\n<div class=\"stage\"><img src=\"" << escaped(card.gif) << "\" alt=\"" << escaped(name)
      << "\" width=\"" << size.width << "\" height=\"" << size.height << "\" loading=\"lazy\">"
      << "<div class=\"strip\" data-strip=\"" << escaped(card.strip) << "\"></div></div>\n"
      << "<div class=\"controls\"><button class=\"play\" type=\"button\" aria-label=\"Stop\">❚❚</button>"
      << "<input type=\"range\" min=\"0\" max=\"" << card.frames - 1 << "\" value=\"" << (card.frames - 1) / 2
      << "\" aria-label=\"Stage of " << escaped(name) << "\"></div>\n"
      << "<button class=\"copy\" type=\"button\" title=\"Copy\"><code>" << htmlOfCommand(card.command)
      << "</code></button>\n</article>\n";
}

}  // namespace

std::string htmlOf(const GalleryPage& page) {
  std::ostringstream out;
  putHead(out, page);
  putNavigation(out, page);
  out << "<main>\n";
  std::string family;
  for (const GalleryCard& card : page.cards) {
    if (card.family != family) {
      if (!family.empty()) out << "</div></section>\n";
      out << "<section id=\"" << anchorOf(card.family) << "\"><h2>" << escaped(card.family)
          << "</h2>\n<div class=\"cards\">\n";
    }
    family = card.family;
    putCard(out, card, page.size);
  }
  if (!family.empty()) out << "</div></section>\n";
  out << "</main>\n<footer>Made by <code>dibkit gallery</code>.</footer>\n<script>\n"
      << pageJs << "</script>\n</body>\n</html>\n";
  return out.str();
}

}  // namespace host
