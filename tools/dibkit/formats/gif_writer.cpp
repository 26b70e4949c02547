#include "formats/gif_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <new>

#include <gif_lib.h>

#include "errors.h"
#include "formats/lzw_length.h"

namespace host {

namespace {

using OwnedColourMap = std::unique_ptr<ColorMapObject, void (*)(ColorMapObject*)>;

OwnedColourMap noColourMap() { return {nullptr, GifFreeMapObject}; }

OwnedColourMap colourMapOf(const std::vector<RGBQUAD>& palette) {
  // The format knows powers of two only.
  const auto entries = static_cast<int>(std::bit_ceil(std::max<std::size_t>(2, palette.size())));
  OwnedColourMap map(GifMakeMapObject(entries, nullptr), GifFreeMapObject);
  if (!map) throw std::bad_alloc();
  std::transform(palette.begin(), palette.end(), map->Colors, [](const RGBQUAD& colour) {
    return GifColorType{colour.rgbRed, colour.rgbGreen, colour.rgbBlue};
  });
  return map;
}

/// An open GIF whose bytes go to a vector.
class GifBytes {
 public:
  GifBytes() : gif_(EGifOpen(this, append, nullptr)) {
    if (gif_ == nullptr) throw std::bad_alloc();
    EGifSetGifVersion(gif_, true);
  }
  GifBytes(const GifBytes&) = delete;
  GifBytes& operator=(const GifBytes&) = delete;
  ~GifBytes() {
    if (gif_ != nullptr) EGifCloseFile(gif_, nullptr);
  }

  void putScreen(Size canvas, const std::vector<RGBQUAD>& palette) {
    const OwnedColourMap map = palette.empty() ? noColourMap() : colourMapOf(palette);
    check(EGifPutScreenDesc(gif_, canvas.width, canvas.height, 8, 0, map.get()));
  }

  void putLoops(int loops) {
    constexpr char application[] = "NETSCAPE2.0";
    const std::array<GifByteType, 3> block{1, static_cast<GifByteType>(loops & 255),
                                           static_cast<GifByteType>(loops >> 8 & 255)};
    check(EGifPutExtensionLeader(gif_, APPLICATION_EXT_FUNC_CODE));
    check(EGifPutExtensionBlock(gif_, 11, application));
    check(EGifPutExtensionBlock(gif_, static_cast<int>(block.size()), block.data()));
    check(EGifPutExtensionTrailer(gif_));
  }

  void putComment(const std::string& comment) { check(EGifPutComment(gif_, comment.c_str())); }

  void putControl(const GifImage& image) {
    const GraphicsControlBlock control{static_cast<int>(image.disposal), false, image.delay,
                                       image.transparent.value_or(NO_TRANSPARENT_COLOR)};
    std::array<GifByteType, 4> bytes{};
    EGifGCBToExtension(&control, bytes.data());
    check(EGifPutExtension(gif_, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(bytes.size()), bytes.data()));
  }

  void putImage(const GifImage& image) {
    const OwnedColourMap map = image.palette.empty() ? noColourMap() : colourMapOf(image.palette);
    check(
        EGifPutImageDesc(gif_, image.left, image.top, image.size.width, image.size.height, false, map.get()));
    Bytes pixels = image.indices;  // the encoder's argument is not const
    check(EGifPutLine(gif_, pixels.data(), static_cast<int>(pixels.size())));
  }

  Bytes finish() {
    const int closed = EGifCloseFile(std::exchange(gif_, nullptr), nullptr);
    check(closed);
    return std::move(bytes_);
  }

 private:
  static int append(GifFileType* gif, const GifByteType* data, int count) {
    Bytes& bytes = static_cast<GifBytes*>(gif->UserData)->bytes_;
    bytes.insert(bytes.end(), data, data + count);
    return count;
  }
  static void check(int status) {
    // Everything goes to memory: only memory can have run out.
    if (status == GIF_ERROR) throw std::bad_alloc();
  }

  Bytes bytes_;
  GifFileType* gif_;
};

}  // namespace

Bytes writeGif(const GifFile& file) {
  GifBytes gif;
  gif.putScreen(file.canvas, file.palette);
  if (file.loops) gif.putLoops(*file.loops);
  if (!file.comment.empty()) gif.putComment(file.comment);
  const bool still =
      file.images.size() == 1 && !file.images.front().transparent && file.images.front().delay == 0;
  for (const GifImage& image : file.images) {
    if (!still) gif.putControl(image);
    gif.putImage(image);
  }
  return gif.finish();
}

std::size_t compressedSize(const GifImage& image, std::size_t paletteSize, std::size_t most) {
  const std::size_t entries = image.palette.empty() ? paletteSize : image.palette.size();
  const int bits = std::max(2, static_cast<int>(std::bit_width(std::max<std::size_t>(entries, 2) - 1)));
  const std::size_t ownPalette = image.palette.empty() ? 0 : std::size_t{3} << bits;
  if (ownPalette > most) return ownPalette;
  return ownPalette + lzwLength(image.indices, bits, most - ownPalette);
}

}  // namespace host
