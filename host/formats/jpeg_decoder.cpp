#include "host/formats/jpeg_decoder.h"

#include <cstring>

#include <jerror.h>

#include "host/cancel.h"
#include "host/errors.h"

namespace host {

JpegDecoder::JpegDecoder(ByteView bytes) {
  require(headStep(bytes));
  if (errors_.truncated || jpeg_.src->bytes_in_buffer == 0) throw FormatError("the file is truncated");
  comesInScans_ = jpeg_has_multiple_scans(&jpeg_) != 0;
}

ByteView JpegDecoder::exif() const {
  for (const jpeg_marker_struct* marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
    constexpr char mark[] = "Exif";
    if (marker->data_length >= sizeof(mark) && std::memcmp(marker->data, mark, sizeof(mark)) == 0)
      return {marker->data, marker->data_length};
  }
  return {};
}

Size JpegDecoder::start(int factor) {
  constexpr unsigned eighths = 8;
  jpeg_.scale_num = (eighths - 1) / static_cast<unsigned>(factor) + 1;
  jpeg_.scale_denom = eighths;
  require(startStep());
  return {static_cast<int>(jpeg_.output_width), static_cast<int>(jpeg_.output_height)};
}

bool JpegDecoder::readLine(Pixel* line) {
  const bool done = lineStep(line);
  throwIfCancelled();
  if (!done && jpeg_.output_scanline == 0) throw FormatError(failure());
  return done;
}

void JpegDecoder::reportFaults(Diagnostics& diagnostics) const {
  if (errors_.damaged) diagnostics.report("JPEG: the data are damaged");
  if (errors_.failed || errors_.truncated) diagnostics.report(failure());
  if (errors_.stray) diagnostics.report("JPEG: there are stray bytes between its parts");
}

std::string JpegDecoder::failure() const {
  return errors_.truncated ? "the file is truncated" : "JPEG: " + std::string(errors_.message);
}

void JpegDecoder::require(bool done) const {
  throwIfCancelled();
  if (!done) throw FormatError(failure());
}

void JpegDecoder::onError(j_common_ptr common) {
  auto* manager = static_cast<ErrorManager*>(common->err);
  manager->format_message(common, manager->message);
  manager->failed = true;
  std::longjmp(manager->back, 1);
}

void JpegDecoder::onMessage(j_common_ptr common, int level) {
  auto* manager = static_cast<ErrorManager*>(common->err);
  if (level >= 0) return;
  switch (manager->msg_code) {
    case JWRN_JPEG_EOF:
      manager->truncated = true;
      break;
    // Where pixels are lost, not where the file merely strays from the book. Those that are missing at the
    // end of a truncated file are lost once.
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_MUST_RESYNC:
      manager->damaged |= !manager->truncated;
      break;
    case JWRN_EXTRANEOUS_DATA:
      manager->stray = true;
      break;
    default:
      break;
  }
}

/// Called again and again while a picture is decoded.
void JpegDecoder::onProgress(j_common_ptr common) {
  auto* manager = static_cast<ErrorManager*>(common->err);
  // Each scan of a progressive picture goes through all of it, however few bytes it has.
  constexpr int maximumScans = 500;
  const bool tooMany = reinterpret_cast<j_decompress_ptr>(common)->input_scan_number > maximumScans;
  if (tooMany) std::strcpy(manager->message, "too many scans");
  manager->failed |= tooMany;
  if (tooMany || cancelRequested()) std::longjmp(manager->back, 1);
}

bool JpegDecoder::headStep(ByteView bytes) {
  jpeg_.err = jpeg_std_error(&errors_);
  errors_.error_exit = onError;
  errors_.emit_message = onMessage;
  progress_.progress_monitor = onProgress;
  if (setjmp(errors_.back) != 0) return false;
  jpeg_create_decompress(&jpeg_);
  jpeg_.progress = &progress_;
  jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, 0xFFFF);
  jpeg_mem_src(&jpeg_, bytes.data(), bytes.size());
  jpeg_read_header(&jpeg_, TRUE);
  const bool ink = jpeg_.jpeg_color_space == JCS_CMYK || jpeg_.jpeg_color_space == JCS_YCCK;
  jpeg_.out_color_space = ink ? JCS_CMYK : JCS_EXT_BGRA;
  return true;
}

bool JpegDecoder::startStep() {
  if (setjmp(errors_.back) != 0) return false;
  jpeg_start_decompress(&jpeg_);
  return true;
}

bool JpegDecoder::lineStep(Pixel* line) {
  if (setjmp(errors_.back) != 0) return false;
  auto* row = reinterpret_cast<JSAMPROW>(line);
  jpeg_read_scanlines(&jpeg_, &row, 1);
  return true;
}

bool JpegDecoder::finishStep() {
  if (setjmp(errors_.back) != 0) return false;
  jpeg_finish_decompress(&jpeg_);
  return true;
}

}  // namespace host
