#include <opencv2/imgproc.hpp>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>

#include <SDL.h>
#include <libimagequant.h>
#include <libyuv.h>

#include "adapters.h"
#include "palette/palette.h"
#include "row.h"

/// Changes of depth, grays, thresholds, and what palettes are made of.
namespace bench {
namespace {

using Converter = CBitmapConverter;
using Map = CMap<DWORD, DWORD&, int, int&>;

struct Conversion {
  const char* name;
  const char* picture;
  OwnedDib (*source)(int width, int height);
  Dib (*ours)(Dib source, Map& colours);
  const char* peer;
  int resultType;
  /// Prepares the peer and returns its call.
  std::function<void()> (*with)(Dib source, cv::Mat from, cv::Mat to);
  Agreement agreement = same;
};

OwnedDib rgb555(int width, int height) {
  return OwnedDib(Converter::ConvertDIBTo16Bits(photo24(width, height).get(), nullptr));
}

template <auto convert>
Dib plain(Dib source, Map&) {
  return convert(source, nullptr);
}

template <int code>
std::function<void()> converted(Dib, cv::Mat from, cv::Mat to) {
  return [=]() mutable { cv::cvtColor(from, to, code); };
}

std::function<void()> colourMapped(Dib source, cv::Mat from, cv::Mat to) {
  return [=, map = paletteMat(source)]() mutable { cv::applyColorMap(from, to, map); };
}

constexpr Conversion conversions[] = {
    {"Convert8BitsTo24Bits", "photo", gray8, plain<Converter::Convert8BitsTo24Bits>, "OpenCV applyColorMap",
     CV_8UC3, colourMapped},
    {"Convert8BitsTo16Bits", "photo", gray8, plain<Converter::Convert8BitsTo16Bits>, "SDL INDEX8 to RGB555",
     CV_8UC2, sdlBlit},
    {"Convert32BitsTo24Bits", "photo", photo, plain<Converter::Convert32BitsTo24Bits>, "libyuv ARGBToRGB24",
     CV_8UC3, [](Dib, cv::Mat from, cv::Mat to) { return yuv<libyuv::ARGBToRGB24>(from, to); }},
    {"Convert24BitsTo32Bits", "photo", photo24,
     [](Dib dib, Map&) { return Converter::Convert24BitsTo32Bits(dib, 0, nullptr); }, "libyuv RGB24ToARGB",
     CV_8UC4, [](Dib, cv::Mat from, cv::Mat to) { return yuv<libyuv::RGB24ToARGB>(from, to); },
     incomparable("the bytes of a pixel in the other order")},
    {"ConvertTo32BitsDIB", "photo", photo24,
     [](Dib dib, Map&) { return CDIB32::ConvertTo32BitsDIB(dib, nullptr, 255, 0); }, "libyuv RGB24ToARGB",
     CV_8UC4, [](Dib, cv::Mat from, cv::Mat to) { return yuv<libyuv::RGB24ToARGB>(from, to); }},
    {"Convert24BitsTo16Bits", "photo", photo24, plain<Converter::Convert24BitsTo16Bits>, "OpenCV cvtColor",
     CV_8UC2, converted<cv::COLOR_BGR2BGR555>},
    {"Convert32BitsTo16Bits",
     "photo",
     photo,
     plain<Converter::Convert32BitsTo16Bits>,
     "libyuv ARGBToARGB1555",
     CV_8UC2,
     [](Dib, cv::Mat from, cv::Mat to) { return yuv<libyuv::ARGBToARGB1555>(from, to); },
     {"the peer keeps a bit of alpha", 128}},
    {"Convert16BitsTo24Bits", "photo", rgb555, plain<Converter::Convert16BitsTo24Bits>, "OpenCV cvtColor",
     CV_8UC3, converted<cv::COLOR_BGR5552BGR>},
    {"Convert24BitsDIBTo256GraysDIB", "photo", photo24, plain<Converter::Convert24BitsDIBTo256GraysDIB>,
     "libyuv RGB24ToJ400", CV_8UC1,
     [](Dib, cv::Mat from, cv::Mat to) { return yuv<libyuv::RGB24ToJ400>(from, to); }, rounds},
    {"Convert24BitsDIBTo256GraysDIB", "all gray", gray24, plain<Converter::Convert24BitsDIBTo256GraysDIB>,
     "libyuv RGB24ToJ400", CV_8UC1,
     [](Dib, cv::Mat from, cv::Mat to) { return yuv<libyuv::RGB24ToJ400>(from, to); }, rounds},
    {"Convert8BitsGrayDibTo1BitsDib", "photo", gray8,
     [](Dib dib, Map&) { return Converter::Convert8BitsGrayDibTo1BitsDib(dib, 100, nullptr); },
     "OpenCV threshold", CV_8UC1,
     [](Dib, cv::Mat from, cv::Mat to) -> std::function<void()> {
       return [=]() mutable { cv::threshold(from, to, 99, 255, cv::THRESH_BINARY); };
     }},
};

/// What a program writes without the library: each pixel through the standard hash.
std::function<void()> standardMap(Dib, cv::Mat from, cv::Mat to) {
  return [=]() mutable {
    std::unordered_map<DWORD, int> indexes;
    for (int y = 0; y < from.rows; ++y) {
      for (int x = 0; x < from.cols; ++x) {
        const DWORD key = dibkit::packRgb(dibkit::Bgr24::get(from.ptr(y), x));
        to.ptr(y)[x] =
            static_cast<BYTE>(indexes.emplace(key, static_cast<int>(indexes.size())).first->second);
      }
    }
  };
}

/// Remapping onto a palette that the quantising library made; making it is not measured.
std::function<void()> quantiserRemap(Dib, cv::Mat from, cv::Mat to) {
  cv::Mat rgba;
  cv::cvtColor(from, rgba, cv::COLOR_BGR2RGBA);
  const std::shared_ptr<liq_attr> attributes(liq_attr_create(), liq_attr_destroy);
  const std::shared_ptr<liq_image> image(
      liq_image_create_rgba(attributes.get(), rgba.data, rgba.cols, rgba.rows, 0), liq_image_destroy);
  liq_result* quantised = nullptr;
  if (liq_image_quantize(image.get(), attributes.get(), &quantised) != LIQ_OK)
    throw std::runtime_error("no palette");
  liq_set_dithering_level(quantised, 0);
  return [=, keep = std::shared_ptr<liq_result>(quantised, liq_result_destroy)] {
    (void)attributes;
    (void)rgba;
    liq_write_remapped_image(keep.get(), image.get(), to.data, to.total());
  };
}

Dib exactReduction(Dib dib, Map&) { return Converter::ConvertTrueDibTo8BitsDib(dib, 0, nullptr); }
Dib sharedReduction(Dib dib, Map& colours) { return Convert24BitsDIBToLowerBitsDIB(dib, colours); }

/// The colours of a 24-bit picture as a palette; none if there are too many.
Map coloursOf(Dib source) {
  Map colours;
  if (source->biBitCount != 24) return colours;
  const OwnedDib reduced(Converter::ConvertTrueDibToLowBitsDib(source, nullptr));
  if (reduced) {
    CPaletteFuns::SumDibImagePalEntries(colours, dibkit::paletteOf(reduced.get()),
                                        static_cast<int>(GetDIBPaletteSize(reduced.get())));
  }
  return colours;
}

constexpr Agreement otherIndexes = incomparable("other indexes for the same colours");
constexpr Conversion reductions[] = {
    {"ConvertTrueDibTo8BitsDib", "256 colours", photo256, exactReduction, "std::unordered_map loop", CV_8UC1,
     standardMap, otherIndexes},
    {"ConvertTrueDibTo8BitsDib", "24 colours", cartoon24, exactReduction, "std::unordered_map loop", CV_8UC1,
     standardMap, otherIndexes},
    {"Convert24BitsDIBToLowerBitsDIB", "256 colours", photo256, sharedReduction, "std::unordered_map loop",
     CV_8UC1, standardMap, otherIndexes},
    {"Convert24BitsDIBToLowerBitsDIB", "24 colours", cartoon24, sharedReduction, "std::unordered_map loop",
     CV_8UC1, standardMap, otherIndexes},
    {"Convert24BitsDIBToLowerBitsDIB", "256 colours", photo256, sharedReduction, "libimagequant remap",
     CV_8UC1, quantiserRemap, incomparable("the peer takes the nearest colour")},
};

void add(Rows& rows, const Conversion& row) {
  rows.push_back({row.name, row.picture, row.peer, row.agreement.difference, [&row](Size size) {
                    const std::shared_ptr<BITMAPINFOHEADER> source = row.source(size.width, size.height);
                    const auto colours = std::make_shared<Map>(coloursOf(source.get()));
                    const cv::Mat result(size.height, size.width, row.resultType);
                    return makingTrial(
                        [&row, source, colours] { return OwnedDib(row.ours(source.get(), *colours)); },
                        row.with(source.get(), matOf(source.get()), result), result, row.agreement);
                  }});
}

int countWithStandardSet(const cv::Mat& picture) {
  std::unordered_set<DWORD> colours;
  for (int y = 0; y < picture.rows; ++y) {
    for (int x = 0; x < picture.cols; ++x) {
      colours.insert(dibkit::packRgb(dibkit::Bgr24::get(picture.ptr(y), x)));
    }
  }
  return static_cast<int>(colours.size());
}

int histogram(const cv::Mat& picture) {
  static cv::Mat bins;
  const int channel = 0, binCount = 256;
  const float range[] = {0, 256};
  const float* ranges = range;
  cv::calcHist(&picture, 1, &channel, cv::noArray(), bins, 1, &binCount, &ranges);
  return 0;
}

/// Operations that give a number.
struct Count {
  const char* name;
  const char* picture;
  OwnedDib (*source)(int width, int height);
  int (*ours)(Dib source);
  const char* peer;
  int (*with)(const cv::Mat& picture);
  const char* difference = "";
};
constexpr Count counts[] = {
    {"GetColorsNumFrom24BitsDib", "256 colours", photo256, CPaletteFuns::GetColorsNumFrom24BitsDib,
     "std::unordered_set loop", countWithStandardSet},
    {"GetColorsNumFrom24BitsDib", "24 colours", cartoon24, CPaletteFuns::GetColorsNumFrom24BitsDib,
     "std::unordered_set loop", countWithStandardSet},
    {"GetThreshValueForm8BitsGrayDib", "photo", gray8, CPaletteFuns::GetThreshValueForm8BitsGrayDib,
     "OpenCV calcHist", histogram, "the peer makes the histogram alone"},
};

void add(Rows& rows, const Count& row) {
  rows.push_back({row.name, row.picture, row.peer, row.difference, [&row](Size size) {
                    const std::shared_ptr<BITMAPINFOHEADER> source = row.source(size.width, size.height);
                    const cv::Mat picture = matOf(source.get());
                    Trial trial;
                    trial.ours = [&row, source] {
                      keep(row.ours(source.get()));
                      return OwnedDib();
                    };
                    trial.peer = [&row, picture] { keep(row.with(picture)); };
                    trial.pixels = size.pixels();
                    trial.verify = [&row, source, picture] {
                      const bool equal =
                          *row.difference != '\0' || row.ours(source.get()) == row.with(picture);
                      return equal ? "" : "other numbers";
                    };
                    return trial;
                  }});
}

}  // namespace

void addConversions(Rows& rows) {
  for (const Conversion& row : conversions) add(rows, row);
  for (const Conversion& row : reductions) add(rows, row);
  for (const Count& row : counts) add(rows, row);
}

}  // namespace bench
