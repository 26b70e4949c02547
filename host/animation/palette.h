#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/animation/colour_cube.h"
#include "host/formats/formats.h"

namespace host {

/// Half of a pixel's opacity decides what a GIF can show of it: all or nothing.
constexpr BYTE opaqueFrom = 128;

/// The colours that pictures show, transparent pixels left out.
class ShownColours {
 public:
  /// \param visibleFrom pixels of a smaller alpha are transparent
  explicit ShownColours(BYTE visibleFrom = opaqueFrom);
  /// \param before a picture of the same size that was added already, or null: lines equal to its lines are
  ///        skipped
  void add(const Picture& picture, const Picture* before);
  /// Adds the colours of a part of the picture.
  void add(const Picture& picture, const RECT& part);

  std::size_t count() const { return count_; }
  /// In order of first appearance; no more than a palette has entries.
  const std::vector<RGBQUAD>& first() const { return first_; }
  bool anyTransparent() const { return anyTransparent_; }

 private:
  BYTE visibleFrom_;
  std::size_t count_ = 0;
  std::vector<RGBQUAD> first_;
  bool anyTransparent_ = false;
  std::vector<bool> shown_;

  void addLine(const Pixel* pixels, int count);
};

/// How often pictures show each colour, transparent pixels left out. Counts at most about two million pixels,
/// spread evenly over all pictures.
class ColourHistogram {
 public:
  /// \param pixels of all pictures together that will be added
  /// \param visibleFrom pixels of a smaller alpha are transparent
  explicit ColourHistogram(std::int64_t pixels, BYTE visibleFrom = opaqueFrom);

  /// Pictures may have any sizes. \param delay how long it shows, in hundredths of a second: its weight
  void add(const Picture& picture, int delay);

  /// The best palette that the quantising library finds. The same pictures always give the same one.
  std::vector<RGBQUAD> bestPalette(int maximumColours);

 private:
  BYTE visibleFrom_;
  int step_;
  int offset_ = 0;                      ///< of the first pixel that counts in the next line
  std::vector<std::uint32_t> colours_;  ///< in order of first appearance
  ColourCube<std::uint32_t> weights_;   ///< 0 for a colour that is not there
};

/// The entries of an image's palette.
std::vector<RGBQUAD> paletteOf(const BITMAPINFOHEADER* dib);

/// The index of the first entry of that colour, or nothing.
std::optional<int> entryOf(const std::vector<RGBQUAD>& palette, RGBQUAD colour);

}  // namespace host
