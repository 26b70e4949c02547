#include "host/animation/ripple.h"

#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "commands/common.h"
#include "files/files.h"
#include "host/animation/alpha.h"
#include "host/animation/fit.h"
#include "host/animation/gif_animation.h"
#include "options.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::string picture;
  Output output;
  RipplePlan plan;
  std::string size;
  Repeats repeats;
};

void run(const Arguments& arguments, const Settings& settings) {
  const RipplePlan& plan = arguments.plan;
  GifOptions options{arguments.repeats.count()};
  std::optional<OutputTarget> target = claimGif(arguments.output, {&arguments.picture, 1}, settings);
  if (!target) return;
  warnOfShortDelay(*target, plan.delay, settings);
  const WantedSize wanted = parseSize(arguments.size);
  Picture picture = readPictureFor(wanted.sides(), arguments.picture, settings);
  picture = fitted(picture, wanted.of(picture.size()), Fit::cover, Pixel{});
  requireGifSize(picture.size());
  ditherAlpha(picture);
  if (plan.drops > 0) {
    options.comment =
        "dibkit ripple --drops " + std::to_string(plan.drops) + " --seed " + std::to_string(plan.seed);
  }
  ProgressBar bar("ripple", settings.quiet);
  RippleFrames frames(picture, plan);
  writeAnimation(*target, gifOf(frames, options, bar.progress()), settings);
}

}  // namespace

void addRippleCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("ripple", "Let drops fall on a picture as if it were water");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("PICTURE", arguments->picture, "The picture")->required()->type_name("");
  addOutput(command, arguments->output, "The GIF to write");
  takeNumber(command->add_option("--frames", arguments->plan.frames, "How many frames the water moves"), 1,
             1000);
  takeMilliseconds(
      command->add_option("--delay", arguments->plan.delay, "How long a frame shows, in milliseconds"));
  takeNumber(
      command->add_option("--drops", arguments->plan.drops,
                          "How many drops fall, at random places; 0: a grid of them, 100 pixels apart"),
      0, 1000);
  takeNumber(command->add_option("--seed", arguments->plan.seed,
                                 "Chooses the random places; the GIF keeps it in a comment"),
             0, std::numeric_limits<unsigned>::max());
  command
      ->add_option("--size", arguments->size,
                   "Size of the GIF: 640x360, 320x, x240 or 50%; else that of the picture")
      ->type_name("WxH");
  addRepeats(command, arguments->repeats);
  command->footer(
      "Examples:\n  dibkit ripple pond.jpg -o pond.gif\n  dibkit ripple pond.jpg --drops 3 --seed 7 -o "
      "pond.gif");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
