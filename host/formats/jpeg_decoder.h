#pragma once

#include <csetjmp>
#include <cstdio>
#include <string>

#include <jpeglib.h>

#include "host/bytes.h"
#include "host/formats/diagnostics.h"
#include "host/picture.h"

namespace host {

/// Decodes one JPEG picture with libjpeg, line by line.
///
/// libjpeg leaves its calls by longjmp when something is wrong. The jumps stay inside of this class's steps,
/// which hold nothing that needs to be destroyed.
class JpegDecoder {
 public:
  /// Reads up to the picture. \param bytes must outlive the decoder. Throws FormatError.
  explicit JpegDecoder(ByteView bytes);
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;

  /// As stored.
  Size size() const { return {static_cast<int>(jpeg_.image_width), static_cast<int>(jpeg_.image_height)}; }
  int channels() const { return jpeg_.num_components; }
  /// Whether all of it has to be in memory to be decoded.
  bool comesInScans() const { return comesInScans_; }
  /// Whether lines are ink, not light.
  bool isInk() const { return jpeg_.out_color_space == JCS_CMYK; }
  /// Files of one widespread maker store the ink that is not there.
  bool isInverted() const { return jpeg_.saw_Adobe_marker != 0; }
  /// The first block of Exif data, until lines are read; empty when there is none.
  ByteView exif() const;

  /// Starts to decode. Throws FormatError.
  /// \param factor by which the picture may be reduced; the result is as near to that as the decoder can get
  ///     without being smaller
  /// \return the size of what is decoded
  Size start(int factor);
  /// Decodes the next line: blue, green, red and 255, or cyan, magenta, yellow and black. False at a fault
  /// that ends the picture; throws FormatError when there is not one line.
  bool readLine(Pixel* line);
  /// Reads what follows the last line.
  void finish() { finishStep(); }
  /// What was wrong so far. Where something is missing libjpeg has filled it.
  void reportFaults(Diagnostics& diagnostics) const;

 private:
  struct ErrorManager : jpeg_error_mgr {
    std::jmp_buf back;
    char message[JMSG_LENGTH_MAX];
    bool failed;
    bool truncated;
    bool damaged;
    bool stray;
  };
  /// Zero until it is created, and then destroyed on every path.
  struct Decompressor : jpeg_decompress_struct {
    Decompressor() : jpeg_decompress_struct{} {}
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
    ~Decompressor() { jpeg_destroy_decompress(this); }
  };

  static void onError(j_common_ptr common);
  static void onMessage(j_common_ptr common, int level);
  static void onProgress(j_common_ptr common);

  bool headStep(ByteView bytes);
  bool startStep();
  bool lineStep(Pixel* line);
  bool finishStep();
  std::string failure() const;
  void require(bool done) const;

  ErrorManager errors_{};
  jpeg_progress_mgr progress_{};
  Decompressor jpeg_;
  bool comesInScans_ = false;
};

}  // namespace host
