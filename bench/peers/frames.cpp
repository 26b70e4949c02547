#include "frames/frames.h"

#include <cstring>
#include <opencv2/imgproc.hpp>

#include <libyuv.h>

#include "adapters.h"
#include "row.h"
#include "split/split.h"

/// Frames of an animation: cross-fades, comparisons, what changed.
namespace bench {
namespace {

constexpr POINT corner{0, 0};
constexpr BYTE opacity = 100;

Trial blendTrial(OwnedDib (*first)(int, int), OwnedDib (*second)(int, int), Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> a = first(size.width, size.height);
  const std::shared_ptr<BITMAPINFOHEADER> b = second(size.width, size.height);
  const cv::Mat from = matOf(a.get());
  const cv::Mat behind = matOf(b.get());
  cv::Mat result(from.size(), from.type());
  return makingTrial(
      [=] {
        OwnedDib image, mask;
        AlphaBlendByFrame(a.get(), nullptr, corner, b.get(), nullptr, corner, 0, opacity, dibkit::out(image),
                          dibkit::out(mask));
        return image;
      },
      [=]() mutable { cv::addWeighted(from, opacity / 255.0, behind, 1 - opacity / 255.0, 0, result); },
      result, rounds);
}

Trial blend2Trial(Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> a = photo(size.width, size.height);
  const std::shared_ptr<BITMAPINFOHEADER> b = discs(size.width, size.height);
  const cv::Mat result(size.height, size.width, CV_8UC4);
  const cv::Mat from = matOf(a.get());
  const cv::Mat behind = matOf(b.get());
  return makingTrial(
      [=] {
        OwnedDib image, mask;
        POINT position;
        AlphaBlendByFrame2(a.get(), nullptr, corner, b.get(), nullptr, corner, 0, opacity,
                           {a->biWidth, a->biHeight}, dibkit::out(image), dibkit::out(mask), &position);
        return image;
      },
      [=] {
        libyuv::ARGBInterpolate(from.data, stepOf(from), behind.data, stepOf(behind), result.data,
                                stepOf(result), result.cols, result.rows, 256 - opacity);
      },
      result, rounds);
}

/// Two equal frames, the costliest case.
Trial compareTrial(OwnedDib (*make)(int, int), Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> a = make(size.width, size.height);
  const std::shared_ptr<BITMAPINFOHEADER> b = make(size.width, size.height);
  const cv::Mat first = matOf(a.get());
  const cv::Mat second = matOf(b.get());
  Trial trial;
  trial.ours = [=] {
    keep(CompareFrame(a.get(), nullptr, b.get(), nullptr));
    return OwnedDib();
  };
  trial.peer = [=] { keep(std::memcmp(first.data, second.data, first.total() * first.elemSize())); };
  trial.pixels = size.pixels();
  trial.verify = [=] { return CompareFrame(a.get(), nullptr, b.get(), nullptr) == 1 ? "" : "not equal"; };
  return trial;
}

/// The box of what changed, in the middle of the picture.
Trial changeTrial(Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> a = photo24(size.width, size.height);
  const std::shared_ptr<BITMAPINFOHEADER> b = photo24(size.width, size.height);
  const cv::Rect box(size.width / 3, size.height / 3, size.width / 3, size.height / 3);
  dibkit::fillPixels<dibkit::Bgr24>(dibkit::View(b.get()), [&](int x, int y) {
    const dibkit::Rgb old = dibkit::Bgr24::get(dibkit::View(a.get()).row(y), x);
    const bool changes = box.contains({x, y});
    return changes ? dibkit::Rgb{static_cast<BYTE>(~old.red), old.green, old.blue} : old;
  });
  const cv::Mat first = matOf(a.get());
  const cv::Mat second = matOf(b.get());
  cv::Mat difference(first.size(), first.type());
  auto found = [=]() mutable {
    cv::absdiff(first, second, difference);
    const cv::Rect bytes = cv::boundingRect(difference.reshape(1));
    return cv::Rect(bytes.x / 3, bytes.y, (bytes.br().x + 2) / 3 - bytes.x / 3, bytes.height);
  };
  const auto splitter = std::make_shared<CSpiltEmbededDIBEx>();
  Trial trial;
  trial.ours = [=] {
    splitter->Reset(a.get(), nullptr, corner, b.get(), nullptr, corner);
    return OwnedDib();
  };
  trial.peer = [=]() mutable { keep(found().x); };
  trial.pixels = size.pixels();
  trial.verify = [=]() mutable {
    trial.ours();
    const cv::Rect other = found();
    const bool equal = splitter->m_nLeftSame == other.x && splitter->m_nTopSame == other.y &&
                       splitter->m_nRightSame == size.width - other.br().x &&
                       splitter->m_nBottomSame == size.height - other.br().y;
    return equal ? "" : "another box";
  };
  return trial;
}

}  // namespace

void addFrames(Rows& rows) {
  const char* rounding = rounds.difference;
  rows.push_back({"AlphaBlendByFrame", "photo", "OpenCV addWeighted", rounding,
                  [](Size size) { return blendTrial(photo24, discs24, size); }});
  rows.push_back({"AlphaBlendByFrame", "cartoon", "OpenCV addWeighted", rounding,
                  [](Size size) { return blendTrial(cartoon24, flat24, size); }});
  rows.push_back({"AlphaBlendByFrame", "two cartoons", "OpenCV addWeighted", rounding,
                  [](Size size) { return blendTrial(cartoon24, discs24, size); }});
  rows.push_back({"AlphaBlendByFrame2", "photo", "libyuv ARGBInterpolate", rounding, blend2Trial});
  rows.push_back({"CompareFrame, 24 bits", "equal", "memcmp", "",
                  [](Size size) { return compareTrial(photo24, size); }});
  rows.push_back(
      {"CompareFrame, 32 bits", "equal", "memcmp", "", [](Size size) { return compareTrial(photo, size); }});
  rows.push_back(
      {"CSpiltEmbededDIBEx::Reset", "middle changed", "OpenCV absdiff, boundingRect", "", changeTrial});
}

}  // namespace bench
