#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include <dibkit.h>

#include "commands/commands.h"

namespace host {

namespace {

std::string_view nameOf(dibkit::AmountUnit unit) {
  switch (unit) {
    case dibkit::AmountUnit::degrees:
      return "degrees";
    case dibkit::AmountUnit::pixels:
      return "pixels";
    default:
      return "percent";
  }
}

void print(const dibkit::Effect& effect) {
  const std::string number = effect.number ? std::to_string(*effect.number) : "-";
  std::cout << std::right << std::setw(3) << number << "  " << std::left << std::setw(16) << effect.name
            << std::setw(9) << nameOf(effect.unit) << effect.title << '\n';
  int place = 0;
  for (const dibkit::EffectStyle& style : effect.styles) {
    std::cout << std::setw(11) << "" << std::setw(3) << place << std::setw(19) << style.name << style.title
              << (place == effect.defaultStyle ? " (usual)" : "") << '\n';
    ++place;
  }
}

void printTable() {
  std::string_view family;
  for (const dibkit::Effect& effect : dibkit::effects()) {
    if (family != effect.family) std::cout << (family.empty() ? "" : "\n") << effect.family << '\n';
    family = effect.family;
    print(effect);
  }
}

void printNames() {
  for (const dibkit::Effect& effect : dibkit::effects()) {
    if (effect.styles.empty()) std::cout << effect.name << '\n';
    for (const dibkit::EffectStyle& style : effect.styles)
      std::cout << effect.name << ' ' << style.name << '\n';
  }
}

}  // namespace

void addEffectsCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("effects", "List the effects and their styles");
  const auto namesOnly = std::make_shared<bool>(false);
  command->add_flag("--names", *namesOnly, "Only the names, an effect and a style in each line, for scripts");
  command->footer("Examples:\n  dibkit effects\n  dibkit effects --names");
  command->callback([namesOnly] { *namesOnly ? printNames() : printTable(); });
}

}  // namespace host
