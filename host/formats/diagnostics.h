#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/errors.h"

namespace host {

/// How damaged files are treated of which something can be decoded.
enum class Strictness {
  lenient,  ///< what can be decoded is shown, with a warning
  strict,   ///< they are refused
};

/// Receives every fault of a file after which reading can continue: records it, or refuses the file.
class Diagnostics {
 public:
  explicit Diagnostics(Strictness strictness) : strictness_(strictness) {}

  /// Throws FormatError when strict.
  void report(std::string fault) {
    if (strictness_ == Strictness::strict) throw FormatError(fault);
    // A hostile file has as many faults as it has blocks.
    constexpr std::size_t enough = 100;
    if (warnings_.size() < enough) warnings_.push_back(std::move(fault));
  }
  /// What was recorded, in the order of the file.
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  Strictness strictness_;
  std::vector<std::string> warnings_;
};

/// The fault of a file that ends too soon. \param place where it ends
inline std::string truncated(const std::string& place) { return "the file is truncated, it ends " + place; }

/// "frame 3", for messages
inline std::string frameName(std::size_t number) { return "frame " + std::to_string(number); }

}  // namespace host
