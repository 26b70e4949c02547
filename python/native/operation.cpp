#include "operation.h"

#include <map>
#include <sstream>
#include <string_view>

namespace binding {

namespace {

/// What parameters mean, which have one meaning in all operations.
const std::map<std::string_view, const char*> meanings{
    {"image", "The image."},
    {"destination", "Is drawn on, in place."},
    {"source", "What is drawn; unchanged."},
    {"reduction", "Is subtracted from every alpha of the source; 0 is full strength."},
    {"transparency", "Scales the source's alpha by (255 - transparency) / 255; 0 is full strength."},
    {"strength", "Scales the source's alpha by strength / 255; 0 does nothing."},
    {"at", "(x, y) of the source's top-left pixel."},
    {"destination_at", "(x, y) of the destination's top-left pixel, in the same space."},
    {"mask", "True where the image is transparent; None for an opaque image."},
    {"mask_a", "True where frame `a` is transparent; None for an opaque frame."},
    {"mask_b", "True where frame `b` is transparent; None for an opaque frame."},
    {"at_a", "(x, y) of frame `a` on the canvas."},
    {"at_b", "(x, y) of frame `b` on the canvas."},
    {"coverage", "Only pixels under a value that is not 0 are processed; None for all."},
    {"coverage_at", "(x, y) of the coverage's top-left pixel."},
    {"colour", "The colour."},
    {"fill", "The colour to fill with."},
    {"alpha", "Alpha; 255 is opaque."},
    {"opacity", "Weight; 255 is full."},
    {"palette", "The colours, red first."},
    {"progress",
     "Is called with the share that is done, 0 to 1; if it returns False, `Cancelled` is raised."},
    {"tolerance", "Largest difference of a channel, 0 to 255."},
    {"seed", "(x, y) where it starts."},
    {"target", "The colour to be replaced."},
    {"rect", "(left, top, right, bottom) in pixels, right and bottom exclusive."},
    {"region", "The pixels."},
    {"clip", "Pixels outside of it are unchanged; None for no limit."},
    {"canvas", "(width, height) of the animation's canvas."},
    {"depth", "Bits of a pixel."},
    {"a", "The first one."},
    {"b", "The second one."},
    {"percent", "Strength, 0 to 100."},
    {"margins", "(left, top, right, bottom) in pixels; negative ones cut."},
    {"points", "Vertices (x, y)."},
    {"width", "In pixels."},
    {"height", "In pixels."},
    {"start", "(x, y) of one end."},
    {"end", "(x, y) of the other end."},
    {"rounded", "Round ends, else square ones."},
    {"bounds", "(left, top, right, bottom) that the result is cut to."},
    {"factor", "How many times as large, or as small."},
    {"phase", "0 to 5, where the dashes begin."},
    {"threshold", "From 0 to 256."},
};

}  // namespace

std::string documentation(const Operation& operation, const std::vector<Parameter>& parameters,
                          const std::string& resultType) {
  std::ostringstream words;
  words << operation.summary << "\n";
  if (!parameters.empty()) {
    words << "\nParameters\n----------\n";
    for (const Parameter& parameter : parameters) {
      words << parameter.name << " : " << parameter.type << "\n";
      const auto meaning = meanings.find(parameter.name);
      if (meaning != meanings.end()) words << "    " << meaning->second << "\n";
    }
  }
  if (!resultType.empty())
    words << "\nReturns\n-------\n" << resultType << "\n    " << operation.result << "\n";
  words << "\nRaises\n------\nTypeError, ValueError\n    For an argument of another type or value than these."
        << (*operation.refusal != '\0' ? " " : "") << operation.refusal
        << "\nMemoryError\n    When memory runs out.\n";
  if (*operation.interface != '\0') words << "\nNotes\n-----\nIn C++: " << operation.interface << ".\n";
  return words.str();
}

void remember(py::module_& module, const char* name, const char* interface) {
  if (!py::hasattr(module, "_names")) {
    module.attr("_names") = py::dict();
    module.attr("__all__") = py::list();
  }
  module.attr("_names")[name] = interface;
  if (std::string_view(name).find('.') == std::string_view::npos)
    py::list(module.attr("__all__")).append(name);
}

}  // namespace binding
