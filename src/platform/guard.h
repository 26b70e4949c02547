#pragma once

#include <new>
#include <stdexcept>
#include <utility>

namespace dibkit {

/// Runs an exported operation's body. The library's containers throw when memory runs out, its interface
/// never does: the caller then gets `failure`, and everything made so far has been released by its owners.
template <class Result, class Body>
Result orOutOfMemory(Result failure, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return failure;
  } catch (const std::length_error&) {
    return failure;
  }
}

}  // namespace dibkit
