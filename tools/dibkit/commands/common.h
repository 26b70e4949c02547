#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "commands/commands.h"
#include "errors.h"
#include "formats/gif_writer.h"

/// \file
/// What several commands have in common.
namespace host {

/// Says `dibkit: FILE: what` on standard error.
void complain(const FileError& error);

/// The option takes whole numbers from `least` to `most`.
void takeNumber(CLI::Option* option, std::int64_t least, std::int64_t most);

/// The option takes a time in milliseconds, parts of one too, up to ten minutes.
void takeMilliseconds(CLI::Option* option);

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

/// Writes a GIF and tells what is in it, unless it went to standard output or nobody wants to know. Throws
/// FileError, and Cancelled when the user pressed Ctrl-C before there was anything to write.
void writeAnimation(const std::string& output, const GifFile& file, const Settings& settings);

}  // namespace host
