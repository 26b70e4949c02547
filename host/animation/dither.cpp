#include "host/animation/dither.h"

#include <utility>

#include "host/animation/error_diffusion.h"
#include "host/animation/ordered_dither.h"
#include "host/animation/palette.h"
#include "host/names.h"

namespace host {

namespace {

constexpr NamedValues<Dither, 3> dithers{
    {{"none", Dither::none}, {"ordered", Dither::ordered}, {"diffusion", Dither::diffusion}}};

/// The index of each opaque pixel by a rule.
/// \param runs whether equal neighbours in a line have the same index
template <class IndexOf>
Bytes indicesBy(const Picture& picture, const RECT& part, std::uint8_t transparent, bool runs,
                IndexOf indexOf) {
  Bytes indices(static_cast<std::size_t>(part.right - part.left) *
                static_cast<std::size_t>(part.bottom - part.top));
  std::uint8_t* index = indices.data();
  for (int y = part.top; y < part.bottom; ++y) {
    const Pixel* row = picture.row(y);
    for (int x = part.left; x < part.right; ++x, ++index) {
      if (runs && x > part.left && row[x] == row[x - 1]) {
        *index = index[-1];
      } else {
        *index = row[x].alpha < opaqueFrom ? transparent : indexOf(row[x], x, y);
      }
    }
  }
  return indices;
}

class NearestColours : public PaletteMapper {
 public:
  using PaletteMapper::indicesOf;
  explicit NearestColours(std::vector<RGBQUAD> colours) : index_(std::move(colours)) {}
  Bytes indicesOf(const Picture& picture, const RECT& part) override {
    return indicesBy(picture, part, index_.transparent(), true, [this](const Pixel& pixel, int, int) {
      return index_.indexOf(pixel.red, pixel.green, pixel.blue);
    });
  }

 private:
  PaletteIndex index_;
};

class Patterns : public PaletteMapper {
 public:
  using PaletteMapper::indicesOf;
  explicit Patterns(std::vector<RGBQUAD> colours) : index_(std::move(colours)), dither_(index_) {}
  Bytes indicesOf(const Picture& picture, const RECT& part) override {
    return indicesBy(picture, part, index_.transparent(), false,
                     [this](const Pixel& pixel, int x, int y) { return dither_.indexOf(pixel, x, y); });
  }

 private:
  PaletteIndex index_;
  OrderedDither dither_;
};

class Diffusion : public PaletteMapper {
 public:
  using PaletteMapper::indicesOf;
  explicit Diffusion(std::vector<RGBQUAD> colours) : index_(std::move(colours)), diffusion_(index_) {}
  Bytes indicesOf(const Picture& picture, const RECT& part) override {
    return diffusion_.indicesOf(picture, part);
  }

 private:
  PaletteIndex index_;
  ErrorDiffusion diffusion_;
};

}  // namespace

Dither ditherNamed(const std::string& name) { return valueNamed(dithers, "dithering", name); }
std::vector<std::string> ditherNames() { return namesOf(dithers); }

std::unique_ptr<PaletteMapper> mapperOnto(std::vector<RGBQUAD> colours, Dither dither) {
  switch (dither) {
    case Dither::ordered:
      return std::make_unique<Patterns>(std::move(colours));
    case Dither::diffusion:
      return std::make_unique<Diffusion>(std::move(colours));
    default:
      return std::make_unique<NearestColours>(std::move(colours));
  }
}

}  // namespace host
