#include "host/animation/animation_writer.h"

#include <limits>
#include <memory>
#include <utility>

#include "host/animation/gif_images.h"

namespace host {

template <class Cell>
AnimationWriter<Cell>::AnimationWriter(GifWriter& file, Size canvas, std::optional<Cell> transparent,
                                       std::span<const GifExtension> extensions, Progress& progress,
                                       Workers& workers)
    : file_(&file),
      transparent_(transparent),
      extensions_(extensions),
      progress_(&progress),
      changes_(canvas, transparent),
      encoders_(static_cast<std::size_t>(workers.count())),
      images_(workers) {}

template <class Cell>
void AnimationWriter<Cell>::add(const Patch<Cell>& patch, int delay, double share) {
  std::optional<Change<Cell>> change = changes_.next(patch, delay);
  if (change) compress(std::move(*change));
  share_ += share;
  while (images_.full()) write();
}

template <class Cell>
void AnimationWriter<Cell>::finish() {
  compress(changes_.finish());
  while (!images_.empty()) write();
  writeExtensions(std::numeric_limits<std::size_t>::max());
}

template <class Cell>
void AnimationWriter<Cell>::compress(Change<Cell> change) {
  // Fewer pixels take less time than handing them to another thread.
  constexpr std::size_t few = 4096;
  begun_.push_back({change.frame, std::exchange(share_, 0.0)});
  const bool small = change.versions.front().cells.size() < few;
  const auto shared = std::make_shared<Change<Cell>>(std::move(change));
  const auto work = [this, shared](int thread) {
    return smallestImage(*shared, transparent_, encoders_[static_cast<std::size_t>(thread)]);
  };
  if (small) {
    images_.addSmall(work);
  } else {
    images_.add(work);
  }
}

template <class Cell>
void AnimationWriter<Cell>::write() {
  const GifImage image = images_.next();
  writeExtensions(static_cast<std::size_t>(begun_.front().frame));
  file_->addImage(image);
  progress_->add(begun_.front().share);
  begun_.pop_front();
}

/// Writes those up to a frame of the source. Those of a merged frame precede the next image.
template <class Cell>
void AnimationWriter<Cell>::writeExtensions(std::size_t frame) {
  for (; !extensions_.empty() && extensions_.front().frame <= frame; extensions_ = extensions_.subspan(1))
    file_->addExtension(extensions_.front());
}

template class AnimationWriter<std::uint8_t>;
template class AnimationWriter<std::uint32_t>;

}  // namespace host
