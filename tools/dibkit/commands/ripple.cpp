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

#include "commands/common.h"
#include "files/files.h"
#include "host/animation/alpha.h"
#include "host/animation/canvas_frames.h"
#include "host/animation/fit.h"
#include "host/animation/timing.h"
#include "host/cancel.h"
#include "options.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::string picture;
  Output output;
  int frames = 40;
  double delay = 60;
  std::string size;
  int drops = 8;
  unsigned seed = 1;
  Repeats repeats;
};

/// A run of the water. Ends it on every way out, which the library leaves to its host.
class Water {
 public:
  explicit Water(const Picture& picture) : ripple_(picture.dib(), 0) { ripple_.StartToRipple(); }
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
  /// The next stage, over a picture of the size of the first one.
  Picture next(const Picture& picture) {
    ripple_.InitializeParams(picture.dib());
    return Picture(dibkit::OwnedDib(ripple_.NextToRipple()));
  }
  /// The same stage over another picture.
  Picture again(const Picture& picture) {
    ripple_.InitializeParams(picture.dib());
    return Picture(dibkit::OwnedDib(ripple_.GenerateRippleEffect(0, 0)));
  }

 private:
  CRippleEffect ripple_;
};

/// Renders water over pictures whose pixels are opaque or transparent. The library makes all of it opaque, so
/// what is transparent below shows under the same water in another picture: one that is blue where the first
/// is opaque, and equally green everywhere.
class OpacityBelowWater {
 public:
  explicit OpacityBelowWater(const Picture& picture) : blue_(picture.size()) {
    for (int y = 0; y < picture.height(); ++y) {
      const Pixel* from = picture.row(y);
      Pixel* to = blue_.row(y);
      for (int x = 0; x < picture.width(); ++x) to[x] = {from[x].alpha, level, 0, 255};
    }
  }

  /// Gives the frame, rendered just now, its transparent pixels.
  void putInto(Picture& frame, Water& water) const {
    const Picture rippled = water.again(blue_);
    for (int y = 0; y < frame.height(); ++y) {
      Pixel* to = frame.row(y);
      const Pixel* from = rippled.row(y);
      for (int x = 0; x < frame.width(); ++x) to[x].alpha = isOpaque(from[x]) ? 255 : 0;
    }
  }

 private:
  static constexpr BYTE level = 128;

  /// Light is added to green and blue, shadow taken from both; neither is ever as much as all blue.
  static bool isOpaque(const Pixel& lit) { return lit.green > level ? lit.blue == 255 : lit.blue > 0; }

  Picture blue_;
};

/// Starts and ends with the still picture: the water is as good as level after a second or two.
std::vector<Frame> rippleFrames(const Picture& picture, const Arguments& arguments, ProgressBar& bar) {
  HundredthsClock clock;
  std::vector<Frame> frames;
  frames.push_back({picture.clone(), clock.delayFor(arguments.delay)});
  const bool isOpaque = CDIB32::IsFullOpacity32BitsImage(picture.dib()) != 0;
  const std::optional<OpacityBelowWater> opacity =
      isOpaque ? std::nullopt : std::optional<OpacityBelowWater>(picture);
  Water water(picture);
  if (arguments.drops > 0) water.letFall(arguments.drops, arguments.seed, picture.size());
  for (int i = 0; i < arguments.frames; ++i) {
    throwIfCancelled();
    Picture frame = water.next(picture);
    if (opacity) opacity->putInto(frame, water);
    frames.push_back({std::move(frame), clock.delayFor(arguments.delay)});
    bar.progress().add(1.0 / (2 * arguments.frames + 1));
  }
  return frames;
}

void run(const Arguments& arguments, const Settings& settings) {
  const std::optional<int> loops = arguments.repeats.count();
  std::optional<OutputTarget> target = claimGif(arguments.output, {&arguments.picture, 1}, settings);
  if (!target) return;
  warnOfShortDelay(*target, arguments.delay, settings);
  const WantedSize wanted = parseSize(arguments.size);
  Picture picture = readPictureFor(wanted.sides(), arguments.picture, settings);
  picture = fitted(picture, wanted.of(picture.size()), Fit::cover, Pixel{});
  requireRoomFor(picture.size(), arguments.frames + 1);
  ditherAlpha(picture);
  ProgressBar bar("ripple", settings.quiet);
  const double share = 1.0 / (2 * arguments.frames + 1);
  const auto step = [&bar, share] { bar.progress().add(share); };
  const std::string comment = arguments.drops > 0
                                  ? "dibkit ripple --drops " + std::to_string(arguments.drops) + " --seed " +
                                        std::to_string(arguments.seed)
                                  : "";
  const CanvasAnimation animation = indexFrames(rippleFrames(picture, arguments, bar), Dither::none, step);
  writeAnimation(*target, gifOf(animation, loops, comment), settings);
}

}  // namespace

void addRippleCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("ripple", "Let drops fall on a picture as if it were water");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("PICTURE", arguments->picture, "The picture")->required()->type_name("");
  addOutput(command, arguments->output, "The GIF to write");
  takeNumber(command->add_option("--frames", arguments->frames, "How many frames the water moves"), 1, 1000);
  takeMilliseconds(
      command->add_option("--delay", arguments->delay, "How long a frame shows, in milliseconds"));
  takeNumber(
      command->add_option("--drops", arguments->drops,
                          "How many drops fall, at random places; 0: a grid of them, 100 pixels apart"),
      0, 1000);
  takeNumber(command->add_option("--seed", arguments->seed,
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
