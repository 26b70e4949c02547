#include "host/formats/png_chunks.h"

#include <zlib.h>

namespace host {

namespace {

constexpr std::size_t headBytes = 8;
constexpr std::size_t checksumBytes = 4;

}  // namespace

bool PngChunk::isIntact() const {
  if (cut) return false;
  const ByteView checked = whole.subspan(4, whole.size() - headBytes);
  return crc32_z(0, checked.data(), checked.size()) == big32(whole, whole.size() - checksumBytes);
}

std::optional<PngChunk> PngChunks::next() {
  if (rest_.size() < headBytes) return std::nullopt;
  const std::size_t length = big32(rest_, 0);
  const std::size_t total = std::min(rest_.size(), headBytes + length + checksumBytes);
  const bool cut = total < headBytes + length + checksumBytes;
  const PngChunk chunk{{reinterpret_cast<const char*>(rest_.data()) + 4, 4},
                       rest_.subspan(headBytes, std::min(length, rest_.size() - headBytes)),
                       cut,
                       rest_.first(total)};
  rest_ = rest_.subspan(total);
  return chunk;
}

}  // namespace host
