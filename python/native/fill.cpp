#include "module.h"
#include "operation.h"

namespace binding {

namespace {

CPoint corner(POINT at) { return {static_cast<int>(at.x), static_cast<int>(at.y)}; }

/// The pixel at the seed, 0xAARRGGBB; throws for a seed outside the image.
DWORD pixelAt(const Image32& image, POINT seed) {
  require(seed.x >= 0 && seed.x < image->width() && seed.y >= 0 && seed.y < image->height(),
          "the seed is outside the image");
  return dibkit::Bgra32::get(image->row(seed.y), seed.x);
}

/// The target of a fill: a colour with an alpha, or the pixel at the seed.
struct Target {
  std::optional<Colour> colour;
  int alpha;

  DWORD at(DWORD seed) const {
    if (!colour) return seed;
    const DWORD rgb = dibkit::packRgb({colour->red, colour->green, colour->blue});
    return static_cast<DWORD>(alpha) << 24 | rgb;
  }
};

/// Fills end early only without memory: seeds and masks have been checked.
void filled(BOOL done) { requireDone(done); }

std::optional<RECT> floodFill(const Image32& image, POINT seed, Colour fill, const Target& target,
                              int tolerance, int opacity, bool erase, const Coverage& coverage,
                              POINT coverageAt) {
  const DWORD wanted = target.at(pixelAt(image, seed));
  if (coverage.dib != nullptr) {
    require(!erase, "erasing knows no coverage");
    filled(CDIB32::ExtFillConnectedPixels_Mask(image, wanted, fill, opacity, tolerance, seed, coverage,
                                               corner(coverageAt)));
    return std::nullopt;
  }
  RECT bounds{};
  filled(
      CDIB32::ExtFillConnectedPixels(image, wanted, fill, erase ? 1 : 0, opacity, tolerance, seed, &bounds));
  return bounds;
}

}  // namespace

void defineFills(py::module_& module) {
  define(
      module,
      {"fill_connected", "CDIB32::ExtFillConnectedPixels, ExtFillConnectedPixels_Mask",
       "Flood fill, in place: composite a colour over the area of similar pixels that is connected with the "
       "seed from "
       "left, right, above and below. `target` and `target_alpha` are what is similar; None for the pixel at "
       "the seed. "
       "`erase` makes the pixels transparent instead.",
       "The rectangle that was filled; None with coverage.", "The seed has to be inside the image."},
      [](Image32 image, POINT seed, Colour fill, Integer tolerance, Byte opacity,
         std::optional<Colour> target, Byte target_alpha, bool erase, Coverage& coverage, POINT coverage_at) {
        return floodFill(image, seed, fill, {target, target_alpha}, tolerance, opacity, erase, coverage,
                         coverage_at);
      },
      arg("image"), arg("seed"), arg("fill") = py::make_tuple(0, 0, 0), arg("tolerance") = 0,
      arg("opacity") = 255, none("target"), arg("target_alpha") = 255, arg("erase") = false, none("coverage"),
      origin("coverage_at"));
  define(
      module,
      {"replace_colour", "CDIB32::ExtFill32BitsDIB, ExtFill32BitsDIB_Mask",
       "Composite a colour over all pixels that are similar to a target, connected or not, in place."},
      [](Image32 image, Colour target, Colour fill, Integer tolerance, Byte opacity, Byte target_alpha,
         Coverage& coverage, POINT coverage_at) {
        const DWORD wanted = Target{target, target_alpha}.at(0);
        filled(coverage.dib == nullptr
                   ? CDIB32::ExtFill32BitsDIB(image, wanted, fill, opacity, tolerance)
                   : CDIB32::ExtFill32BitsDIB_Mask(image, wanted, fill, opacity, tolerance, coverage,
                                                   corner(coverage_at)));
      },
      arg("image"), arg("target"), arg("fill"), arg("tolerance") = 0, arg("opacity") = 255,
      arg("target_alpha") = 255, none("coverage"), origin("coverage_at"));
  define(
      module,
      {"fill_transparent_connected", "CDIB32::ExtFillConnectedTransPixels, ExtFillConnectedTransPixels_Mask",
       "Replace the transparent pixels that are connected with the seed, in place.", "",
       "The seed has to be inside the image."},
      [](Image32 image, POINT seed, Colour fill, Byte alpha, Coverage& coverage, POINT coverage_at) {
        pixelAt(image, seed);
        filled(coverage.dib == nullptr ? CDIB32::ExtFillConnectedTransPixels(image, fill, alpha, seed)
                                       : CDIB32::ExtFillConnectedTransPixels_Mask(
                                             image, fill, alpha, seed, coverage, corner(coverage_at)));
      },
      arg("image"), arg("seed"), arg("fill"), arg("alpha") = 255, none("coverage"), origin("coverage_at"));
  define(
      module,
      {"fill_transparent", "CDIB32::ExtFillTransBlock, ExtFillTransBlock_Mask",
       "Replace all transparent pixels, in place."},
      [](Image32 image, Colour fill, Byte alpha, Coverage& coverage, POINT coverage_at) {
        filled(coverage.dib == nullptr
                   ? CDIB32::ExtFillTransBlock(image, fill, alpha)
                   : CDIB32::ExtFillTransBlock_Mask(image, fill, alpha, coverage, corner(coverage_at)));
      },
      arg("image"), arg("fill"), arg("alpha") = 255, none("coverage"), origin("coverage_at"));
  define(
      module, {"fill", "CDIB32::Fill32DIBBackground", "Set every pixel to a colour, opaque, in place."},
      [](Image32 image, Colour colour) {
        CDIB32::Fill32DIBBackground(image, colour.red, colour.green, colour.blue);
      },
      arg("image"), arg("colour"));
  define(
      module,
      {"set_colour", "CDIB32::Make32BitsSimpleColorDIB",
       "Set the colour of every pixel, in place; alpha is unchanged."},
      [](Image32 image, Colour colour) { CDIB32::Make32BitsSimpleColorDIB(image, colour); }, arg("image"),
      arg("colour"));
  define(
      module,
      {"set_alpha", "CDIB32::MakeAllPixelsSameOpacity, Fill32DIBOpacityArea",
       "Set the alpha of every pixel of a rectangle or of a region, in place; colours are unchanged. Without "
       "both, of the image."},
      [](Image32 image, Byte alpha, std::optional<RECT> rect, Clip& region) {
        require(!rect || region.region == nullptr, "give either a rectangle or a region");
        if (rect) {
          CDIB32::Fill32DIBOpacityArea(image, *rect, alpha);
        } else if (region.region != nullptr) {
          CDIB32::Fill32DIBOpacityArea(image, region, alpha);
        } else {
          CDIB32::MakeAllPixelsSameOpacity(image, alpha);
        }
      },
      arg("image"), arg("alpha"), none("rect"), none("region"));
  define(
      module,
      {"reduce_alpha", "CDIB32::Reduce32BitsDIBOpacity",
       "Scale the alpha of every pixel by (255 - reduction) / 255, truncated, in place."},
      [](Image32 image, Byte reduction) { CDIB32::Reduce32BitsDIBOpacity(image, reduction); }, arg("image"),
      arg("reduction"));
}

}  // namespace binding
