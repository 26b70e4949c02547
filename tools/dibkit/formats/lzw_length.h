#pragma once

#include "files/files.h"

namespace host {

/// Bytes that pixels take in a GIF, nearly: the codes are counted and not written, which is several times
/// faster. Gives up with something above `most` as soon as that is passed.
/// \param colourBits bits of a palette index, 2 to 8
std::size_t lzwLength(ByteView indices, int colourBits, std::size_t most);

}  // namespace host
