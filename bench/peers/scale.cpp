#include <opencv2/imgproc.hpp>

#include <libyuv.h>

#include "adapters.h"
#include "row.h"

/// Enlarged and reduced pictures, by the nearest pixel. Pixels are counted as they are drawn.
namespace bench {
namespace {

constexpr POINT corner{0, 0};

struct Scaling {
  const char* name;
  const char* picture;
  OwnedDib (*make)(int width, int height);
  double factor;
  void (*ours)(Dib to, Dib from);
  const char* peer;
  /// Draws the source, which is just as large as needed, over all of the result.
  std::function<void()> (*with)(cv::Mat to, cv::Mat from);
  Agreement agreement;
};

std::function<void()> nearest(cv::Mat to, cv::Mat from) {
  return [=]() mutable { cv::resize(from, to, to.size(), 0, 0, cv::INTER_NEAREST); };
}

std::function<void()> yuvScale(cv::Mat to, cv::Mat from) {
  return [=] {
    libyuv::ARGBScale(from.data, stepOf(from), from.cols, from.rows, to.data, stepOf(to), to.cols, to.rows,
                      libyuv::kFilterNone);
  };
}

std::function<void()> overScaled(cv::Mat to, cv::Mat from) {
  const PixmanImage in = pixmanOf(from);
  pixman_transform_t matrix;
  pixman_transform_init_scale(&matrix, pixman_double_to_fixed(1.0 * from.cols / to.cols),
                              pixman_double_to_fixed(1.0 * from.rows / to.rows));
  pixman_image_set_transform(in.get(), &matrix);
  pixman_image_set_filter(in.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
  return [in, out = pixmanOf(to)] { compose(PIXMAN_OP_OVER, in, nullptr, out); };
}

constexpr Agreement otherCentre = incomparable("other pixels for the nearest");

constexpr Scaling scalings[] = {
    {"Stretch32DIB, 1.5", "opaque photo", opaquePhoto, 1.5,
     [](Dib to, Dib from) { CDIB32::Stretch32DIB(to, from, corner, 49152); }, "OpenCV resize, nearest",
     nearest, otherCentre},
    {"Stretch32DIBMMX, 1.5", "photo", photo, 1.5,
     [](Dib to, Dib from) { CDIB32::Stretch32DIBMMX(to, from, corner, 49152); }, "pixman OVER, nearest",
     overScaled, incomparable("the peer takes premultiplied colours")},
    {"ZoomIn32DIB, 2", "opaque photo", opaquePhoto, 2,
     [](Dib to, Dib from) { CDIB32::ZoomIn32DIB(to, corner, from, corner, 2, 0); }, "libyuv ARGBScale",
     yuvScale, same},
    {"ZoomOut32DIB, 2", "opaque photo", opaquePhoto, 0.5,
     [](Dib to, Dib from) { CDIB32::ZoomOut32DIB(to, corner, from, corner, 2, 0); }, "libyuv ARGBScale",
     yuvScale, otherCentre},
    {"ZoomOut32DIBMMX, 2", "photo", photo, 0.5,
     [](Dib to, Dib from) { CDIB32::ZoomOut32DIBMMX(to, corner, from, corner, 2, 0); },
     "pixman OVER, nearest", overScaled, incomparable("the peer takes premultiplied colours")},
};

/// The larger one of the two pictures has the size of the row. Blending is repeated on a restored picture,
/// copying is not.
Trial scaleTrial(const Scaling& row, Size size) {
  const double shrink = std::max(row.factor, 1 / row.factor);
  const Size small{static_cast<int>(size.width / shrink), static_cast<int>(size.height / shrink)};
  const auto [from, to] = row.factor > 1 ? std::pair{small, size} : std::pair{size, small};
  const std::shared_ptr<BITMAPINFOHEADER> source = row.make(from.width, from.height);
  const std::shared_ptr<BITMAPINFOHEADER> target = row.make(to.width, to.height);
  const cv::Mat result = matOf(target.get());
  return changingTrial(
      target, [&row, source, target] { row.ours(target.get(), source.get()); },
      row.with(result, matOf(source.get())), result, row.agreement, row.make == opaquePhoto);
}

}  // namespace

void addScales(Rows& rows) {
  for (const Scaling& row : scalings) {
    rows.push_back({row.name, row.picture, row.peer, row.agreement.difference,
                    [&row](Size size) { return scaleTrial(row, size); }});
  }
}

}  // namespace bench
