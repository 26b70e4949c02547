#include <array>

#include "dib/view.h"
#include "palette/palette.h"

namespace dibkit {
namespace {

using Histogram = std::array<std::int64_t, 256>;

/// Counts in several histograms at once: a bin that was just written is slow to read again, and neighbouring
/// pixels are mostly alike.
Histogram countLevels(const ConstView& view) {
  constexpr int lanes = 8;
  std::array<std::array<DWORD, 256>, lanes> bins{};
  for (int y = 0; y < view.lines(); ++y) {
    const BYTE* row = view.row(y);
    int x = 0;
    for (; x + lanes <= view.width(); x += lanes) {
      for (int lane = 0; lane < lanes; ++lane) ++bins[static_cast<std::size_t>(lane)][row[x + lane]];
    }
    for (; x < view.width(); ++x) ++bins[0][row[x]];
  }
  Histogram histogram{};
  for (const auto& part : bins) {
    for (std::size_t level = 0; level < histogram.size(); ++level) histogram[level] += part[level];
  }
  return histogram;
}

/// The rounded mean of five neighbours, the ends repeated. In place and recursive on purpose: the two bins
/// before the current one already have their means.
void smooth(Histogram& histogram) {
  for (int level = 0; level < 256; ++level) {
    std::int64_t sum = 0;
    for (int nearby = level - 2; nearby <= level + 2; ++nearby) {
      sum += histogram[static_cast<std::size_t>(std::clamp(nearby, 0, 255))];
    }
    histogram[static_cast<std::size_t>(level)] = (sum + 2) / 5;
  }
}

int bestThreshold(const Histogram& histogram) {
  std::int64_t total = 0;
  double weighted = 0;
  for (std::size_t level = 0; level < histogram.size(); ++level) {
    total += histogram[level];
    weighted += static_cast<double>(level) * static_cast<double>(histogram[level]);
  }
  double best = -1;
  int threshold = 1;
  std::int64_t background = 0;
  double backgroundSum = 0;
  for (int level = 0; level < 255; ++level) {
    const std::int64_t count = histogram[static_cast<std::size_t>(level)];
    background += count;
    if (background == 0) continue;
    const std::int64_t foreground = total - background;
    if (foreground == 0) break;
    backgroundSum += level * static_cast<double>(count);
    const double apart = backgroundSum / static_cast<double>(background) -
                         (weighted - backgroundSum) / static_cast<double>(foreground);
    const double score = static_cast<double>(background) * static_cast<double>(foreground) * (apart * apart);
    if (score > best) {
      best = score;
      threshold = level;
    }
  }
  return threshold;
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

int CPaletteFuns::GetThreshValueForm8BitsGrayDib(BITMAPINFOHEADER* dib) {
  const ConstView view(dib != nullptr && dib->biBitCount == 8 ? dib : nullptr);
  if (!view) return 0;
  Histogram histogram = countLevels(view);
  smooth(histogram);
  return bestThreshold(histogram);
}
