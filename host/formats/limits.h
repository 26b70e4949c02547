#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "host/picture.h"

/// \file
/// How large pictures may be.
namespace host {

/// The largest picture that is read line by line where a smaller one is enough.
constexpr std::int64_t maximumStoredPixels = std::int64_t{1} << 28;

/// A picture of up to this many pixels is allocated even when its file is short.
constexpr std::int64_t harmlessPixels = 1 << 24;

/// Guards against small files that claim large pictures. Throws FormatError for a picture of more than
/// harmlessPixels that a file of so many bytes cannot hold.
void requirePixelsIn(std::size_t fileBytes, Size size, std::int64_t maximumPixelsPerByte);

/// For pictures that a decoder holds whole even when they are reduced. Throws TooManyPixels.
/// \param kind of file, for the message
void requireRoomInMemory(Size size, const char* kind);

/// The size of a picture of which each `factor` by `factor` pixels become one; what remains at the right and
/// at the bottom becomes one too.
Size reduced(Size stored, int factor);

/// By which factor a picture may be reduced while it is read. Half of what would be enough, since the final
/// scaling makes the better pixels; more where the picture would be too large.
/// \param enough the size that it will have in the end; a side of 0 follows from the other
/// Throws FormatError when there are no pixels, TooManyPixels when even the reduced ones are too many.
int reductionFor(Size stored, const std::optional<Size>& enough);

}  // namespace host
