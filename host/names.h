#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/errors.h"

namespace host {

/// The names joined for a message: "a, b, c".
std::string listed(const std::vector<std::string>& names);

/// A number with its unit: "1 frame", "2 frames".
std::string counted(std::int64_t number, const std::string& unit);

/// Whether two names are one: letters a to z count the same in either case.
bool sameName(std::string_view a, std::string_view b);

/// The known name that a misspelt or shortened one is meant for, or nothing when it resembles none.
std::optional<std::string> nearestName(std::string_view name, const std::vector<std::string>& known);

/// A message for a name that does not exist, with the nearest one that does.
std::string unknownName(const std::string& kind, const std::string& name,
                        const std::vector<std::string>& known);

/// Values by their names, as options take them.
template <class Value, std::size_t count>
using NamedValues = std::array<std::pair<const char*, Value>, count>;

template <class Value, std::size_t count>
std::vector<std::string> namesOf(const NamedValues<Value, count>& values) {
  std::vector<std::string> names;
  for (const auto& [name, value] : values) names.emplace_back(name);
  return names;
}

/// Throws UsageError for a name that none of them has. \param kind what they are, for the message
template <class Value, std::size_t count>
Value valueNamed(const NamedValues<Value, count>& values, const std::string& kind, const std::string& name) {
  for (const auto& [known, value] : values) {
    if (sameName(name, known)) return value;
  }
  throw UsageError(unknownName(kind, name, namesOf(values)));
}

}  // namespace host
