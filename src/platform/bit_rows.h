#pragma once

#include <cstdint>

#include "platform/win32.h"

/// \file
/// Rows of packed bits, in which the most significant bit of a byte comes first, written by bytes.

namespace dibkit {

/// Gives the bits of [begin, end) the values that they have in a row of bytes that are all `pattern`.
void fillBits(BYTE* row, std::int64_t begin, std::int64_t end, BYTE pattern);

/// Copies `count` bits from bit `fromBit` of a row to bit `toBit` of another, inverted where `flip` has a 1
/// in the bit's byte of the target. Touches no other bit and reads no byte beyond the last bit's.
void copyBits(const BYTE* from, std::int64_t fromBit, BYTE* to, std::int64_t toBit, std::int64_t count,
              BYTE flip = 0);

}  // namespace dibkit
