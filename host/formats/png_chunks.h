#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/bytes.h"

namespace host {

/// Big-endian numbers, as PNG has them. The bytes have to be there.
inline std::uint32_t big16(ByteView bytes, std::size_t offset) {
  return std::uint32_t{bytes[offset]} << 8 | bytes[offset + 1];
}
inline std::uint32_t big32(ByteView bytes, std::size_t offset) {
  return big16(bytes, offset) << 16 | big16(bytes, offset + 2);
}

/// The four bytes of a number.
inline Bytes big32(std::size_t value) {
  const auto byte = [value](int shift) { return static_cast<std::uint8_t>(value >> shift & 255); };
  return {byte(24), byte(16), byte(8), byte(0)};
}

struct PngChunk {
  std::string_view name;
  ByteView data;   ///< as far as the file has it
  bool cut;        ///< the file ends in the chunk
  ByteView whole;  ///< from the length to the checksum, or to the end of the file

  bool isIntact() const;  ///< whether all of it is there and its checksum is right
};

/// Goes through the chunks of a PNG file.
class PngChunks {
 public:
  static constexpr std::size_t signatureBytes = 8;

  /// \param bytes the file; has to outlive the chunks
  explicit PngChunks(ByteView bytes) : rest_(bytes.subspan(std::min(bytes.size(), signatureBytes))) {}

  /// The next chunk; nothing when there is not even the start of one.
  std::optional<PngChunk> next();

 private:
  ByteView rest_;
};

}  // namespace host
