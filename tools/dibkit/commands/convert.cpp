#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/common.h"
#include "files/files.h"
#include "host/animation/depth.h"
#include "host/animation/fit.h"
#include "host/animation/palette.h"
#include "host/errors.h"
#include "host/formats/formats.h"
#include "host/names.h"
#include "options.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::vector<std::string> pictures;
  Output output;
  int bits = 0;
  std::string threshold;
  std::string paletteFile;
  std::string matte = "white";
  std::string format;
  std::string dither = "none";
  DepthOptions depth;
};

enum class Format { png, bmp };

/// From --format, else from the ending of a single output, else PNG.
Format formatOf(const Arguments& arguments) {
  const std::string& path = arguments.output.path;
  std::string name = arguments.format;
  if (name.empty() && arguments.pictures.size() == 1 && path != "-") {
    name = std::filesystem::path(path).extension().string();
    if (!name.empty()) name.erase(0, 1);
  }
  if (name.empty() || sameName(name, "png")) return Format::png;
  if (sameName(name, "bmp") || sameName(name, "dib")) return Format::bmp;
  if (!arguments.format.empty()) throw UsageError("'" + name + "' cannot be written; choose png or bmp");
  const std::string stem = path.substr(0, path.size() - name.size());
  throw UsageError(path + " cannot be written; name it " + stem + "png or " + stem + "bmp");
}

/// For one picture the output is a file; for several it is a folder, where each keeps its name.
std::vector<std::string> targetsOf(const Arguments& arguments, Format format) {
  const std::string& output = arguments.output.path;
  if (arguments.pictures.size() == 1) {
    if (format == Format::png) requireEnding(output, "PNG", {".png"});
    if (format == Format::bmp) requireEnding(output, "BMP", {".bmp", ".dib"});
    requireFolderOf(output);
    return {output};
  }
  if (output == "-") throw UsageError("several pictures need a folder to go to");
  std::vector<std::string> targets;
  for (const std::string& path : arguments.pictures) {
    const std::string name =
        std::filesystem::path(path).stem().string() + (format == Format::png ? ".png" : ".bmp");
    targets.push_back((std::filesystem::path(output) / name).string());
    if (std::count(targets.begin(), targets.end(), targets.back()) > 1) {
      throw UsageError("two pictures would become " + targets.back());
    }
  }
  return targets;
}

/// A picture to convert, and the file for the result.
struct Job {
  std::string source;
  OutputTarget target;
};

std::vector<Job> jobsOf(const Arguments& arguments, Format format, const Settings& settings) {
  const std::vector<std::string> targets = targetsOf(arguments, format);
  std::vector<std::string> inputs = arguments.pictures;
  if (!arguments.paletteFile.empty()) inputs.push_back(arguments.paletteFile);
  std::vector<Job> jobs;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    std::optional<OutputTarget> target = claim(targets[i], arguments.output.rules, inputs, settings);
    if (target) jobs.push_back({arguments.pictures[i], std::move(*target)});
  }
  return jobs;
}

/// The palette of a file. A file without one gives the colours of its picture.
std::vector<RGBQUAD> paletteOfFile(const std::string& path, const Settings& settings) {
  const Animation animation = readAnimation(path, Keep::firstFrame, settings);
  if (!animation.palette.empty()) return animation.palette;
  const Picture& picture = animation.frames.front().picture;
  const std::vector<dibkit::OwnedDib> reduced = atDepth({&picture, 1}, DepthOptions{}, [](double) {});
  if (reduced.front()->biBitCount > 8) {
    throw FileError(path, "the picture has no palette and more than 256 colours, or transparent pixels");
  }
  return paletteOf(reduced.front().get());
}

std::optional<int> thresholdOf(const std::string& text) {
  if (sameName(text, "auto")) return {};
  int value = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > 256) {
    throw UsageError("'" + text + "' is no threshold; say auto or a number from 0 to 256");
  }
  return value;
}

const char* const depths = "1, 4, 8, 16, 24 or 32";

/// The message for a wrong value of --bits; empty for a valid one.
std::string complaintAboutDepth(const std::string& text) {
  for (const char* depth : {"1", "4", "8", "16", "24", "32"}) {
    if (text == depth) return {};
  }
  return "'" + text + "' is no depth; choose " + depths;
}

/// What changing the depth costs, as a share of all work after reading. Measured on photographs.
double shareOfDepth(Format format, const DepthOptions& options) {
  if (format == Format::bmp) return 1;
  const bool ontoPalette =
      options.sharedPalette || !options.palette.empty() || options.bits.value_or(24) <= 8;
  return ontoPalette ? 0.85 : 0.1;
}

/// What has been written. The destructor prints it: after the progress bar has gone, and also when a later
/// file fails.
struct Report {
  std::string lines;

  Report() = default;
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  ~Report() { std::fputs(lines.c_str(), stdout); }
};

void run(const Arguments& arguments, const Settings& settings) {
  DepthOptions options = arguments.depth;
  if (arguments.bits != 0) options.bits = arguments.bits;
  options.dither = ditherNamed(arguments.dither);
  options.blackAndWhite = !arguments.threshold.empty();
  if (options.blackAndWhite) options.threshold = thresholdOf(arguments.threshold);
  const Format format = formatOf(arguments);
  std::vector<Job> jobs = jobsOf(arguments, format, settings);
  if (jobs.empty()) return;
  if (!arguments.paletteFile.empty()) options.palette = paletteOfFile(arguments.paletteFile, settings);

  const bool anythingAsked = options.bits || options.gray || options.blackAndWhite ||
                             !options.palette.empty() || options.sharedPalette;
  std::vector<Picture> pictures;
  for (const Job& job : jobs) {
    pictures.push_back(readPicture(job.source, settings));
    // Only 32 bits have room for transparency.
    if (anythingAsked && options.bits != 32) compositeOver(pictures.back(), parseColour(arguments.matte));
  }
  Report report;
  ProgressBar bar("convert", settings.quiet);
  const double depthShare = shareOfDepth(format, options);
  const std::vector<dibkit::OwnedDib> converted =
      atDepth(pictures, options, [&](double share) { bar.progress().add(depthShare * share); });
  if (arguments.pictures.size() > 1) makeFolder(arguments.output.path);
  for (std::size_t i = 0; i < jobs.size(); ++i) {
    const BITMAPINFOHEADER* dib = converted[i].get();
    const double lineShare = (1 - depthShare) / static_cast<double>(jobs.size()) / dib->biHeight;
    OutputTarget& target = jobs[i].target;
    target.write(format == Format::png ? writePng(dib, [&] { bar.progress().add(lineShare); })
                                       : writeBmp(dib));
    if (settings.quiet || target.standardOutput()) continue;
    report.lines += target.path() + ": " + toString({dib->biWidth, dib->biHeight}) + ", " +
                    counted(dib->biBitCount, "bit") + '\n';
  }
}

}  // namespace

void addConvertCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("convert", "Change a picture's depth or palette");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("PICTURES", arguments->pictures, "One picture, or several")->required()->type_name("");
  addOutput(command, arguments->output,
            "The PNG or BMP to write; with several pictures, the folder for them");
  command
      ->add_option("--bits", arguments->bits,
                   std::string("Bits a pixel: ") + depths + "; else as few as keep all colours")
      ->check(complaintAboutDepth, "")
      ->type_name("N");
  command->add_flag("--gray", arguments->depth.gray, "Make it gray: 256 shades, or fewer with --bits");
  command
      ->add_option("--threshold", arguments->threshold,
                   "Make it black and white: white from this gray (0 to 256) on, or auto")
      ->type_name("N");
  command->add_option("--palette", arguments->paletteFile, "Use the colours of this picture's palette")
      ->type_name("FILE");
  command->add_flag("--shared-palette", arguments->depth.sharedPalette, "One palette for all pictures");
  command
      ->add_option("--matte", arguments->matte,
                   "Colour behind transparent pixels, which only 32 bits can keep")
      ->type_name("COLOUR")
      ->capture_default_str();
  command
      ->add_option("--dither", arguments->dither,
                   "How to show colours that the palette lacks: " + listed(ditherNames()))
      ->type_name("NAME")
      ->capture_default_str();
  command->add_option("--format", arguments->format, "png or bmp; else what the name of the output says")
      ->type_name("NAME");
  command->footer(
      "Examples:\n"
      "  dibkit convert photo.jpg --bits 8 -o photo.bmp\n"
      "  dibkit convert photo.jpg --bits 4 --dither diffusion -o poster.png\n"
      "  dibkit convert page.png --threshold auto -o page-bw.png\n"
      "  dibkit convert a.png b.png c.png --bits 4 --shared-palette -o reduced");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
