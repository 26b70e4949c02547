#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "host/bytes.h"

/// \file
/// Where the results of commands go, and what becomes of files that exist already.
namespace host {

/// What the user gave up by a word.
struct OverwriteRules {
  bool force = false;      ///< replace whatever exists
  bool noClobber = false;  ///< leave what exists alone, and do without the result
  bool ownFiles = false;   ///< an earlier run of the command made what exists
};

/// A file that a command will write. It is found free, or given up by the user, before the work begins: a
/// file that exists and holds something is replaced only by the rules, one that is read by this very run only
/// with `force`. Devices and pipes hold nothing.
class OutputTarget {
 public:
  /// \param path "-" for standard output, which other names may lead to as well
  /// \param inputs the files that the command reads
  /// Throws FileError for a file that may not be replaced or written.
  OutputTarget(std::string path, const OverwriteRules& rules, std::span<const std::string> inputs);

  const std::string& path() const { return path_; }
  bool standardOutput() const { return standardOutput_; }
  /// Whether the file exists and is to be left alone: do not write.
  bool leftAlone() const { return leftAlone_; }

  /// Puts the whole file in place as writeFile() does. Throws FileError, also when the file has come to exist
  /// since, and Cancelled when the user pressed Ctrl-C before it was there.
  void write(ByteView bytes);

 private:
  bool holdsSomething() const;

  std::string path_;
  bool standardOutput_;
  bool leftAlone_ = false;
  bool replaces_ = false;
};

/// Whether both names lead to one file that exists, by whatever links.
bool isSameFile(const std::string& a, const std::string& b);

/// Throws FileError unless the folder exists in which the file is to be.
void requireFolderOf(const std::string& path);

/// Throws UsageError when the name ends as that of another format does. No ending, standard output and what
/// is no regular file are fine. \param format as in "a GIF" \param endings in small letters, the usual one
/// first
void requireEnding(const std::string& path, std::string_view format,
                   std::initializer_list<std::string_view> endings);

}  // namespace host
