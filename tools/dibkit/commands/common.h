#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "files/output.h"
#include "host/animation/gif_animation.h"
#include "host/errors.h"
#include "host/formats/formats.h"

/// \file
/// What several commands use.
namespace host {

/// Ends the program with status 1, after the message has been printed.
class AlreadySaid : public std::exception {};

/// Prints `dibkit: FILE: what` on standard error.
void complain(const FileError& error);

/// The options for reading files that follow from the settings.
ReadOptions readOptions(Keep keep, const Settings& settings);

/// Prints `dibkit: FILE: warning: what` on standard error for the first fault, and how many more there are.
void warn(const std::string& file, const std::vector<std::string>& faults, const Settings& settings);

/// Reads a file and warns of its faults. Throws FileError.
Animation readAnimation(const std::string& path, Keep keep, const Settings& settings);

/// Like readAnimation(), for a single picture or the first frame of an animation.
Picture readPicture(const std::string& path, const Settings& settings);

/// Like readPicture(), for a picture that will be scaled to the --size of a command. It may be reduced while
/// it is read, but not below that size. \param sides the wanted ones; 0 for a side that depends on the
/// picture
Picture readPictureFor(Size sides, const std::string& path, const Settings& settings);

/// Makes an option accept whole numbers from `minimum` to `maximum`.
void takeNumber(CLI::Option* option, std::int64_t minimum, std::int64_t maximum);

/// Makes an option accept a time in milliseconds, fractions included, up to ten minutes.
void takeMilliseconds(CLI::Option* option);

/// Warns when a delay is shorter than viewers can show and will be raised.
void warnOfShortDelay(const OutputTarget& output, double milliseconds, const Settings& settings);

/// The values of --loop and --once.
struct Repeats {
  std::optional<int> loop;
  bool once = false;

  /// The repetitions that are stored in a GIF: 0 for ever, nothing for an animation that plays once. Throws
  /// UsageError when both options are given.
  std::optional<int> count() const {
    if (once && loop) throw UsageError("--loop and --once exclude each other");
    return once ? std::nullopt : std::optional(loop.value_or(0));
  }
};

/// Adds --loop and --once.
void addRepeats(CLI::App* command, Repeats& repeats);

/// The values of -o, --force and --no-clobber.
struct Output {
  std::string path;
  OverwriteRules rules;
};

/// Adds --force and --no-clobber.
void addOverwriting(CLI::App* command, OverwriteRules& rules);

/// Adds -o with the given help, --force and --no-clobber.
void addOutput(CLI::App* command, Output& output, const std::string& help);

/// The target to write; nothing when the file exists and is kept, which is printed. Throws as OutputTarget
/// does. \param inputs the files that the command reads
std::optional<OutputTarget> claim(const std::string& path, const OverwriteRules& rules,
                                  std::span<const std::string> inputs, const Settings& settings);

/// Like claim(), for a GIF. Throws also FileError when its folder does not exist, and UsageError when the
/// ending is that of another format.
std::optional<OutputTarget> claimGif(const Output& output, std::span<const std::string> inputs,
                                     const Settings& settings);

/// Writes a GIF and prints a summary of it, unless it goes to standard output or --quiet is given. Throws
/// FileError, and Cancelled after Ctrl-C.
void writeAnimation(OutputTarget& output, const GifFile& file, const Settings& settings);

}  // namespace host
