#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <dibkit.h>

#include "animation/changes.h"
#include "animation/fit.h"
#include "animation/timing.h"
#include "commands/common.h"
#include "interrupt.h"
#include "options.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::string picture;
  std::string output;
  int frames = 40;
  double delay = 60;
  std::string size;
  int drops = 8;
  unsigned seed = 1;
  Repeats repeats;
};

/// A run of the water over one picture. Ends it on every way out, which the library leaves to its host.
class Water {
 public:
  explicit Water(BITMAPINFOHEADER* picture) : ripple_(picture, 0) { ripple_.StartToRipple(); }
  Water(const Water&) = delete;
  Water& operator=(const Water&) = delete;
  ~Water() { ripple_.EndToRipple(); }

  /// Level water with drops at places that depend on the seed and the size only.
  void letFall(int drops, unsigned seed, Size size) {
    constexpr int height = 50;
    const int radius = std::clamp((std::min(size.width, size.height) - 4) / 2, 1, 20);
    ripple_.FlattenWater();
    std::srand(seed);
    for (int i = 0; i < drops; ++i) ripple_.HeightBlob(-1, -1, radius, height, 0);
  }
  Picture next() { return Picture(dibkit::OwnedDib(ripple_.NextToRipple())); }

 private:
  CRippleEffect ripple_;
};

/// Starts and ends with the still picture: the water is as good as level after a second or two.
std::vector<Frame> rippleFrames(const Picture& picture, const Arguments& arguments, ProgressBar& bar) {
  HundredthsClock clock;
  std::vector<Frame> frames;
  frames.push_back({picture.clone(), clock.delayFor(arguments.delay)});
  Water water(picture.dib());
  if (arguments.drops > 0) water.letFall(arguments.drops, arguments.seed, picture.size());
  const POINT corner{0, 0};
  for (int i = 0; i < arguments.frames; ++i) {
    throwIfInterrupted();
    Picture frame = water.next();
    // The library renders water opaque; where the picture is transparent there is none.
    CDIB32::TransformAlphaChannelBlock(frame.dib(), corner, picture.dib(), corner);
    frames.push_back({std::move(frame), clock.delayFor(arguments.delay)});
    bar.step();
  }
  return frames;
}

void run(const Arguments& arguments, const Settings& settings) {
  const std::optional<int> loops = arguments.repeats.count();
  Picture picture = readPictureFile(arguments.picture);
  if (!arguments.size.empty()) picture = fitted(picture, parseSize(arguments.size), Fit::cover, Pixel{});
  requireRoomFor(picture.size(), arguments.frames + 1);
  ProgressBar bar("ripple", 2 * arguments.frames + 1, settings.quiet);
  const auto step = [&bar] { bar.step(); };
  GifFile file = gifOf(indexFrames(rippleFrames(picture, arguments, bar), Dither::none, step), loops);
  if (arguments.drops > 0) {
    file.comment = "dibkit ripple --drops " + std::to_string(arguments.drops) + " --seed " +
                   std::to_string(arguments.seed);
  }
  writeAnimation(arguments.output, file, settings);
}

}  // namespace

void addRippleCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("ripple", "Let drops fall on a picture as if it were water");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("PICTURE", arguments->picture, "The picture")->required()->type_name("");
  command->add_option("-o,--output", arguments->output, "The GIF to write")->required()->type_name("FILE");
  takeNumber(command->add_option("--frames", arguments->frames, "Stages of the water"), 1, 1000);
  takeMilliseconds(command->add_option("--delay", arguments->delay, "How long each shows, in milliseconds"));
  takeNumber(
      command->add_option("--drops", arguments->drops, "Drops at random places; 0 for one every 100 pixels"),
      0, 1000);
  takeNumber(
      command->add_option("--seed", arguments->seed, "Which random places; stands in the GIF as a comment"),
      0, std::numeric_limits<unsigned>::max());
  command->add_option("--size", arguments->size, "Size of the GIF; else that of the picture")
      ->type_name("WxH");
  addRepeats(command, arguments->repeats);
  command->footer(
      "Examples:\n  dibkit ripple pond.jpg -o pond.gif\n  dibkit ripple pond.jpg --drops 3 --seed 7 -o "
      "pond.gif");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
