#include "frames.h"
#include "module.h"
#include "progress.h"

namespace binding {

namespace {

/// Holds the C library's generator while an effect draws from it. The interpreter's lock is not held here.
std::unique_lock<std::recursive_mutex> lockFor(bool drawsRandomNumbers) {
  return drawsRandomNumbers ? std::unique_lock(generatorGuard()) : std::unique_lock<std::recursive_mutex>();
}

bool drawsRandomNumbers(int effect) {
  for (const dibkit::Effect& known : dibkit::effects()) {
    if (known.number == effect) return known.drawsRandomNumbers;
  }
  return false;
}

int styleOf(const dibkit::Effect& effect, const std::optional<std::string>& name) {
  if (!name) return effect.defaultStyle;
  const int style = dibkit::findStyle(effect, *name);
  if (style < 0) refuse("'" + std::string(effect.name) + "' has no style '" + *name + "'");
  return style;
}

void requireOneSize(const Image32& a, const Image32& b) {
  require(a->width() == b->width() && a->height() == b->height(), "the pictures have one size");
  require(a->width() > 0 && a->height() > 0, "the pictures have no pixels");
}

Image frameOf(const dibkit::Effect& effect, const Image32& first, const Image32& second, double progress,
              const std::optional<std::string>& style) {
  requireOneSize(first, second);
  require(progress >= -1e9 && progress <= 1e9, "the progress goes from 0 to 1");
  const int number = styleOf(effect, style);
  const auto alone = lockFor(effect.drawsRandomNumbers);
  return made(effect.frame(second, first, number, progress));
}

std::vector<std::string> stylesOf(const dibkit::Effect& effect) {
  std::vector<std::string> names;
  for (const dibkit::EffectStyle& style : effect.styles) names.emplace_back(style.name);
  return names;
}

const char* unitOf(const dibkit::Effect& effect) {
  switch (effect.unit) {
    case dibkit::AmountUnit::percent:
      return "percent";
    case dibkit::AmountUnit::degrees:
      return "degrees";
    case dibkit::AmountUnit::pixels:
      return "pixels";
  }
  return "";
}

void defineEffect(py::module_& module) {
  using dibkit::Effect;
  py::class_<Effect, std::unique_ptr<Effect, py::nodelete>>(
      module, "Effect", "A transition of the catalogue.", py::custom_type_setup(refuseNew))
      .def_property_readonly(
          "name", [](const Effect& self) { return std::string(self.name); },
          "For `transition`: lower case, words joined by hyphens.")
      .def_property_readonly(
          "title", [](const Effect& self) { return std::string(self.title); }, "For people.")
      .def_property_readonly(
          "family", [](const Effect& self) { return std::string(self.family); },
          "Heading for a group of similar effects.")
      .def_property_readonly("styles", &stylesOf, "Names of the ways in which it may run.")
      .def_property_readonly(
          "default_style",
          [](const Effect& self) -> std::optional<std::string> {
            if (self.styles.empty()) return std::nullopt;
            return self.styles[static_cast<std::size_t>(self.defaultStyle)].name;
          },
          "None for an effect without styles.")
      .def_property_readonly(
          "number", [](const Effect& self) { return self.number; },
          "For `effect_piece`; None for a transition of whole frames.")
      .def_property_readonly("unit", &unitOf,
                             "What its amounts count: \"percent\", \"degrees\" or \"pixels\".")
      .def_property_readonly(
          "draws_random_numbers", [](const Effect& self) { return self.drawsRandomNumbers; },
          "Frames of such effects are made one at a time.")
      .def_property_readonly(
          "overshoots", [](const Effect& self) { return self.overshoots; },
          "Whether `frame` takes progress beyond the ends, from -1 to 2.")
      .def("frame", &frameOf, py::arg("first"), py::arg("second"), py::arg("progress"),
           py::arg("style") = py::none(), py::call_guard<py::gil_scoped_release>(),
           "The frame between two pictures of 32 bits and one size, at a progress of 0.0 (`first`) to 1.0 "
           "(`second`).")
      .def(
          "parameters",
          [](const Effect& self, double progress, SIZE picture, const std::optional<std::string>& style) {
            require(picture.cx > 0 && picture.cy > 0, "the picture has no pixels");
            require(progress >= -1e9 && progress <= 1e9, "the progress goes from 0 to 1");
            const dibkit::EffectParameters values = self.parameters(progress, picture, styleOf(self, style));
            return std::tuple(values.a, values.b);
          },
          py::arg("progress"), py::arg("size"), py::arg("style") = py::none(),
          "The numbers a and b of `effect_piece` at a progress, for a picture of the size (width, height).")
      .def("__repr__", [](const Effect& self) { return "<dibkit.Effect " + std::string(self.name) + ">"; })
      .def("__reduce__", [module](const Effect& self) {
        return py::make_tuple(module.attr("find_effect"), py::make_tuple(self.name));
      });
}

}  // namespace

void defineEffects(py::module_& module) {
  defineEffect(module);
  module.def(
      "effects",
      [] {
        std::vector<const dibkit::Effect*> all;
        for (const dibkit::Effect& effect : dibkit::effects()) all.push_back(&effect);
        return all;
      },
      py::return_value_policy::reference, "All transitions, grouped by family.");
  module.def(
      "find_effect",
      [](const std::string& name) {
        const dibkit::Effect* effect = dibkit::findEffect(name);
        if (effect == nullptr) refuse("there is no effect '" + name + "'");
        return effect;
      },
      py::arg("name"), py::return_value_policy::reference, "The transition of that name. Raises ValueError.");
  remember(module, "effects", "dibkit::effects");
  remember(module, "find_effect", "dibkit::findEffect");
  remember(module, "Effect.frame", "dibkit::Effect::frame, dibkit::findStyle");
  remember(module, "Effect.parameters", "dibkit::Effect::parameters");
  define(
      module,
      {"effect_piece", "GeneralEffectFrame",
       "Make the piece of a numbered effect at a stage: the part of the incoming picture that shows, to be "
       "drawn over "
       "the outgoing one. `a` and `b` are style and amount, as `Effect.parameters` gives them.",
       "The piece, 32 bits, and its rectangle in the frame; None where nothing shows."},
      [](Integer effect, Image32 image, Integer a, Integer b) -> std::optional<std::tuple<Image, RECT>> {
        dibkit::OwnedDib piece;
        RECT place{};
        const auto alone = lockFor(drawsRandomNumbers(effect));
        if (GeneralEffectFrame(effect, image, a, b, dibkit::out(piece), &place) == 0) return std::nullopt;
        return std::tuple(made(std::move(piece)), place);
      },
      arg("effect"), arg("image"), arg("a"), arg("b"));
  define(
      module,
      {"diamond_frame", "DiamondEffectDIB",
       "Make a frame of a transition through diamond bands, from an outgoing picture or from a colour.",
       "A new opaque image of 32 bits.", "Give either `outgoing`, of the incoming one's size, or `colour`."},
      [](Image32 incoming, std::optional<Image32> outgoing, std::optional<Colour> colour, Integer percent) {
        require(outgoing.has_value() != colour.has_value(), "give either an outgoing picture or a colour");
        requireOneSize(incoming, outgoing.value_or(incoming));
        return made(DiamondEffectDIB(incoming, outgoing.value_or(incoming), colour.value_or(Colour{}),
                                     colour.has_value() ? 1 : 0, percent));
      },
      arg("incoming"), none("outgoing"), none("colour"), arg("percent") = 50);
  define(
      module,
      {"push_frame", "GenerateRunPushEffect",
       "Make a frame of a transition in which the incoming picture pushes the outgoing one out. `direction` "
       "is where it "
       "comes from: 0 left, 1 top left, 2 top, 3 top right, 4 right, ... 7 bottom left.",
       "A new image of 32 bits."},
      [](Image32 incoming, Image32 outgoing, Number<0, 7> direction, Integer percent) {
        requireOneSize(incoming, outgoing);
        return made(GenerateRunPushEffect(incoming, outgoing, direction, percent));
      },
      arg("incoming"), arg("outgoing"), arg("direction"), arg("percent"));
}

}  // namespace binding
