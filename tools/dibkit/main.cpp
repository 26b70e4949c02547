#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "commands/common.h"
#include "interrupt.h"
#include "options.h"

namespace {

enum ExitStatus { success = 0, failure = 1, wrongUsage = 2, cancelledByUser = 130 };

int complain(const std::string& what, ExitStatus status) {
  std::cerr << "dibkit: " << what << '\n';
  return status;
}

/// What was said on standard output may not have got there.
int finishOutput() {
  if (std::cout.flush() && std::fflush(stdout) == 0) return success;
  return complain(std::string("standard output: ") + std::strerror(errno), failure);
}

int complainAboutArguments(const CLI::App& program, const CLI::ParseError& error) {
  const std::vector<const CLI::App*> commands =
      program.get_subcommands([](const CLI::App* command) { return command->parsed(); });
  const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
  const bool commandIsMissing =
      commands.empty() && dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
  const std::string what = commandIsMissing ? "say which command" : error.what();
  return complain(what + " (dibkit" + command + " --help says more)", wrongUsage);
}

/// The parser would only say that a command is missing.
void requireKnownCommand(const CLI::App& program, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  if (std::find(names.begin(), names.end(), word) == names.end()) {
    throw host::UsageError(host::unknownName("command", word, names));
  }
}

int run(int argc, char** argv) {
  host::Settings settings;
  CLI::App program("Makes animated GIFs of transitions between pictures, and other things with pictures.",
                   "dibkit");
  program.set_version_flag("--version", "dibkit " DIBKIT_VERSION);
  program.add_flag("-q,--quiet", settings.quiet, "Say nothing but errors");
  program.require_subcommand(1);
  program.fallthrough();
  program.footer(
      "Examples:\n"
      "  dibkit transition morning.jpg evening.jpg -o day.gif\n"
      "  dibkit transition a.png b.png c.png --effect spread --style circle --back -o abc.gif\n"
      "  dibkit optimize day.gif -o smaller.gif\n"
      "  dibkit ripple pond.jpg -o waves.gif\n"
      "  dibkit gallery pages\n"
      "  dibkit convert photo.jpg --bits 8 -o photo.bmp\n"
      "  dibkit effects\n"
      "  dibkit info day.gif\n"
      "\n"
      "Reads PNG, JPEG, GIF, BMP and WebP. A file named - is standard input or output.");
  host::addTransitionCommand(program, settings);
  host::addOptimizeCommand(program, settings);
  host::addRippleCommand(program, settings);
  host::addConvertCommand(program, settings);
  host::addGalleryCommand(program, settings);
  host::addEffectsCommand(program);
  host::addInfoCommand(program);
  host::addSamplesCommand(program, settings);
  try {
    if (argc > 1 && argv[1][0] != '-') requireKnownCommand(program, argv[1]);
    program.parse(argc, argv);
    return finishOutput();
  } catch (const CLI::ParseError& error) {
    // Help and version come this way too.
    if (error.get_exit_code() != 0) return complainAboutArguments(program, error);
    program.exit(error);
    return finishOutput();
  } catch (const host::UsageError& error) {
    return complain(error.what(), wrongUsage);
  } catch (const host::FileError& error) {
    host::complain(error);
    return failure;
  } catch (const host::AlreadySaid&) {
    return failure;
  } catch (const host::Cancelled&) {
    return complain("cancelled", cancelledByUser);
  } catch (const std::bad_alloc&) {
    return complain("not enough memory", failure);
  } catch (const std::exception& error) {
    return complain(error.what(), failure);
  }
}

}  // namespace

int main(int argc, char** argv) {
  host::catchInterrupts();
  return run(argc, argv);
}
