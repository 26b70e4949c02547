#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands/common.h"
#include "files/files.h"
#include "host/animation/summary.h"
#include "host/errors.h"
#include "host/names.h"

namespace host {

namespace {

std::string nameOf(Transparency transparency) {
  switch (transparency) {
    case Transparency::none:
      return "none";
    case Transparency::transparent:
      return "transparent pixels";
    case Transparency::translucent:
      return "translucent pixels";
  }
  return {};
}

std::string seconds(std::int64_t hundredths) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(2) << static_cast<double>(hundredths) / 100.0 << " s";
  return text.str();
}

std::string times(const Summary& summary) {
  std::string each = seconds(summary.shortestDelay);
  if (summary.shortestDelay != summary.longestDelay) each += " to " + seconds(summary.longestDelay);
  const std::string loops = !summary.loops        ? "plays once"
                            : *summary.loops == 0 ? "repeats for ever"
                                                  : "repeats " + counted(*summary.loops, "time");
  return each + " each, " + seconds(summary.duration) + " together, " + loops;
}

void print(const std::string& path, const Settings& settings) {
  const Bytes bytes = readFile(path);
  Summary summary;
  try {
    summary = summaryOf(bytes, readOptions(Keep::allFrames, settings).strictness);
  } catch (const FormatError& error) {
    throw FileError(path, error.what());
  }
  warn(path, summary.warnings, settings);
  std::cout << path << '\n'
            << "  format        " << summary.format << ", " << counted(summary.bitsPerPixel, "bit")
            << " a pixel\n"
            << "  size          " << toString(summary.size) << '\n';
  if (const auto entries = summary.paletteEntries; entries > 0)
    std::cout << "  palette       " << entries << (entries == 1 ? " entry\n" : " entries\n");
  std::cout << "  colours       " << summary.colours << '\n'
            << "  transparency  " << nameOf(summary.transparency) << '\n'
            << "  frames        " << summary.frames << '\n';
  if (summary.frames > 1) std::cout << "  times         " << times(summary) << '\n';
}

/// Goes on after a file that cannot be read. Throws AlreadySaid in the end if there was one.
void printAll(const std::vector<std::string>& files, const Settings& settings) {
  bool allRead = true;
  for (const std::string& file : files) {
    try {
      print(file, settings);
    } catch (const FileError& error) {
      complain(error);
      allRead = false;
    }
  }
  if (!allRead) throw AlreadySaid();
}

}  // namespace

void addInfoCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("info", "Tell what a picture or an animation holds");
  const auto files = std::make_shared<std::vector<std::string>>();
  command->add_option("FILES", *files, "Pictures or animations")->required()->type_name("");
  command->footer("Examples:\n  dibkit info photo.jpg\n  dibkit info *.gif\n  curl -s $URL | dibkit info -");
  command->callback([files, &settings] { printAll(*files, settings); });
}

}  // namespace host
