#include "progress_bar.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <sys/ioctl.h>
#include <unistd.h>

namespace host {

namespace {

int terminalColumns() {
  winsize size{};
  if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  const char* columns = std::getenv("COLUMNS");
  constexpr int usual = 80;
  return columns != nullptr && std::atoi(columns) > 0 ? std::atoi(columns) : usual;
}

/// Label, bar and percentage. A narrow terminal gets no bar, a very narrow one only the percentage.
std::string lineOf(const std::string& label, int percent, int columns) {
  constexpr int maximumCells = 30;
  constexpr int minimumCells = 4;
  const std::string number = std::to_string(percent);
  const std::string end = std::string(3 - std::min<std::size_t>(3, number.size()), ' ') + number + '%';
  const int room = columns - 1 - static_cast<int>(end.size());  // some terminals wrap after the last column
  const int cells = std::min(maximumCells, room - static_cast<int>(label.size()) - 4);
  if (cells >= minimumCells) {
    const auto filled = static_cast<std::size_t>(cells * percent / 100);
    const std::string bar =
        std::string(filled, '#') + std::string(static_cast<std::size_t>(cells) - filled, '.');
    return label + " [" + bar + "] " + end;
  }
  return static_cast<int>(label.size()) < room ? label + ' ' + end : end;
}

}  // namespace

ProgressBar::ProgressBar(std::string label, bool quiet)
    : label_(std::move(label)), shown_(!quiet && ::isatty(STDERR_FILENO) != 0) {
  if (!shown_) return;
  progress_.showOn([this](double done) { show(done); });
  show(0);
}

ProgressBar::~ProgressBar() {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(double done) {
  // The shares add up to 1 except for rounding.
  constexpr double rounding = 1e-6;
  const int percent = std::clamp(static_cast<int>((done + rounding) * 100), 0, 100);
  if (percent == percent_) return;
  percent_ = percent;
  std::fprintf(stderr, "\r%s\033[K", lineOf(label_, percent, terminalColumns()).c_str());
  std::fflush(stderr);
}

}  // namespace host
