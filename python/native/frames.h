#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "host/animation/frame_source.h"
#include "host_images.h"
#include "progress.h"

namespace binding {

/// The frames of an animation, rendered when they are needed, so that a thousand of them take the memory of a
/// few.
class Frames {
 public:
  using Maker = std::function<std::unique_ptr<host::FrameSource>()>;

  /// \param make gives the frames from the start, as often as wanted; owns what they need
  /// \param drawsRandomNumbers whether rendering uses the C library's generator
  /// \param sequential whether a frame follows from the one before it
  Frames(Maker make, bool drawsRandomNumbers, bool sequential);

  int count() const { return static_cast<int>(delays_.size()); }
  host::Size size() const { return size_; }
  /// In hundredths of a second.
  const std::vector<int>& delays() const { return delays_; }
  /// One frame. Of sequential ones the next takes least.
  Image render(int frame);

  /// Calls work(source) with all frames, alone where they draw random numbers.
  template <class Work>
  auto withSource(Work&& work) const {
    const auto alone = lockGenerator();
    const std::unique_ptr<host::FrameSource> source = make_();
    return work(*source);
  }

 private:
  std::unique_lock<std::recursive_mutex> lockGenerator() const;

  Maker make_;
  bool drawsRandomNumbers_, sequential_;
  host::Size size_;
  std::vector<int> delays_;
  std::mutex guard_;  ///< of what follows
  std::unique_ptr<host::FrameSource> source_;
  int next_ = 0;
};

/// Held by everything that draws from the C library's generator. Whoever waits for it must not hold the
/// interpreter's lock.
std::recursive_mutex& generatorGuard();

void defineAnimations(py::module_& module);
void defineGifs(py::module_& module, py::class_<Frames>& frames);

}  // namespace binding
