#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dib/dib.h"
#include "support/golden.h"

// RECT is in the global namespace, where the test framework looks for these.
inline bool operator==(const RECT& a, const RECT& b) { return EqualRect(&a, &b) != FALSE; }
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
  return out << '(' << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ')';
}

/// What the tests against recorded results share: shapes by name, rows of spans, one check for every case.
namespace test {

using dibkit::OwnedRegion;

inline RECT rectOf(const std::vector<std::int64_t>& numbers, std::size_t first = 0) {
  const auto at = [&](std::size_t i) { return static_cast<LONG>(numbers.at(first + i)); };
  return {at(0), at(1), at(2), at(3)};
}

inline std::vector<POINT> pointsOf(const std::vector<std::int64_t>& numbers, std::size_t first = 0) {
  std::vector<POINT> points;
  for (std::size_t i = first; i + 1 < numbers.size(); i += 2) {
    points.push_back({static_cast<LONG>(numbers[i]), static_cast<LONG>(numbers[i + 1])});
  }
  return points;
}

/// The region of a recorded shape, `rect l t r b` and so on.
inline OwnedRegion shapeOf(const std::string& text) {
  const auto space = text.find(' ');
  const std::string name = text.substr(0, space);
  const std::vector<std::int64_t> numbers = GoldenLine{name, text.substr(space + 1)}.numbers();
  if (name == "polygon") {
    const std::vector<POINT> points = pointsOf(numbers, 1);
    return OwnedRegion(CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE));
  }
  const RECT rect = rectOf(numbers, 0);
  if (name == "rect") return OwnedRegion(CreateRectRgn(rect.left, rect.top, rect.right, rect.bottom));
  if (name == "ellipse") return OwnedRegion(CreateEllipticRgn(rect.left, rect.top, rect.right, rect.bottom));
  if (name == "roundrect") {
    return OwnedRegion(CreateRoundRectRgn(rect.left, rect.top, rect.right, rect.bottom,
                                          static_cast<int>(numbers.at(4)), static_cast<int>(numbers.at(5))));
  }
  throw std::runtime_error("no such shape: " + text);
}

/// Rows of a region as the records write them: y0, y1 and the span ends, equal rows in one line.
using Rows = std::vector<std::vector<std::int64_t>>;

/// The rectangles as `GetRegionData` gives them, one line for each band.
inline Rows rowsOf(HRGN region) {
  const DWORD bytes = GetRegionData(region, 0, nullptr);
  std::vector<DWORD> block((bytes + 3) / 4);
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  Rows rows;
  if (bytes == 0 || GetRegionData(region, bytes, data) == 0) return rows;
  const auto* rectangles = reinterpret_cast<const RECT*>(data->Buffer);
  for (DWORD i = 0; i < data->rdh.nCount; ++i) {
    const RECT& rect = rectangles[i];
    if (rows.empty() || rows.back()[0] != rect.top) rows.push_back({rect.top, rect.bottom});
    rows.back().push_back(rect.left);
    rows.back().push_back(rect.right);
  }
  return rows;
}

/// With equal bands that touch as one. The records are written like that; a region need not be.
inline Rows joined(const Rows& rows) {
  Rows result;
  for (const std::vector<std::int64_t>& row : rows) {
    const bool continues =
        !result.empty() && result.back()[1] == row[0] &&
        std::equal(result.back().begin() + 2, result.back().end(), row.begin() + 2, row.end());
    if (continues) result.back()[1] = row[1];
    if (!continues) result.push_back(row);
  }
  return result;
}

inline Rows recordedRows(const GoldenCase& recorded) {
  Rows rows;
  for (const GoldenLine& line : recorded.lines) {
    if (line.word == "s") rows.push_back(line.numbers());
  }
  return rows;
}

/// A number of the line with a word.
inline int numberOf(const GoldenCase& recorded, const std::string& word, std::size_t index = 0) {
  return static_cast<int>(recorded.at(word).numbers().at(index));
}

/// Runs the check of its kind on every case of a file. A kind without a check fails.
/// \return how many cases of each kind there were
inline std::map<std::string, int> checkRecorded(
    const std::string& file, const std::map<std::string, void (*)(const GoldenCase&)>& checks) {
  std::map<std::string, int> counts;
  for (const GoldenCase& recorded : readGolden(file)) {
    SCOPED_TRACE(file + " case " + std::to_string(recorded.number) + " " + recorded.kind);
    ++counts[recorded.kind];
    checks.at(recorded.kind)(recorded);
  }
  return counts;
}

}  // namespace test
