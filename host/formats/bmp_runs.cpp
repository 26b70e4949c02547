#include <utility>

#include "host/formats/bmp.h"
#include "host/formats/byte_reader.h"

namespace host {

namespace {

/// Run lengths of 4 or 8 bits. Pixels that the runs skip stay transparent.
class RunReader {
 public:
  RunReader(const BmpHeader& header, ByteView bytes)
      : header_(header), reader_(bytes), offset_(header.pixelOffset), picture_(header.size) {}

  /// Reads up to the end of the picture or of the file.
  void read() {
    while (y_ < header_.size.height && !ended_) {
      truncated_ = !reader_.has(offset_, 2);
      if (truncated_) return;
      const std::uint32_t count = reader_.u8(offset_);
      const std::uint32_t value = reader_.u8(offset_ + 1);
      offset_ += 2;
      if (count > 0) {
        for (std::uint32_t i = 0; i < count; ++i) put(half(value, i));
      } else {
        readEscape(value);
      }
    }
  }
  /// Whether the file ended first.
  bool truncated() const { return truncated_; }
  /// Whether there were pixels outside of the picture or of the palette.
  bool damaged() const { return damaged_; }
  bool anyPixel() const { return anyPixel_; }
  Picture take() && { return std::move(picture_); }

 private:
  bool nibbles() const { return header_.bitCount == 4; }
  /// The i-th index of a byte, or of bytes that alternate between two.
  std::uint32_t half(std::uint32_t value, std::uint32_t i) const {
    if (!nibbles()) return value;
    return i % 2 == 0 ? value >> 4 : value & 15;
  }

  void readEscape(std::uint32_t value) {
    switch (value) {
      case 0:
        x_ = 0;
        ++y_;
        break;
      case 1:
        ended_ = true;
        break;
      case 2:
        jump();
        break;
      default:
        putLiteral(value);
    }
  }
  void jump() {
    truncated_ = ended_ = !reader_.has(offset_, 2);
    if (truncated_) return;
    x_ += static_cast<int>(reader_.u8(offset_));
    y_ += static_cast<int>(reader_.u8(offset_ + 1));
    offset_ += 2;
    damaged_ |= x_ > header_.size.width || y_ > header_.size.height;
    x_ = std::min(x_, header_.size.width);
  }
  void putLiteral(std::uint32_t count) {
    for (std::uint32_t i = 0; i < count && !truncated_; ++i) {
      const std::size_t at = offset_ + (nibbles() ? i / 2 : i);
      truncated_ = ended_ = !reader_.has(at, 1);
      if (!truncated_) put(half(reader_.u8(at), i));
    }
    const std::size_t bytes = nibbles() ? (count + 1) / 2 : count;
    offset_ += (bytes + 1) / 2 * 2;
  }
  void put(std::uint32_t index) {
    damaged_ |= x_ >= header_.size.width || index >= header_.palette.size();
    if (x_ >= header_.size.width) return;
    picture_.row(header_.topDown ? y_ : header_.size.height - 1 - y_)[x_++] = header_.colourOf(index);
    anyPixel_ = true;
  }

  const BmpHeader& header_;
  ByteReader reader_;
  std::size_t offset_;
  Picture picture_;
  int x_ = 0;
  int y_ = 0;  ///< counts in the order of the file
  bool ended_ = false;
  bool truncated_ = false;
  bool damaged_ = false;
  bool anyPixel_ = false;
};

}  // namespace

Picture readBmpRuns(const BmpHeader& header, ByteView bytes, Diagnostics& diagnostics) {
  RunReader reader(header, bytes);
  reader.read();
  if (reader.truncated() && !reader.anyPixel()) throw FormatError("the file is truncated");
  if (reader.damaged()) diagnostics.report("BMP: the data are damaged");
  if (reader.truncated()) diagnostics.report("the file is truncated");
  return std::move(reader).take();
}

}  // namespace host
