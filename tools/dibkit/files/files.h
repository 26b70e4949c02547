#pragma once

#include <string>

#include "host/bytes.h"

namespace host {

/// The whole of a file, or of standard input for "-". Throws FileError.
Bytes readFile(const std::string& path);

/// Makes a folder and those above it. Throws FileError.
void makeFolder(const std::string& path);

}  // namespace host
