#include "frames.h"
#include "host/animation/depth.h"
#include "host/animation/fit.h"
#include "host/animation/summary.h"
#include "host/samples/samples.h"
#include "module.h"

namespace binding {

namespace {

Image imageOf(const host::Picture& picture) { return made(CBitmapCreator::Clone(picture.dib())); }

host::Size sizeOf(SIZE size) {
  const host::Size result{static_cast<int>(size.cx), static_cast<int>(size.cy)};
  host::requireUsableSize(result.width, result.height);
  return result;
}

/// The images at another depth, as `dibkit convert` makes them.
std::vector<Image> atDepth(const std::vector<AnyImage>& images, const host::DepthOptions& options,
                           std::optional<Colour> matte) {
  std::vector<host::Picture> pictures;
  for (const AnyImage& image : images) {
    pictures.push_back(pictureOf(*image.image));
    // Only 32 bits have room for transparency.
    if (matte && options.bits != 32)
      host::compositeOver(pictures.back(), {matte->blue, matte->green, matte->red, 255});
  }
  std::vector<Image> result;
  for (dibkit::OwnedDib& dib : host::atDepth(pictures, options, [](double) {}))
    result.push_back(made(std::move(dib)));
  return result;
}

py::dict summaryOf(const py::object& object, bool strict) {
  const BytesArgument bytes(object);
  host::Summary summary;
  {
    const py::gil_scoped_release unlocked;
    summary = host::summaryOf(bytes, strict ? host::Strictness::strict : host::Strictness::lenient);
  }
  constexpr const char* transparencies[]{"none", "transparent", "translucent"};
  using namespace py::literals;
  return py::dict("format"_a = summary.format, "bits"_a = summary.bitsPerPixel,
                  "size"_a = py::make_tuple(summary.size.width, summary.size.height),
                  "palette_entries"_a = summary.paletteEntries, "colours"_a = summary.colours,
                  "transparency"_a = transparencies[static_cast<int>(summary.transparency)],
                  "frames"_a = summary.frames, "shortest_delay"_a = 10 * summary.shortestDelay,
                  "longest_delay"_a = 10 * summary.longestDelay, "duration"_a = 10 * summary.duration,
                  "loop"_a = summary.loops, "warnings"_a = summary.warnings);
}

}  // namespace

void definePictures(py::module_& module) {
  define(
      module,
      {"resample", "",
       "Scale an image: every new pixel is the mean of the area under it, or between four pixels where it "
       "grows. "
       "Transparent pixels have no influence.",
       "A new image of 32 bits.", "Both sides are above 0."},
      [](AnyImage image, SIZE size) {
        return imageOf(host::resampled(pictureOf(*image.image), sizeOf(size)));
      },
      arg("image"), arg("size"));
  define(
      module,
      {"fit", "",
       "Fit an image into a frame: \"contain\" shows all of it, \"cover\" fills the frame, \"stretch\" "
       "changes its shape.",
       "A new image of 32 bits.", "Both sides are above 0."},
      [](AnyImage image, SIZE size, const std::string& fit, Colour background) {
        const host::Pixel bars{background.blue, background.green, background.red, 255};
        return imageOf(host::fitted(pictureOf(*image.image), sizeOf(size), host::fitNamed(fit), bars));
      },
      arg("image"), arg("size"), arg("fit") = "contain", arg("background") = py::make_tuple(0, 0, 0));
  define(
      module,
      {"convert", "",
       "Change depth or palette of images as `dibkit convert` does: exactly where the colours allow it, else "
       "onto the "
       "best palette. `gray` makes grays; `threshold` makes black and white, by the best gray for -1; "
       "`shared` gives all "
       "images one palette; `dither` is for colours that the palette lacks. `matte` is behind transparent "
       "pixels, which "
       "only 32 bits can keep.",
       "New images. Without `depth`, of the smallest one that keeps all colours.",
       "Some options exclude each other."},
      [](const std::vector<AnyImage>& images, std::optional<Integer> depth, bool gray,
         std::optional<Number<-1, 256>> threshold, std::optional<Palette> palette, bool shared,
         const std::string& dither, std::optional<Colour> matte) {
        host::DepthOptions options;
        if (depth) options.bits = static_cast<int>(depth->value);
        options.gray = gray;
        options.blackAndWhite = threshold.has_value();
        if (threshold && threshold->value >= 0) options.threshold = static_cast<int>(threshold->value);
        if (palette) options.palette = palette->entries;
        options.sharedPalette = shared;
        options.dither = host::ditherNamed(dither);
        require(!options.bits || (*options.bits == 1 || *options.bits == 4 || *options.bits == 8 ||
                                  *options.bits == 16 || *options.bits == 24 || *options.bits == 32),
                "an image has 1, 4, 8, 16, 24 or 32 bits a pixel");
        return atDepth(images, options, matte);
      },
      arg("images"), none("depth"), arg("gray") = false, none("threshold"), none("palette"),
      arg("shared") = false, arg("dither") = "none", none("matte"));
  define(
      module, {"lake", "", "Draw a sample picture: a mountain lake at dusk.", "A new image of 32 bits."},
      [](SIZE size) { return imageOf(host::drawLake(sizeOf(size))); },
      arg("size") = py::make_tuple(320, 240));
  define(
      module,
      {"dahlia", "", "Draw a sample picture: a dahlia, with transparent corners.", "A new image of 32 bits."},
      [](SIZE size) { return imageOf(host::drawDahlia(sizeOf(size))); },
      arg("size") = py::make_tuple(320, 240));
  module.def("summary_of", &summaryOf, py::arg("data"), py::arg("strict"));
}

}  // namespace binding
