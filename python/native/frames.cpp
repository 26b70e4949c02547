#include "frames.h"

namespace binding {

std::recursive_mutex& generatorGuard() {
  static std::recursive_mutex guard;
  return guard;
}

Frames::Frames(Maker make, bool drawsRandomNumbers, bool sequential)
    : make_(std::move(make)), drawsRandomNumbers_(drawsRandomNumbers), sequential_(sequential) {
  source_ = make_();
  size_ = source_->size();
  for (int i = 0; i < source_->count(); ++i) delays_.push_back(source_->delay(i));
}

std::unique_lock<std::recursive_mutex> Frames::lockGenerator() const {
  return drawsRandomNumbers_ ? std::unique_lock(generatorGuard()) : std::unique_lock<std::recursive_mutex>();
}

Image Frames::render(int frame) {
  const auto alone = lockGenerator();
  if (!sequential_) return made(CBitmapCreator::Clone(source_->render(frame).picture.dib()));
  const std::lock_guard lock(guard_);
  if (frame < next_) next_ = 0;
  while (next_ < frame) source_->render(next_++);
  ++next_;
  return made(CBitmapCreator::Clone(source_->render(frame).picture.dib()));
}

}  // namespace binding
