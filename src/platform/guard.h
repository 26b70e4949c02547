#pragma once

#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace dibkit {

/// Runs an exported operation's body. The library's containers throw when memory runs out, its interface
/// never does: the caller then gets null, 0 or FALSE, and all that was made so far is released by its owners.
template <class Body>
std::invoke_result_t<Body> catchOutOfMemory(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  return std::invoke_result_t<Body>();
}

}  // namespace dibkit
