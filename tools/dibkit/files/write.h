#pragma once

#include <string>

#include "host/bytes.h"

namespace host {

/// Puts a whole file in place, or writes to standard output for "-". Throws FileError.
///
/// The bytes go to a new file beside the target, which takes the target's name when all of them are on the
/// disk: whatever fails, an old file is untouched and no half of a new one is left. Symbolic links are
/// followed; permissions stay, and so does the owner.
///
/// A file with several hard links, and one in a folder that lets nobody add a file, keeps its place and gets
/// the new content: once a copy of it is on the disk and the file has the room that it needs. Only if that
/// last step fails, as when the disk breaks, the old content is lost; the copy then stays, and the error
/// names it.
///
/// A target that is no regular file (a device, a pipe) is written directly.
void writeFile(const std::string& path, ByteView bytes);

}  // namespace host
