#include "host/animation/ripple.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include <dibkit.h>

#include "host/animation/timing.h"

namespace host {

namespace {

/// A run of the water. The library leaves it to its host to end a run.
class WaterRun {
 public:
  explicit WaterRun(const Picture& picture) : ripple_(picture.dib(), 0) { ripple_.StartToRipple(); }
  WaterRun(const WaterRun&) = delete;
  WaterRun& operator=(const WaterRun&) = delete;
  ~WaterRun() { ripple_.EndToRipple(); }

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

/// The alpha of a picture under water, whose pixels are opaque or transparent. The library renders all pixels
/// opaque. So the same water is rendered over a second picture as well, whose blue is the alpha of the first
/// and whose green is the same everywhere.
class AlphaUnderWater {
 public:
  explicit AlphaUnderWater(const Picture& picture) : blue_(picture.size()) {
    for (int y = 0; y < picture.height(); ++y) {
      const Pixel* from = picture.row(y);
      Pixel* to = blue_.row(y);
      for (int x = 0; x < picture.width(); ++x) to[x] = {from[x].alpha, level, 0, 255};
    }
  }

  /// Sets the alpha of the frame that was rendered last.
  void putInto(Picture& frame, WaterRun& water) const {
    const Picture rippled = water.again(blue_);
    for (int y = 0; y < frame.height(); ++y) {
      Pixel* to = frame.row(y);
      const Pixel* from = rippled.row(y);
      for (int x = 0; x < frame.width(); ++x) to[x].alpha = isOpaque(from[x]) ? 255 : 0;
    }
  }

 private:
  static constexpr BYTE level = 128;

  /// Light is added to green and blue, shadow subtracted from both; neither amounts to 255.
  static bool isOpaque(const Pixel& lit) { return lit.green > level ? lit.blue == 255 : lit.blue > 0; }

  Picture blue_;
};

}  // namespace

class RippleFrames::Water {
 public:
  Water(const Picture& picture, const RipplePlan& plan) : picture_(&picture), run_(picture) {
    if (CDIB32::IsFullOpacity32BitsImage(picture.dib()) == 0) alpha_.emplace(picture);
    if (plan.drops > 0) run_.letFall(plan.drops, plan.seed, picture.size());
  }

  Picture next() {
    Picture frame = run_.next(*picture_);
    if (alpha_) alpha_->putInto(frame, run_);
    return frame;
  }

 private:
  const Picture* picture_;
  WaterRun run_;
  std::optional<AlphaUnderWater> alpha_;
};

RippleFrames::RippleFrames(const Picture& picture, const RipplePlan& plan) : picture_(&picture), plan_(plan) {
  HundredthsClock clock;
  for (int i = 0; i < count(); ++i) delays_.push_back(clock.delayFor(plan.delay));
}

RippleFrames::~RippleFrames() = default;

RenderedFrame RippleFrames::render(int frame) {
  if (frame == 0) {
    water_.reset();
    water_ = std::make_unique<Water>(*picture_, plan_);
    return {picture_->clone(), picture_, {}};
  }
  return {water_->next(), nullptr, {}};
}

}  // namespace host
