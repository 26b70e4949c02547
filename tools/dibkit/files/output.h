#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "host/bytes.h"

/// \file
/// Output files, and the rules for those that exist already.
namespace host {

/// What may happen to files that exist already.
struct OverwriteRules {
  bool force = false;      ///< --force: replace them
  bool noClobber = false;  ///< --no-clobber: keep them and skip the output
  bool ownFiles = false;   ///< an earlier run of the command wrote them: replace them
};

/// A file that a command will write. The constructor checks, before any work is done, whether the path may be
/// written. A file that exists and is not empty is replaced only as the rules allow; an input of the same
/// command only with `force`. Devices and pipes may always be written.
class OutputTarget {
 public:
  /// \param path "-" for standard output; other paths may lead there too, such as /dev/stdout
  /// \param inputs the files that the command reads
  /// Throws FileError for a file that may not be replaced or written.
  OutputTarget(std::string path, const OverwriteRules& rules, std::span<const std::string> inputs);

  const std::string& path() const { return path_; }
  bool standardOutput() const { return standardOutput_; }
  /// Whether the file exists and is to be kept. Do not call write() then.
  bool leftAlone() const { return leftAlone_; }

  /// Writes the whole file as writeFile() does. Throws FileError, also for a file that another program has
  /// made in the meantime, and Cancelled after Ctrl-C; then nothing has been written.
  void write(ByteView bytes);

 private:
  bool holdsSomething() const;

  std::string path_;
  bool standardOutput_;
  bool leftAlone_ = false;
  bool replaces_ = false;
};

/// Whether both paths lead to the same file, directly or by links.
bool isSameFile(const std::string& a, const std::string& b);

/// Throws FileError unless the folder of the file exists.
void requireFolderOf(const std::string& path);

/// Throws UsageError when the path has an ending that is not one of the format's. Paths without an ending,
/// standard output, devices and pipes pass.
/// \param format its name, as in "a GIF"
/// \param endings in lower case, the usual one first
void requireEnding(const std::string& path, std::string_view format,
                   std::initializer_list<std::string_view> endings);

}  // namespace host
