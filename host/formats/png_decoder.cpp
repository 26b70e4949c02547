#include "host/formats/png_decoder.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

#include "host/cancel.h"
#include "host/errors.h"

namespace host {

namespace {

/// The colours of an indexed picture.
std::vector<RGBQUAD> paletteOf(png_structp png, png_infop info) {
  png_colorp entries = nullptr;
  int count = 0;
  std::vector<RGBQUAD> palette;
  png_get_PLTE(png, info, &entries, &count);
  for (const png_color& entry : std::span(entries, static_cast<std::size_t>(count))) {
    palette.push_back(RGBQUAD{entry.blue, entry.green, entry.red, 0});
  }
  return palette;
}

}  // namespace

PngDecoder::PngDecoder(ByteView bytes, Strictness strictness, Checksums checksums)
    : rest_(bytes), strictness_(strictness), checksums_(checksums) {
  handles_.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, onError, onWarning);
  if (handles_.png != nullptr) handles_.info = png_create_info_struct(handles_.png);
  if (handles_.info == nullptr) throw std::bad_alloc();
  if (!headStep()) throw FormatError(fault());
  size_ = {static_cast<int>(png_get_image_width(handles_.png, handles_.info)),
           static_cast<int>(png_get_image_height(handles_.png, handles_.info))};
  if (indexed_) palette_ = paletteOf(handles_.png, handles_.info);
}

void PngDecoder::onError(png_structp png, png_const_charp message) {
  auto* decoder = static_cast<PngDecoder*>(png_get_error_ptr(png));
  if (!decoder->damaged_) std::snprintf(decoder->message_.data(), decoder->message_.size(), "%s", message);
  decoder->damaged_ = true;
  std::longjmp(decoder->back_, 1);
}

/// Only faults of critical chunks matter: those of the pixels and their colours, whose names start with a
/// capital letter.
void PngDecoder::onWarning(png_structp png, png_const_charp message) {
  auto* decoder = static_cast<PngDecoder*>(png_get_error_ptr(png));
  if (std::strstr(message, "CRC error") == nullptr || std::isupper(static_cast<unsigned char>(*message)) == 0)
    return;
  if (!decoder->damaged_) std::snprintf(decoder->message_.data(), decoder->message_.size(), "%s", message);
  decoder->damaged_ = true;
}

void PngDecoder::onRead(png_structp png, png_bytep to, std::size_t count) {
  auto* decoder = static_cast<PngDecoder*>(png_get_io_ptr(png));
  if (decoder->rest_.size() < count) {
    decoder->truncated_ = true;
    png_error(png, "");
  }
  std::memcpy(to, decoder->rest_.data(), count);
  decoder->rest_ = decoder->rest_.subspan(count);
}

std::string PngDecoder::fault() const {
  if (truncated_) return "the file is truncated";
  return damaged_ ? "PNG: the data are damaged (" + std::string(message_.data()) + ")" : "";
}

bool PngDecoder::headStep() {
  if (setjmp(back_) != 0) return false;
  png_structp png = handles_.png;
  png_infop info = handles_.info;
  png_set_read_fn(png, this, onRead);
  if (checksums_ == Checksums::ignore) {
    png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
  } else if (strictness_ == Strictness::lenient) {
    png_set_crc_action(png, PNG_CRC_WARN_USE, PNG_CRC_DEFAULT);
  }
  png_read_info(png, info);
  bitsPerPixel_ = png_get_bit_depth(png, info) * png_get_channels(png, info);
  indexed_ = png_get_color_type(png, info) == PNG_COLOR_TYPE_PALETTE;
  interlaced_ = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
  // All kinds become blue, green, red and alpha of 8 bits, in the colours of a usual screen.
  png_set_alpha_mode_fixed(png, PNG_ALPHA_PNG, PNG_DEFAULT_sRGB);
  png_set_expand(png);
  png_set_scale_16(png);
  png_set_gray_to_rgb(png);
  png_set_bgr(png);
  png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
  png_read_update_info(png, info);
  return true;
}

bool PngDecoder::lineStep(Pixel* line) {
  if (setjmp(back_) != 0) return false;
  png_read_row(handles_.png, reinterpret_cast<png_bytep>(line), nullptr);
  return true;
}

/// Decodes a line; false when there is none. After the last one libpng may still find a fault in the end of
/// the file.
bool PngDecoder::readLine(Pixel* line) {
  throwIfCancelled();
  if (failed_) return false;
  const auto row = png_get_current_row_number(handles_.png);
  const auto pass = png_get_current_pass_number(handles_.png);
  if (lineStep(line)) return true;
  failed_ = true;
  return png_get_current_row_number(handles_.png) != row || png_get_current_pass_number(handles_.png) != pass;
}

/// \param line buffer for the longest one
bool PngDecoder::readPass(const Pass& pass, std::span<Pixel> line, RowSink& sink) {
  if (pass.left >= size_.width) return false;
  const int columns = (size_.width - 1 - pass.left) / pass.across + 1;
  bool any = false;
  for (int y = pass.top; y < size_.height && readLine(line.data()); y += pass.down) {
    sink.put(y, line.first(static_cast<std::size_t>(columns)), pass.left, pass.across);
    any = true;
  }
  return any;
}

bool PngDecoder::readLines(RowSink& sink) {
  std::vector<Pixel> line(static_cast<std::size_t>(size_.width));
  if (!interlaced_) return readPass({0, 0, 1, 1}, line, sink);
  constexpr std::array<Pass, 7> passes{
      {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4}, {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}};
  bool any = false;
  for (const Pass& pass : passes) any |= readPass(pass, line, sink);
  return any;
}

}  // namespace host
