#include <opencv2/imgproc.hpp>

#include "adapters.h"
#include "frames/frames.h"
#include "row.h"

/// Filters: medians, sharpening, box sums, mosaic.
namespace bench {
namespace {

/// Filters of 32-bit pictures in place. The peer reads one picture and writes another.
struct Filter {
  const char* name;
  const char* picture;
  OwnedDib (*make)(int width, int height);
  void (*ours)(Dib picture);
  const char* peer;
  void (*with)(const cv::Mat& from, cv::Mat& to);
  Agreement agreement;
};

template <int n>
void median(Dib dib) {
  CDIB32::MedianFilter32BitsImage(dib, n);
}
template <int n>
void medianBlur(const cv::Mat& from, cv::Mat& to) {
  cv::medianBlur(from, to, n);
}

void sharpen(const cv::Mat& from, cv::Mat& to) {
  static const cv::Mat kernel = (cv::Mat_<float>(3, 3) << -1, -1, -1, -1, 9, -1, -1, -1, -1);
  cv::filter2D(from, to, -1, kernel, {-1, -1}, 0, cv::BORDER_REPLICATE);
}

constexpr Agreement byChannel = incomparable("the peer takes each channel for itself");

constexpr Filter filters[] = {
    {"MedianFilter32BitsImage, 3", "photo", opaquePhoto, median<3>, "OpenCV medianBlur", medianBlur<3>,
     byChannel},
    {"MedianFilter32BitsImage, 3", "cartoon", cartoon, median<3>, "OpenCV medianBlur", medianBlur<3>,
     byChannel},
    {"MedianFilter32BitsImage, 5", "photo", opaquePhoto, median<5>, "OpenCV medianBlur", medianBlur<5>,
     byChannel},
    {"MedianFilter32BitsImage, 7", "photo", opaquePhoto, median<7>, "OpenCV medianBlur", medianBlur<7>,
     byChannel},
    {"MedianFilter32BitsImage, 15", "photo", opaquePhoto, median<15>, "OpenCV medianBlur", medianBlur<15>,
     byChannel},
    {"MedianFilter32BitsImage, 63", "photo", opaquePhoto, median<63>, "OpenCV medianBlur", medianBlur<63>,
     byChannel},
    {"Sharpen32BitsImage, 1",
     "photo",
     opaquePhoto,
     [](Dib dib) { CDIB32::Sharpen32BitsImage(dib, 1); },
     "OpenCV filter2D",
     sharpen,
     {"the peer filters alpha too", 0, 0, false}},
};

void add(Rows& rows, const Filter& row) {
  rows.push_back({row.name, row.picture, row.peer, row.agreement.difference, [&row](Size size) {
                    const std::shared_ptr<BITMAPINFOHEADER> picture = row.make(size.width, size.height);
                    const cv::Mat from = matOf(picture.get());
                    cv::Mat result(from.size(), from.type());
                    Trial trial = changingTrial(
                        picture, [&row, picture] { row.ours(picture.get()); },
                        [&row, from, result]() mutable { row.with(from, result); }, result, row.agreement,
                        false);
                    trial.resetPeer = nullptr;
                    return trial;
                  }});
}

Trial noiseTrial(OwnedDib (*make)(int, int), Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> frame = make(size.width, size.height);
  const cv::Mat from = matOf(frame.get());
  cv::Mat result(from.size(), from.type());
  return makingTrial([frame] { return OwnedDib(RemoveNoiseDIB(frame.get(), nullptr, nullptr)); },
                     [from, result]() mutable { cv::medianBlur(from, result, 3); }, result, insideEdge);
}

/// Sums over boxes of 7 x 7: the peer makes only these.
template <class Smooth>
Trial smoothTrial(Smooth smooth, Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> picture = flat(size.width, size.height);
  const std::shared_ptr<BITMAPINFOHEADER> brush = brush8(size.width, size.height);
  const cv::Mat covered = matOf(brush.get()) != 0;
  cv::Mat sums(covered.size(), CV_32SC1);
  Trial trial = changingTrial(
      picture, [=] { smooth(picture.get(), brush.get()); },
      [=]() mutable {
        cv::boxFilter(covered, sums, CV_32S, {7, 7}, {-1, -1}, false, cv::BORDER_CONSTANT);
      },
      sums, incomparable(""), true);
  return trial;
}

Trial mosaicTrial(Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> picture = opaquePhoto(size.width, size.height);
  const cv::Mat from = matOf(picture.get());
  cv::Mat blocks(from.rows / 16, from.cols / 16, from.type());
  Trial trial = makingTrial([picture] { return OwnedDib(Mosaic32BitsDIB(picture.get(), 16)); },
                            [=]() mutable { cv::resize(from, blocks, blocks.size(), 0, 0, cv::INTER_AREA); },
                            blocks, incomparable(""));
  trial.pixels = size.pixels();
  return trial;
}

}  // namespace

void addFilters(Rows& rows) {
  const char* edge = insideEdge.difference;
  rows.push_back({"RemoveNoiseDIB", "photo", "OpenCV medianBlur", edge,
                  [](Size size) { return noiseTrial(photo24, size); }});
  rows.push_back({"RemoveNoiseDIB", "cartoon", "OpenCV medianBlur", edge,
                  [](Size size) { return noiseTrial(cartoon24, size); }});
  for (const Filter& row : filters) add(rows, row);
  rows.push_back(
      {"SmoothBlock, 7", "flat", "OpenCV boxFilter", "the peer makes the sums alone", [](Size size) {
         return smoothTrial(
             [](Dib dib, Dib brush) {
               CDIB32::SmoothBlock(dib, brush, {0, 0}, 1, 7, nullptr);
             },
             size);
       }});
  rows.push_back(
      {"SmoothFillBlock, 7", "flat", "OpenCV boxFilter", "the peer makes the sums alone", [](Size size) {
         return smoothTrial(
             [](Dib dib, Dib brush) {
               CDIB32::SmoothFillBlock(dib, brush, {0, 0}, 254, 7, nullptr);
             },
             size);
       }});
  rows.push_back({"Mosaic32BitsDIB, 16", "photo", "OpenCV resize, INTER_AREA",
                  "the peer only makes it smaller", mosaicTrial});
}

}  // namespace bench
