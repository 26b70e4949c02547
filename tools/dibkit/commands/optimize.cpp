#include "host/animation/optimize.h"

#include <cstdio>
#include <memory>
#include <string>

#include "commands/common.h"
#include "files/files.h"
#include "host/errors.h"
#include "host/formats/formats.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::string input;
  Output output;
  bool strip = false;
};

/// An output that is the input itself may be replaced without --force.
std::optional<OutputTarget> claimTarget(const Arguments& arguments, const Settings& settings) {
  const Output& output = arguments.output;
  if (!isSameFile(arguments.input, output.path)) return claimGif(output, {&arguments.input, 1}, settings);
  OverwriteRules rules = output.rules;
  rules.ownFiles = true;
  return claim(output.path, rules, {}, settings);
}

OptimizedGif optimized(const Arguments& arguments, ByteView before, const Settings& settings) {
  ProgressBar bar("optimize", settings.quiet);
  try {
    return optimizedGif(before, {readOptions(Keep::allFrames, settings).strictness, arguments.strip},
                        bar.progress());
  } catch (const FormatError& error) {
    throw FileError(arguments.input, error.what());
  }
}

void run(const Arguments& arguments, const Settings& settings) {
  std::optional<OutputTarget> target = claimTarget(arguments, settings);
  if (!target) return;
  const Bytes before = readFile(arguments.input);
  const auto [after, warnings] = optimized(arguments, before, settings);
  warn(arguments.input, warnings, settings);
  target->write(after);
  if (settings.quiet || target->standardOutput()) return;
  const double saved = 100.0 - 100.0 * static_cast<double>(after.size()) / static_cast<double>(before.size());
  std::printf("%s: %zu bytes, before %zu; saved %.1f %%\n", target->path().c_str(), after.size(),
              before.size(), saved);
}

}  // namespace

void addOptimizeCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command =
      program.add_subcommand("optimize", "Make an animated GIF smaller without changing what it shows");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("GIF", arguments->input, "The animation")->required()->type_name("");
  addOutput(command, arguments->output, "The GIF to write; may be the same file");
  command->add_flag("--strip", arguments->strip,
                    "Leave out comments, XMP, colour profiles and what else applications keep in it");
  command->footer(
      "Examples:\n"
      "  dibkit optimize big.gif -o small.gif\n"
      "  dibkit optimize here.gif -o here.gif --strip");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
