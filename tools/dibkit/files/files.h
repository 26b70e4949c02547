#pragma once

#include <string>

#include "host/bytes.h"

namespace host {

/// The content of a file, or of standard input for "-", of up to 1 GiB. Throws FileError, Cancelled on
/// Ctrl-C.
Bytes readFile(const std::string& path);

/// Creates a folder and its missing parents. Throws FileError.
void makeFolder(const std::string& path);

}  // namespace host
