#include "host/samples/samples.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/common.h"
#include "files/files.h"
#include "host/formats/formats.h"
#include "options.h"

namespace host {

namespace {

struct Sample {
  const char* file;
  Picture (*draw)(Size);
};

constexpr Sample samples[] = {{"lake.png", drawLake}, {"dahlia.png", drawDahlia}};

struct Arguments {
  std::string folder;
  OverwriteRules rules;
  std::string size;
};

void run(const Arguments& arguments, const Settings& settings) {
  const Size size = parseSize(arguments.size).of({480, 320});
  makeFolder(arguments.folder);
  std::vector<std::optional<OutputTarget>> targets;
  for (const Sample& sample : samples) {
    targets.push_back(claim(arguments.folder + "/" + sample.file, arguments.rules, {}, settings));
  }
  for (std::size_t i = 0; i < targets.size(); ++i) {
    if (!targets[i]) continue;
    targets[i]->write(writePng(samples[i].draw(size).dib()));
    if (!settings.quiet) std::printf("%s: %s\n", targets[i]->path().c_str(), toString(size).c_str());
  }
}

}  // namespace

void addSamplesCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("samples", "Draw two pictures to try the effects on");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("DIR", arguments->folder, "The folder to write them to")->required()->type_name("");
  command
      ->add_option("--size", arguments->size,
                   "Size of the pictures: 640x360, 320x, x240 or 50%; else 480x320")
      ->type_name("WxH");
  addOverwriting(command, arguments->rules);
  command->footer("Example:\n  dibkit samples . && dibkit transition lake.png dahlia.png -o bloom.gif");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
