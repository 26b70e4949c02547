#pragma once

#include <string>

#include "host/progress.h"

namespace host {

/// A progress bar on standard error, removed by the destructor. It is drawn only on a terminal and without
/// --quiet, and is never wider than the terminal.
class ProgressBar {
 public:
  ProgressBar(std::string label, bool quiet);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  /// The work adds its progress to this.
  Progress& progress() { return progress_; }

 private:
  void show(double done);

  std::string label_;
  bool shown_;
  int percent_ = -1;
  Progress progress_;
};

}  // namespace host
