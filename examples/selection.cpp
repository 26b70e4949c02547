// A selection with marching dashes over a checkerboard, a few strokes and shapes in it, as an animated GIF.
#include <cstdio>

#include <dibkit.h>
#include <gif_lib.h>

namespace {

using dibkit::OwnedDib;
constexpr int width = 320, height = 200;

/// Draws a palette picture on the canvas, opaque, in the colours that colourOf(index) gives; null for none.
template <class Format, class ColourOf>
void stamp(BITMAPINFOHEADER* canvas, const OwnedDib& picture, const POINT& at, ColourOf&& colourOf) {
  const dibkit::View target(canvas);
  const dibkit::View source(picture.get());
  for (int y = 0; y < source.lines(); ++y) {
    for (int x = 0; x < source.width(); ++x) {
      const COLORREF* colour = colourOf(Format::get(source.row(y), x));
      if (colour == nullptr || !target.contains(at.x + x, at.y + y)) continue;
      const DWORD opaque = 0xFF000000 | dibkit::packRgb(dibkit::fromColorRef(*colour));
      dibkit::Bgra32::put(target.row(static_cast<int>(at.y + y)), static_cast<int>(at.x + x), opaque);
    }
  }
}

void stampShape(BITMAPINFOHEADER* canvas, const OwnedDib& shape, const POINT& at, COLORREF line,
                COLORREF fill) {
  stamp<dibkit::Index4>(canvas, shape, at, [&](int index) {
    return index == 0 ? &line : index == 1 ? &fill : nullptr;
  });
}

void stampLine(BITMAPINFOHEADER* canvas, const POINT& from, const POINT& to, int pen, bool round,
               COLORREF colour) {
  POINT at;
  const OwnedDib line(CDIB32::GenerateLine({0, 0, width, height}, from, to, pen, 0, round, nullptr, &at));
  stamp<dibkit::Index8>(canvas, line, at, [&](int coverage) { return coverage != 0 ? &colour : nullptr; });
}

OwnedDib scene() {
  OwnedDib canvas(CDIB32::CreateBlank32BitsDIB(width, height));
  CDIB32::MakeAllPixelsSameOpacity(canvas.get(), 255);
  CDIB32::Init32DIBBackground(canvas.get(), 250, 250, 250, 214, 218, 224, 0, 0);
  POINT at;
  const OwnedDib sun(PaintShapeOnPic({196, 24, 276, 104}, 5, 1, 1, {0, 0}, &at));
  stampShape(canvas.get(), sun, at, RGB(196, 90, 20), RGB(252, 196, 60));
  const OwnedDib card(PaintShapeOnPic({34, 36, 154, 112}, 3, 0, 1, {32, 32}, &at));
  stampShape(canvas.get(), card, at, RGB(30, 60, 110), RGB(150, 190, 235));
  POINT star[] = {{94, 40}, {114, 101}, {62, 63}, {126, 63}, {74, 101}};
  const OwnedDib points(PaintPolygonOnPic(star, 5, 2, 1, &at));
  stampShape(canvas.get(), points, at, RGB(30, 60, 110), RGB(255, 255, 255));
  stampLine(canvas.get(), {40, 168}, {150, 140}, 14, true, RGB(40, 140, 90));
  stampLine(canvas.get(), {176, 146}, {284, 168}, 10, false, RGB(190, 50, 70));
  stampLine(canvas.get(), {172, 174}, {262, 128}, 1, true, RGB(20, 20, 30));
  return canvas;
}

/// A frame with its own colours, which are few enough for any GIF.
bool putFrame(GifFileType* gif, BITMAPINFOHEADER* canvas, int hundredths) {
  const OwnedDib trueColour(CBitmapConverter::Convert32BitsTo24Bits(canvas, nullptr));
  const OwnedDib frame(CBitmapConverter::ConvertTrueDibTo8BitsDib(trueColour.get(), 0, nullptr));
  if (!frame) return false;
  const dibkit::PaletteTable palette(frame.get());
  ColorMapObject* colours = GifMakeMapObject(256, nullptr);
  for (std::size_t i = 0; i < 256; ++i) {
    colours->Colors[i] = {palette[i].rgbRed, palette[i].rgbGreen, palette[i].rgbBlue};
  }
  const GraphicsControlBlock control{DISPOSE_DO_NOT, false, hundredths, NO_TRANSPARENT_COLOR};
  GifByteType block[4];
  EGifGCBToExtension(&control, block);
  bool done = EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, block) != GIF_ERROR &&
              EGifPutImageDesc(gif, 0, 0, width, height, false, colours) != GIF_ERROR;
  const dibkit::View pixels(frame.get());
  for (int y = 0; done && y < height; ++y) done = EGifPutLine(gif, pixels.row(y), width) != GIF_ERROR;
  GifFreeMapObject(colours);
  return done;
}

}  // namespace

int main(int argc, char** argv) {
  const char* file = argc > 1 ? argv[1] : "selection.gif";
  int error = 0;
  GifFileType* gif = EGifOpenFileName(file, false, &error);
  if (gif == nullptr) {
    std::fprintf(stderr, "selection: %s: cannot be written\n", file);
    return 1;
  }
  EGifSetGifVersion(gif, true);
  const GifByteType forever[] = {1, 0, 0};
  bool done = EGifPutScreenDesc(gif, width, height, 8, 0, nullptr) != GIF_ERROR &&
              EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE) != GIF_ERROR &&
              EGifPutExtensionBlock(gif, 11, "NETSCAPE2.0") != GIF_ERROR &&
              EGifPutExtensionBlock(gif, 3, forever) != GIF_ERROR &&
              EGifPutExtensionTrailer(gif) != GIF_ERROR;
  const OwnedDib picture = scene();
  for (int phase = 0; done && phase < 6; ++phase) {
    const OwnedDib frame(CBitmapCreator::Clone(picture.get()));
    CDIB32::DrawSelectedFlag(frame.get(), {0, 0}, {20, 16, 300, 186}, phase);
    done = putFrame(gif, frame.get(), 8);
  }
  done = EGifCloseFile(gif, &error) != GIF_ERROR && done;
  if (!done) std::fprintf(stderr, "selection: %s: cannot be written\n", file);
  return done ? 0 : 1;
}
