#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace host {

/// What is wrong with a picture's bytes; callers that know the file's name make a FileError of it.
class FormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A picture larger than what is read; one that is to be shown small may be larger.
class TooManyPixels : public FormatError {
 public:
  using FormatError::FormatError;
};

/// What is wrong with a file. The program says `dibkit: FILE: what` and ends with status 1.
class FileError : public std::runtime_error {
 public:
  FileError(std::string file, const std::string& what) : std::runtime_error(what), file_(std::move(file)) {}
  const std::string& file() const { return file_; }

 private:
  std::string file_;
};

/// A wrong way to call the program. It says `dibkit: what` and ends with status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The user pressed Ctrl-C. Nothing has been written; the program ends with status 130.
class Cancelled : public std::exception {};

}  // namespace host
