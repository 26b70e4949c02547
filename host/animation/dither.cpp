#include "host/animation/dither.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/animation/error_diffusion.h"
#include "host/animation/ordered_dither.h"
#include "host/animation/palette.h"
#include "host/formats/animation_canvas.h"
#include "host/names.h"

namespace host {

namespace {

constexpr NamedValues<Dither, 3> dithers{
    {{"none", Dither::none}, {"ordered", Dither::ordered}, {"diffusion", Dither::diffusion}}};

/// The indices of a part of a picture.
/// \param mapRun mapRun(pixels, count, x, y, indices) maps pixels of a line from (x, y) on, each by its
/// colour
///        and its place alone
template <class MapRun>
Bytes indicesBy(const Picture& picture, const RECT& part, std::uint8_t transparent, MappedPicture* before,
                MapRun mapRun) {
  const int width = part.right - part.left;
  Bytes indices(static_cast<std::size_t>(areaOf(part)));
  if (before != nullptr && (!before->picture || before->picture->size() != picture.size())) {
    before->picture.emplace(picture.size());
    before->indices.assign(static_cast<std::size_t>(picture.size().pixels()), transparent);
  }
  std::uint8_t* to = indices.data();
  for (int y = part.top; y < part.bottom; ++y, to += width) {
    const Pixel* pixels = picture.row(y) + part.left;
    if (before == nullptr) {
      mapRun(pixels, width, part.left, y, to);
      continue;
    }
    Pixel* known = before->picture->row(y) + part.left;
    std::uint8_t* index = before->indices.data() + std::ptrdiff_t{y} * picture.width() + part.left;
    constexpr int run = 16;
    for (int x = 0; x < width; x += run) {
      const int count = std::min(run, width - x);
      if (std::memcmp(pixels + x, known + x, static_cast<std::size_t>(count) * sizeof(Pixel)) == 0) continue;
      mapRun(pixels + x, count, part.left + x, y, index + x);
      std::copy_n(pixels + x, count, known + x);
    }
    std::copy_n(index, width, to);
  }
  return indices;
}

class NearestColours : public PaletteMapper {
 public:
  explicit NearestColours(std::vector<RGBQUAD> colours) : index_(std::move(colours)) {}
  Bytes indicesOf(const Picture& picture, const RECT& part, MappedPicture* before) const override {
    const auto map = [this](const Pixel* pixels, int count, int, int, std::uint8_t* indices) {
      for (int x = 0; x < count; ++x) {
        if (x > 0 && pixels[x] == pixels[x - 1]) {
          indices[x] = indices[x - 1];
        } else {
          const Pixel& pixel = pixels[x];
          indices[x] = pixel.alpha < opaqueFrom ? index_.transparent()
                                                : index_.indexOf(pixel.red, pixel.green, pixel.blue);
        }
      }
    };
    return indicesBy(picture, part, index_.transparent(), before, map);
  }

 private:
  PaletteIndex index_;
};

class Patterns : public PaletteMapper {
 public:
  explicit Patterns(std::vector<RGBQUAD> colours) : index_(std::move(colours)), dither_(index_) {}
  Bytes indicesOf(const Picture& picture, const RECT& part, MappedPicture* before) const override {
    const auto map = [this](const Pixel* pixels, int count, int left, int y, std::uint8_t* indices) {
      for (int x = 0; x < count; ++x) {
        indices[x] =
            pixels[x].alpha < opaqueFrom ? index_.transparent() : dither_.indexOf(pixels[x], left + x, y);
      }
    };
    return indicesBy(picture, part, index_.transparent(), before, map);
  }

 private:
  PaletteIndex index_;
  OrderedDither dither_;
};

class Diffusion : public PaletteMapper {
 public:
  explicit Diffusion(std::vector<RGBQUAD> colours) : index_(std::move(colours)), diffusion_(index_) {}
  Bytes indicesOf(const Picture& picture, const RECT& part, MappedPicture* before) const override {
    return diffusion_.indicesOf(picture, part, before);
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
