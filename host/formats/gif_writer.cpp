#include "host/formats/gif_writer.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace host {

namespace {

enum Block { extensionBlock = 0x21, imageBlock = 0x2C, trailer = 0x3B };
enum ExtensionLabel { controlLabel = 0xF9, commentLabel = 0xFE, applicationLabel = 0xFF };

constexpr int hasPalette = 0x80;

/// Palettes have 2, 4, 8 ... or 256 entries in a file.
int paletteBits(const std::vector<RGBQUAD>& palette) {
  return std::max(1, static_cast<int>(std::bit_width(std::max<std::size_t>(palette.size(), 1) - 1)));
}

int disposalNumber(Disposal disposal) {
  if (disposal == Disposal::keep) return 1;
  return disposal == Disposal::background ? 2 : 3;
}

std::size_t paletteBytes(const std::vector<RGBQUAD>& palette) {
  return palette.empty() ? 0 : std::size_t{3} << paletteBits(palette);
}

}  // namespace

std::size_t GifImage::storedSize() const { return pixels.size() + paletteBytes(palette); }

GifWriter::GifWriter(Size canvas, const std::vector<RGBQUAD>& palette, std::optional<int> loops) {
  constexpr std::string_view signature = "GIF89a";
  constexpr int colourResolution = 7 << 4;  // 8 bits a channel
  bytes_.assign(signature.begin(), signature.end());
  putNumber(canvas.width);
  putNumber(canvas.height);
  put(colourResolution | (palette.empty() ? 0 : hasPalette | (paletteBits(palette) - 1)));
  put(0);  // the background's index, which no viewer uses
  put(0);  // pixels are square
  putPalette(palette);
  if (!loops) return;
  constexpr std::string_view application = "NETSCAPE2.0";
  put(extensionBlock);
  put(applicationLabel);
  put(static_cast<int>(application.size()));
  bytes_.insert(bytes_.end(), application.begin(), application.end());
  put(3);
  put(1);
  putNumber(*loops);
  put(0);
}

void GifWriter::addComment(std::string_view comment) {
  put(extensionBlock);
  put(commentLabel);
  while (!comment.empty()) {
    const std::string_view part = comment.substr(0, 255);
    put(static_cast<int>(part.size()));
    bytes_.insert(bytes_.end(), part.begin(), part.end());
    comment.remove_prefix(part.size());
  }
  put(0);
}

void GifWriter::addExtension(const GifExtension& extension) {
  put(extensionBlock);
  put(extension.label);
  bytes_.insert(bytes_.end(), extension.blocks.begin(), extension.blocks.end());
}

void GifWriter::addImage(const GifImage& image) {
  ++images_;
  duration_ += image.delay;
  putControl(image);
  put(imageBlock);
  putNumber(image.place.left);
  putNumber(image.place.top);
  putNumber(image.place.right - image.place.left);
  putNumber(image.place.bottom - image.place.top);
  put(image.palette.empty() ? 0 : hasPalette | (paletteBits(image.palette) - 1));
  putPalette(image.palette);
  bytes_.insert(bytes_.end(), image.pixels.begin(), image.pixels.end());
}

Bytes GifWriter::finish() {
  put(trailer);
  return std::move(bytes_);
}

void GifWriter::putNumber(int value) {
  put(value & 255);
  put(value >> 8 & 255);
}

void GifWriter::putPalette(const std::vector<RGBQUAD>& palette) {
  const std::size_t end = bytes_.size() + paletteBytes(palette);
  for (const RGBQUAD& colour : palette) {
    for (const int channel : {colour.rgbRed, colour.rgbGreen, colour.rgbBlue}) put(channel);
  }
  bytes_.resize(end);
}

void GifWriter::putControl(const GifImage& image) {
  // An image without delay, transparency or disposal, such as a still picture, needs none.
  if (image.disposal == Disposal::keep && image.delay == 0 && !image.transparent) return;
  put(extensionBlock);
  put(controlLabel);
  put(4);
  put(disposalNumber(image.disposal) << 2 | (image.transparent ? 1 : 0));
  putNumber(image.delay);
  put(image.transparent.value_or(0));
  put(0);
}

}  // namespace host
