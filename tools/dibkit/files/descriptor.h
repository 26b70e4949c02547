#pragma once

#include <string>
#include <utility>

#include <unistd.h>

/// \file
/// The system's files: what files/ has in common.
namespace host {

/// Throws the system's error as a FileError; Cancelled for a call that Ctrl-C ended.
[[noreturn]] void fail(const std::string& path, int error);

/// An open file. Closes on every way out; close() tells of a failed write too, so call it where that matters.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ > STDERR_FILENO) ::close(number_);
  }
  int get() const { return number_; }
  bool valid() const { return number_ >= 0; }
  int close() { return ::close(std::exchange(number_, -1)); }

 private:
  int number_;
};

}  // namespace host
