#include "frames.h"
#include "module.h"

namespace binding {

namespace {

/// Water over a picture, which it keeps alive. Python calls it from one thread at a time: the interpreter's
/// lock is not enough, since it is released while the water moves.
class Ripple : public Zeroed {
 public:
  explicit Ripple(py::object picture)
      : picture_(std::move(picture)), water_(requireImage(picture_, 32).dib(), 0) {
    const Image& image = requireImage(picture_, 32);
    require(image.width() > 0 && image.height() > 0, "the picture has no pixels");
    water_.StartToRipple();
  }
  Ripple(const Ripple&) = delete;
  Ripple& operator=(const Ripple&) = delete;
  ~Ripple() { water_.EndToRipple(); }

  /// Calls work(water) alone; `random` while nothing else draws from the C library's generator.
  template <class Work>
  auto with(Work&& work, bool random = false) {
    const auto generator =
        random ? std::unique_lock(generatorGuard()) : std::unique_lock<std::recursive_mutex>();
    const std::lock_guard lock(guard_);
    return work(water_);
  }

 private:
  py::object picture_;
  CRippleEffect water_;
  std::mutex guard_;
};

/// A page of the height field by its name.
int pageOf(Number<0, 1> page) { return static_cast<int>(page.value); }

}  // namespace

void defineRipples(py::module_& module) {
  const py::call_guard<py::gil_scoped_release> unlocked;
  py::class_<Ripple>(module, "Ripple",
                     R"(Water over a picture: drops raise it, and it moves on as a damped wave.

    Parameters
    ----------
    picture : Image of 32 bits
        Seen through the water; has drops every 100 pixels at the start (`flatten` makes the water level).)")
      .def(py::init<py::object>(), py::arg("picture"))
      .def(
          "drop",
          [](Ripple& self, POINT at, Number<0, INT32_MAX> radius, Integer height, Number<0, 1> page) {
            self.with(
                [&](CRippleEffect& water) { water.HeightBlob(at.x, at.y, radius, height, pageOf(page)); },
                at.x < 0 || at.y < 0);
          },
          py::arg("at"), py::arg("radius") = 20, py::arg("height") = 50, py::arg("page") = 0, unlocked,
          "Add a disc to a page of the height field; a negative coordinate is chosen at random.")
      .def(
          "step",
          [](Ripple& self, Number<0, 1> page, Number<0, 31> density, bool rounder) {
            self.with([&](CRippleEffect& water) {
              if (rounder) {
                water.CalcWaterBigFilter(pageOf(page), density);
              } else {
                water.CalcWater(pageOf(page), density);
              }
            });
          },
          py::arg("page"), py::arg("density") = 5, py::arg("rounder") = false, unlocked,
          "One wave step, which writes a page; the wave loses its height divided by 2 to the power of "
          "`density`. "
          "`rounder` takes 5 x 5 cells instead of 3 x 3.")
      .def(
          "flatten", [](Ripple& self) { self.with([](CRippleEffect& water) { water.FlattenWater(); }); },
          unlocked, "Make the water level.")
      .def(
          "render",
          [](Ripple& self) {
            return self.with([](CRippleEffect& water) { return made(water.GenerateRippleEffect(0, 0)); });
          },
          unlocked, "The picture through the first page of the water: a new image of 32 bits.")
      .def(
          "next",
          [](Ripple& self) {
            return self.with([](CRippleEffect& water) { return made(water.NextToRipple()); });
          },
          unlocked, "Move on by four wave steps, and render.");
  for (const auto& [name, interface] :
       {std::pair("Ripple", "CRippleEffect::StartToRipple, EndToRipple, InitializeParams"),
        {"Ripple.drop", "CRippleEffect::HeightBlob"},
        {"Ripple.step", "CRippleEffect::CalcWater, CalcWaterBigFilter"},
        {"Ripple.flatten", "CRippleEffect::FlattenWater"},
        {"Ripple.render", "CRippleEffect::GenerateRippleEffect"},
        {"Ripple.next", "CRippleEffect::NextToRipple"}}) {
    remember(module, name, interface);
  }
  define(
      module,
      {"ripple_picture", "GenerateRippleEffect, CRippleEffect::GenerateRippleEffect",
       "Show a picture under a small drop at its centre and drops every 100 pixels, after `rounds` of four "
       "wave steps.",
       "A new image of 32 bits."},
      [](Image32 image, Number<0, INT32_MAX> rounds) {
        require(image->width() > 0 && image->height() > 0, "the picture has no pixels");
        return made(GenerateRippleEffect(image, rounds));
      },
      arg("image"), arg("rounds") = 10);
}

}  // namespace binding
