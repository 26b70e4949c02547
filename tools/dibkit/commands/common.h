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
/// What several commands have in common.
namespace host {

/// Something failed that the user was told of; the program ends with status 1.
class AlreadySaid : public std::exception {};

/// Says `dibkit: FILE: what` on standard error.
void complain(const FileError& error);

/// How files are to be read by these settings.
ReadOptions readOptions(Keep keep, const Settings& settings);

/// Says `dibkit: FILE: warning: what` on standard error for the first of the faults and how many more there
/// are.
void warn(const std::string& file, const std::vector<std::string>& faults, const Settings& settings);

/// Reads a file and warns of its faults. Throws FileError.
Animation readAnimation(const std::string& path, Keep keep, const Settings& settings);

/// The same for the picture in a file, or its first frame.
Picture readPicture(const std::string& path, const Settings& settings);

/// The same for a picture that will be scaled to the --size of a command: it may come smaller than it is in
/// the file, but not smaller than that. \param sides those that do not depend on the picture, 0 for others
Picture readPictureFor(Size sides, const std::string& path, const Settings& settings);

/// The option takes whole numbers from `least` to `most`.
void takeNumber(CLI::Option* option, std::int64_t least, std::int64_t most);

/// The option takes a time in milliseconds, parts of one too, up to ten minutes.
void takeMilliseconds(CLI::Option* option);

/// Warns of a delay, in milliseconds, that a GIF cannot have.
void warnOfShortDelay(const OutputTarget& output, double milliseconds, const Settings& settings);

/// How often an animation is to repeat.
struct Repeats {
  std::optional<int> loop;
  bool once = false;

  /// As a GIF has it: 0 for ever, nothing for an animation that plays once.
  std::optional<int> count() const {
    if (once && loop) throw UsageError("--loop and --once exclude each other");
    return once ? std::nullopt : std::optional(loop.value_or(0));
  }
};

/// Adds --loop and --once.
void addRepeats(CLI::App* command, Repeats& repeats);

/// The file that a command writes, as the user named it.
struct Output {
  std::string path;
  OverwriteRules rules;
};

/// Adds --force and --no-clobber.
void addOverwriting(CLI::App* command, OverwriteRules& rules);

/// Adds -o with this help, and the two above.
void addOutput(CLI::App* command, Output& output, const std::string& help);

/// The target to write, or nothing when a file is left alone, which is said. Throws as OutputTarget does.
/// \param inputs the files that the command reads
std::optional<OutputTarget> claim(const std::string& path, const OverwriteRules& rules,
                                  std::span<const std::string> inputs, const Settings& settings);

/// The same for a GIF in a folder that exists. Throws UsageError when the name is that of another format.
std::optional<OutputTarget> claimGif(const Output& output, std::span<const std::string> inputs,
                                     const Settings& settings);

/// Writes a GIF and tells what is in it, unless it went to standard output or nobody wants to know. Throws
/// FileError, and Cancelled when the user pressed Ctrl-C before there was anything to write.
void writeAnimation(OutputTarget& output, const GifFile& file, const Settings& settings);

}  // namespace host
