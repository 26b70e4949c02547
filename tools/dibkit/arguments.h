#pragma once

#include <CLI/CLI.hpp>
#include <string>

/// \file
/// The words of the command line as such: what helps with them, and what is wrong with them.
namespace host {

/// Adds `help [COMMAND]`, which prints what --help does. Add it after all other commands.
void addHelpCommand(CLI::App& program);

/// What is wrong with arguments that the parser refused, in a line: the word that it does not know and the
/// one that was meant, or else the parser's own complaint.
std::string complaintAbout(const CLI::App& program, const CLI::ParseError& error);

}  // namespace host
