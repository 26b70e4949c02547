#include "files/write.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>

#include "files/descriptor.h"
#include "host/cancel.h"
#include "host/errors.h"

namespace host {

namespace {

namespace fs = std::filesystem;

/// Returns 0, or the number of the error.
int writeAll(int descriptor, ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && (errno != EINTR || cancelRequested())) return errno;
    if (written < 0) continue;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return 0;
}

void writeDirectly(const std::string& path, int descriptor, ByteView bytes) {
  Descriptor target(descriptor);
  if (!target.valid()) fail(path, errno);
  if (const int error = writeAll(target.get(), bytes)) fail(path, error);
  if (descriptor > STDERR_FILENO && target.close() != 0) fail(path, errno);
}

/// The permissions of a new file by the user's umask. Temporary files are made with fewer.
mode_t modeOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

/// Blocks the signals that would end the program, as long as a temporary file exists.
class HeldSignals {
 public:
  HeldSignals() {
    const sigset_t held = interrupts();
    ::pthread_sigmask(SIG_BLOCK, &held, &before_);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  /// Whether one of them has arrived since they were blocked.
  static bool anyPending() {
    sigset_t pending;
    ::sigpending(&pending);
    return std::any_of(signals.begin(), signals.end(),
                       [&](int signal) { return ::sigismember(&pending, signal) == 1; });
  }

 private:
  static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};

  static sigset_t interrupts() {
    sigset_t set;
    ::sigemptyset(&set);
    for (const int signal : signals) ::sigaddset(&set, signal);
    return set;
  }

  sigset_t before_{};
};

/// A new file, removed by the destructor unless rename() or keep() was called.
class TemporaryFile {
 public:
  /// \param beside its path without the random ending. Check open() afterwards.
  explicit TemporaryFile(const fs::path& beside)
      : name_(beside.string() + ".XXXXXX"), file_(::mkstemp(name_.data())), error_(errno) {
    if (!file_.valid()) name_.clear();
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!name_.empty()) ::unlink(name_.c_str());
  }

  bool open() const { return file_.valid(); }
  int error() const { return error_; }
  const std::string& name() const { return name_; }
  void keep() { name_.clear(); }

  /// Puts all bytes onto the disk. Returns 0, or the number of the error, which is EINTR after Ctrl-C.
  int fill(ByteView bytes) {
    constexpr std::size_t maximumAtOnce = std::size_t{1} << 22;
    while (!bytes.empty() && !HeldSignals::anyPending()) {
      const std::size_t count = std::min(bytes.size(), maximumAtOnce);
      if (const int error = writeAll(file_.get(), bytes.first(count))) return error;
      bytes = bytes.subspan(count);
    }
    if (bytes.empty() && ::fsync(file_.get()) != 0) return errno;
    if (!HeldSignals::anyPending()) return 0;
    requestCancel();
    return EINTR;
  }
  bool takeOwner(const struct stat& old) { return ::fchown(file_.get(), old.st_uid, old.st_gid) == 0; }
  /// Returns 0, or the number of the error.
  int rename(mode_t mode, const fs::path& target) {
    if (::fchmod(file_.get(), mode) != 0 || file_.close() != 0) return errno;
    if (::rename(name_.c_str(), target.c_str()) != 0) return errno;
    keep();
    return 0;
  }

 private:
  std::string name_;
  Descriptor file_;
  int error_;
};

/// Replaces the content of a file. When it fails with `begun` unset, the file is as it was.
/// \param begun set before the first byte is overwritten
int rewrite(const fs::path& target, ByteView bytes, off_t oldSize, bool& begun) {
  Descriptor file(::open(target.c_str(), O_WRONLY | O_CLOEXEC));
  if (!file.valid()) return errno;
  const auto size = static_cast<off_t>(bytes.size());
  if (size > oldSize) {
    const int noRoom = ::posix_fallocate(file.get(), oldSize, size - oldSize);
    if (noRoom != 0) return ::ftruncate(file.get(), oldSize) == 0 ? noRoom : errno;
  }
  begun = true;
  if (const int error = writeAll(file.get(), bytes)) return error;
  if (::ftruncate(file.get(), size) != 0 || ::fsync(file.get()) != 0 || file.close() != 0) return errno;
  return 0;
}

/// Replaces the content of a file that must remain the same file. `copy` already holds the new content, and
/// stays when the replacement fails half way.
void replaceContent(const std::string& path, const fs::path& target, TemporaryFile& copy, ByteView bytes,
                    off_t oldSize) {
  bool begun = false;
  const int error = rewrite(target, bytes, oldSize, begun);
  if (error == 0) return;
  if (!begun) fail(path, error);
  const std::string name = copy.name();
  copy.keep();
  throw FileError(path, std::string(std::strerror(error)) + "; all that was to be written is in " + name);
}

void createFile(const std::string& path, const fs::path& target, ByteView bytes) {
  TemporaryFile temporary(target);
  if (!temporary.open()) fail(path, temporary.error());
  if (const int error = temporary.fill(bytes)) fail(path, error);
  if (const int error = temporary.rename(modeOfNewFiles(), target)) fail(path, error);
}

void replaceFile(const std::string& path, const fs::path& target, const struct stat& old, ByteView bytes) {
  TemporaryFile beside(target);
  if (!beside.open()) {
    if (beside.error() != EACCES && beside.error() != EPERM && beside.error() != EROFS)
      fail(path, beside.error());
    std::error_code none;
    const fs::path folder = fs::temp_directory_path(none);
    TemporaryFile elsewhere(folder / target.filename());
    if (!elsewhere.open()) fail(none ? "temporary folder" : folder.string(), elsewhere.error());
    if (const int error = elsewhere.fill(bytes)) fail(elsewhere.name(), error);
    return replaceContent(path, target, elsewhere, bytes, old.st_size);
  }
  if (const int error = beside.fill(bytes)) fail(path, error);
  if (old.st_nlink > 1 || !beside.takeOwner(old))
    return replaceContent(path, target, beside, bytes, old.st_size);
  if (const int error = beside.rename(old.st_mode & 07777, target)) fail(path, error);
}

/// The path at the end of a chain of symbolic links, which need not exist.
fs::path followed(const std::string& path) {
  fs::path target = path;
  std::error_code error;
  while (fs::is_symlink(target, error)) target = target.parent_path() / fs::read_symlink(target, error);
  return target;
}

}  // namespace

void writeFile(const std::string& path, ByteView bytes) {
  if (path == "-") return writeDirectly(path, STDOUT_FILENO, bytes);
  struct stat old {};
  const bool exists = ::stat(path.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) fail(path, errno);
  if (exists && S_ISDIR(old.st_mode)) fail(path, EISDIR);
  if (exists && ::access(path.c_str(), W_OK) != 0) fail(path, errno);
  if (exists && !S_ISREG(old.st_mode)) {
    return writeDirectly(path, ::open(path.c_str(), O_WRONLY | O_CLOEXEC), bytes);
  }
  const HeldSignals held;
  if (exists) return replaceFile(path, followed(path), old, bytes);
  createFile(path, followed(path), bytes);
}

}  // namespace host
