#include "measure.h"

#include <algorithm>
#include <ctime>

#include <malloc.h>

namespace bench {
namespace {

/// Processor time of this thread in nanoseconds.
double now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// What it costs to read the clock.
double costOfClock() {
  std::vector<double> costs(101);
  for (double& cost : costs) {
    const double begin = now();
    cost = now() - begin;
  }
  return median(costs);
}

/// The time of one of `calls` calls.
template <class Call>
double timeOf(Call& call, const std::function<void()>& reset, int calls) {
  static const double clock = costOfClock();
  if (reset) reset();
  const double begin = now();
  for (int i = 0; i < calls; ++i) call();
  return std::max((now() - begin - clock) / calls, 1e-3);
}

constexpr double shortestSample = 1e5;  // nanoseconds, where calls can be repeated
constexpr std::size_t fewestPairs = 5;

}  // namespace

void useMemory(Memory memory) {
  const int limit = memory == Memory::warm ? 32 << 20 : 128 << 10;
  mallopt(M_MMAP_THRESHOLD, limit);
  mallopt(M_TRIM_THRESHOLD, memory == Memory::warm ? 1 << 30 : limit);
  malloc_trim(0);
}

Figures measure(const Trial& trial, double seconds) {
  double longest = 0;
  for (int warmUp = 0; warmUp < 2; ++warmUp) {
    longest = std::max(timeOf(trial.ours, trial.resetOurs, 1), timeOf(trial.peer, trial.resetPeer, 1));
  }
  const bool repeatable = !trial.resetOurs && !trial.resetPeer;
  const int calls = repeatable ? static_cast<int>(std::clamp(shortestSample / longest, 1.0, 1e5)) : 1;
  std::vector<double> ours, peers, ratios;
  timespec start{}, time{};
  clock_gettime(CLOCK_MONOTONIC, &start);
  do {
    ours.push_back(timeOf(trial.ours, trial.resetOurs, calls));
    peers.push_back(timeOf(trial.peer, trial.resetPeer, calls));
    ratios.push_back(ours.back() / peers.back());
    clock_gettime(CLOCK_MONOTONIC, &time);
  } while (ratios.size() < fewestPairs || static_cast<double>(time.tv_sec - start.tv_sec) +
                                                  static_cast<double>(time.tv_nsec - start.tv_nsec) / 1e9 <
                                              seconds);
  return {median(ours) / trial.pixels, median(peers) / trial.pixels, median(ratios)};
}

}  // namespace bench
