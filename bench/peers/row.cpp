#include "row.h"

#include <cmath>
#include <sstream>

namespace bench {
namespace {

/// Counts bytes that differ.
struct Differences {
  int allowed;
  double total = 0;
  double beyond = 0;
  int largest = 0;

  void add(int a, int b) {
    const int difference = std::abs(a - b);
    total += 1;
    if (difference > allowed) beyond += 1;
    if (difference > largest) largest = difference;
  }
};

int matTypeOf(int bitCount) {
  switch (bitCount) {
    case 16:
      return CV_8UC2;
    case 24:
      return CV_8UC3;
    case 32:
      return CV_8UC4;
    default:
      return CV_8UC1;
  }
}

}  // namespace

cv::Mat matOf(const BITMAPINFOHEADER* dib) {
  const dibkit::ConstView view(dib);
  cv::Mat mat(view.height(), view.width(), matTypeOf(view.bitCount()));
  for (int y = 0; y < view.height(); ++y) {
    if (view.bitCount() >= 8) {
      std::memcpy(mat.ptr(y), view.row(y), mat.elemSize() * static_cast<std::size_t>(mat.cols));
      continue;
    }
    for (int x = 0; x < view.width(); ++x) {
      mat.at<BYTE>(y, x) = dibkit::Index1::get(view.row(y), x) != 0 ? 255 : 0;
    }
  }
  return mat;
}

std::string compare(const BITMAPINFOHEADER* ours, const cv::Mat& peer, const Agreement& agreement) {
  if (agreement.share == 1) return "";
  const dibkit::ConstView view(ours);
  if (!view || view.width() != peer.cols || view.height() != peer.rows) return "other size";
  Differences differences{agreement.byte};
  const bool sameDepth = view.bitCount() == static_cast<int>(8 * peer.elemSize());
  const int compared = peer.channels() == 4 && !agreement.alpha ? 3 : static_cast<int>(peer.elemSize());
  for (int y = 0; sameDepth && y < peer.rows; ++y) {
    for (int x = 0; x < peer.cols; ++x) {
      const std::size_t at = static_cast<std::size_t>(x) * peer.elemSize();
      for (int i = 0; i < compared; ++i) differences.add(view.row(y)[at + i], peer.ptr(y)[at + i]);
    }
  }
  if (!sameDepth) {
    dibkit::forEachPixel(ours, [&](int x, int y, dibkit::Rgb colour) {
      const BYTE* pixel = peer.ptr(y) + static_cast<std::size_t>(x) * peer.elemSize();
      differences.add(pixel[0], colour.blue);
      if (peer.channels() == 1) return;
      differences.add(pixel[1], colour.green);
      differences.add(pixel[2], colour.red);
    });
  }
  const double share = differences.beyond / differences.total;
  if (share <= agreement.share) return "";
  std::ostringstream text;
  text << 100 * share << " % of the bytes differ, by up to " << differences.largest;
  return text.str();
}

Trial makingTrial(std::function<OwnedDib()> ours, std::function<void()> peer, const cv::Mat& result,
                  const Agreement& agreement) {
  Trial trial;
  trial.ours = ours;
  trial.peer = peer;
  trial.pixels = static_cast<double>(result.total());
  trial.verify = [=] {
    const OwnedDib made = ours();
    peer();
    return compare(made.get(), result, agreement);
  };
  return trial;
}

Trial changingTrial(const std::shared_ptr<BITMAPINFOHEADER>& target, std::function<void()> ours,
                    std::function<void()> peer, const cv::Mat& result, const Agreement& agreement,
                    bool repeatable) {
  Trial trial;
  trial.ours = [ours] {
    ours();
    return OwnedDib();
  };
  trial.peer = peer;
  if (!repeatable) {
    const std::shared_ptr<BITMAPINFOHEADER> before(CBitmapCreator::Clone(target.get()), dibkit::DibDeleter());
    trial.resetOurs = [target, before] {
      std::memcpy(target.get(), before.get(),
                  static_cast<std::size_t>(dibkit::layoutOf(before.get())->total));
    };
    trial.resetPeer = [result, before = result.clone()]() mutable { before.copyTo(result); };
  }
  trial.pixels = static_cast<double>(result.total());
  trial.verify = [=] {
    ours();
    peer();
    return compare(target.get(), result, agreement);
  };
  return trial;
}

}  // namespace bench
