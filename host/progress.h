#pragma once

#include <functional>
#include <mutex>
#include <utility>

namespace host {

/// How much of the work is done. Each stage adds its share in steps, weighted by its cost; all shares add up
/// to 1.
class Progress {
 public:
  /// \param show receives the sum of the shares, from 0 to 1; never from two threads at once
  void showOn(std::function<void(double)> show) { show_ = std::move(show); }

  /// More is done. Any thread may call this.
  void add(double share) {
    if (!show_) return;
    const std::lock_guard lock(guard_);
    done_ += share;
    show_(done_);
  }

 private:
  std::function<void(double)> show_;
  std::mutex guard_;
  double done_ = 0;
};

}  // namespace host
