#pragma once

#include <array>
#include <csetjmp>
#include <span>
#include <string>
#include <vector>

#include <dibkit.h>
#include <png.h>

#include "host/bytes.h"
#include "host/formats/diagnostics.h"
#include "host/formats/row_sink.h"

namespace host {

/// Whether the checksums of a stream are verified: those of a file show damage, those of assembled frames are
/// not set.
enum class Checksums { verify, ignore };

/// Decodes one PNG picture with libpng, line by line, so that the lines before a fault are not lost.
///
/// libpng leaves its calls by longjmp when something is wrong. The jumps stay inside of this class's steps,
/// which hold nothing that needs to be destroyed.
class PngDecoder {
 public:
  /// \param bytes must outlive the decoder. Reads up to the picture. Throws FormatError.
  PngDecoder(ByteView bytes, Strictness strictness, Checksums checksums);
  PngDecoder(const PngDecoder&) = delete;
  PngDecoder& operator=(const PngDecoder&) = delete;

  Size size() const { return size_; }
  /// As stored, all channels together.
  int bitsPerPixel() const { return bitsPerPixel_; }
  bool interlaced() const { return interlaced_; }
  /// Empty for true colour and grays.
  const std::vector<RGBQUAD>& palette() const { return palette_; }

  /// Decodes lines until the end or a fault; false when there is not one.
  bool readLines(RowSink& sink);
  /// What was wrong; empty for nothing.
  std::string fault() const;

 private:
  struct Handles {
    png_structp png = nullptr;
    png_infop info = nullptr;
    ~Handles() { png_destroy_read_struct(&png, &info, nullptr); }
  };

  /// Every across-th pixel of every down-th line.
  struct Pass {
    int left;
    int top;
    int across;
    int down;
  };

  static void onError(png_structp png, png_const_charp message);
  static void onWarning(png_structp png, png_const_charp message);
  static void onRead(png_structp png, png_bytep to, std::size_t count);

  bool headStep();
  bool lineStep(Pixel* line);
  bool readLine(Pixel* line);
  bool readPass(const Pass& pass, std::span<Pixel> line, RowSink& sink);

  ByteView rest_;
  Strictness strictness_;
  Checksums checksums_;
  Handles handles_;
  std::jmp_buf back_{};
  std::array<char, 128> message_{};
  bool truncated_ = false;
  bool damaged_ = false;
  bool failed_ = false;  ///< libpng has given up
  int bitsPerPixel_ = 0;
  Size size_;
  bool indexed_ = false;
  bool interlaced_ = false;
  std::vector<RGBQUAD> palette_;
};

}  // namespace host
