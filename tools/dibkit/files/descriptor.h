#pragma once

#include <string>
#include <utility>

#include <unistd.h>

/// \file
/// File descriptors, for the sources in files/.
namespace host {

/// Throws a FileError with the message of an error number; Cancelled for EINTR after Ctrl-C.
[[noreturn]] void fail(const std::string& path, int error);

/// Owns a file descriptor and closes it, unless it is a standard stream. Call close() after writing: its
/// result may report a failed write.
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
