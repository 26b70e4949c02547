#include "host/animation/transition.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "commands/common.h"
#include "files/files.h"
#include "host/animation/alpha.h"
#include "host/animation/fit.h"
#include "host/animation/gif_animation.h"
#include "host/errors.h"
#include "host/names.h"
#include "options.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::vector<std::string> pictures;
  Output output;
  std::string effect = "fade";
  std::string style;
  TransitionPlan plan;
  std::string size;
  std::string fit = "contain";
  std::string background = "black";
  std::string matte;
  std::string easing = "linear";
  Repeats repeats;
  std::string dither = "none";
};

std::vector<Picture> readPictures(const Arguments& arguments, const Settings& settings) {
  const Fit fit = fitNamed(arguments.fit);
  const Pixel background = parseColour(arguments.background);
  std::vector<Picture> pictures;
  const WantedSize wanted = parseSize(arguments.size);
  Size size;
  for (const std::string& path : arguments.pictures) {
    const Picture picture = readPictureFor(pictures.empty() ? wanted.sides() : size, path, settings);
    if (pictures.empty()) size = wanted.of(picture.size());
    requireGifSize(size);
    pictures.push_back(fitted(picture, size, fit, background));
    if (!arguments.matte.empty()) compositeOver(pictures.back(), parseColour(arguments.matte));
    ditherAlpha(pictures.back());
  }
  return pictures;
}

void run(const Arguments& arguments, const Settings& settings) {
  if (arguments.pictures.size() < 2) throw UsageError("a transition needs two pictures or more");
  TransitionPlan plan = arguments.plan;
  plan.chosen = chooseEffect(arguments.effect, arguments.style);
  plan.easing = easingNamed(arguments.easing);
  const GifOptions options{arguments.repeats.count(), {}, ditherNamed(arguments.dither)};
  std::optional<OutputTarget> target = claimGif(arguments.output, arguments.pictures, settings);
  if (!target) return;
  warnOfShortDelay(*target, plan.frames > 1 ? plan.delay : std::max(plan.hold, plan.delay), settings);
  const std::vector<Picture> pictures = readPictures(arguments, settings);

  ProgressBar bar("transition", settings.quiet);
  TransitionFrames frames(pictures, plan);
  writeAnimation(*target, gifOf(frames, options, bar.progress()), settings);
}

}  // namespace

void addTransitionCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand(
      "transition", "Make an animated GIF of the transition from each picture to the next");
  const auto arguments = std::make_shared<Arguments>();
  command
      ->add_option("PICTURES", arguments->pictures, "Two pictures or more; of an animation, the first frame")
      ->required()
      ->type_name("");
  addOutput(command, arguments->output, "The GIF to write");
  const auto addName = [command](const char* option, std::string& value, const std::string& help) {
    command->add_option(option, value, help)->type_name("NAME")->capture_default_str();
  };
  addName("--effect", arguments->effect, "The effect, by name or number; `dibkit effects` lists them");
  addName("--style", arguments->style, "The effect's style, by name or number");
  takeNumber(command->add_option("--frames", arguments->plan.frames, "Steps from one picture to the next"), 1,
             1000);
  takeMilliseconds(
      command->add_option("--delay", arguments->plan.delay, "How long a step shows, in milliseconds"));
  takeMilliseconds(command->add_option("--hold", arguments->plan.hold,
                                       "How long a picture shows, in milliseconds; never less than a step"));
  command
      ->add_option("--size", arguments->size,
                   "Size of the GIF: 640x360, 320x, x240 or 50%; else that of the first picture")
      ->type_name("WxH");
  addName("--fit", arguments->fit, "How pictures of another shape fill the GIF: " + listed(fitNames()));
  command
      ->add_option("--background", arguments->background,
                   "Colour beside a picture that does not fill the GIF: #rrggbb or a name")
      ->type_name("COLOUR")
      ->capture_default_str();
  command
      ->add_option("--matte", arguments->matte,
                   "Colour behind transparent pictures; else they stay so, with dots for what is translucent")
      ->type_name("COLOUR");
  addName("--easing", arguments->easing, "How it moves: " + listed(easingNames()));
  command->add_flag("--reverse", arguments->plan.reverse,
                    "Play the effect backwards: the old picture leaves as a new one would come");
  command->add_flag("--back", arguments->plan.back,
                    "Return to the first picture in the end, so that the animation repeats without a jump");
  addRepeats(command, arguments->repeats);
  addName("--dither", arguments->dither,
          "How to show more colours than the 256 of a GIF: " + listed(ditherNames()));
  command->footer(
      "Examples:\n"
      "  dibkit transition a.png b.png -o ab.gif\n"
      "  dibkit transition a.jpg b.jpg --effect slide --style left --easing ease-out -o ab.gif\n"
      "  dibkit transition a.png b.png c.png --size 640x360 --fit cover --back -o tour.gif\n"
      "  cat a.png | dibkit transition - b.png -o - > ab.gif");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
