#include "options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <string_view>

#include "errors.h"

namespace host {

namespace {

struct NamedColour {
  std::string_view name;
  Pixel colour;
};

constexpr std::array<NamedColour, 12> namedColours{{
    {"black", {0, 0, 0, 255}},
    {"white", {255, 255, 255, 255}},
    {"gray", {128, 128, 128, 255}},
    {"silver", {192, 192, 192, 255}},
    {"red", {0, 0, 255, 255}},
    {"green", {0, 128, 0, 255}},
    {"blue", {255, 0, 0, 255}},
    {"yellow", {0, 255, 255, 255}},
    {"cyan", {255, 255, 0, 255}},
    {"magenta", {255, 0, 255, 255}},
    {"orange", {0, 165, 255, 255}},
    {"transparent", {0, 0, 0, 0}},
}};

/// Of a GIF, which has 16 bits for each side.
constexpr int mostPixelsAcross = 65535;

/// The whole text as a number in the given base, or -1.
long wholeNumber(std::string_view text, int base) {
  long value = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return error == std::errc() && end == text.data() + text.size() ? value : -1;
}

/// Levenshtein distance: letters to change, insert or leave out.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

Size parseSize(const std::string& text) {
  const auto cross = text.find('x');
  if (cross != std::string::npos) {
    const long width = wholeNumber(std::string_view(text).substr(0, cross), 10);
    const long height = wholeNumber(std::string_view(text).substr(cross + 1), 10);
    if (width > 0 && height > 0 && width <= mostPixelsAcross && height <= mostPixelsAcross &&
        width * height <= maximumPixels) {
      return {static_cast<int>(width), static_cast<int>(height)};
    }
  }
  throw UsageError("'" + text + "' is no size; write it like 640x360");
}

Pixel parseColour(const std::string& text) {
  for (const NamedColour& named : namedColours) {
    if (named.name == text) return named.colour;
  }
  if (text.starts_with('#')) {
    const std::string_view digits = std::string_view(text).substr(1);
    const long value = wholeNumber(digits, 16);
    if (value >= 0 && digits.size() == 6) {
      return {static_cast<BYTE>(value & 255), static_cast<BYTE>(value >> 8 & 255),
              static_cast<BYTE>(value >> 16), 255};
    }
    if (value >= 0 && digits.size() == 3) {
      const auto twice = [](long digit) { return static_cast<BYTE>(digit * 17); };
      return {twice(value & 15), twice(value >> 4 & 15), twice(value >> 8), 255};
    }
  }
  std::vector<std::string> names;
  for (const NamedColour& named : namedColours) names.emplace_back(named.name);
  throw UsageError("'" + text + "' is no colour; write it like #1e90ff or name one of: " + listed(names));
}

void requireRoomFor(Size size, int frames) {
  if (std::max(size.width, size.height) > mostPixelsAcross) {
    throw UsageError(toString(size) + " pixels are more than a GIF can have; choose a --size");
  }
  try {
    requireUsableAnimation(size, frames);
  } catch (const FormatError& error) {
    throw UsageError(std::string(error.what()) + "; choose a smaller --size or fewer --frames");
  }
}

std::string listed(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
  return all;
}

std::string unknownName(const std::string& kind, const std::string& name,
                        const std::vector<std::string>& known) {
  std::string message = "there is no " + kind + " '" + name + "'";
  const auto nearest = std::min_element(known.begin(), known.end(), [&](const auto& a, const auto& b) {
    return editDistance(name, a) < editDistance(name, b);
  });
  if (nearest != known.end() && editDistance(name, *nearest) <= 2)
    message += "; did you mean '" + *nearest + "'?";
  return message + " (there are: " + listed(known) + ")";
}

}  // namespace host
