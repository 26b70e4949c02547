#include "formats/gif_decoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "errors.h"
#include "interrupt.h"

namespace host {

namespace {

constexpr GraphicsControlBlock noControl{DISPOSAL_UNSPECIFIED, false, 0, NO_TRANSPARENT_COLOR};
/// Some writers number "restore to previous" 4; viewers read both.
constexpr int disposePreviousAlias = 4;

void closeGif(GifFileType* gif) { DGifCloseFile(gif, nullptr); }

/// A code of at most 12 bits adds one pixel to the longest string known, and strings start anew after 4,096
/// codes: no byte of a file stands for more pixels than this.
void requirePixelsInFile(std::int64_t pixels, std::size_t fileBytes) {
  constexpr std::int64_t mostPixelsPerByte = 4096;
  if (pixels / mostPixelsPerByte > static_cast<std::int64_t>(fileBytes))
    throw FormatError("the file is truncated");
}

/// The lines of an interlaced picture in the order in which the file has them.
int interlacedLine(int order, int height) {
  struct Pass {
    int first;
    int step;
  };
  for (const Pass pass : {Pass{0, 8}, Pass{4, 8}, Pass{2, 4}, Pass{1, 2}}) {
    const int lines = height > pass.first ? (height - pass.first - 1) / pass.step + 1 : 0;
    if (order < lines) return pass.first + order * pass.step;
    order -= lines;
  }
  return height - 1;
}

}  // namespace

GifDecoder::GifDecoder(ByteView bytes)
    : source_{bytes}, fileBytes_(bytes.size()), gif_(nullptr, closeGif), control_(noControl) {
  int error = 0;
  gif_.reset(DGifOpen(&source_, readSource, &error));
  if (!gif_) throw FormatError("the file is truncated");
  if (const ColorMapObject* colours = gif_->SColorMap) {
    for (int i = 0; i < colours->ColorCount; ++i) {
      const GifColorType& colour = colours->Colors[i];
      palette_.push_back(RGBQUAD{colour.Blue, colour.Green, colour.Red, 0});
    }
  }
  const Size size{gif_->SWidth, gif_->SHeight};
  requireUsableSize(size.width, size.height);
  // A canvas may be larger than what is drawn on it, but a small file that claims a huge one is a trap.
  constexpr std::int64_t alwaysFine = 1 << 24;
  if (size.pixels() > alwaysFine) requirePixelsInFile(size.pixels(), fileBytes_);
  canvas_ = Picture(size);
}

int GifDecoder::readSource(GifFileType* gif, GifByteType* to, int count) {
  auto* source = static_cast<Source*>(gif->UserData);
  const std::size_t taken = std::min(source->rest.size(), static_cast<std::size_t>(count));
  std::memcpy(to, source->rest.data(), taken);
  source->rest = source->rest.subspan(taken);
  return static_cast<int>(taken);
}

void GifDecoder::fail() const {
  switch (gif_->Error) {
    case D_GIF_ERR_READ_FAILED:
    case D_GIF_ERR_EOF_TOO_SOON:
      throw FormatError("the file is truncated");
    case D_GIF_ERR_NOT_ENOUGH_MEM:
      throw std::bad_alloc();
    default:
      throw FormatError("GIF: the data are damaged");
  }
}

bool GifDecoder::next() {
  throwIfInterrupted();
  if (!advanceToImage()) return false;
  dispose();
  readImage();
  return true;
}

bool GifDecoder::advanceToImage() {
  control_ = noControl;
  for (;;) {
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    orFail(DGifGetRecordType(gif_.get(), &record));
    if (record == IMAGE_DESC_RECORD_TYPE) return true;
    if (record == TERMINATE_RECORD_TYPE) {
      if (gif_->ImageCount == 0) throw FormatError("GIF: there is no picture in it");
      return false;
    }
    if (record == EXTENSION_RECORD_TYPE) readExtension();
  }
}

void GifDecoder::readExtension() {
  int code = 0;
  GifByteType* block = nullptr;
  orFail(DGifGetExtension(gif_.get(), &code, &block));
  bool loopBlock = false;
  for (int index = 0; block != nullptr; ++index) {
    const std::size_t length = block[0];
    const auto* data = reinterpret_cast<const char*>(block) + 1;
    if (code == GRAPHICS_EXT_FUNC_CODE && index == 0) DGifExtensionToGCB(length, block + 1, &control_);
    if (code == APPLICATION_EXT_FUNC_CODE && index == 0 && length == 11) {
      loopBlock = std::memcmp(data, "NETSCAPE2.0", 11) == 0 || std::memcmp(data, "ANIMEXTS1.0", 11) == 0;
    }
    if (loopBlock && index > 0 && length >= 3 && block[1] == 1) loops_ = block[2] | block[3] << 8;
    orFail(DGifGetExtensionNext(gif_.get(), &block));
  }
}

void GifDecoder::dispose() {
  if (!shown_) return;
  const Place place = *shown_;
  const bool giveBack = shownDisposal_ == DISPOSE_PREVIOUS || shownDisposal_ == disposePreviousAlias;
  if (!giveBack && shownDisposal_ != DISPOSE_BACKGROUND) return;
  for (int y = place.top; y < place.top + place.height; ++y) {
    Pixel* row = canvas_.row(y) + place.left;
    if (giveBack) {
      std::copy_n(saved_.row(y) + place.left, place.width, row);
    } else {
      std::fill_n(row, place.width, Pixel{});
    }
  }
}

void GifDecoder::readImage() {
  orFail(DGifGetImageDesc(gif_.get()));
  const Place place{gif_->Image.Left, gif_->Image.Top, gif_->Image.Width, gif_->Image.Height};
  if (place.width == 0 || place.height == 0) throw FormatError("GIF: a frame has no pixels");
  requirePixelsInFile(std::int64_t{place.width} * place.height, fileBytes_);
  const ColorMapObject* colours = gif_->Image.ColorMap != nullptr ? gif_->Image.ColorMap : gif_->SColorMap;
  if (colours == nullptr) throw FormatError("GIF: a frame has no palette");

  delay_ = control_.DelayTime;
  shownDisposal_ = control_.DisposalMode;
  if (shownDisposal_ == DISPOSE_PREVIOUS || shownDisposal_ == disposePreviousAlias) saved_ = canvas_.clone();
  const Size size = canvas_.size();
  const int left = std::min(place.left, size.width);
  const int top = std::min(place.top, size.height);
  shown_ = Place{left, top, std::min(place.left + place.width, size.width) - left,
                 std::min(place.top + place.height, size.height) - top};

  std::vector<GifPixelType> line(static_cast<std::size_t>(place.width));
  for (int order = 0; order < place.height; ++order) {
    orFail(DGifGetLine(gif_.get(), line.data(), place.width));
    drawLine(gif_->Image.Interlace ? interlacedLine(order, place.height) : order, place, line, *colours);
  }
}

void GifDecoder::drawLine(int y, const Place& place, const std::vector<GifPixelType>& line,
                          const ColorMapObject& colours) {
  if (place.top + y >= canvas_.height() || place.left >= canvas_.width()) return;
  Pixel* row = canvas_.row(place.top + y) + place.left;
  const int visible = std::min(place.width, canvas_.width() - place.left);
  for (int x = 0; x < visible; ++x) {
    const int index = line[static_cast<std::size_t>(x)];
    // An index beyond the palette has no colour; like the viewers, leave what is there.
    if (index == control_.TransparentColor || index >= colours.ColorCount) continue;
    const GifColorType& colour = colours.Colors[index];
    row[x] = Pixel{colour.Blue, colour.Green, colour.Red, 255};
  }
}

Animation readGif(ByteView bytes, Keep keep) {
  GifDecoder decoder(bytes);
  Animation animation;
  animation.format = "GIF";
  animation.bitsPerPixel = 8;
  animation.palette = decoder.palette();
  while (decoder.next()) {
    if (keep == Keep::firstFrame && !animation.frames.empty()) continue;
    requireUsableAnimation(decoder.size(), static_cast<std::int64_t>(animation.frames.size()) + 1);
    animation.frames.push_back({decoder.canvas().clone(), decoder.delay()});
  }
  animation.loops = decoder.loops();
  return animation;
}

}  // namespace host
