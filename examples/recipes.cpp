// How to do the usual things, a function each. docs/embedding.md and the headers show pieces of this file.
#include <cstdio>
#include <vector>

#include <dibkit.h>

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;

/// A 32-bit image of rows of red, green, blue and alpha bytes, the top row first.
OwnedDib fromRgba(const BYTE* rgba, int width, int height) {
  OwnedDib image(CDIB32::CreateBlank32BitsDIB(width, height));
  if (!image) return nullptr;
  dibkit::fillPixels<dibkit::Bgra32>(dibkit::View(image.get()), [&](int, int) {
    const DWORD pixel = DWORD{rgba[3]} << 24 | dibkit::packRgb({rgba[0], rgba[1], rgba[2]});
    rgba += 4;
    return pixel;
  });
  return image;
}

/// The mean of the green channel of an image of any depth.
double meanGreen(const BITMAPINFOHEADER* image) {
  double sum = 0;
  int pixels = 0;
  dibkit::forEachPixel(image, [&](int, int, dibkit::Rgb colour) {
    sum += colour.green;
    ++pixels;
  });
  return pixels > 0 ? sum / pixels : 0;
}

/// The same picture with a palette of exactly its colours, at 1, 4 or 8 bits; null for more than 256 colours.
OwnedDib toPalette(BITMAPINFOHEADER* picture) {
  CMap<DWORD, DWORD&, int, int&> palette;
  dibkit::forEachPixel(picture, [&](int, int, dibkit::Rgb colour) {
    DWORD key = dibkit::packRgb(colour);
    int index = static_cast<int>(palette.GetCount());
    if (int known = 0; palette.Lookup(key, known) == 0) palette.SetAt(key, index);
  });
  if (palette.GetCount() > 256) return nullptr;
  const OwnedDib trueColour(CBitmapConverter::ConvertDIBTo24Bits(picture, nullptr));
  return OwnedDib(Convert24BitsDIBToLowerBitsDIB(trueColour.get(), palette));
}

/// Black and white, parted at the gray that separates dark from light best; null after a cancel.
OwnedDib toBlackAndWhite(BITMAPINFOHEADER* picture, CQorCommonProgress* progress) {
  const OwnedDib gray(CBitmapConverter::ConvertDIBTo256Grays(picture, progress));
  const int threshold = CPaletteFuns::GetThreshValueForm8BitsGrayDib(gray.get());
  return OwnedDib(CBitmapConverter::Convert8BitsGrayDibTo1BitsDib(gray.get(), threshold, nullptr));
}

/// What a GIF stores of a 32-bit layer: colours blended with a matte, and a mask.
struct GifFrame {
  OwnedDib image;
  OwnedDib mask;  ///< null when nothing is transparent
};

GifFrame toGifFrame(BITMAPINFOHEADER* layer, COLORREF matte) {
  OwnedDib image, mask;
  if (CMaskedBitmapTransform::Spilt32BitsDIBForGIF(layer, matte, matte, out(image), out(mask)) == 0)
    return {};
  return {toPalette(image.get()), std::move(mask)};
}

/// A frame with the area around a point filled with a colour.
OwnedDib floodFilled(BITMAPINFOHEADER* frame, BITMAPINFOHEADER* mask, const POINT& seed, COLORREF target,
                     COLORREF fill) {
  constexpr int percent = 100, tolerance = 8;
  OwnedDib filled, filledMask;
  if (ExtFillAdjacentArea(frame, mask, target, fill, percent, tolerance, seed, out(filled),
                          out(filledMask)) == 0) {
    return nullptr;
  }
  return filled;
}

/// The part of a frame that a magic wand selects, cut out.
OwnedDib cutOut(BITMAPINFOHEADER* frame, const POINT& seed, int tolerance) {
  const SIZE canvas{frame->biWidth, frame->biHeight};
  const OwnedRegion selected(MagicWandRegion(frame, nullptr, {0, 0}, seed, tolerance, canvas));
  OwnedDib piece, mask;
  if (CropFrame(frame, nullptr, selected.get(), out(piece), out(mask)) == 0) return nullptr;
  return piece;
}

/// A layer over a picture: straight alpha, exact to the byte.
void composite(BITMAPINFOHEADER* picture, BITMAPINFOHEADER* layer, const POINT& at) {
  CDIB32::CombineBlock(picture, {0, 0}, layer, at, 0);
}

/// Makes the area around a pixel transparent, as a background eraser does.
void eraseAround(BITMAPINFOHEADER* picture, const POINT& seed, int tolerance) {
  const OwnedRegion selected(CDIB32::MagicWandRegion(picture, seed, tolerance));
  CDIB32::Fill32DIBOpacityArea(picture, selected.get(), 0);
}

/// A third of the size, by the nearest pixel.
OwnedDib reducedToAThird(BITMAPINFOHEADER* picture) {
  OwnedDib small(CDIB32::CreateBlank32BitsDIB(picture->biWidth / 3, picture->biHeight / 3));
  CDIB32::ZoomOut32DIBMMX(small.get(), {0, 0}, picture, {0, 0}, 3, 0);
  return small;
}

/// The frames after `outgoing` of a transition by name: the last one is `incoming`, to the byte.
std::vector<OwnedDib> transition(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, const char* name,
                                 int count) {
  std::vector<OwnedDib> frames;
  const dibkit::Effect* effect = dibkit::findEffect(name);
  for (int i = 1; effect != nullptr && i <= count; ++i) {
    frames.push_back(effect->frame(incoming, outgoing, effect->defaultStyle, 1.0 * i / count));
  }
  return frames;
}

/// Drops that fall on a picture, as an animation.
std::vector<OwnedDib> ripples(BITMAPINFOHEADER* picture, int count) {
  std::vector<OwnedDib> frames;
  CRippleEffect water(picture, 0);
  water.StartToRipple();
  for (int i = 0; i < count; ++i) frames.emplace_back(water.NextToRipple());
  water.EndToRipple();
  return frames;
}

/// The rectangle in which a frame differs from the one before. No image where nothing changed, or where a
/// pixel became transparent, which no piece over the frame before can show.
struct Change {
  OwnedDib image, mask;
  POINT position{};
};

Change changeBetween(BITMAPINFOHEADER* before, BITMAPINFOHEADER* after) {
  Change change;
  CSpiltEmbededDIBEx splitter;
  splitter.Reset(before, nullptr, {0, 0}, after, nullptr, {0, 0});
  if (splitter.IsEqual() == 0)
    splitter.SplitTransparency(out(change.image), out(change.mask), &change.position, nullptr);
  return change;
}

/// Progress on a terminal, and a cancel after a share of the work.
class Bar : public CQorCommonProgress {
 public:
  explicit Bar(float cancelAt = 2) : cancelAt_(cancelAt) {}
  float SetProgress(float fraction) override {
    const float whole = ScaledFraction(fraction);  // of an operation with several stages
    std::printf("\r%3.0f %%", whole * 100);
    if (whole >= cancelAt_) m_bCancel = 1;
    return 0;
  }

 private:
  float cancelAt_;
};

int failures = 0;
void check(bool holds, const char* what) {
  std::printf("%s: %s\n", holds ? "done" : "FAILED", what);
  failures += holds ? 0 : 1;
}

}  // namespace

int main() {
  constexpr COLORREF sea = RGB(0, 90, 160), sand = RGB(240, 220, 160);
  constexpr BYTE twoPixels[] = {255, 0, 0, 255, 0, 255, 0, 128};
  const OwnedDib pair = fromRgba(twoPixels, 2, 1);
  check(meanGreen(pair.get()) == 127.5, "an image from the host's own bytes, and its pixels again");
  dibkit::Bgra32::put(dibkit::View(pair.get()).row(0), 0, 0xFF0000FF);  // the top left pixel: blue, opaque
  check(meanGreen(pair.get()) == 127.5 && toPalette(pair.get())->biClrUsed == 2, "a palette of its colours");

  const OwnedDib picture(CDIB32::CreateSimple32BitsDIB(90, 60, sea, 255));
  const OwnedDib island(CDIB32::CreateSimple32BitsDIB(30, 20, sand, 255));
  const OwnedDib before(CBitmapCreator::Clone(picture.get()));
  composite(picture.get(), island.get(), {40, 30});
  Bar bar;
  check(toBlackAndWhite(picture.get(), &bar)->biBitCount == 1, "black and white");
  Bar impatient(0.25F);
  check(toBlackAndWhite(picture.get(), &impatient) == nullptr, "a cancel");

  const Change change = changeBetween(before.get(), picture.get());
  check(change.image && change.position.x == 40 && change.image->biWidth == 30, "what changed");
  check(!changeBetween(picture.get(), picture.get()).image, "what did not");
  const OwnedDib dyed = floodFilled(picture.get(), nullptr, {0, 0}, sea, sand);
  check(dyed && dyed->biClrUsed == 1, "a flood fill");
  const OwnedDib cut = cutOut(picture.get(), {50, 40}, 8);
  check(cut && cut->biWidth == 30 && cut->biHeight == 20, "a magic wand");
  check(reducedToAThird(picture.get())->biWidth == 30, "a smaller picture");

  const std::vector<OwnedDib> frames = transition(picture.get(), before.get(), "spread", 5);
  check(frames.size() == 5 && CompareFrame(frames[4].get(), nullptr, picture.get(), nullptr) == 1,
        "a transition");
  check(ripples(picture.get(), 3).back() != nullptr, "ripples");
  eraseAround(picture.get(), {0, 0}, 8);
  const GifFrame gif = toGifFrame(picture.get(), RGB(255, 255, 255));
  const OwnedRegion opaque(CalcOpacityAreaRgn(gif.mask.get()));
  check(gif.image && opaque, "a frame for a GIF");
  std::printf("dibkit %s\n", dibkit::Version());
  return failures == 0 ? 0 : 1;
}
