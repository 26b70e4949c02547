#include "arguments.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <vector>

#include "host/errors.h"
#include "host/names.h"

namespace host {

namespace {

std::vector<const CLI::App*> commandsOf(const CLI::App& program) {
  return program.get_subcommands([](const CLI::App*) { return true; });
}

/// The option that a misspelt one, given without its hyphens, resembles most; nothing when it resembles none.
std::optional<std::string> optionMeantBy(const std::string& word, std::vector<const CLI::App*> apps) {
  std::vector<std::string> known;
  for (const CLI::App* app : apps) {
    for (const CLI::Option* option : app->get_options()) {
      for (const std::string& letter : option->get_snames()) {
        if (sameName(letter, word)) return "-" + letter;
      }
      known.insert(known.end(), option->get_lnames().begin(), option->get_lnames().end());
    }
  }
  const std::optional<std::string> nearest = nearestName(word, known);
  return nearest ? std::optional("--" + *nearest) : std::nullopt;
}

std::string suggestion(const std::optional<std::string>& meant) {
  return meant ? "; did you mean '" + *meant + "'?" : "";
}

std::string unknownCommand(const CLI::App& program, const std::string& name) {
  std::vector<std::string> names;
  for (const CLI::App* command : commandsOf(program)) names.push_back(command->get_name());
  const std::optional<std::string> option = optionMeantBy(name, {&program});
  if (option && !nearestName(name, names))
    return "there is no command '" + name + "'" + suggestion(option) + " (dibkit --help says more)";
  return unknownName("command", name, names);
}

void printHelp(const CLI::App& program, const std::string& name) {
  if (name.empty()) {
    std::cout << program.get_formatter()->make_help(&program, program.get_name(), CLI::AppFormatMode::Normal);
    return;
  }
  for (const CLI::App* command : commandsOf(program)) {
    if (command->get_name() == name) {
      std::cout << command->help(program.get_name());
      return;
    }
  }
  throw UsageError(unknownCommand(program, name));
}

std::string complaintAboutOption(const CLI::App& program, const CLI::App& command, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  const std::string letters = name.substr(std::min(name.size(), name.find_first_not_of('-')));
  return "there is no option '" + name + "'" + suggestion(optionMeantBy(letters, {&command, &program}));
}

/// The message of the parser, reworded where it is hard to understand.
std::string complaintOfParser(const CLI::ParseError& error) {
  const std::string what = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return what;
  const std::string option = what.substr(0, what.find(':'));
  if (what.ends_with("missing")) return option + " needs a value";
  return what.find("At Most 1 ") != std::string::npos ? option + " may be given only once" : what;
}

}  // namespace

void addHelpCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("help", "Print the help of the program, or of a command");
  const auto name = std::make_shared<std::string>();
  command->add_option("COMMAND", *name, "The command")->type_name("");
  command->footer("Examples:\n  dibkit help\n  dibkit help transition");
  command->callback([&program, name] { printHelp(program, *name); });
}

std::string complaintAbout(const CLI::App& program, const CLI::ParseError& error) {
  const std::vector<const CLI::App*> commands =
      program.get_subcommands([](const CLI::App* command) { return command->parsed(); });
  const std::string hint =
      " (dibkit" + (commands.empty() ? "" : " " + commands.front()->get_name()) + " --help says more)";
  const std::vector<std::string> unknown = program.remaining(true);
  if (unknown.empty()) {
    if (commands.empty() && dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
      return "say which command" + hint;
    }
    return complaintOfParser(error) + hint;
  }
  const std::string& word = unknown.front();
  if (word.size() > 1 && word.starts_with('-')) {
    return complaintAboutOption(program, commands.empty() ? program : *commands.front(), word) + hint;
  }
  if (commands.empty()) return unknownCommand(program, word);
  return "'" + word + "' is one word too many" + hint;
}

}  // namespace host
