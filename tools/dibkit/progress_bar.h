#pragma once

#include <string>

#include "host/progress.h"

namespace host {

/// A bar on standard error that shows how far the work has come. Drawn only when that is a terminal and the
/// user did not want quiet, never wider than the terminal; it goes away when done.
class ProgressBar {
 public:
  ProgressBar(std::string label, bool quiet);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  /// What the work reports to.
  Progress& progress() { return progress_; }

 private:
  void show(double done);

  std::string label_;
  bool shown_;
  int percent_ = -1;
  Progress progress_;
};

}  // namespace host
