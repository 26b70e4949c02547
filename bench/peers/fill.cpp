#include <opencv2/imgproc.hpp>

#include <libyuv.h>

#include "adapters.h"
#include "frames/frames.h"
#include "raster/region_spans.h"
#include "row.h"

/// Fills and magic wands. Pixels are counted as they are reached.
namespace bench {
namespace {

using dibkit::OwnedRegion;

constexpr POINT seed{0, 0};

double areaOf(HRGN region) {
  double pixels = 0;
  const dibkit::RegionSpans spans(region);
  for (const RECT& rect : spans.rectangles()) {
    pixels += static_cast<double>(rect.right - rect.left) * (rect.bottom - rect.top);
  }
  return pixels;
}

struct Fill {
  const char* name;
  const char* picture;
  OwnedDib (*make)(int width, int height);
  int opacity;
};
constexpr Fill fills[] = {
    {"ExtFillConnectedPixels", "flat", flat, 255},
    {"ExtFillConnectedPixels", "drawing", discs, 255},
    {"ExtFillConnectedPixels", "maze", maze, 255},
    {"ExtFillConnectedPixels", "fence", fence, 255},
    {"ExtFillConnectedPixels, opacity 200", "flat", flat, 200},
    {"ExtFillConnectedPixels, opacity 200", "drawing", discs, 200},
    {"ExtFillConnectedPixels, opacity 200", "maze", maze, 200},
};

constexpr int tolerance = 2;
const cv::Scalar span = cv::Scalar::all(tolerance);

Trial fillTrial(const Fill& row, Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> picture = row.make(size.width, size.height);
  const DWORD target = dibkit::Bgra32::get(dibkit::View(picture.get()).row(0), 0);
  const cv::Mat result = matOf(at24(row.make(size.width, size.height)).get());
  const Agreement agreement = row.opacity == 255 ? same : incomparable("the peer fills opaquely");
  Trial trial = changingTrial(
      picture,
      [=, opacity = row.opacity] {
        CDIB32::ExtFillConnectedPixels(picture.get(), target, RGB(200, 100, 50), 0, opacity, tolerance, seed,
                                       nullptr);
      },
      [=]() mutable {
        cv::floodFill(result, cv::Point(0, 0), cv::Scalar(50, 100, 200), nullptr, span, span,
                      4 | cv::FLOODFILL_FIXED_RANGE);
      },
      result, agreement, false);
  trial.pixels = areaOf(OwnedRegion(CDIB32::MagicWandRegion(picture.get(), seed, tolerance)).get());
  return trial;
}

HRGN wand32(Dib dib) { return CDIB32::MagicWandRegion(dib, seed, tolerance); }
HRGN wand24(Dib dib) {
  return MagicWandRegion(dib, nullptr, {0, 0}, seed, tolerance, {dib->biWidth, dib->biHeight});
}

struct Wand {
  const char* name;
  const char* picture;
  OwnedDib (*make)(int width, int height);
  HRGN (*ours)(Dib picture);
};
constexpr Wand wands[] = {
    {"MagicWandRegion, 32 bits", "flat", flat, wand32},
    {"MagicWandRegion, 32 bits", "drawing", discs, wand32},
    {"MagicWandRegion, 32 bits", "maze", maze, wand32},
    {"MagicWandRegion, 24 bits", "flat", flat24, wand24},
    {"MagicWandRegion, 24 bits", "drawing", discs24, wand24},
    {"MagicWandRegion, 24 bits", "maze", maze24, wand24},
};

/// The peer gives a mask and no region. It needs an empty one, which is made outside the measured time.
Trial wandTrial(const Wand& row, Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> picture = row.make(size.width, size.height);
  const cv::Mat pixels =
      picture->biBitCount == 24
          ? matOf(picture.get())
          : matOf(OwnedDib(CBitmapConverter::Convert32BitsTo24Bits(picture.get(), nullptr)).get());
  cv::Mat mask(size.height + 2, size.width + 2, CV_8UC1);
  Trial trial;
  trial.ours = [&row, picture] {
    const OwnedRegion region(row.ours(picture.get()));
    return OwnedDib();
  };
  trial.resetPeer = [mask]() mutable { mask.setTo(0); };
  trial.peer = [pixels, mask]() mutable {
    cv::floodFill(pixels, mask, cv::Point(0, 0), cv::Scalar(), nullptr, span, span,
                  4 | 255 << 8 | cv::FLOODFILL_FIXED_RANGE | cv::FLOODFILL_MASK_ONLY);
  };
  trial.pixels = areaOf(OwnedRegion(row.ours(picture.get())).get());
  trial.verify = [trial, mask] {
    trial.resetPeer();
    trial.peer();
    const cv::Mat inside = mask(cv::Rect(1, 1, mask.cols - 2, mask.rows - 2));
    return cv::countNonZero(inside == 255) == trial.pixels ? "" : "another area";
  };
  return trial;
}

/// All pixels of a colour, connected or not, as a region. The peer's bitmap of its matches is made
/// beforehand.
Trial similarTrial(Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> picture = discs(size.width, size.height);
  const cv::Mat pixels = matOf(picture.get());
  const cv::Scalar target = pixels.at<cv::Vec4b>(0, 0);
  const cv::Scalar low = target - cv::Scalar::all(20);
  const cv::Scalar high = target + cv::Scalar::all(20);
  cv::Mat mask;
  cv::inRange(pixels, low, high, mask);
  const PixmanImage bits = pixmanBits(mask);
  Trial trial;
  trial.ours = [picture] {
    const OwnedRegion region(CDIB32::MagicWandRegion2(picture.get(), seed, 20));
    return OwnedDib();
  };
  trial.peer = [=]() mutable {
    cv::inRange(pixels, low, high, mask);
    pixman_region32_t region;
    pixman_region32_init_from_image(&region, bits.get());
    pixman_region32_fini(&region);
  };
  trial.pixels = size.pixels();
  trial.verify = [=] {
    const OwnedRegion region(CDIB32::MagicWandRegion2(picture.get(), seed, 20));
    return cv::countNonZero(mask) == areaOf(region.get()) ? "" : "another area";
  };
  return trial;
}

/// A flat picture half covered with a colour; the peer composites a picture of that colour.
Trial replaceTrial(Size size) {
  const std::shared_ptr<BITMAPINFOHEADER> picture = flat(size.width, size.height);
  const DWORD target = dibkit::Bgra32::get(dibkit::View(picture.get()).row(0), 0);
  const cv::Mat result = matOf(picture.get());
  const cv::Mat fill(result.size(), result.type(), cv::Scalar(50, 100, 200, 128));
  return changingTrial(
      picture, [=] { CDIB32::ExtFill32BitsDIB(picture.get(), target, RGB(200, 100, 50), 128, tolerance); },
      overByDetour(fill, result, result), result, {"the detour loses bits", 1}, false);
}

}  // namespace

void addFills(Rows& rows) {
  for (const Fill& row : fills) {
    rows.push_back({row.name, row.picture, "OpenCV floodFill",
                    row.opacity == 255 ? "" : "the peer fills opaquely",
                    [&row](Size size) { return fillTrial(row, size); }});
  }
  for (const Wand& row : wands) {
    rows.push_back({row.name, row.picture, "OpenCV floodFill, mask only", "the peer gives a mask, no region",
                    [&row](Size size) { return wandTrial(row, size); }});
  }
  rows.push_back({"MagicWandRegion2", "drawing", "OpenCV inRange, pixman region from a bitmap",
                  "the peer's bitmap is made beforehand", similarTrial});
  rows.push_back({"ExtFill32BitsDIB, opacity 128", "flat", "premultiply, pixman OVER, unpremultiply",
                  "the detour loses bits", replaceTrial});
}

}  // namespace bench
