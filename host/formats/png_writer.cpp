#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <new>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <png.h>

#include "host/cancel.h"
#include "host/errors.h"
#include "host/formats/formats.h"

namespace host {

namespace {

/// What precedes the pixels.
struct PngHead {
  Size size;
  int colourType = PNG_COLOR_TYPE_RGB;
  int depth = 8;                      ///< bits for each channel, or for an index
  std::vector<png_color> palette{};   ///< for PNG_COLOR_TYPE_PALETTE
  std::vector<png_byte> opacities{};  ///< of the first entries; all others are opaque
};

/// Encodes a PNG with libpng, line by line, so that Ctrl-C ends the work.
///
/// libpng leaves its calls by longjmp when something is wrong. The jumps stay inside of this class's steps,
/// which hold nothing that needs to be destroyed.
class PngEncoder {
 public:
  explicit PngEncoder(const PngHead& head) {
    handles_.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, onError, onWarning);
    if (handles_.png != nullptr) handles_.info = png_create_info_struct(handles_.png);
    if (handles_.info == nullptr) throw std::bad_alloc();
    require(headStep(head));
  }
  PngEncoder(const PngEncoder&) = delete;
  PngEncoder& operator=(const PngEncoder&) = delete;

  /// The lines follow from the top. Channels are blue, green, red and alpha, indices packed as in a DIB.
  void add(const std::uint8_t* line) {
    throwIfCancelled();
    require(lineStep(line));
  }
  /// The file, after all lines.
  Bytes finish() && {
    require(endStep());
    return std::move(file_);
  }

 private:
  struct Handles {
    png_structp png = nullptr;
    png_infop info = nullptr;
    ~Handles() { png_destroy_write_struct(&png, &info); }
  };

  static void onError(png_structp png, png_const_charp message) {
    auto* encoder = static_cast<PngEncoder*>(png_get_error_ptr(png));
    std::snprintf(encoder->message_.data(), encoder->message_.size(), "%s", message);
    std::longjmp(encoder->back_, 1);
  }
  static void onWarning(png_structp, png_const_charp) {}
  static void onWrite(png_structp png, png_bytep bytes, std::size_t count) {
    auto* encoder = static_cast<PngEncoder*>(png_get_io_ptr(png));
    // Exceptions must not pass through libpng.
    try {
      encoder->file_.insert(encoder->file_.end(), bytes, bytes + count);
    } catch (const std::bad_alloc&) {
      encoder->noMemory_ = true;
    }
    if (encoder->noMemory_) png_error(png, "");
  }
  static void onFlush(png_structp) {}

  void require(bool done) const {
    if (noMemory_) throw std::bad_alloc();
    if (!done) throw FormatError("PNG: " + std::string(message_.data()));
  }

  bool headStep(const PngHead& head) {
    if (setjmp(back_) != 0) return false;
    png_structp png = handles_.png;
    png_infop info = handles_.info;
    png_set_write_fn(png, this, onWrite, onFlush);
    png_set_IHDR(png, info, static_cast<png_uint_32>(head.size.width),
                 static_cast<png_uint_32>(head.size.height), head.depth, head.colourType, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_sRGB(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
    if (!head.palette.empty())
      png_set_PLTE(png, info, head.palette.data(), static_cast<int>(head.palette.size()));
    if (!head.opacities.empty())
      png_set_tRNS(png, info, head.opacities.data(), static_cast<int>(head.opacities.size()), nullptr);
    png_write_info(png, info);
    if (head.colourType != PNG_COLOR_TYPE_PALETTE) png_set_bgr(png);
    return true;
  }
  bool lineStep(const std::uint8_t* line) {
    if (setjmp(back_) != 0) return false;
    png_write_row(handles_.png, line);
    return true;
  }
  bool endStep() {
    if (setjmp(back_) != 0) return false;
    png_write_end(handles_.png, handles_.info);
    return true;
  }

  Handles handles_;
  std::jmp_buf back_{};
  std::array<char, 128> message_{};
  bool noMemory_ = false;
  Bytes file_;
};

/// \param depth the most entries that count are 1 << depth
std::vector<png_color> pngPalette(std::span<const RGBQUAD> entries, int depth) {
  std::vector<png_color> palette;
  for (const RGBQUAD& entry : entries.first(std::min(entries.size(), std::size_t{1} << depth)))
    palette.push_back({entry.rgbRed, entry.rgbGreen, entry.rgbBlue});
  return palette;
}

PngHead headOf(const BITMAPINFOHEADER* dib) {
  PngHead head{{dib->biWidth, dib->biHeight}};
  if (dib->biBitCount == 32) head.colourType = PNG_COLOR_TYPE_RGB_ALPHA;
  if (dib->biBitCount > 8) return head;
  const auto* entries = reinterpret_cast<const RGBQUAD*>(reinterpret_cast<const BYTE*>(dib) + dib->biSize);
  head.colourType = PNG_COLOR_TYPE_PALETTE;
  head.depth = dib->biBitCount;
  head.palette = pngPalette({entries, entries + GetDIBPaletteSize(dib)}, head.depth);
  return head;
}

const BYTE* lineOf(const BITMAPINFOHEADER* dib, int y) {
  const std::size_t stride = (static_cast<std::size_t>(dib->biWidth) * dib->biBitCount + 31) / 32 * 4;
  return GetDIBBits(dib) + static_cast<std::size_t>(dib->biHeight - 1 - y) * stride;
}

/// Channels of five bits as channels of eight, which a PNG has.
void widen(const BYTE* words, Bytes& line) {
  for (std::size_t i = 0; i < line.size(); words += 2) {
    const unsigned word = words[0] | unsigned{words[1]} << 8;
    for (const unsigned shift : {0U, 5U, 10U}) {
      const unsigned five = word >> shift & 31;
      line[i++] = static_cast<std::uint8_t>(five << 3 | five >> 2);
    }
  }
}

}  // namespace

Bytes writePng(const IndexedPicture& picture) {
  constexpr int depth = 8;
  PngHead head{picture.size, PNG_COLOR_TYPE_PALETTE, depth, pngPalette(picture.palette, depth)};
  if (picture.transparent) {
    head.opacities.assign(static_cast<std::size_t>(*picture.transparent) + 1, 255);
    head.opacities.back() = 0;
  }
  PngEncoder encoder(head);
  const auto width = static_cast<std::size_t>(picture.size.width);
  for (std::size_t i = 0; i < picture.indices.size(); i += width) encoder.add(picture.indices.data() + i);
  return std::move(encoder).finish();
}

Bytes writePng(const BITMAPINFOHEADER* dib, const std::function<void()>& lineDone) {
  PngEncoder encoder(headOf(dib));
  Bytes wide(dib->biBitCount == 16 ? 3 * static_cast<std::size_t>(dib->biWidth) : 0);
  for (int y = 0; y < dib->biHeight; ++y) {
    const BYTE* line = lineOf(dib, y);
    if (!wide.empty()) widen(line, wide);
    encoder.add(wide.empty() ? line : wide.data());
    lineDone();
  }
  return std::move(encoder).finish();
}

}  // namespace host
