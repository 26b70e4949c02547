#include "host/animation/fit.h"

#include <algorithm>
#include <cmath>

#include "host/names.h"
#include "host/pixel_sum.h"

namespace host {

namespace {

constexpr NamedValues<Fit, 3> fits{
    {{"contain", Fit::contain}, {"cover", Fit::cover}, {"stretch", Fit::stretch}}};

/// The share that each source pixel has in one new pixel.
struct Weights {
  int first = 0;
  std::vector<float> shares;
};

/// A triangle as wide as two new pixels, or two old ones where the picture grows.
std::vector<Weights> weightsFor(int from, int to) {
  const double scale = static_cast<double>(from) / to;
  const double reach = std::max(scale, 1.0);
  std::vector<Weights> all(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i) {
    const double centre = (i + 0.5) * scale - 0.5;
    const int first = std::max(0, static_cast<int>(std::ceil(centre - reach)));
    const int last = std::min(from - 1, static_cast<int>(std::floor(centre + reach)));
    Weights& weights = all[static_cast<std::size_t>(i)];
    weights.first = first;
    double sum = 0;
    for (int j = first; j <= last; ++j) sum += std::max(0.0, 1.0 - std::abs(j - centre) / reach);
    for (int j = first; j <= last; ++j) {
      weights.shares.push_back(static_cast<float>(std::max(0.0, 1.0 - std::abs(j - centre) / reach) / sum));
    }
  }
  return all;
}

/// The largest size inside of the frame that keeps the picture's shape.
Size inside(Size picture, Size frame) {
  const double scale = std::min(static_cast<double>(frame.width) / picture.width,
                                static_cast<double>(frame.height) / picture.height);
  const auto side = [&](int length) { return std::max(1, static_cast<int>(std::lround(length * scale))); };
  return {side(picture.width), side(picture.height)};
}

/// The middle of the picture, of the frame's shape and as large as can be.
Picture middle(const Picture& picture, Size frame) {
  const double scale = std::min(static_cast<double>(picture.width()) / frame.width,
                                static_cast<double>(picture.height()) / frame.height);
  const int width = std::clamp(static_cast<int>(std::lround(frame.width * scale)), 1, picture.width());
  const int height = std::clamp(static_cast<int>(std::lround(frame.height * scale)), 1, picture.height());
  const int left = (picture.width() - width) / 2;
  const int top = (picture.height() - height) / 2;
  Picture cut(Size{width, height});
  for (int y = 0; y < height; ++y) std::copy_n(picture.row(top + y) + left, width, cut.row(y));
  return cut;
}

}  // namespace

Fit fitNamed(const std::string& name) { return valueNamed(fits, "fit", name); }
std::vector<std::string> fitNames() { return namesOf(fits); }

Picture resampled(const Picture& picture, Size size) {
  const std::vector<Weights> across = weightsFor(picture.width(), size.width);
  const std::vector<Weights> down = weightsFor(picture.height(), size.height);
  Picture result(size);
  std::vector<PixelSum> line(static_cast<std::size_t>(picture.width()));
  for (int y = 0; y < size.height; ++y) {
    std::fill(line.begin(), line.end(), PixelSum{});
    const Weights& rows = down[static_cast<std::size_t>(y)];
    for (std::size_t i = 0; i < rows.shares.size(); ++i) {
      const Pixel* source = picture.row(rows.first + static_cast<int>(i));
      for (std::size_t x = 0; x < line.size(); ++x) line[x].add(source[x], rows.shares[i]);
    }
    Pixel* target = result.row(y);
    for (const Weights& columns : across) {
      PixelSum sum;
      const PixelSum* source = line.data() + columns.first;
      for (const float share : columns.shares) sum.add(*source++, share);
      *target++ = sum.pixel();
    }
  }
  return result;
}

Picture fitted(const Picture& picture, Size frame, Fit fit, Pixel background) {
  if (picture.size() == frame) return picture.clone();
  if (fit == Fit::stretch) return resampled(picture, frame);
  if (fit == Fit::cover) return resampled(middle(picture, frame), frame);

  const Size shown = inside(picture.size(), frame);
  const Picture scaled = shown == picture.size() ? picture.clone() : resampled(picture, shown);
  Picture result(frame);
  for (int y = 0; y < frame.height; ++y) std::fill_n(result.row(y), frame.width, background);
  const POINT corner{0, 0};
  const POINT place{(frame.width - shown.width) / 2, (frame.height - shown.height) / 2};
  CDIB32::TransformBlock(result.dib(), corner, scaled.dib(), place);
  return result;
}

void compositeOver(Picture& picture, Pixel matte) {
  const COLORREF colour = RGB(matte.red, matte.green, matte.blue);
  const Size size = picture.size();
  Picture ground(
      dibkit::OwnedDib(CDIB32::CreateSimple32BitsDIB(size.width, size.height, colour, matte.alpha)));
  const POINT corner{0, 0};
  CDIB32::CombineBlock(ground.dib(), corner, picture.dib(), corner, 0);
  picture = std::move(ground);
}

}  // namespace host
