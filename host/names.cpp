#include "host/names.h"

#include <algorithm>
#include <numeric>

namespace host {

namespace {

char small(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Levenshtein distance: letters to change, insert or leave out. Upper and lower case are the same.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (small(a[i]) == small(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string counted(std::int64_t number, const std::string& unit) {
  return std::to_string(number) + " " + unit + (number == 1 ? "" : "s");
}

bool sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return small(x) == small(y); });
}

std::string listed(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
  return all;
}

std::optional<std::string> nearestName(std::string_view name, const std::vector<std::string>& known) {
  const auto nearest = std::min_element(known.begin(), known.end(), [&](const auto& a, const auto& b) {
    return editDistance(name, a) < editDistance(name, b);
  });
  // One letter in three may be wrong, up to two.
  const std::size_t wrong = std::min<std::size_t>(2, (name.size() + 1) / 3);
  if (nearest != known.end() && editDistance(name, *nearest) <= wrong) return *nearest;
  const auto longer = std::find_if(known.begin(), known.end(), [&](std::string_view whole) {
    return name.size() >= 2 && sameName(whole.substr(0, name.size()), name);
  });
  return longer != known.end() ? std::optional(*longer) : std::nullopt;
}

std::string unknownName(const std::string& kind, const std::string& name,
                        const std::vector<std::string>& known) {
  const std::optional<std::string> nearest = nearestName(name, known);
  return "there is no " + kind + " '" + name + "'" + (nearest ? "; did you mean '" + *nearest + "'?" : "") +
         " (there are: " + listed(known) + ")";
}

}  // namespace host
