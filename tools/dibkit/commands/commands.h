#pragma once

#include <CLI/CLI.hpp>

/// \file
/// The commands of the program, one source file each. Each function adds a command with its options and its
/// help. A command runs while the parser handles the arguments; errors are thrown through the parser.
namespace host {

/// The options that all commands share.
struct Settings {
  bool quiet = false;   ///< say nothing but errors
  bool strict = false;  ///< refuse files that are damaged
};

void addTransitionCommand(CLI::App& program, const Settings& settings);
void addConvertCommand(CLI::App& program, const Settings& settings);
void addGalleryCommand(CLI::App& program, const Settings& settings);
void addEffectsCommand(CLI::App& program);
void addInfoCommand(CLI::App& program, const Settings& settings);
void addOptimizeCommand(CLI::App& program, const Settings& settings);
void addRippleCommand(CLI::App& program, const Settings& settings);
void addSamplesCommand(CLI::App& program, const Settings& settings);

}  // namespace host
