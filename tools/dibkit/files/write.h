#pragma once

#include <string>

#include "host/bytes.h"

namespace host {

/// Puts a whole file in place, or writes to standard output for "-". Throws FileError.
///
/// The bytes go to a temporary file in the folder of the target, which is renamed once all of them are on the
/// disk. On failure an existing target is unchanged, and no partial file remains. Symbolic links are
/// followed; owner and permissions are kept.
///
/// A target with several hard links, or in a folder where the user may not create files, is overwritten in
/// place instead: after a complete copy is on the disk and the space for the target is allocated. If
/// overwriting fails even then, as with a broken disk, the old content is lost; the copy is kept, and the
/// error names it.
///
/// Devices and pipes are written directly.
void writeFile(const std::string& path, ByteView bytes);

}  // namespace host
