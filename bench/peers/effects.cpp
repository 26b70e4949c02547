#include "effects/effects.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include <libyuv.h>

#include "adapters.h"
#include "effects/catalogue.h"
#include "ripple/ripple.h"
#include "ripple/water.h"
#include "row.h"

/// Transitions and water.
namespace bench {
namespace {

using Picture = std::shared_ptr<BITMAPINFOHEADER>;

/// A frame of a transition between two pictures, beside the mix of both.
Trial mixTrial(std::function<OwnedDib(Dib incoming, Dib outgoing)> frame, const Agreement& agreement,
               Size size) {
  const Picture in = opaquePhoto(size.width, size.height);
  const Picture out = discs(size.width, size.height);
  const cv::Mat result(size.height, size.width, CV_8UC4);
  const cv::Mat from = matOf(in.get());
  const cv::Mat behind = matOf(out.get());
  return makingTrial([=] { return frame(in.get(), out.get()); },
                     [=] {
                       libyuv::ARGBInterpolate(from.data, stepOf(from), behind.data, stepOf(behind),
                                               result.data, stepOf(result), result.cols, result.rows, 154);
                     },
                     result, agreement);
}

OwnedDib fade(Dib incoming, Dib outgoing) {
  static const dibkit::Effect* const effect = dibkit::findEffect("fade");
  return effect->frame(incoming, outgoing, 0, 0.4);
}

OwnedDib diamonds(Dib incoming, Dib outgoing) {
  return OwnedDib(DiamondEffectDIB(incoming, outgoing, 0, 0, 40));
}

OwnedDib piece(Dib picture, int effect, long a, long b) {
  OwnedDib image;
  RECT place{};
  GeneralEffectFrame(effect, picture, a, b, dibkit::out(image), &place);
  return image;
}

/// The whole picture as a piece, beside a copy.
Trial slideTrial(Size size) {
  const Picture picture = photo(size.width, size.height);
  const cv::Mat result(size.height, size.width, CV_8UC4);
  return makingTrial([picture] { return piece(picture.get(), 12, 0, 100); },
                     [in = pixmanOf(matOf(picture.get())), out = pixmanOf(result)] {
                       compose(PIXMAN_OP_SRC, in, nullptr, out);
                     },
                     result, same);
}

/// A door half open. The peer makes a picture of the same size.
Trial gateTrial(long hinge, Size size) {
  const Picture picture = opaquePhoto(size.width, size.height);
  const OwnedDib first = piece(picture.get(), 0, hinge, 45);
  const cv::Mat from = matOf(picture.get());
  cv::Mat result(first->biHeight, first->biWidth, CV_8UC4);
  const auto w = static_cast<float>(size.width), h = static_cast<float>(size.height);
  const auto pw = static_cast<float>(result.cols), ph = static_cast<float>(result.rows);
  const cv::Point2f corners[] = {{0, 0}, {w, 0}, {w, h}, {0, h}};
  const cv::Point2f leftHinge[] = {{0, 0}, {pw, ph * 0.2F}, {pw, ph * 0.8F}, {0, ph}};
  const cv::Point2f topHinge[] = {{0, 0}, {pw, 0}, {pw * 0.8F, ph}, {pw * 0.2F, ph}};
  const cv::Mat matrix = cv::getPerspectiveTransform(corners, hinge == 0 ? leftHinge : topHinge);
  return makingTrial(
      [=] { return piece(picture.get(), 0, hinge, 45); },
      [=]() mutable { cv::warpPerspective(from, result, matrix, result.size(), cv::INTER_NEAREST); }, result,
      incomparable(""));
}

using Field = std::vector<int>;

/// The wave step as one would write it.
void plainStep(int* to, const int* from, int width, int height, int density) {
  for (int y = 1; y < height - 1; ++y) {
    for (int x = 1; x < width - 1; ++x) {
      const int at = y * width + x;
      const int around = from[at - width - 1] + from[at - width] + from[at - width + 1] + from[at - 1] +
                         from[at + 1] + from[at + width - 1] + from[at + width] + from[at + width + 1];
      const int moved = (around >> 2) - to[at];
      to[at] = moved - (moved >> density);
    }
  }
}

Trial waterTrial(Size size) {
  const auto [width, height] = size;
  const auto a = std::make_shared<Field>(static_cast<std::size_t>(width) * height);
  dibkit::addDrops({a->data(), width, height});
  const auto b = std::make_shared<Field>(*a);
  const auto c = std::make_shared<Field>(*a);
  const auto d = std::make_shared<Field>(*a);
  Trial trial;
  trial.ours = [=, w = width, h = height] {
    dibkit::stepWave({a->data(), w, h}, {b->data(), w, h}, 5);
    a->swap(*b);
    return OwnedDib();
  };
  trial.peer = [=, w = width, h = height] {
    plainStep(c->data(), d->data(), w, h, 5);
    c->swap(*d);
  };
  trial.pixels = size.pixels();
  trial.verify = [=] {
    for (int i = 0; i < 3; ++i) {
      trial.ours();
      trial.peer();
    }
    return *a == *c && *b == *d ? "" : "other heights";
  };
  return trial;
}

/// The picture seen through the water. The peer has the displaced places from beforehand and does not light
/// them.
Trial rippleTrial(Size size) {
  const Picture picture = opaquePhoto(size.width, size.height);
  const auto water =
      std::shared_ptr<CRippleEffect>(new CRippleEffect(picture.get(), 0), [](CRippleEffect* owned) {
        owned->EndToRipple();
        delete owned;
      });
  water->StartToRipple();
  for (int i = 0; i < 5; ++i) OwnedDib(water->NextToRipple());
  const cv::Mat from = matOf(picture.get());
  cv::Mat across(from.size(), CV_32FC1), down(from.size(), CV_32FC1), result(from.size(), from.type());
  for (int y = 0; y < from.rows; ++y) {
    for (int x = 0; x < from.cols; ++x) {
      across.at<float>(y, x) = static_cast<float>(x + 4 * std::sin(x / 20.0));
      down.at<float>(y, x) = static_cast<float>(y + 4 * std::sin(y / 20.0));
    }
  }
  return makingTrial([picture, water] { return OwnedDib(water->GenerateRippleEffect(0, 0)); },
                     [=]() mutable { cv::remap(from, result, across, down, cv::INTER_NEAREST); }, result,
                     incomparable(""));
}

}  // namespace

void addEffects(Rows& rows) {
  rows.push_back(
      {"fade", "photo", "libyuv ARGBInterpolate", "the peer mixes in steps of 1/256", [](Size size) {
         return mixTrial(fade, {"", 2}, size);
       }});
  rows.push_back({"DiamondEffectDIB", "photo", "libyuv ARGBInterpolate", "the peer mixes the whole picture",
                  [](Size size) { return mixTrial(diamonds, incomparable(""), size); }});
  rows.push_back({"GeneralEffectFrame, slide", "photo", "pixman SRC", "", slideTrial});
  const char* mapping = "the peer serves any mapping";
  rows.push_back({"GeneralEffectFrame, door left", "photo", "OpenCV warpPerspective, nearest", mapping,
                  [](Size size) { return gateTrial(0, size); }});
  rows.push_back({"GeneralEffectFrame, door top", "photo", "OpenCV warpPerspective, nearest", mapping,
                  [](Size size) { return gateTrial(1, size); }});
  rows.push_back({"CRippleEffect::CalcWater", "water", "the plain loop", "", waterTrial});
  rows.push_back({"CRippleEffect::GenerateRippleEffect", "photo", "OpenCV remap, nearest",
                  "the peer is given the displacement and does not light the picture", rippleTrial});
}

}  // namespace bench
