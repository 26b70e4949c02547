#pragma once

#include <CLI/CLI.hpp>
#include <string>

/// \file
/// The help command, and messages about arguments that the parser refuses.
namespace host {

/// Adds `help [COMMAND]`, which prints the same as --help. Call it after all other commands have been added.
void addHelpCommand(CLI::App& program);

/// A message of one line for arguments that the parser refused: the first unknown word with the nearest known
/// one, or else what the parser says.
std::string complaintAbout(const CLI::App& program, const CLI::ParseError& error);

}  // namespace host
