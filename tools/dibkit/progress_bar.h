#pragma once

#include <mutex>
#include <string>

namespace host {

/// A bar on standard error, drawn only when that is a terminal and nobody asked for quiet. It goes away when
/// done. Steps may be told from several threads.
class ProgressBar {
 public:
  ProgressBar(std::string label, int steps, bool quiet);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  void step();

 private:
  void draw() const;

  std::string label_;
  int steps_;
  bool shown_;
  std::mutex guard_;
  int done_ = 0;
  int drawnPercent_ = -1;
};

}  // namespace host
