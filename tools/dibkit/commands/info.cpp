#include <algorithm>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands/common.h"
#include "formats/formats.h"

namespace host {

namespace {

/// Distinct colours of all pixels that show, one bit for each that there is.
std::size_t countColours(const Animation& animation) {
  std::vector<bool> seen(std::size_t{1} << 24);
  std::size_t count = 0;
  for (const Frame& frame : animation.frames) {
    for (int y = 0; y < frame.picture.height(); ++y) {
      const Pixel* row = frame.picture.row(y);
      for (int x = 0; x < frame.picture.width(); ++x) {
        if (row[x].alpha == 0) continue;
        const std::size_t key = std::size_t{row[x].red} << 16 | std::size_t{row[x].green} << 8 | row[x].blue;
        if (seen[key]) continue;
        seen[key] = true;
        ++count;
      }
    }
  }
  return count;
}

std::string transparency(const Animation& animation) {
  const auto any = [&](BOOL (*holds)(BITMAPINFOHEADER* const), BOOL wanted) {
    return std::any_of(animation.frames.begin(), animation.frames.end(), [&](const Frame& frame) {
      return (holds(frame.picture.dib()) != 0) == (wanted != 0);
    });
  };
  if (any(CDIB32::IsTranslucence32BitsImage, 1)) return "translucent pixels";
  return any(CDIB32::IsFullOpacity32BitsImage, 0) ? "transparent pixels" : "none";
}

std::string seconds(int hundredths) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(2) << hundredths / 100.0 << " s";
  return text.str();
}

std::string times(const Animation& animation) {
  int total = 0;
  int shortest = animation.frames.front().delay;
  int longest = shortest;
  for (const Frame& frame : animation.frames) {
    total += frame.delay;
    shortest = std::min(shortest, frame.delay);
    longest = std::max(longest, frame.delay);
  }
  const std::string each = shortest == longest ? seconds(shortest) + " each"
                                               : seconds(shortest) + " to " + seconds(longest) + " each";
  const std::string loops = !animation.loops ? "plays once"
                            : *animation.loops == 0
                                ? "repeats for ever"
                                : "repeats " + std::to_string(*animation.loops) + " times";
  return each + ", " + seconds(total) + " together, " + loops;
}

void print(const std::string& path) {
  const Animation animation = readAnimationFile(path);
  std::cout << path << '\n'
            << "  format        " << animation.format << ", " << animation.bitsPerPixel
            << (animation.bitsPerPixel == 1 ? " bit" : " bits") << " a pixel\n"
            << "  size          " << toString(animation.size()) << '\n';
  if (!animation.palette.empty()) std::cout << "  palette       " << animation.palette.size() << " entries\n";
  std::cout << "  colours       " << countColours(animation) << '\n'
            << "  transparency  " << transparency(animation) << '\n'
            << "  frames        " << animation.frames.size() << '\n';
  if (animation.frames.size() > 1) std::cout << "  times         " << times(animation) << '\n';
}

/// One file that is no picture does not keep the others from being told about.
void printAll(const std::vector<std::string>& files) {
  bool allRead = true;
  for (const std::string& file : files) {
    try {
      print(file);
    } catch (const FileError& error) {
      complain(error);
      allRead = false;
    }
  }
  if (!allRead) throw AlreadySaid();
}

}  // namespace

void addInfoCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("info", "Tell what a picture or an animation holds");
  const auto files = std::make_shared<std::vector<std::string>>();
  command->add_option("FILES", *files, "Pictures or animations")->required()->type_name("");
  command->footer("Examples:\n  dibkit info photo.jpg\n  dibkit info *.gif\n  curl -s $URL | dibkit info -");
  command->callback([files] { printAll(*files); });
}

}  // namespace host
