#include <cstdio>
#include <fstream>
#include <iostream>
#include <opencv2/core/ocl.hpp>
#include <optional>
#include <regex>
#include <sstream>

#include <unistd.h>

#include "measure.h"

/// Times every row on both sizes, with fresh and with warm memory.
namespace bench {
namespace {

struct Options {
  std::regex filter{""};
  bool json = false;
  bool check = false;    ///< compare results only
  double seconds = 0.1;  ///< for each figure
};

constexpr Size sizes[] = {{1920, 1080}, {320, 240}};

/// Of one row: what was measured, and what was found to be wrong.
struct Result {
  Figures fresh[2];
  Figures warm[2];
  std::string fault;
};

void measureRow(const Row& row, Memory memory, double seconds, Result& result) {
  for (std::size_t i = 0; i < 2; ++i) {
    const Trial trial = row.trial(sizes[i]);
    if (memory == Memory::fresh && i == 1) result.fault = row.trial(sizes[i]).verify();
    (memory == Memory::fresh ? result.fresh : result.warm)[i] = measure(trial, seconds);
  }
}

void printHeader() {
  std::printf("%-40s %-14s %-46s | %-33s | %-33s\n", "", "", "", "1920x1080", "320x240");
  std::printf("%-40s %-14s %-46s |", "operation", "picture", "peer");
  for (int i = 0; i < 2; ++i) std::printf(" %8s %8s %6s %7s |", "ours", "peer", "ratio", "fresh");
  std::printf("\n");
}

void printRow(const Row& row, const Result& result) {
  std::printf("%-40s %-14s %-46s |", row.name.c_str(), row.picture.c_str(), row.peer.c_str());
  for (int i = 0; i < 2; ++i) {
    const Figures& warm = result.warm[i];
    std::printf(" %8.3f %8.3f %6.2f %7.2f |", warm.ours, warm.peer, warm.ratio, result.fresh[i].ratio);
  }
  std::printf("%s%s\n", result.fault.empty() ? "" : " RESULTS DIFFER: ", result.fault.c_str());
  std::fflush(stdout);
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string machine() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  }
  return "unknown";
}

#ifdef __clang__
constexpr const char* compiler = __VERSION__;
#else
constexpr const char* compiler = "GCC " __VERSION__;
#endif

void printJson(const Rows& rows, const std::vector<Result>& results) {
  const auto figures = [](const Figures& f) {
    std::ostringstream text;
    text << "{\"ours\": " << f.ours << ", \"peer\": " << f.peer << ", \"ratio\": " << f.ratio << "}";
    return text.str();
  };
  std::cout << "{\"machine\": " << quoted(machine()) << ", \"compiler\": " << quoted(compiler)
            << ", \"rows\": [";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    const Result& result = results[i];
    std::cout << (i == 0 ? "\n" : ",\n") << "{\"family\": " << quoted(row.family)
              << ", \"operation\": " << quoted(row.name) << ", \"picture\": " << quoted(row.picture)
              << ", \"peer\": " << quoted(row.peer) << ", \"difference\": " << quoted(row.difference)
              << ", \"unit\": " << quoted(row.unit) << ", \"copiedBytes\": " << row.copiedBytes
              << ", \"fault\": " << quoted(result.fault)
              << ", \"1920x1080\": {\"warm\": " << figures(result.warm[0])
              << ", \"fresh\": " << figures(result.fresh[0])
              << "}, \"320x240\": {\"warm\": " << figures(result.warm[1])
              << ", \"fresh\": " << figures(result.fresh[1]) << "}}";
  }
  std::cout << "\n]}\n";
}

std::optional<Options> optionsOf(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--json") {
      options.json = true;
    } else if (argument == "--check") {
      options.check = true;
    } else if (argument == "--quick") {
      options.seconds = 0.03;
    } else if (argument == "--filter" && i + 1 < argc) {
      options.filter = std::regex(argv[++i]);
    } else {
      return std::nullopt;
    }
  }
  return options;
}

/// A part of the table.
struct Family {
  const char* title;
  void (*add)(Rows& rows);
};
constexpr Family families[] = {
    {"Conversions and palettes", addConversions},
    {"Composite and copy", addComposites},
    {"Scale", addScales},
    {"Fills and magic wands", addFills},
    {"Filters", addFilters},
    {"Frames", addFrames},
    {"Transitions and water", addEffects},
    {"Regions", addRegions},
    {"Without a peer: images and palettes", addUnmatchedImages},
    {"Without a peer: frames", addUnmatchedFrames},
    {"Without a peer: transitions", addUnmatchedEffects},
};

Rows rowsLike(const std::regex& filter) {
  Rows rows;
  for (const auto& [title, add] : families) {
    Rows all;
    add(all);
    for (Row& row : all) {
      row.family = title;
      if (std::regex_search(row.name + " / " + row.picture + " / " + row.peer, filter)) rows.push_back(row);
    }
  }
  return rows;
}

/// Compares the results of all rows.
bool check(const Rows& rows) {
  bool agree = true;
  for (const Row& row : rows) {
    const std::string fault = row.trial(sizes[1]).verify();
    if (fault.empty()) continue;
    agree = false;
    std::cout << row.name << ", " << row.picture << ", beside " << row.peer << ": " << fault << '\n';
  }
  std::cout << rows.size() << " rows compared\n";
  return agree;
}

void showProgress(const std::string& text) {
  if (isatty(STDERR_FILENO) != 0) std::cerr << "\r\033[K" << text << std::flush;
}

int run(const Options& options) {
  cv::setNumThreads(1);
  cv::ocl::setUseOpenCL(false);
  const Rows rows = rowsLike(options.filter);
  if (options.check) return check(rows) ? 0 : 1;
  std::vector<Result> results(rows.size());
  // First all rows with fresh memory: what is released with warm memory would be given again later.
  useMemory(Memory::fresh);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    showProgress("fresh memory: " + std::to_string(i + 1) + " of " + std::to_string(rows.size()));
    measureRow(rows[i], Memory::fresh, options.seconds, results[i]);
  }
  showProgress("");
  useMemory(Memory::warm);
  if (!options.json) printHeader();
  bool agree = true;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    measureRow(rows[i], Memory::warm, options.seconds, results[i]);
    agree = agree && results[i].fault.empty();
    if (!options.json) printRow(rows[i], results[i]);
  }
  if (options.json) printJson(rows, results);
  return agree ? 0 : 1;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  const std::optional<bench::Options> options = bench::optionsOf(argc, argv);
  if (!options) {
    std::cerr << "usage: " << argv[0] << " [--filter REGEX] [--quick | --check] [--json]\n";
    return 2;
  }
  return bench::run(*options);
}
