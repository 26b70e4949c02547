#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <string>

#include "arguments.h"
#include "commands/common.h"
#include "interrupt.h"

namespace {

enum ExitStatus { success = 0, failure = 1, wrongUsage = 2, cancelledByUser = 130 };

int complain(const std::string& what, ExitStatus status) {
  std::cerr << "dibkit: " << what << '\n';
  return status;
}

/// Output may fail as late as when it is flushed.
int finishOutput() {
  if (std::cout.flush() && std::fflush(stdout) == 0) return success;
  return complain(std::string("standard output: ") + std::strerror(errno), failure);
}

int run(int argc, char** argv) {
  host::Settings settings;
  CLI::App program(
      "Makes animated GIFs of transitions between pictures, makes GIFs smaller, converts pictures.",
      "dibkit");
  program.get_formatter()->label("SUBCOMMAND", "COMMAND");
  program.group("Commands");
  program.set_version_flag("-V,--version", "dibkit " DIBKIT_VERSION);
  program.add_flag("-q,--quiet", settings.quiet, "Say nothing but errors");
  program.add_flag("--strict", settings.strict,
                   "Refuse damaged files, which are otherwise used as far as they can be read");
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
      "`dibkit COMMAND --help` tells of a command; the options above go with all of them. A file named -\n"
      "is standard input or output. Pictures are PNG, JPEG, GIF, BMP or WebP files of up to 67 million\n"
      "pixels, or 268 million where a --size makes them small.");
  host::addTransitionCommand(program, settings);
  host::addOptimizeCommand(program, settings);
  host::addRippleCommand(program, settings);
  host::addConvertCommand(program, settings);
  host::addGalleryCommand(program, settings);
  host::addEffectsCommand(program);
  host::addInfoCommand(program, settings);
  host::addSamplesCommand(program, settings);
  host::addHelpCommand(program);
  try {
    program.parse(argc, argv);
    return finishOutput();
  } catch (const CLI::ParseError& error) {
    // --help and --version are exceptions of the parser too.
    if (error.get_exit_code() != 0) return complain(host::complaintAbout(program, error), wrongUsage);
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
