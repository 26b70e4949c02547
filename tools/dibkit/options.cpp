#include "options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "host/errors.h"
#include "host/names.h"

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

/// The longest side of a GIF, which stores it in 16 bits.
constexpr int maximumSide = 65535;

/// The whole text as a number in the given base, or -1.
long wholeNumber(std::string_view text, int base) {
  long value = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return error == std::errc() && end == text.data() + text.size() ? value : -1;
}

/// A side of a size, or -1 when the text is no whole number above 0.
long sideOf(std::string_view text) {
  constexpr long maximum = std::numeric_limits<int>::max();
  const long side = wholeNumber(text, 10);
  return side > 0 && side <= maximum ? side : -1;
}

}  // namespace

Size WantedSize::of(Size picture) const {
  if (sides_ == Size{} && percent_ == 100) return picture;
  const auto scaled = [](int side, double by, double of) {
    return std::max(1.0, std::round(side * by / of));
  };
  double width = sides_.width;
  double height = sides_.height;
  if (sides_ == Size{}) {
    width = scaled(picture.width, percent_, 100);
    height = scaled(picture.height, percent_, 100);
  } else if (sides_.width == 0) {
    width = scaled(picture.width, height, picture.height);
  } else if (sides_.height == 0) {
    height = scaled(picture.height, width, picture.width);
  }
  if (std::max(width, height) > maximumSide || width * height > double{maximumPixels}) {
    const auto digits = [](double side) { return std::to_string(std::llround(side)); };
    throw UsageError(digits(width) + "x" + digits(height) +
                     " pixels are too many: no side may have more than " + std::to_string(maximumSide) +
                     ", nor all more than " + std::to_string(maximumPixels));
  }
  return {static_cast<int>(width), static_cast<int>(height)};
}

WantedSize parseSize(const std::string& text) {
  if (text.empty()) return {};
  const std::string_view all = text;
  const auto cross = all.find_first_of("xX");
  if (cross != std::string_view::npos) {
    const long width = cross == 0 ? 0 : sideOf(all.substr(0, cross));
    const long height = cross + 1 == all.size() ? 0 : sideOf(all.substr(cross + 1));
    if (width >= 0 && height >= 0 && width + height > 0) {
      return WantedSize(Size{static_cast<int>(width), static_cast<int>(height)});
    }
  } else if (all.ends_with('%')) {
    constexpr double maximum = 100.0 * maximumSide;
    double percent = 0;
    const auto [end, error] = std::from_chars(all.data(), all.data() + all.size() - 1, percent);
    if (error == std::errc() && end == all.data() + all.size() - 1 && percent > 0 && percent <= maximum) {
      return WantedSize(percent);
    }
  }
  throw UsageError("'" + text + "' is no size; write it like 640x360, 320x, x240 or 50%");
}

Pixel parseColour(const std::string& text) {
  for (const NamedColour& named : namedColours) {
    if (sameName(named.name, text)) return named.colour;
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

void requireGifSize(Size size) {
  if (std::max(size.width, size.height) > maximumSide) {
    throw UsageError(toString(size) + " pixels are more than a GIF can have; choose a --size");
  }
}

}  // namespace host
