#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace host {

/// What is wrong with a picture's bytes; whoever knows the file's name makes a FileError of it.
class FormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What is wrong with a file. The program says `dibkit: FILE: what` and ends with status 1.
class FileError : public std::runtime_error {
 public:
  FileError(std::string file, const std::string& what) : std::runtime_error(what), file_(std::move(file)) {}
  const std::string& file() const { return file_; }

 private:
  std::string file_;
};

/// Something failed that the user was told of; the program ends with status 1.
class AlreadySaid : public std::exception {};

/// A wrong way to call the program. It says `dibkit: what` and ends with status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The user pressed Ctrl-C. Nothing has been written; the program ends with status 130.
class Cancelled : public std::exception {};

}  // namespace host
