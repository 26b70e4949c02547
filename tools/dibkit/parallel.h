#pragma once

#include <functional>

namespace host {

/// How many threads are of use for so many pieces of work; at least 1.
int threadsFor(int count);

/// Calls work(0) to work(count - 1), on all cores; the order is free. The first exception comes out, after
/// every call under way has ended; Ctrl-C comes out as Cancelled.
void forEachIndex(int count, const std::function<void(int)>& work);

/// The same, one after the other on this thread.
void forEachInOrder(int count, const std::function<void(int)>& work);

}  // namespace host
