#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "animation/canvas_frames.h"
#include "animation/changes.h"
#include "commands/commands.h"
#include "errors.h"
#include "formats/formats.h"
#include "interrupt.h"

namespace host {

namespace {

struct Arguments {
  std::string input;
  std::string output;
};

/// The smaller file, or the same one where nothing was to be gained.
Bytes optimized(const Bytes& bytes) {
  Animation animation = readAnimation(bytes, Keep::allFrames);
  if (animation.format != "GIF") throw FormatError("not a GIF file but " + animation.format);
  const std::optional<int> loops = animation.loops;
  try {
    Bytes smaller = writeGif(gifOf(keepColours(std::move(animation.frames)), loops));
    return smaller.size() < bytes.size() ? smaller : bytes;
  } catch (const TooManyColours&) {
    return bytes;
  }
}

void run(const Arguments& arguments, const Settings& settings) {
  const Bytes before = readFile(arguments.input);
  Bytes after;
  try {
    after = optimized(before);
  } catch (const FormatError& error) {
    throw FileError(arguments.input, error.what());
  }
  throwIfInterrupted();
  writeFile(arguments.output, after);
  if (settings.quiet || arguments.output == "-") return;
  const double saved = 100.0 - 100.0 * static_cast<double>(after.size()) / static_cast<double>(before.size());
  std::printf("%s: %zu bytes, before %zu; saved %.1f %%\n", arguments.output.c_str(), after.size(),
              before.size(), saved);
}

}  // namespace

void addOptimizeCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command =
      program.add_subcommand("optimize", "Make an animated GIF smaller without changing what it shows");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("GIF", arguments->input, "The animation")->required()->type_name("");
  command->add_option("-o,--output", arguments->output, "The GIF to write; may be the same file")
      ->required()
      ->type_name("FILE");
  command->footer(
      "Examples:\n  dibkit optimize big.gif -o small.gif\n  dibkit optimize here.gif -o here.gif");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
