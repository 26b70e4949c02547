#pragma once

#include <span>
#include <vector>

#include "host/formats/formats.h"

namespace host {

/// Half of a pixel's opacity decides what a GIF can show of it: all or nothing.
constexpr BYTE opaqueFrom = 128;

/// The colours that pictures show, transparent pixels left out.
class ShownColours {
 public:
  /// \param visibleFrom pixels of less opacity are transparent
  explicit ShownColours(BYTE visibleFrom = opaqueFrom);
  /// \param before a picture of the same size that was added already, or null; saves a look at equal lines
  void add(const Picture& picture, const Picture* before);
  /// Looks at a part of the picture only.
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

/// The best palette for all frames that the quantising library finds. Frames may have any sizes; each weighs
/// as much as the time that it shows.
std::vector<RGBQUAD> bestPalette(std::span<const Frame> frames, int mostColours);

}  // namespace host
