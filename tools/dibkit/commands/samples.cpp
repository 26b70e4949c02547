#include "samples/samples.h"

#include <cstdio>
#include <memory>
#include <string>

#include "commands/commands.h"
#include "formats/formats.h"
#include "options.h"

namespace host {

namespace {

struct Sample {
  const char* file;
  Picture (*draw)(Size);
};

constexpr Sample samples[] = {{"lake.png", drawLake}, {"dahlia.png", drawDahlia}};

void write(const std::string& folder, Size size, const Settings& settings) {
  makeFolder(folder);
  for (const Sample& sample : samples) {
    const std::string path = folder + "/" + sample.file;
    writeFile(path, writePng(sample.draw(size).dib()));
    if (!settings.quiet) std::printf("%s: %s\n", path.c_str(), toString(size).c_str());
  }
}

}  // namespace

void addSamplesCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("samples", "Draw two pictures to try the effects on");
  struct Arguments {
    std::string folder;
    std::string size = "480x320";
  };
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("DIR", arguments->folder, "The folder to write them to")->required()->type_name("");
  command->add_option("--size", arguments->size, "Size of the pictures")
      ->type_name("WxH")
      ->capture_default_str();
  command->footer("Example:\n  dibkit samples . && dibkit transition lake.png dahlia.png -o bloom.gif");
  command->callback(
      [arguments, &settings] { write(arguments->folder, parseSize(arguments->size), settings); });
}

}  // namespace host
