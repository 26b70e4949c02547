#include "parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "interrupt.h"

namespace host {

int threadsFor(int count) {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, std::max(count, 1));
}

void forEachInOrder(int count, const std::function<void(int)>& work) {
  for (int i = 0; i < count; ++i) {
    throwIfInterrupted();
    work(i);
  }
}

void forEachIndex(int count, const std::function<void(int)>& work) {
  const int threads = threadsFor(count);
  if (threads <= 1) return forEachInOrder(count, work);
  std::atomic<int> nextIndex{0};
  std::exception_ptr failure;
  std::mutex failureGuard;
  const auto run = [&] {
    try {
      for (int i = nextIndex++; i < count; i = nextIndex++) {
        throwIfInterrupted();
        work(i);
      }
    } catch (...) {
      nextIndex = count;
      const std::lock_guard<std::mutex> lock(failureGuard);
      if (!failure) failure = std::current_exception();
    }
  };
  {
    std::vector<std::jthread> others;
    for (int i = 1; i < threads; ++i) others.emplace_back(run);
    run();
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace host
