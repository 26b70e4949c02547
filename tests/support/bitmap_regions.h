#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "support/images.h"

/// Regions the plain way: one flag a pixel. What the span code has to equal.
namespace test {

class Bitmap {
 public:
  Bitmap(int width, int height)
      : width_(width), height_(height), bits_(static_cast<std::size_t>(width * height)) {}
  /// One flag a pixel, asked from a function of its coordinates.
  Bitmap(int width, int height, const std::function<bool(int, int)>& inside) : Bitmap(width, height) {
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) set(x, y, inside(x, y));
    }
  }
  /// Random rectangles and pixels: few or many spans, holes, equal rows.
  Bitmap(int width, int height, Random& random) : Bitmap(width, height) {
    for (int i = below(random, 12); i > 0; --i) {
      const bool value = below(random, 3) != 0;
      const int left = below(random, width), top = below(random, height);
      const int right = left + 1 + below(random, width - left);
      const int bottom = top + 1 + (i % 2 == 0 ? 0 : below(random, height - top));
      for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) set(x, y, value);
      }
    }
  }

  int width() const { return width_; }
  int height() const { return height_; }
  bool at(int x, int y) const {
    return x >= 0 && x < width_ && y >= 0 && y < height_ && bits_[static_cast<std::size_t>(y * width_ + x)];
  }
  void set(int x, int y, bool value) { bits_[static_cast<std::size_t>(y * width_ + x)] = value; }
  bool operator==(const Bitmap&) const = default;

  /// Calls use(y, left, right) for every run of set pixels.
  template <class Use>
  void forEachRun(Use&& use) const {
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x) {
        if (!at(x, y) || at(x - 1, y)) continue;
        int end = x;
        while (at(end, y)) ++end;
        use(y, x, end);
      }
    }
  }

  /// The region of the set pixels, from a list of one rectangle for each run.
  dibkit::OwnedRegion region() const {
    std::vector<RECT> runs;
    forEachRun([&](int y, int left, int right) { runs.push_back({left, y, right, y + 1}); });
    return regionOf(runs);
  }

  static dibkit::OwnedRegion regionOf(const std::vector<RECT>& list) {
    std::vector<DWORD> block((sizeof(RGNDATAHEADER) + list.size() * sizeof(RECT)) / sizeof(DWORD));
    auto* data = reinterpret_cast<RGNDATA*>(block.data());
    data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(list.size()), 0, RECT{}};
    if (!list.empty()) std::memcpy(data->Buffer, list.data(), list.size() * sizeof(RECT));
    return dibkit::OwnedRegion(
        ExtCreateRegion(nullptr, static_cast<DWORD>(block.size() * sizeof(DWORD)), data));
  }

 private:
  int width_;
  int height_;
  std::vector<bool> bits_;
};

/// What a four-connected flood fill reaches, one pixel at a time: the seed, whatever it holds, and from there
/// every pixel that enter(x, y) lets in.
template <class Enter>
Bitmap reachedFrom(const POINT& seed, int width, int height, Enter&& enter) {
  Bitmap reached(width, height);
  std::vector<std::pair<int, int>> work{{seed.x, seed.y}};
  while (!work.empty()) {
    const auto [x, y] = work.back();
    work.pop_back();
    if (reached.at(x, y)) continue;
    reached.set(x, y, true);
    for (const auto& [nextX, nextY] : {std::pair{x, y + 1}, {x + 1, y}, {x, y - 1}, {x - 1, y}}) {
      const bool inside = nextX >= 0 && nextX < width && nextY >= 0 && nextY < height;
      if (inside && !reached.at(nextX, nextY) && enter(nextX, nextY)) work.emplace_back(nextX, nextY);
    }
  }
  return reached;
}

/// The region's pixels, rows and columns, asked one by one.
inline Bitmap bitmapOf(HRGN region, int width, int height) {
  return {width, height, [region](int x, int y) { return PtInRegion(region, x, y) != FALSE; }};
}

/// The ellipse of a box, which is made as wide as it is high when it is narrower: Wine leaves rows of narrow
/// ellipses unset.
inline dibkit::OwnedRegion ellipse(int left, int top, int width, int height) {
  return dibkit::OwnedRegion(CreateEllipticRgn(left, top, left + std::max(width, height), top + height));
}

}  // namespace test
