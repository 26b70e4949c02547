#include "animation/transition.h"

#include <memory>
#include <string>
#include <vector>

#include "animation/changes.h"
#include "animation/fit.h"
#include "commands/common.h"
#include "errors.h"
#include "options.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::vector<std::string> pictures;
  std::string output;
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

Dither ditherNamed(const std::string& name) {
  if (name == "none") return Dither::none;
  if (name == "ordered") return Dither::ordered;
  throw UsageError(unknownName("dithering", name, {"none", "ordered"}));
}

std::vector<Picture> readPictures(const Arguments& arguments, const TransitionPlan& plan) {
  const Fit fit = fitNamed(arguments.fit);
  const Pixel background = parseColour(arguments.background);
  std::vector<Picture> pictures;
  Size size = arguments.size.empty() ? Size{} : parseSize(arguments.size);
  for (const std::string& path : arguments.pictures) {
    Picture picture = readPictureFile(path);
    if (size == Size{}) size = picture.size();
    requireRoomFor(size, countFrames(arguments.pictures.size(), plan));
    pictures.push_back(fitted(picture, size, fit, background));
    if (!arguments.matte.empty()) layOver(pictures.back(), parseColour(arguments.matte));
  }
  return pictures;
}

void run(const Arguments& arguments, const Settings& settings) {
  if (arguments.pictures.size() < 2) throw UsageError("a transition needs two pictures or more");
  TransitionPlan plan = arguments.plan;
  plan.chosen = chooseEffect(arguments.effect, arguments.style);
  plan.easing = easingNamed(arguments.easing);
  const Dither dither = ditherNamed(arguments.dither);
  const std::optional<int> loops = arguments.repeats.count();
  const std::vector<Picture> pictures = readPictures(arguments, plan);

  // Each frame counts when it is made and when it is stored.
  ProgressBar bar("transition", 2 * countFrames(pictures.size(), plan), settings.quiet);
  const auto step = [&bar] { bar.step(); };
  const GifFile file = gifOf(indexFrames(renderTransitions(pictures, plan, step), dither, step), loops);
  writeAnimation(arguments.output, file, settings);
}

}  // namespace

void addTransitionCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand(
      "transition", "Make an animated GIF of the transition from each picture to the next");
  const auto arguments = std::make_shared<Arguments>();
  command
      ->add_option("PICTURES", arguments->pictures, "Two pictures or more; of an animation the first frame")
      ->required()
      ->type_name("");
  command->add_option("-o,--output", arguments->output, "The GIF to write")->required()->type_name("FILE");
  const auto addName = [command](const char* option, std::string& value, const std::string& help) {
    command->add_option(option, value, help)->type_name("NAME")->capture_default_str();
  };
  addName("--effect", arguments->effect, "The effect; `dibkit effects` lists them");
  addName("--style", arguments->style, "The effect's style, by name or number");
  takeNumber(command->add_option("--frames", arguments->plan.frames, "Steps from one picture to the next"), 1,
             1000);
  takeMilliseconds(
      command->add_option("--delay", arguments->plan.delay, "How long a step shows, in milliseconds"));
  takeMilliseconds(
      command->add_option("--hold", arguments->plan.hold, "How long a picture shows, in milliseconds"));
  command->add_option("--size", arguments->size, "Size of the GIF; else that of the first picture")
      ->type_name("WxH");
  addName("--fit", arguments->fit, "Pictures of another shape: " + listed(fitNames()));
  command
      ->add_option("--background", arguments->background,
                   "Colour beside a picture that does not fill the GIF: #rrggbb or a name")
      ->type_name("COLOUR")
      ->capture_default_str();
  command
      ->add_option("--matte", arguments->matte, "Colour to lay under transparent pictures; else they stay so")
      ->type_name("COLOUR");
  addName("--easing", arguments->easing, "How it moves: " + listed(easingNames()));
  command->add_flag("--reverse", arguments->plan.reverse,
                    "Take the old picture away as the effect would bring it in");
  command->add_flag("--back", arguments->plan.back,
                    "Return to the first picture, so that the animation has no seam");
  addRepeats(command, arguments->repeats);
  addName("--dither", arguments->dither, "With more than 256 colours: none, ordered");
  command->footer(
      "Examples:\n"
      "  dibkit transition a.png b.png -o ab.gif\n"
      "  dibkit transition a.jpg b.jpg --effect slide --style left --easing ease-out -o ab.gif\n"
      "  dibkit transition a.png b.png c.png --size 640x360 --fit cover --back -o tour.gif\n"
      "  cat a.png | dibkit transition - b.png -o - > ab.gif");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
