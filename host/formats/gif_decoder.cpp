#include "host/formats/gif_decoder.h"

#include <algorithm>
#include <utility>

#include "host/cancel.h"
#include "host/errors.h"
#include "host/formats/formats.h"
#include "host/formats/limits.h"
#include "host/formats/lzw_decoder.h"

namespace host {

namespace {

/// A code of at most 12 bits adds one pixel to the longest string known, and there are 4,096 strings: no byte
/// of a file gives more pixels than this.
constexpr std::int64_t maximumPixelsPerByte = 4096;
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

GifDecoder::GifDecoder(ByteView bytes, Strictness strictness)
    : diagnostics_(strictness),
      reader_(bytes, diagnostics_),
      pixelsLeft_(maximumPixelsPerByte * static_cast<std::int64_t>(bytes.size()) + harmlessPixels) {
  while (!frameIsAhead_ && reader_.next(frame_)) {
    frameIsAhead_ = frame_.size.pixels() > 0;
    if (!frameIsAhead_) reportEmptyFrame();
  }
  if (!frameIsAhead_) failWithoutPicture();
  Size size = reader_.screen();
  if (size.pixels() == 0) {
    diagnostics_.report("the screen has no size, that of the first frame is taken");
    size = {frame_.left + frame_.size.width, frame_.top + frame_.size.height};
  }
  requireUsableSize(size.width, size.height);
  requirePixelsIn(bytes.size(), size, maximumPixelsPerByte);
  canvas_ = AnimationCanvas(size);
}

void GifDecoder::failWithoutPicture() const {
  throw FormatError(warnings().empty() ? "GIF: there is no picture in it" : warnings().front());
}

bool GifDecoder::next() {
  throwIfCancelled();
  while (std::exchange(frameIsAhead_, false) || reader_.next(frame_)) {
    if (show()) return true;
  }
  if (!shownAny_) failWithoutPicture();
  return false;
}

/// Draws the frame on the canvas; false for one that is left out.
bool GifDecoder::show() {
  const RECT part = clippedTo(size(), frame_.left, frame_.top, frame_.size);
  pixelsLeft_ -= areaOf(part);
  if (pixelsLeft_ < 0) throw FormatError("the file is too short for the pixels of its frames");
  changed_ = canvas_.prepare(part, frame_.disposal);
  if (!draw(part) && (!shownAny_ || frame_.cut)) {
    canvas_.forget();
    return false;
  }
  if (!shownAny_) changed_ = {0, 0, size().width, size().height};
  shownAny_ = true;
  return true;
}

/// Draws what the file has of the frame; false when that is not a single pixel.
bool GifDecoder::draw(const RECT& part) {
  if (frame_.size.pixels() == 0) {
    reportEmptyFrame();
    return false;
  }
  if (frame_.minimumCodeSize > LzwDecoder::largestMinimumCodeSize) {
    reportMissing(0, true);
    return false;
  }
  const std::array<Pixel, 256> shades = colours();
  LzwDecoder decoder(frame_.codes, frame_.minimumCodeSize);
  Bytes line(static_cast<std::size_t>(frame_.size.width));
  std::int64_t drawn = 0;
  for (int order = 0; order < frame_.size.height; ++order) {
    const std::size_t count = decoder.read(line);
    const int y = frame_.interlaced ? interlacedLine(order, frame_.size.height) : order;
    drawLine(frame_.top + y, part, ByteView(line).first(count), shades);
    drawn += static_cast<std::int64_t>(count);
    if (count < line.size()) break;
  }
  reportMissing(drawn, decoder.damaged());
  return drawn > 0;
}

/// \param indices from the frame's left edge on
void GifDecoder::drawLine(int y, const RECT& part, ByteView indices, const std::array<Pixel, 256>& colours) {
  if (y >= part.bottom) return;
  Pixel* row = canvas_.drawing().row(y) + part.left;
  const auto changes = [&](int x) {
    const Pixel& colour = colours[indices[static_cast<std::size_t>(x)]];
    return colour.alpha != 0 && colour != row[x];
  };
  int first = 0;
  int last = std::min(static_cast<int>(indices.size()), static_cast<int>(part.right - part.left));
  while (first < last && !changes(first)) ++first;
  if (first == last) return;
  while (!changes(last - 1)) --last;
  for (int x = first; x < last; ++x) {
    const Pixel& colour = colours[indices[static_cast<std::size_t>(x)]];
    row[x] = colour.alpha != 0 ? colour : row[x];
  }
  const RECT line{part.left + first, y, part.left + last, y + 1};
  UnionRect(&changed_, &changed_, &line);
}

/// What each index of the frame draws; nothing is drawn by the transparent one and those beyond the palette.
std::array<Pixel, 256> GifDecoder::colours() {
  std::array<Pixel, 256> colours{};
  const std::vector<RGBQUAD>& palette = frame_.palette.empty() ? reader_.palette() : frame_.palette;
  if (palette.empty()) {
    diagnostics_.report(frameName(frame_.number) + " has no palette");
    // Viewers do the same.
    colours.fill(Pixel{0, 0, 0, 255});
  }
  std::transform(palette.begin(), palette.end(), colours.begin(), [](const RGBQUAD& entry) {
    return Pixel{entry.rgbBlue, entry.rgbGreen, entry.rgbRed, 255};
  });
  if (frame_.transparent) colours[static_cast<std::size_t>(*frame_.transparent)] = Pixel{};
  return colours;
}

void GifDecoder::reportEmptyFrame() { diagnostics_.report(frameName(frame_.number) + " has no pixels"); }

void GifDecoder::reportMissing(std::int64_t drawn, bool damaged) {
  if (drawn == frame_.size.pixels()) {
    if (frame_.cut) diagnostics_.report("the trailer is missing");
  } else if (damaged) {
    diagnostics_.report("the data of " + frameName(frame_.number) + " are damaged");
  } else if (frame_.cut) {
    diagnostics_.report(truncated("within " + frameName(frame_.number)));
  } else {
    diagnostics_.report(frameName(frame_.number) + " has too few pixels");
  }
}

Animation readGif(ByteView bytes, const ReadOptions& options) {
  GifDecoder decoder(bytes, options.strictness);
  Animation animation;
  animation.format = "GIF";
  animation.bitsPerPixel = 8;
  animation.palette = decoder.palette();
  while (decoder.next()) {
    requireUsableAnimation(decoder.size(), static_cast<std::int64_t>(animation.frames.size()) + 1);
    animation.frames.push_back({decoder.canvas().clone(), decoder.delay()});
    if (options.keep == Keep::firstFrame) break;
  }
  animation.loops = decoder.loops();
  animation.warnings = decoder.warnings();
  return animation;
}

}  // namespace host
