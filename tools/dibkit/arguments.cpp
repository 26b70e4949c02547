#include "arguments.h"

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

std::string unknownCommand(const CLI::App& program, const std::string& name) {
  std::vector<std::string> names;
  for (const CLI::App* command : commandsOf(program)) names.push_back(command->get_name());
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
  std::vector<std::string> known;
  for (const CLI::App* app : {&command, &program}) {
    for (const CLI::Option* option : app->get_options()) {
      known.insert(known.end(), option->get_lnames().begin(), option->get_lnames().end());
    }
  }
  const std::optional<std::string> nearest = nearestName(name.substr(name.find_first_not_of('-')), known);
  return "there is no option '" + name + "'" + (nearest ? "; did you mean '--" + *nearest + "'?" : "");
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
    const std::string what = error.what();
    if (commands.empty() && dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
      return "say which command" + hint;
    }
    const bool noValue =
        dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr && what.ends_with("missing");
    return (noValue ? what.substr(0, what.find(':')) + " needs a value" : what) + hint;
  }
  const std::string& word = unknown.front();
  if (word.size() > 1 && word.starts_with('-')) {
    return complaintAboutOption(program, commands.empty() ? program : *commands.front(), word) + hint;
  }
  if (commands.empty()) return unknownCommand(program, word);
  return "'" + word + "' is one word too many" + hint;
}

}  // namespace host
