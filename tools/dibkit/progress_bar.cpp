#include "progress_bar.h"

#include <cstdio>
#include <utility>

#include <unistd.h>

namespace host {

ProgressBar::ProgressBar(std::string label, int steps, bool quiet)
    : label_(std::move(label)), steps_(steps), shown_(!quiet && steps > 0 && ::isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar() {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void ProgressBar::step() {
  if (!shown_) return;
  const std::lock_guard<std::mutex> lock(guard_);
  ++done_;
  const int percent = done_ * 100 / steps_;
  if (percent == drawnPercent_) return;
  drawnPercent_ = percent;
  draw();
}

void ProgressBar::draw() const {
  constexpr int cells = 30;
  const auto filled = static_cast<std::size_t>(cells * done_ / steps_);
  const std::string bar = std::string(filled, '#') + std::string(cells - filled, '.');
  std::fprintf(stderr, "\r%-12s [%s] %3d%%", label_.c_str(), bar.c_str(), drawnPercent_);
  std::fflush(stderr);
}

}  // namespace host
