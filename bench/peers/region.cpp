#include <cmath>
#include <numbers>
#include <opencv2/imgproc.hpp>

#include "adapters.h"
#include "frames/frames.h"
#include "raster/region_builder.h"
#include "raster/region_spans.h"
#include "row.h"

/// Regions: made from masks, tested, and cut along.
namespace bench {
namespace {

using dibkit::OwnedRegion;
using Picture = std::shared_ptr<BITMAPINFOHEADER>;

/// pixman's region of a bitmap.
struct PixmanRegion {
  explicit PixmanRegion(const PixmanImage& bits) { pixman_region32_init_from_image(&region, bits.get()); }
  explicit PixmanRegion(HRGN from) {
    pixman_region32_init(&region);
    std::vector<pixman_box32_t> boxes;
    const dibkit::RegionSpans spans(from);
    for (const RECT& rect : spans.rectangles()) {
      boxes.push_back({static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right),
                       static_cast<int>(rect.bottom)});
    }
    pixman_region32_init_rects(&region, boxes.data(), static_cast<int>(boxes.size()));
  }
  ~PixmanRegion() { pixman_region32_fini(&region); }
  PixmanRegion(const PixmanRegion&) = delete;
  PixmanRegion& operator=(const PixmanRegion&) = delete;

  pixman_region32_t region;
};

OwnedDib fullMask(int width, int height) { return dibkit::createMask(width, height); }

Trial maskTrial(OwnedDib (*make)(int, int), Size size) {
  const Picture mask = make(size.width, size.height);
  const PixmanImage bits = pixmanBits(255 - matOf(mask.get()));
  Trial trial;
  trial.ours = [mask] {
    const OwnedRegion region(CalcOpacityAreaRgn(mask.get()));
    return OwnedDib();
  };
  trial.peer = [bits] { const PixmanRegion region(bits); };
  trial.pixels = size.pixels();
  trial.verify = [mask, bits] {
    const OwnedRegion region(CalcOpacityAreaRgn(mask.get()));
    PixmanRegion ours(region.get()), other(bits);
    return pixman_region32_equal(&ours.region, &other.region) != 0 ? "" : "another region";
  };
  return trial;
}

Trial pointTrial(Size size) {
  const Picture mask = cartoonMask(size.width, size.height);
  const std::shared_ptr<OwnedRegion> region(new OwnedRegion(CalcOpacityAreaRgn(mask.get())));
  const auto other = std::make_shared<PixmanRegion>(region->get());
  constexpr int points = 1000;
  const auto count = [=](auto contains) {
    int inside = 0;
    for (int i = 0, x = 0, y = 0; i < points; ++i) {
      x = (x + 611) % size.width;
      y = (y + 397) % size.height;
      inside += contains(x, y) != 0 ? 1 : 0;
    }
    return inside;
  };
  const auto ours = [=] { return count([&](int x, int y) { return PtInRegion(region->get(), x, y); }); };
  const auto peer = [=] {
    return count([&](int x, int y) { return pixman_region32_contains_point(&other->region, x, y, nullptr); });
  };
  Trial trial;
  trial.ours = [ours] {
    keep(ours());
    return OwnedDib();
  };
  trial.peer = [peer] { keep(peer()); };
  trial.pixels = points;
  trial.verify = [=] { return ours() == peer() ? "" : "other points"; };
  return trial;
}

/// A picture cut along a region. The peer copies what is inside and leaves the rest.
Trial cropTrial(bool ellipse, OwnedDib (*make)(int, int), Size size) {
  const Picture picture = make(size.width, size.height);
  const auto [w, h] = size;
  const std::shared_ptr<OwnedRegion> region(
      new OwnedRegion(ellipse ? CreateEllipticRgn(0, 0, w, h) : CreateRectRgn(0, 0, w, h)));
  const cv::Mat from = matOf(picture.get());
  const cv::Mat result(from.size(), from.type());
  const PixmanImage out = pixmanOf(result);
  PixmanRegion clip(region->get());
  if (ellipse) pixman_image_set_clip_region32(out.get(), &clip.region);
  return makingTrial(
      [picture, region] {
        if (picture->biBitCount == 32) return OwnedDib(Crop32BitsDIB(picture.get(), region->get()));
        OwnedDib image, mask;
        CropFrame(picture.get(), nullptr, region->get(), dibkit::out(image), dibkit::out(mask));
        return image;
      },
      [in = pixmanOf(from), out] { compose(PIXMAN_OP_SRC, in, nullptr, out); }, result,
      ellipse ? incomparable("") : same);
}

/// Spans of 4 pixels every 8, every row shifted, so that no two rows are alike.
OwnedRegion comb(Size size, int shift) {
  dibkit::RegionBuilder builder(size.width, size.height);
  for (int y = 0; y < size.height; ++y) {
    for (int x = (y * 3 + shift) % 8; x + 4 <= size.width; x += 8) builder.add(y, x, x + 4);
  }
  return builder.region();
}

using PixmanCombination = decltype(&pixman_region32_intersect);

Trial combinationTrial(int mode, PixmanCombination combine, Size size) {
  const auto shared = [](OwnedRegion region) { return std::make_shared<OwnedRegion>(std::move(region)); };
  const auto a = shared(comb(size, 0)), b = shared(comb(size, 2)),
             out = shared(OwnedRegion(CreateRectRgn(0, 0, 1, 1)));
  const auto first = std::make_shared<PixmanRegion>(a->get()),
             second = std::make_shared<PixmanRegion>(b->get());
  const auto result = std::make_shared<PixmanRegion>(out->get());
  Trial trial;
  trial.ours = [=] {
    CombineRgn(out->get(), a->get(), b->get(), mode);
    return OwnedDib();
  };
  trial.peer = [=] { combine(&result->region, &first->region, &second->region); };
  trial.pixels = 2.0 * pixman_region32_n_rects(&first->region);
  trial.verify = [=] {
    trial.ours();
    trial.peer();
    PixmanRegion ours(out->get());
    return pixman_region32_equal(&ours.region, &result->region) != 0 ? "" : "another region";
  };
  return trial;
}

/// A star as a region; the peer paints a mask of it.
Trial starTrial(int points, Size size) {
  std::vector<POINT> corners;
  std::vector<cv::Point> others;
  for (int i = 0; i < 2 * points; ++i) {
    const double angle = std::numbers::pi * i / points;
    const double radius = i % 2 == 0 ? 0.5 : 0.2;
    corners.push_back({static_cast<LONG>(size.width * (0.5 + radius * std::sin(angle))),
                       static_cast<LONG>(size.height * (0.5 + radius * std::cos(angle)))});
    others.emplace_back(static_cast<int>(corners.back().x), static_cast<int>(corners.back().y));
  }
  cv::Mat mask(size.height, size.width, CV_8UC1);
  Trial trial;
  trial.ours = [corners] {
    const OwnedRegion region(CreatePolygonRgn(corners.data(), static_cast<int>(corners.size()), ALTERNATE));
    return OwnedDib();
  };
  trial.peer = [=]() mutable {
    mask.setTo(0);
    cv::fillPoly(mask, others, 255);
  };
  trial.pixels = size.pixels();
  trial.verify = [] { return ""; };
  return trial;
}

}  // namespace

void addRegions(Rows& rows) {
  rows.push_back({"CalcOpacityAreaRgn", "full", "pixman region from a bitmap", "",
                  [](Size size) { return maskTrial(fullMask, size); }});
  rows.push_back({"CalcOpacityAreaRgn", "cartoon", "pixman region from a bitmap", "",
                  [](Size size) { return maskTrial(cartoonMask, size); }});
  rows.push_back({"PtInRegion", "cartoon", "pixman contains_point", "", pointTrial, "point"});
  const auto addCombination = [&](const char* name, int mode, const char* peer, PixmanCombination combine) {
    rows.push_back({name, "combs", peer, "", [=](Size size) { return combinationTrial(mode, combine, size); },
                    "rectangle"});
  };
  addCombination("CombineRgn, and", RGN_AND, "pixman intersect", pixman_region32_intersect);
  addCombination("CombineRgn, or", RGN_OR, "pixman union", pixman_region32_union);
  addCombination("CombineRgn, difference", RGN_DIFF, "pixman subtract", pixman_region32_subtract);
  const char* paints = "the peer paints a mask, edges included";
  for (const int points : {5, 100, 5000}) {
    rows.push_back({"CreatePolygonRgn, " + std::to_string(2 * points) + " corners", "star", "OpenCV fillPoly",
                    paints, [points](Size size) { return starTrial(points, size); }});
  }
  const char* inside = "the peer leaves the pixels outside, ours gives them alpha 0 or a mask";
  rows.push_back({"Crop32BitsDIB", "rectangle", "pixman SRC", "",
                  [](Size size) { return cropTrial(false, photo, size); }});
  rows.push_back({"Crop32BitsDIB", "ellipse", "pixman SRC with a clip region", inside,
                  [](Size size) { return cropTrial(true, photo, size); }});
  rows.push_back({"CropFrame, 24 bits", "rectangle", "pixman SRC", "",
                  [](Size size) { return cropTrial(false, photo24, size); }});
  rows.push_back({"CropFrame, 24 bits", "ellipse", "pixman SRC with a clip region", inside,
                  [](Size size) { return cropTrial(true, photo24, size); }});
}

}  // namespace bench
