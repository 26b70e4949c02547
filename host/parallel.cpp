#include "host/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>

namespace host {

Workers::Workers() : count_(std::max(static_cast<int>(std::thread::hardware_concurrency()), 1)) {}

Workers::~Workers() {
  {
    const std::lock_guard lock(guard_);
    ending_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void Workers::add(Task task) {
  while (static_cast<int>(threads_.size()) + 1 < count_) {
    threads_.emplace_back([this, number = static_cast<int>(threads_.size()) + 1] { run(number); });
  }
  {
    const std::lock_guard lock(guard_);
    waiting_.push_back(std::move(task));
  }
  changed_.notify_one();
}

bool Workers::help() {
  Task task;
  {
    const std::lock_guard lock(guard_);
    if (waiting_.empty()) return false;
    task = std::move(waiting_.front());
    waiting_.pop_front();
  }
  task(0);
  return true;
}

void Workers::run(int thread) {
  for (;;) {
    Task task;
    {
      std::unique_lock lock(guard_);
      changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
      if (ending_) return;
      task = std::move(waiting_.front());
      waiting_.pop_front();
    }
    task(thread);
  }
}

void forEachInOrder(int count, const std::function<void(int)>& work) {
  for (int i = 0; i < count; ++i) {
    throwIfCancelled();
    work(i);
  }
}

void parallelFor(int count, const std::function<void(int)>& work) {
  const int threads =
      std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, std::max(count, 1));
  if (threads <= 1) return forEachInOrder(count, work);
  std::atomic<int> nextIndex{0};
  std::exception_ptr failure;
  std::mutex failureGuard;
  const auto run = [&] {
    try {
      for (int i = nextIndex++; i < count; i = nextIndex++) {
        throwIfCancelled();
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
