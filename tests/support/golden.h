#pragma once

#include <cstdint>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// Recorded results of the real platform calls, in tests/data: cases of lines, a line being a word and its
/// arguments.
namespace test {

struct GoldenLine {
  std::string word;
  std::string rest;

  std::vector<std::int64_t> numbers(int base = 10) const {
    std::istringstream in(rest);
    std::vector<std::int64_t> values;
    for (std::string token; in >> token;) values.push_back(std::stoll(token, nullptr, base));
    return values;
  }
};

struct GoldenCase {
  int number = 0;
  std::string kind;
  std::vector<GoldenLine> lines;

  const GoldenLine* find(const std::string& word) const {
    for (const GoldenLine& line : lines) {
      if (line.word == word) return &line;
    }
    return nullptr;
  }
  const GoldenLine& at(const std::string& word) const {
    const GoldenLine* line = find(word);
    if (line == nullptr) throw std::runtime_error("case " + std::to_string(number) + " has no line " + word);
    return *line;
  }
};

inline std::vector<GoldenCase> readGolden(const std::string& file) {
  std::ifstream in("data/" + file);  // tests run in the folder that holds data/
  if (!in) throw std::runtime_error("no recorded data " + file);
  std::vector<GoldenCase> cases;
  for (std::string line; std::getline(in, line);) {
    const auto space = line.find(' ');
    GoldenLine entry{line.substr(0, space), space == std::string::npos ? "" : line.substr(space + 1)};
    if (entry.word == "case") {
      std::istringstream head(entry.rest);
      GoldenCase next;
      head >> next.number >> next.kind;
      cases.push_back(std::move(next));
    } else if (entry.word != "end" && !cases.empty()) {
      cases.back().lines.push_back(std::move(entry));
    }
  }
  return cases;
}

}  // namespace test
