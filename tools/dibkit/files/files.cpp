#include "files/files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include "errors.h"
#include "interrupt.h"

namespace host {

namespace {

constexpr std::size_t maximumFileBytes = std::size_t{1} << 30;

/// Ctrl-C ends calls that wait, for a pipe's other end say.
[[noreturn]] void fail(const std::string& path, int error) {
  if (error == EINTR) throwIfInterrupted();
  throw FileError(path, std::strerror(error));
}

/// Closes on every way out; close() tells of a failed write too, so it is asked where that matters.
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

/// Returns 0, or the number of the error.
int writeAll(int descriptor, ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && (errno != EINTR || interrupted())) return errno;
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

/// The permissions that a new file would get by the user's settings; a new temporary file has fewer.
mode_t modeOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

/// Lets no signal end the program while a temporary file is about.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t held;
    ::sigemptyset(&held);
    ::sigaddset(&held, SIGINT);
    ::sigaddset(&held, SIGTERM);
    ::sigaddset(&held, SIGHUP);
    ::pthread_sigmask(SIG_BLOCK, &held, &before_);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

/// Removes the temporary file unless it has taken the target's place.
struct TemporaryFile {
  std::string name;
  ~TemporaryFile() {
    if (!name.empty()) ::unlink(name.c_str());
  }
};

void replaceFile(const std::string& path, const std::string& target, mode_t mode, ByteView bytes) {
  const HeldSignals held;
  TemporaryFile temporary{target + ".XXXXXX"};
  Descriptor file(::mkstemp(temporary.name.data()));
  if (!file.valid()) {
    const int error = errno;
    temporary.name.clear();
    fail(path, error);
  }
  if (const int error = writeAll(file.get(), bytes)) fail(path, error);
  if (::fchmod(file.get(), mode) != 0 || ::fsync(file.get()) != 0 || file.close() != 0) fail(path, errno);
  if (::rename(temporary.name.c_str(), target.c_str()) != 0) fail(path, errno);
  temporary.name.clear();
}

}  // namespace

Bytes readFile(const std::string& path) {
  const bool standard = path == "-";
  Descriptor file(standard ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.valid()) fail(path, errno);
  constexpr std::size_t chunk = std::size_t{1} << 18;
  Bytes bytes;
  for (;;) {
    throwIfInterrupted();
    const std::size_t filled = bytes.size();
    bytes.resize(filled + chunk);
    const ssize_t got = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno != EINTR) fail(path, errno);
    bytes.resize(filled + static_cast<std::size_t>(got < 0 ? 0 : got));
    if (got == 0) return bytes;
    if (bytes.size() > maximumFileBytes) throw FileError(path, "the file is larger than 1 GiB");
  }
}

void writeFile(const std::string& path, ByteView bytes) {
  if (path == "-") return writeDirectly(path, STDOUT_FILENO, bytes);
  struct stat old {};
  if (::stat(path.c_str(), &old) != 0) {
    if (errno != ENOENT) fail(path, errno);
    return replaceFile(path, path, modeOfNewFiles(), bytes);
  }
  if (S_ISDIR(old.st_mode)) fail(path, EISDIR);
  if (::access(path.c_str(), W_OK) != 0) fail(path, errno);
  if (!S_ISREG(old.st_mode)) {
    return writeDirectly(path, ::open(path.c_str(), O_WRONLY | O_CLOEXEC), bytes);
  }
  // A symbolic link stays one: the file that it names is replaced.
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  if (error) fail(path, error.value());
  replaceFile(path, target.string(), old.st_mode & 07777, bytes);
}

void makeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) fail(path, error.value());
}

}  // namespace host
