#pragma once

#include <functional>
#include <memory>
#include <opencv2/core.hpp>
#include <string>
#include <utility>
#include <vector>

#include "pictures.h"

/// What is measured: rows of an operation of the library beside the peer that a program would otherwise use.
namespace bench {

using Dib = BITMAPINFOHEADER*;

struct Size {
  int width = 0;
  int height = 0;
  double pixels() const { return static_cast<double>(width) * height; }
};

/// Both sides of a row with their pictures, at one size.
struct Trial {
  /// One call. A new image is returned, and released in the measured time; null for what works in place.
  std::function<OwnedDib()> ours;
  std::function<void()> peer;
  /// Restore before each call what it changed, outside the measured time. Empty where a call can be repeated.
  std::function<void()> resetOurs;
  std::function<void()> resetPeer;
  /// How many pixels, or whatever the row counts, a call works on.
  double pixels = 0;
  /// Runs both once and compares. Gives what is wrong, empty if nothing.
  std::function<std::string()> verify;
};

struct Row {
  std::string name;
  std::string picture;
  std::string peer;
  /// What the two results may differ in and why; empty for results that are equal to the byte.
  std::string difference;
  std::function<Trial(Size)> trial;
  std::string unit = "pixel";
  /// For an operation without a peer: the bytes that it reads and writes of each pixel. It is measured beside
  /// a copy that moves as many.
  double copiedBytes = 0;
  std::string family{};  ///< the heading that it is printed under
};

/// How far the results of both sides agree.
struct Agreement {
  const char* difference = "";  ///< in words; empty for equal bytes
  int byte = 0;                 ///< by how much a byte may differ
  double share = 0;   ///< of the bytes, how many may differ by more; 1 for results not to be compared
  bool alpha = true;  ///< whether the fourth byte is compared
};

constexpr Agreement same{};
constexpr Agreement rounds{"the peer rounds to nearest", 1};
constexpr Agreement incomparable(const char* difference) { return {difference, 0, 1}; }
/// A filter that treats the edge of the picture in another way.
constexpr Agreement insideEdge{"other pixels at the edge", 0, 0.1};

/// An image of ours as the peers take it: aligned rows from the top, 1 channel for 8 bits, 3 for 24, 4 for
/// 32, 16-bit numbers for 16, and 0 or 255 for 1 bit.
cv::Mat matOf(const BITMAPINFOHEADER* dib);

/// Compares an image of ours with a peer's: bytes where the depths are the same, else colours.
std::string compare(const BITMAPINFOHEADER* ours, const cv::Mat& peer, const Agreement& agreement);

/// A trial of an operation that returns a new image, and of a peer that writes `result`.
Trial makingTrial(std::function<OwnedDib()> ours, std::function<void()> peer, const cv::Mat& result,
                  const Agreement& agreement);

/// A trial of an operation that changes `target`, and of a peer that changes `result`, which starts with the
/// same pixels. Both are restored before each call unless a call can be repeated on its own result.
Trial changingTrial(const std::shared_ptr<BITMAPINFOHEADER>& target, std::function<void()> ours,
                    std::function<void()> peer, const cv::Mat& result, const Agreement& agreement,
                    bool repeatable);

/// Adds the rows of a family.
using Rows = std::vector<Row>;
void addConversions(Rows& rows);
void addComposites(Rows& rows);
void addFills(Rows& rows);
void addFilters(Rows& rows);
void addScales(Rows& rows);
void addFrames(Rows& rows);
void addEffects(Rows& rows);
void addRegions(Rows& rows);
void addUnmatchedImages(Rows& rows);
void addUnmatchedFrames(Rows& rows);
void addUnmatchedEffects(Rows& rows);

}  // namespace bench
