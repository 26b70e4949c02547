#pragma once

#include <cstddef>
#include <cstdint>

#include "host/bytes.h"
#include "host/errors.h"

namespace host {

/// Little-endian numbers out of a file's bytes. Reading past the end throws FormatError.
class ByteReader {
 public:
  explicit ByteReader(ByteView bytes) : bytes_(bytes) {}

  std::uint32_t u8(std::size_t offset) const { return at(offset, 1)[0]; }
  std::uint32_t u16(std::size_t offset) const {
    const std::uint8_t* byte = at(offset, 2);
    return byte[0] | std::uint32_t{byte[1]} << 8;
  }
  std::uint32_t u32(std::size_t offset) const { return u16(offset) | u16(offset + 2) << 16; }
  std::int32_t i32(std::size_t offset) const { return static_cast<std::int32_t>(u32(offset)); }

  bool has(std::size_t offset, std::size_t count) const {
    return offset <= bytes_.size() && count <= bytes_.size() - offset;
  }
  /// `count` bytes at `offset`.
  const std::uint8_t* at(std::size_t offset, std::size_t count) const {
    if (!has(offset, count)) throw FormatError("the file is truncated");
    return bytes_.data() + offset;
  }
  std::size_t size() const { return bytes_.size(); }

 private:
  ByteView bytes_;
};

}  // namespace host
