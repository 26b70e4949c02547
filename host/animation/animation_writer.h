#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "host/animation/changes.h"
#include "host/formats/gif_writer.h"
#include "host/formats/lzw_encoder.h"
#include "host/parallel.h"
#include "host/progress.h"

namespace host {

/// Writes frames to a GIF that stores of each only what changes, in the smallest of several versions. What a
/// viewer shows stays the same, pixel for pixel and in time; frames that show the same become one. Images are
/// compressed on all cores, and no more of them are held than there are cores to work on them.
template <class Cell>
class AnimationWriter {
 public:
  /// \param file has what precedes the frames
  /// \param transparent as for ChangeFinder
  /// \param extensions those of the frames, in order; they keep their places
  /// All arguments must outlive this object.
  AnimationWriter(GifWriter& file, Size canvas, std::optional<Cell> transparent,
                  std::span<const GifExtension> extensions, Progress& progress, Workers& workers);

  /// \param patch the frame as far as it may differ from the one before; all of the first one
  /// \param share of all work, done once the frame is in the file
  void add(const Patch<Cell>& patch, int delay, double share);
  /// After the last frame. Throws TooManyColours, as add() does, for a frame that has no palette.
  void finish();

 private:
  /// An image that is compressed or will be.
  struct Begun {
    int frame = 0;
    double share = 0;
  };

  void compress(Change<Cell> change);
  void write();
  void writeExtensions(std::size_t frame);

  GifWriter* file_;
  std::optional<Cell> transparent_;
  std::span<const GifExtension> extensions_;
  Progress* progress_;
  ChangeFinder<Cell> changes_;
  double share_ = 0;  ///< of the frames whose change is not complete
  std::deque<Begun> begun_;
  std::vector<LzwEncoder> encoders_;  ///< one for each thread
  OrderedResults<GifImage> images_;
};

extern template class AnimationWriter<std::uint8_t>;
extern template class AnimationWriter<std::uint32_t>;

}  // namespace host
