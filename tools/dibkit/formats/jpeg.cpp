#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <jerror.h>
#include <jpeglib.h>

#include "errors.h"
#include "formats/formats.h"
#include "formats/orientation.h"
#include "interrupt.h"

namespace host {

namespace {

/// libjpeg leaves its calls by longjmp when something is wrong. The jumps stay inside of this class's steps,
/// which hold nothing that needs to be destroyed.
class JpegDecoder {
 public:
  explicit JpegDecoder(ByteView bytes) : bytes_(bytes) {}
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;
  ~JpegDecoder() { jpeg_destroy_decompress(&jpeg_); }

  /// Reads up to the picture; then the size is known.
  void start() { orThrow(startStep()); }
  /// Decodes all lines: blue, green, red and 255, or cyan, magenta, yellow and black.
  void readLines(Pixel* const* lines) { orThrow(linesStep(lines)); }

  Size size() const { return {static_cast<int>(jpeg_.image_width), static_cast<int>(jpeg_.image_height)}; }
  int channels() const { return jpeg_.num_components; }
  bool isInk() const { return jpeg_.out_color_space == JCS_CMYK; }
  /// Files of one widespread maker store the ink that is not there.
  bool isInverted() const { return jpeg_.saw_Adobe_marker != 0; }
  /// The first block of Exif data, until lines are read; empty when there is none.
  ByteView exif() const {
    for (const jpeg_marker_struct* marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
      constexpr char mark[] = "Exif";
      if (marker->data_length >= sizeof(mark) && std::memcmp(marker->data, mark, sizeof(mark)) == 0)
        return {marker->data, marker->data_length};
    }
    return {};
  }

 private:
  struct ErrorManager : jpeg_error_mgr {
    std::jmp_buf back;
    char message[JMSG_LENGTH_MAX];
    bool truncated;
    bool damaged;
  };

  static void onError(j_common_ptr common) {
    auto* manager = static_cast<ErrorManager*>(common->err);
    manager->format_message(common, manager->message);
    std::longjmp(manager->back, 1);
  }
  static void onMessage(j_common_ptr common, int level) {
    auto* manager = static_cast<ErrorManager*>(common->err);
    if (level >= 0) return;
    switch (manager->msg_code) {
      case JWRN_JPEG_EOF:
        manager->truncated = true;
        break;
      // Where pixels are lost, not where the file merely strays from the book.
      case JWRN_HIT_MARKER:
      case JWRN_HUFF_BAD_CODE:
      case JWRN_MUST_RESYNC:
        manager->damaged = true;
        break;
      default:
        break;
    }
  }
  /// Called again and again while a picture is decoded.
  static void onProgress(j_common_ptr common) {
    auto* manager = static_cast<ErrorManager*>(common->err);
    // Each scan of a progressive picture goes through all of it, however few bytes it has.
    constexpr int mostScans = 500;
    const bool tooMany = reinterpret_cast<j_decompress_ptr>(common)->input_scan_number > mostScans;
    if (tooMany) std::strcpy(manager->message, "too many scans");
    if (tooMany || interrupted()) std::longjmp(manager->back, 1);
  }

  bool startStep() {
    jpeg_.err = jpeg_std_error(&errors_);
    errors_.error_exit = onError;
    errors_.emit_message = onMessage;
    errors_.message[0] = 0;
    errors_.truncated = false;
    errors_.damaged = false;
    progress_.progress_monitor = onProgress;
    if (setjmp(errors_.back) != 0) return false;
    jpeg_create_decompress(&jpeg_);
    jpeg_.progress = &progress_;
    jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, 0xFFFF);
    jpeg_mem_src(&jpeg_, bytes_.data(), bytes_.size());
    jpeg_read_header(&jpeg_, TRUE);
    const bool ink = jpeg_.jpeg_color_space == JCS_CMYK || jpeg_.jpeg_color_space == JCS_YCCK;
    jpeg_.out_color_space = ink ? JCS_CMYK : JCS_EXT_BGRA;
    return true;
  }

  bool linesStep(Pixel* const* lines) {
    if (setjmp(errors_.back) != 0) return false;
    jpeg_start_decompress(&jpeg_);
    while (jpeg_.output_scanline < jpeg_.output_height) {
      auto* line = reinterpret_cast<JSAMPROW>(lines[jpeg_.output_scanline]);
      jpeg_read_scanlines(&jpeg_, &line, 1);
    }
    jpeg_finish_decompress(&jpeg_);
    return true;
  }

  void orThrow(bool done) const {
    throwIfInterrupted();
    if (!done) throw FormatError("JPEG: " + std::string(errors_.message));
    // libjpeg would fill what is missing with gray.
    if (errors_.truncated) throw FormatError("the file is truncated");
    if (errors_.damaged) throw FormatError("JPEG: the data are damaged");
  }

  ByteView bytes_;
  jpeg_decompress_struct jpeg_{};
  ErrorManager errors_{};
  jpeg_progress_mgr progress_{};
};

void inkToColour(Picture& picture, bool inverted) {
  for (int y = 0; y < picture.height(); ++y) {
    Pixel* row = picture.row(y);
    for (int x = 0; x < picture.width(); ++x) {
      // In memory the pixel is cyan, magenta, yellow, black: cyan takes red away, yellow blue.
      const Pixel ink = row[x];
      const auto paper = [&](BYTE value) { return inverted ? value : 255 - value; };
      const int light = paper(ink.alpha);
      row[x] = Pixel{static_cast<BYTE>(paper(ink.red) * light / 255),
                     static_cast<BYTE>(paper(ink.green) * light / 255),
                     static_cast<BYTE>(paper(ink.blue) * light / 255), 255};
    }
  }
}

}  // namespace

Animation readJpeg(ByteView bytes) {
  JpegDecoder decoder(bytes);
  decoder.start();
  const Size size = decoder.size();
  requireUsableSize(size.width, size.height);
  // A block of 64 pixels takes a bit at the very least, and three channels never less than one of them.
  if (size.pixels() / 512 > static_cast<std::int64_t>(bytes.size()))
    throw FormatError("the file is truncated");
  const int orientation = orientationOf(decoder.exif());
  Picture picture(size);
  std::vector<Pixel*> lines;
  for (int y = 0; y < size.height; ++y) lines.push_back(picture.row(y));
  decoder.readLines(lines.data());
  if (decoder.isInk()) inkToColour(picture, decoder.isInverted());
  Animation animation;
  animation.format = "JPEG";
  animation.bitsPerPixel = 8 * decoder.channels();
  animation.frames.push_back({upright(std::move(picture), orientation), 0});
  return animation;
}

}  // namespace host
