#include "files/files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>

#include "files/descriptor.h"
#include "host/cancel.h"
#include "host/errors.h"

namespace host {

namespace {

constexpr std::size_t maximumFileBytes = std::size_t{1} << 30;

}  // namespace

void fail(const std::string& path, int error) {
  if (error == EINTR) throwIfCancelled();
  throw FileError(path, std::strerror(error));
}

Bytes readFile(const std::string& path) {
  const bool standard = path == "-";
  Descriptor file(standard ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.valid()) fail(path, errno);
  constexpr std::size_t chunk = std::size_t{1} << 18;
  Bytes bytes;
  for (;;) {
    throwIfCancelled();
    const std::size_t filled = bytes.size();
    bytes.resize(filled + chunk);
    const ssize_t got = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno != EINTR) fail(path, errno);
    bytes.resize(filled + static_cast<std::size_t>(got < 0 ? 0 : got));
    if (got == 0) return bytes;
    if (bytes.size() > maximumFileBytes) throw FileError(path, "the file is larger than 1 GiB");
  }
}

void makeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) fail(path, error.value());
}

}  // namespace host
