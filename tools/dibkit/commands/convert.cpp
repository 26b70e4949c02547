#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "animation/canvas_frames.h"
#include "animation/depth.h"
#include "animation/fit.h"
#include "commands/commands.h"
#include "errors.h"
#include "formats/formats.h"
#include "options.h"

namespace host {

namespace {

struct Arguments {
  std::vector<std::string> pictures;
  std::string output;
  int bits = 0;
  std::string threshold;
  std::string paletteFile;
  std::string matte = "white";
  std::string format;
  DepthOptions depth;
};

enum class Format { png, bmp };

/// By its option, else by the name of the file; standard output gets a PNG.
Format formatOf(const Arguments& arguments, const std::string& path) {
  std::string name = arguments.format;
  if (name.empty()) {
    const std::string extension = std::filesystem::path(path).extension().string();
    name = path == "-" || extension.empty() ? "png" : extension.substr(1);
  }
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  if (name == "png") return Format::png;
  if (name == "bmp") return Format::bmp;
  throw UsageError("'" + name + "' cannot be written; choose png or bmp");
}

/// For one picture the output is a file, for several a folder in which each keeps its name.
std::vector<std::string> targetsOf(const Arguments& arguments) {
  if (arguments.pictures.size() == 1) return {arguments.output};
  if (arguments.output == "-") throw UsageError("several pictures need a folder to go to");
  std::vector<std::string> targets;
  for (const std::string& path : arguments.pictures) {
    const std::string name = std::filesystem::path(path).stem().string() + "." +
                             (arguments.format.empty() ? "png" : arguments.format);
    targets.push_back((std::filesystem::path(arguments.output) / name).string());
    if (std::count(targets.begin(), targets.end(), targets.back()) > 1) {
      throw UsageError("two pictures would become " + targets.back());
    }
  }
  return targets;
}

/// The palette of a file, or the colours of its picture where it has none.
std::vector<RGBQUAD> paletteOfFile(const std::string& path) {
  const Animation animation = readAnimationFile(path, Keep::firstFrame);
  if (!animation.palette.empty()) return animation.palette;
  const Picture& picture = animation.frames.front().picture;
  const std::vector<dibkit::OwnedDib> reduced = atDepth({&picture, 1}, DepthOptions{});
  if (reduced.front()->biBitCount > 8) {
    throw FileError(path, "the picture has no palette and more than 256 colours, or transparent pixels");
  }
  return paletteOf(reduced.front().get());
}

std::optional<int> thresholdOf(const std::string& text) {
  if (text == "auto") return {};
  int value = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > 256) {
    throw UsageError("'" + text + "' is no threshold; say auto or a number from 0 to 256");
  }
  return value;
}

void run(const Arguments& arguments, const Settings& settings) {
  DepthOptions options = arguments.depth;
  if (arguments.bits != 0) options.bits = arguments.bits;
  options.blackAndWhite = !arguments.threshold.empty();
  if (options.blackAndWhite) options.threshold = thresholdOf(arguments.threshold);
  if (!arguments.paletteFile.empty()) options.palette = paletteOfFile(arguments.paletteFile);
  const std::vector<std::string> targets = targetsOf(arguments);
  std::vector<Format> formats;
  for (const std::string& target : targets) formats.push_back(formatOf(arguments, target));

  const bool anythingAsked = options.bits || options.gray || options.blackAndWhite ||
                             !options.palette.empty() || options.sharedPalette;
  std::vector<Picture> pictures;
  for (const std::string& path : arguments.pictures) {
    pictures.push_back(readPictureFile(path));
    // Only 32 bits have room for transparency.
    if (anythingAsked && options.bits != 32) layOver(pictures.back(), parseColour(arguments.matte));
  }
  const std::vector<dibkit::OwnedDib> converted = atDepth(pictures, options);
  if (targets.size() > 1) makeFolder(arguments.output);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const BITMAPINFOHEADER* dib = converted[i].get();
    writeFile(targets[i], formats[i] == Format::png ? writePng(dib) : writeBmp(dib));
    if (settings.quiet || targets[i] == "-") continue;
    std::printf("%s: %s, %d bits\n", targets[i].c_str(), toString({dib->biWidth, dib->biHeight}).c_str(),
                static_cast<int>(dib->biBitCount));
  }
}

}  // namespace

void addConvertCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("convert", "Change a picture's depth or palette");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("PICTURES", arguments->pictures, "One picture, or several")->required()->type_name("");
  command
      ->add_option("-o,--output", arguments->output, "The PNG or BMP to write; for several pictures a folder")
      ->required()
      ->type_name("FILE");
  command->add_option("--bits", arguments->bits, "1, 4, 8, 16, 24 or 32; else as few as keep all colours")
      ->check(CLI::IsMember({1, 4, 8, 16, 24, 32}).description(""))
      ->type_name("N");
  command->add_flag("--gray", arguments->depth.gray, "To 256 grays, or fewer with --bits");
  command
      ->add_option("--threshold", arguments->threshold,
                   "To black and white: white from this gray (0 to 256) on, or auto")
      ->type_name("N");
  command->add_option("--palette", arguments->paletteFile, "Use the palette of this picture")
      ->type_name("FILE");
  command->add_flag("--shared-palette", arguments->depth.sharedPalette, "One palette for all pictures");
  command->add_option("--matte", arguments->matte, "Colour under transparent pixels where the depth has none")
      ->type_name("COLOUR")
      ->capture_default_str();
  command->add_option("--format", arguments->format, "png or bmp; else by the name of the output")
      ->type_name("NAME");
  command->footer(
      "Examples:\n"
      "  dibkit convert photo.jpg --bits 8 -o photo.bmp\n"
      "  dibkit convert page.png --threshold auto -o page-bw.png\n"
      "  dibkit convert a.png b.png c.png --bits 4 --shared-palette -o reduced");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
