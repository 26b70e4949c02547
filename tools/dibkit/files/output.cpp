#include "files/output.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include "files/descriptor.h"
#include "files/write.h"
#include "host/cancel.h"
#include "host/errors.h"
#include "host/names.h"

namespace host {

namespace fs = std::filesystem;

namespace {

const char* const existsAlready = "exists already; --force replaces it";

/// Whether the path leads to standard output: "-", /dev/stdout, or the file that it is redirected to.
bool isStandardOutput(const std::string& path) {
  if (path == "-") return true;
  struct stat named {};
  struct stat standard {};
  return ::stat(path.c_str(), &named) == 0 && ::fstat(STDOUT_FILENO, &standard) == 0 &&
         named.st_dev == standard.st_dev && named.st_ino == standard.st_ino;
}

bool isSpecialFile(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  return fs::exists(status) && !fs::is_regular_file(status);
}

}  // namespace

OutputTarget::OutputTarget(std::string path, const OverwriteRules& rules, std::span<const std::string> inputs)
    : path_(std::move(path)), standardOutput_(isStandardOutput(path_)) {
  if (rules.force && rules.noClobber) throw UsageError("--force and --no-clobber exclude each other");
  if (standardOutput_ || !holdsSomething()) return;
  leftAlone_ = rules.noClobber;
  replaces_ = true;
  if (leftAlone_ || rules.force) return;
  const auto isThis = [this](const std::string& input) { return isSameFile(input, path_); };
  if (std::any_of(inputs.begin(), inputs.end(), isThis)) {
    throw FileError(path_, "is one of the inputs; --force replaces it");
  }
  if (!rules.ownFiles) throw FileError(path_, existsAlready);
}

bool OutputTarget::holdsSomething() const {
  struct stat found {};
  if (::stat(path_.c_str(), &found) != 0) {
    if (errno != ENOENT) fail(path_, errno);
    return false;
  }
  if (S_ISDIR(found.st_mode)) fail(path_, EISDIR);
  if (::access(path_.c_str(), W_OK) != 0) fail(path_, errno);
  return S_ISREG(found.st_mode) && found.st_size > 0;
}

void OutputTarget::write(ByteView bytes) {
  throwIfCancelled();
  if (!standardOutput_ && !replaces_ && holdsSomething()) throw FileError(path_, existsAlready);
  writeFile(standardOutput_ ? "-" : path_, bytes);
  replaces_ = true;
}

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code missing;
  return a != "-" && b != "-" && fs::equivalent(a, b, missing);
}

void requireFolderOf(const std::string& path) {
  if (path == "-") return;
  const fs::path folder = fs::path(path).parent_path();
  struct stat found {};
  if (!folder.empty() && ::stat(folder.c_str(), &found) != 0) fail(path, errno);
}

void requireEnding(const std::string& path, std::string_view format,
                   std::initializer_list<std::string_view> endings) {
  const std::string ending = fs::path(path).extension().string();
  if (path == "-" || ending.empty() || isSpecialFile(path)) return;
  for (const std::string_view usual : endings) {
    if (sameName(ending, usual)) return;
  }
  const std::string better = fs::path(path).replace_extension(*endings.begin()).string();
  throw UsageError(path + " would be a " + std::string(format) + "; name it " + better);
}

}  // namespace host
