#include "host/formats/bmp.h"

#include <bit>
#include <vector>

#include "host/formats/byte_reader.h"
#include "host/formats/formats.h"
#include "host/formats/limits.h"
#include "host/formats/row_sink.h"

namespace host {

namespace {

/// The bits of one colour channel in a pixel's number.
class Channel {
 public:
  explicit Channel(std::uint32_t mask) : mask_(mask), shift_(mask != 0 ? std::countr_zero(mask) : 0) {}
  bool exists() const { return mask_ != 0; }
  /// The channel scaled to 0..255, rounded.
  BYTE of(std::uint32_t pixel) const {
    if (mask_ == 0) return 0;
    const std::uint64_t maximum = mask_ >> shift_;
    return static_cast<BYTE>(((std::uint64_t{pixel & mask_} >> shift_) * 255 + maximum / 2) / maximum);
  }

 private:
  std::uint32_t mask_;
  int shift_;
};

BYTE indexAt(const std::uint8_t* line, int x, int bitCount) {
  switch (bitCount) {
    case 1:
      return Get1BitPixel(line, x);
    case 2:
      return static_cast<BYTE>(line[x / 4] >> (6 - x % 4 * 2) & 3);
    case 4:
      return Get4BitPixel(line, x);
    default:
      return Get8BitPixel(line, x);
  }
}

/// Turns the bytes of a line into pixels.
class LineReader {
 public:
  explicit LineReader(const BmpHeader& header)
      : header_(header),
        red_(header.masks[0]),
        green_(header.masks[1]),
        blue_(header.masks[2]),
        alpha_(header.masks[3]) {}

  void read(const std::uint8_t* line, std::vector<Pixel>& pixels) const {
    if (header_.bitCount <= 8) {
      for (int x = 0; x < header_.size.width; ++x) {
        pixels[static_cast<std::size_t>(x)] = header_.colourOf(indexAt(line, x, header_.bitCount));
      }
      return;
    }
    const int bytesPerPixel = header_.bitCount / 8;
    for (Pixel& pixel : pixels) {
      std::uint32_t value = 0;
      for (int i = 0; i < bytesPerPixel; ++i) value |= std::uint32_t{*line++} << 8 * i;
      pixel = {blue_.of(value), green_.of(value), red_.of(value),
               alpha_.exists() ? alpha_.of(value) : BYTE{255}};
    }
  }

 private:
  const BmpHeader& header_;
  Channel red_;
  Channel green_;
  Channel blue_;
  Channel alpha_;
};

/// Pixels without compression. Lines that the file does not have stay transparent.
Picture readLines(const BmpHeader& header, ByteView bytes, int factor, Diagnostics& diagnostics) {
  const ByteReader reader(bytes);
  const LineReader lineReader(header);
  const std::size_t used =
      (static_cast<std::size_t>(header.size.width) * static_cast<std::size_t>(header.bitCount) + 7) / 8;
  RowSink sink(header.size, factor);
  std::vector<Pixel> line(static_cast<std::size_t>(header.size.width));
  int missing = 0;
  for (int y = 0; y < header.size.height; ++y) {
    const std::size_t offset = header.offsetOfLine(y);
    if (!reader.has(offset, used)) {
      ++missing;
      continue;
    }
    lineReader.read(reader.at(offset, used), line);
    sink.put(y, line);
  }
  if (missing == header.size.height) throw FormatError("the file is truncated");
  if (missing > 0) diagnostics.report("the file is truncated");
  return std::move(sink).take();
}

}  // namespace

Animation readBmp(ByteView bytes, const ReadOptions& options) {
  Diagnostics diagnostics(options.strictness);
  const BmpHeader header = readBmpHeader(bytes);
  const bool runs =
      header.compression == BmpCompression::runs8 || header.compression == BmpCompression::runs4;
  const int factor = reductionFor(header.size, runs ? std::nullopt : options.enough);
  // Runs may skip lines. Otherwise a file that lacks more than seven eighths of its bytes is refused.
  constexpr std::int64_t maximumRunPixelsPerByte = 4096;
  requirePixelsIn(bytes.size(), header.size, runs ? maximumRunPixelsPerByte : 64 / header.bitCount);
  Animation animation;
  animation.format = "BMP";
  animation.bitsPerPixel = header.bitCount;
  animation.palette = header.palette;
  animation.frames.push_back(
      {runs ? readBmpRuns(header, bytes, diagnostics) : readLines(header, bytes, factor, diagnostics), 0});
  animation.warnings = diagnostics.warnings();
  return animation;
}

}  // namespace host
