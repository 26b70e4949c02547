#include <algorithm>
#include <cmath>

#include "frames.h"
#include "host/animation/alpha.h"
#include "host/animation/fit.h"
#include "host/animation/ripple.h"
#include "host/animation/timing.h"
#include "host/animation/transition.h"
#include "host/errors.h"

namespace binding {

namespace {

using Pictures = std::shared_ptr<std::vector<host::Picture>>;

/// Frames that are given.
class StoredFrames : public host::FrameSource {
 public:
  StoredFrames(Pictures pictures, std::vector<int> delays)
      : pictures_(std::move(pictures)), delays_(std::move(delays)) {}

  host::Size size() const override { return pictures_->front().size(); }
  int count() const override { return static_cast<int>(delays_.size()); }
  int delay(int frame) const override { return delays_[static_cast<std::size_t>(frame)]; }
  bool needsOrder() const override { return false; }
  host::RenderedFrame render(int frame) override {
    return {(*pictures_)[static_cast<std::size_t>(frame)].clone(), nullptr, {}};
  }

 private:
  Pictures pictures_;
  std::vector<int> delays_;
};

void requireGifSize(host::Size size) {
  constexpr int most = 65535;
  if (std::max(size.width, size.height) > most)
    refuse(host::toString(size) + " pixels are more than a GIF can have");
}

void requireMilliseconds(double time) {
  require(time >= 0 && time <= 600000, "a time is from 0 to 600,000 milliseconds");
}

/// What a picture has to become before it is animated: of one size with the others, and opaque or
/// transparent.
struct Preparation {
  std::optional<SIZE> size;
  std::string fit;
  Colour background;
  std::optional<Colour> matte;
};

host::Pixel opaque(const Colour& colour) { return {colour.blue, colour.green, colour.red, 255}; }

Pictures prepared(const std::vector<AnyImage>& images, const Preparation& how) {
  const host::Fit fit = host::fitNamed(how.fit);
  auto pictures = std::make_shared<std::vector<host::Picture>>();
  for (const AnyImage& image : images) {
    host::Picture picture = pictureOf(*image.image);
    host::Size size = pictures->empty() ? picture.size() : pictures->front().size();
    if (how.size) size = {static_cast<int>(how.size->cx), static_cast<int>(how.size->cy)};
    host::requireUsableSize(size.width, size.height);
    requireGifSize(size);
    pictures->push_back(host::fitted(picture, size, fit, opaque(how.background)));
    if (how.matte) host::compositeOver(pictures->back(), opaque(*how.matte));
    host::ditherAlpha(pictures->back());
  }
  return pictures;
}

/// A curve by its name, or a function of Python.
host::Easing easingFrom(const py::object& easing) {
  if (py::isinstance<py::str>(easing)) return host::easingNamed(py::cast<std::string>(easing));
  if (PyCallable_Check(easing.ptr()) == 0) throw py::type_error("an easing is a name or a function");
  return [easing](double time) {
    const double progress = py::cast<double>(easing(time));
    require(progress >= -1e6 && progress <= 1e6, "an easing gives a number from 0 to 1, or a little beyond");
    return progress;
  };
}

std::unique_ptr<Frames> transitionFrames(const std::vector<AnyImage>& images, const std::string& effect,
                                         const std::string& style, int frames, double delay, double hold,
                                         const py::object& easing, bool reverse, bool back,
                                         std::optional<SIZE> size, const std::string& fit, Colour background,
                                         std::optional<Colour> matte) {
  require(images.size() >= 2, "a transition needs two pictures or more");
  require(frames >= 1 && frames <= 1000, "a transition has 1 to 1000 frames");
  requireMilliseconds(delay);
  requireMilliseconds(hold);
  host::TransitionPlan plan;
  plan.chosen = host::chooseEffect(effect, style);
  // The curve of a Python function is read off here, at the places that the plan will ask for.
  const host::Easing curve = easingFrom(easing);
  std::vector<double> stages;
  for (int k = 0; k <= frames; ++k) stages.push_back(curve(static_cast<double>(k) / frames));
  plan.easing = [stages, frames](double time) {
    return stages[static_cast<std::size_t>(std::lround(time * frames))];
  };
  plan.frames = frames;
  plan.delay = delay;
  plan.hold = hold;
  plan.reverse = reverse;
  plan.back = back;
  const py::gil_scoped_release unlocked;
  const Pictures pictures = prepared(images, {size, fit, background, matte});
  const auto make = [pictures, plan] { return std::make_unique<host::TransitionFrames>(*pictures, plan); };
  return std::make_unique<Frames>(make, plan.chosen.effect->drawsRandomNumbers, false);
}

std::unique_ptr<Frames> rippleFrames(const AnyImage& image, int frames, double delay, int drops,
                                     unsigned seed, std::optional<SIZE> size) {
  require(frames >= 1 && frames <= 1000, "a ripple has 1 to 1000 frames");
  require(drops >= 0 && drops <= 1000, "0 to 1000 drops can fall");
  requireMilliseconds(delay);
  const py::gil_scoped_release unlocked;
  const Pictures pictures = prepared({image}, {size, "cover", {}, {}});
  const host::RipplePlan plan{frames, delay, drops, seed};
  const auto make = [pictures, plan] {
    return std::make_unique<host::RippleFrames>(pictures->front(), plan);
  };
  return std::make_unique<Frames>(make, true, true);
}

std::unique_ptr<Frames> storedFrames(const std::vector<AnyImage>& images, const std::vector<int>& delays) {
  require(!images.empty(), "an animation needs a frame");
  require(images.size() == delays.size(), "an animation needs a delay for each frame");
  for (const AnyImage& image : images) {
    require(image->width() == images[0]->width() && image->height() == images[0]->height(),
            "the frames of an animation have one size");
  }
  for (const int delay : delays)
    require(delay >= 0 && delay <= 65535, "a delay is from 0 to 655,350 milliseconds");
  const py::gil_scoped_release unlocked;
  const Pictures pictures = prepared(images, {{}, "stretch", {}, {}});
  const auto make = [pictures, delays] { return std::make_unique<StoredFrames>(pictures, delays); };
  return std::make_unique<Frames>(make, false, false);
}

/// Milliseconds as a GIF counts: hundredths of a second, no less than two of them.
std::vector<int> hundredths(const std::vector<double>& milliseconds) {
  host::HundredthsClock clock;
  std::vector<int> delays;
  for (const double time : milliseconds) {
    requireMilliseconds(time);
    delays.push_back(clock.delayFor(time));
  }
  return delays;
}

}  // namespace

void defineAnimations(py::module_& module) {
  py::class_<Frames> frames(module, "Frames", "The frames of an animation, rendered when they are needed.",
                            py::custom_type_setup(refuseNew));
  frames.def("__len__", &Frames::count)
      .def_property_readonly(
          "size", [](const Frames& self) { return std::pair(self.size().width, self.size().height); })
      .def_property_readonly("delays", &Frames::delays, "In hundredths of a second.")
      .def(
          "render",
          [](Frames& self, int frame) {
            require(frame >= 0 && frame < self.count(), "there is no such frame");
            return self.render(frame);
          },
          py::arg("frame"), py::call_guard<py::gil_scoped_release>());
  defineGifs(module, frames);
  module.def("transition_frames", &transitionFrames, py::arg("images"), py::arg("effect"), py::arg("style"),
             py::arg("frames"), py::arg("delay"), py::arg("hold"), py::arg("easing"), py::arg("reverse"),
             py::arg("back"), py::arg("size"), py::arg("fit"), py::arg("background"), py::arg("matte"));
  module.def(
      "ripple_frames",
      [](const AnyImage& image, int count, double delay, int drops, Number<0, UINT32_MAX> seed,
         std::optional<SIZE> size) { return rippleFrames(image, count, delay, drops, seed, size); },
      py::arg("image"), py::arg("frames"), py::arg("delay"), py::arg("drops"), py::arg("seed"),
      py::arg("size"));
  module.def("stored_frames", &storedFrames, py::arg("images"), py::arg("delays"));
  module.def("hundredths", &hundredths, py::arg("milliseconds"),
             "Milliseconds as hundredths of a second, no less than two; what rounding takes from one the "
             "next gets.");
  module.def("easings", &host::easingNames, "The names of the curves that a transition can follow.");
  module.def("fits", &host::fitNames, "The names of the ways to fit a picture into a frame.");
}

}  // namespace binding
