#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "host/cancel.h"

namespace host {

/// Calls work(0) to work(count - 1) on all cores, in any order. Throws the first exception of the calls once
/// all running calls have ended, and Cancelled on Ctrl-C.
void parallelFor(int count, const std::function<void(int)>& work);

/// The same, one after the other on this thread.
void forEachInOrder(int count, const std::function<void(int)>& work);

/// Threads that share the work of one caller, as many as there are cores. The caller's own is one of them: it
/// works while it waits.
class Workers {
 public:
  /// Work to be done. It receives the number of the thread that does it, below count(): for memory that the
  /// pieces of work on one thread share.
  using Task = std::function<void(int thread)>;

  Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  /// Waits for the tasks that have begun.
  ~Workers();

  /// How many threads there are, the caller's included; at least 1.
  int count() const { return count_; }
  /// Starts the threads when it is called for the first time.
  void add(Task task);
  /// Does one of the waiting tasks on the caller's thread, which is number 0; false when none waits.
  bool help();

 private:
  void run(int thread);

  int count_;
  std::mutex guard_;
  std::condition_variable changed_;
  std::deque<Task> waiting_;
  bool ending_ = false;
  std::vector<std::thread> threads_;
};

/// Results of work that is done on all cores at once, in the order in which the work was given.
template <class Result>
class OrderedResults {
 public:
  /// \param workers must outlive this object, as must what the work refers to
  explicit OrderedResults(Workers& workers) : workers_(&workers) {}
  OrderedResults(const OrderedResults&) = delete;
  OrderedResults& operator=(const OrderedResults&) = delete;
  /// Waits for the work that has been given.
  ~OrderedResults() {
    for (const std::future<Result>& result : results_) waitFor(result);
  }

  /// Gives work to the threads.
  void add(std::function<Result(int thread)> work) {
    auto task = std::make_shared<std::packaged_task<Result(int)>>(std::move(work));
    results_.push_back(task->get_future());
    workers_->add([task](int thread) { (*task)(thread); });
  }
  /// Does work at once on this thread: for what takes less time than to hand it over.
  void addSmall(const std::function<Result(int thread)>& work) {
    std::promise<Result> done;
    done.set_value(work(0));
    results_.push_back(done.get_future());
  }

  bool empty() const { return results_.empty(); }
  /// Whether every thread has enough to do, and more work would only take memory.
  bool full() const { return static_cast<int>(results_.size()) > workers_->count(); }

  /// The oldest result; waits for it. Throws what the work threw, and Cancelled on Ctrl-C.
  Result next() {
    throwIfCancelled();
    waitFor(results_.front());
    std::future<Result> first = std::move(results_.front());
    results_.pop_front();
    return first.get();
  }

 private:
  void waitFor(const std::future<Result>& result) {
    constexpr std::chrono::seconds atOnce{0};
    while (result.wait_for(atOnce) != std::future_status::ready) {
      if (!workers_->help()) result.wait();
    }
  }

  Workers* workers_;
  std::deque<std::future<Result>> results_;
};

}  // namespace host
