#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace host {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// The whole of a file, or of standard input for "-". Throws FileError.
Bytes readFile(const std::string& path);

/// Puts a whole file in place, or writes to standard output for "-". The bytes go to a new file beside the
/// target, which takes the target's name when all of them are on the disk: whatever fails, an old file is
/// untouched and no half of a new one is left. A target that is no regular file (a device, a pipe) is written
/// directly. Throws FileError.
void writeFile(const std::string& path, ByteView bytes);

/// Makes a folder and those above it. Throws FileError.
void makeFolder(const std::string& path);

}  // namespace host
