#include "animation/changes.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

#include "parallel.h"

namespace host {

namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;

constexpr POINT corner{0, 0};

/// What is to be stored for a frame, and what stands on the canvas before it.
struct Step {
  const CanvasFrame* frame = nullptr;
  BITMAPINFOHEADER* before = nullptr;  ///< null when nothing is known to be there
  OwnedDib beforeMask;
  RECT place{};  ///< has to be covered, unless it is empty
  Disposal disposal = Disposal::keep;
};

/// A piece of a frame with the mask of its transparent pixels, and its place.
struct Piece {
  OwnedDib image;
  OwnedDib mask;
  POINT place{};
};

RECT wholeOf(const BITMAPINFOHEADER* dib) { return {0, 0, dib->biWidth, dib->biHeight}; }

OwnedRegion opaqueArea(const CanvasFrame& frame) {
  const RECT whole = wholeOf(frame.image.get());
  if (!frame.mask) return OwnedRegion(CreateRectRgn(0, 0, whole.right, whole.bottom));
  OwnedRegion area(CalcOpacityAreaRgn(frame.mask.get()));
  return area ? std::move(area) : OwnedRegion(CreateRectRgn(0, 0, 0, 0));
}

/// The box of the pixels that the next frame makes transparent again.
RECT vanishingBox(const CanvasFrame& frame, const CanvasFrame& next) {
  RECT box{};
  if (!next.mask) return box;
  const OwnedRegion gone = opaqueArea(frame);
  const OwnedRegion staying = opaqueArea(next);
  if (!gone || !staying) throw std::bad_alloc();
  CombineRgn(gone.get(), gone.get(), staying.get(), RGN_DIFF);
  GetRgnBox(gone.get(), &box);
  return box;
}

/// The rectangle of the frame, whatever was there before.
Piece cutRectangle(const CanvasFrame& frame, const RECT& place) {
  const OwnedRegion area(CreateRectRgn(place.left, place.top, place.right, place.bottom));
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  if (!area || CropFrame(frame.image.get(), frame.mask.get(), area.get(), &image, &mask) == 0)
    throw std::bad_alloc();
  return {OwnedDib(image), OwnedDib(mask), POINT{place.left, place.top}};
}

/// The smaller ones of a frame's pieces: its changed rectangle, whole or only what changed in it.
std::vector<Piece> cutChanges(const Step& step, bool mayLeaveOut) {
  CSpiltEmbededDIB byIndex;
  CSpiltEmbededDIBEx byColour;
  CSpiltEmbededDIB& splitter = step.frame->image->biBitCount == 8 ? byIndex : byColour;
  splitter.Reset(step.before, step.beforeMask.get(), corner, step.frame->image.get(), step.frame->mask.get(),
                 corner);
  std::vector<Piece> pieces;
  if (splitter.IsEqual() != 0) {
    // A rectangle without pixels cannot be stored; one pixel of what is there already can.
    pieces.push_back(cutRectangle(*step.frame, {0, 0, 1, 1}));
    return pieces;
  }
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  POINT place{};
  int same = 0;
  if (splitter.SplitOpacity(&image, &mask, &place, &same) == 0) throw std::bad_alloc();
  pieces.push_back({OwnedDib(image), OwnedDib(mask), place});
  if (same == 0 || !mayLeaveOut) return pieces;
  if (splitter.SplitTransparency(&image, &mask, &place, nullptr) == 0) throw std::bad_alloc();
  pieces.push_back({OwnedDib(image), OwnedDib(mask), place});
  return pieces;
}

Bytes indicesOf(const BITMAPINFOHEADER* dib) {
  Bytes indices;
  indices.reserve(static_cast<std::size_t>(dib->biWidth) * static_cast<std::size_t>(dib->biHeight));
  const std::size_t stride = (static_cast<std::size_t>(dib->biWidth) * dib->biBitCount + 31) / 32 * 4;
  for (int y = dib->biHeight - 1; y >= 0; --y) {
    const BYTE* line = GetDIBBits(dib) + static_cast<std::size_t>(y) * stride;
    if (dib->biBitCount == 8) {
      indices.insert(indices.end(), line, line + dib->biWidth);
      continue;
    }
    for (int x = 0; x < dib->biWidth; ++x) {
      indices.push_back(dib->biBitCount == 4 ? Get4BitPixel(line, x) : Get1BitPixel(line, x));
    }
  }
  return indices;
}

/// The piece as the file has it; nothing when no palette holds its colours.
std::optional<GifImage> imageOf(Piece piece, RGBQUAD transparent, bool sharedPalette) {
  GifImage image;
  if (piece.mask) {
    // Marked pixels get the transparent colour, and the palette an entry for it if it has none.
    const COLORREF colour = RGB(transparent.rgbRed, transparent.rgbGreen, transparent.rgbBlue);
    piece.image.reset(CMaskedBitmapTransform::OutputDIBStream(piece.image.get(), piece.mask.get(), colour));
    if (!piece.image) throw std::bad_alloc();
  }
  if (piece.image->biBitCount > 8) return std::nullopt;
  std::vector<RGBQUAD> palette = paletteOf(piece.image.get());
  if (piece.mask) image.transparent = entryOf(palette, transparent);
  image.left = piece.place.x;
  image.top = piece.place.y;
  image.size = {piece.image->biWidth, piece.image->biHeight};
  image.indices = indicesOf(piece.image.get());
  if (!sharedPalette) image.palette = std::move(palette);
  return image;
}

/// Enlarges an image to the place around it with pixels that leave the canvas as it is. False when its
/// palette has no room for them. \param shared the palette for all images, for an image without one of its
/// own
bool enlarge(GifImage& image, const RECT& place, RGBQUAD transparent, const std::vector<RGBQUAD>& shared) {
  const Size size{place.right - place.left, place.bottom - place.top};
  if (size == image.size) return true;
  if (!image.transparent)
    image.transparent = entryOf(image.palette.empty() ? shared : image.palette, transparent);
  if (!image.transparent) {
    if (image.palette.empty() || image.palette.size() == 256) return false;
    image.transparent = static_cast<int>(image.palette.size());
    image.palette.push_back(transparent);
  }
  Bytes indices(static_cast<std::size_t>(size.pixels()), static_cast<std::uint8_t>(*image.transparent));
  auto line = image.indices.begin();
  for (int y = image.top - place.top; line != image.indices.end(); ++y, line += image.size.width) {
    std::copy_n(line, image.size.width,
                indices.begin() + std::ptrdiff_t{y} * size.width + (image.left - place.left));
  }
  image.indices = std::move(indices);
  image.size = size;
  image.left = place.left;
  image.top = place.top;
  return true;
}

/// All that the frame shows in the place that has to be covered.
Piece cutPlace(const Step& step) {
  Piece piece = cutRectangle(*step.frame, step.place);
  // A rectangle cut out of 24 bits is not reduced yet.
  if (piece.image->biBitCount > 8) {
    OwnedDib reduced(CBitmapConverter::ConvertTrueDibToLowBitsDib(piece.image.get(), nullptr));
    if (reduced) piece.image = std::move(reduced);
  }
  return piece;
}

GifImage smallestImage(const Step& step, const CanvasAnimation& animation,
                       const std::vector<RGBQUAD>& palette) {
  const bool covers = IsRectEmpty(&step.place) == 0;
  std::vector<Piece> pieces;
  if (covers) pieces.push_back(cutPlace(step));
  if (step.before != nullptr) {
    std::vector<Piece> changes = cutChanges(step, animation.hasTransparent);
    std::move(changes.begin(), changes.end(), std::back_inserter(pieces));
  }
  const bool shared = step.frame->image->biBitCount == 8;
  std::optional<GifImage> best;
  std::size_t bestSize = 0;
  // What leaves pixels out comes last and is smaller more often than not: weighed first, it cuts short the
  // weighing of the others. The whole rectangle is kept when both take the same.
  for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
    std::optional<GifImage> image = imageOf(std::move(*piece), animation.transparent, shared);
    if (!image || (covers && !enlarge(*image, step.place, animation.transparent, palette))) continue;
    const std::size_t most = best ? bestSize : std::numeric_limits<std::size_t>::max();
    const std::size_t size =
        pieces.size() > 1 ? compressedSize(*image, shared ? palette.size() : 0, most) : 0;
    if (size > most) continue;
    best = std::move(image);
    bestSize = size;
  }
  if (!best) throw TooManyColours("a frame changes more than 256 colours at once");
  return std::move(*best);
}

void mergeEqual(std::vector<CanvasFrame>& frames) {
  constexpr int longestDelay = 65535;
  // Viewers show frames of less than two hundredths for longer than that: their sum would not last as long.
  constexpr int shortestTrueDelay = 2;
  std::vector<CanvasFrame> kept;
  for (CanvasFrame& frame : frames) {
    const bool merges = !kept.empty() && std::min(kept.back().delay, frame.delay) >= shortestTrueDelay &&
                        kept.back().delay + frame.delay <= longestDelay &&
                        CompareFrame(kept.back().image.get(), kept.back().mask.get(), frame.image.get(),
                                     frame.mask.get()) != 0;
    if (merges) {
      kept.back().delay += frame.delay;
    } else {
      kept.push_back(std::move(frame));
    }
  }
  frames = std::move(kept);
}

OwnedDib cloned(const OwnedDib& dib) { return OwnedDib(dib ? CBitmapCreator::Clone(dib.get()) : nullptr); }

/// What is transparent on the canvas after the frame's rectangle was taken away.
OwnedDib maskWithout(const CanvasFrame& frame, const RECT& taken) {
  OwnedDib mask =
      frame.mask
          ? cloned(frame.mask)
          : OwnedDib(CBitmapCreator::CreateDibImage(frame.image->biWidth, frame.image->biHeight, 1, 0));
  if (!mask) throw std::bad_alloc();
  CMaskedBitmapTransform::FillMaskDIBBits(mask.get(), taken, true);
  return mask;
}

/// The rectangle that a frame would have, to know what taking it away clears.
RECT changedBox(const Step& step) {
  if (step.before == nullptr) return step.place;
  CSpiltEmbededDIB splitter;
  splitter.Reset(step.before, step.beforeMask.get(), corner, step.frame->image.get(), step.frame->mask.get(),
                 corner);
  if (splitter.IsEqual() != 0) return {0, 0, 1, 1};
  const RECT whole = wholeOf(step.frame->image.get());
  return {splitter.m_nLeftSame, splitter.m_nTopSame, whole.right - splitter.m_nRightSame,
          whole.bottom - splitter.m_nBottomSame};
}

std::vector<Step> stepsFor(const std::vector<CanvasFrame>& frames) {
  std::vector<Step> steps(frames.size());
  for (std::size_t i = 0; i < frames.size(); ++i) {
    Step& step = steps[i];
    step.frame = &frames[i];
    // A viewer starts with nothing on the canvas; the first frame covers all of it.
    if (i == 0) step.place = wholeOf(frames[i].image.get());
    if (i + 1 == frames.size()) break;
    Step& next = steps[i + 1];
    next.before = frames[i].image.get();
    const RECT vanishing = vanishingBox(frames[i], frames[i + 1]);
    if (IsRectEmpty(&vanishing) != 0) {
      next.beforeMask = cloned(frames[i].mask);
      continue;
    }
    // Only taking a frame away makes pixels transparent again, so this one has to cover them.
    const RECT changed = changedBox(step);
    RECT covered{};
    UnionRect(&covered, &changed, &vanishing);
    step.place = covered;
    step.disposal = Disposal::toBackground;
    next.beforeMask = maskWithout(frames[i], covered);
  }
  return steps;
}

std::vector<GifImage> imagesOf(CanvasAnimation animation, const std::vector<RGBQUAD>& palette) {
  mergeEqual(animation.frames);
  const std::vector<Step> steps = stepsFor(animation.frames);
  std::vector<GifImage> images(steps.size());
  forEachIndex(static_cast<int>(steps.size()), [&](int number) {
    const auto i = static_cast<std::size_t>(number);
    images[i] = smallestImage(steps[i], animation, palette);
    images[i].disposal = steps[i].disposal;
    images[i].delay = animation.frames[i].delay;
  });
  return images;
}

}  // namespace

GifFile gifOf(CanvasAnimation animation, std::optional<int> loops) {
  const BITMAPINFOHEADER* first = animation.frames.front().image.get();
  GifFile file{
      animation.canvas, first->biBitCount == 8 ? paletteOf(first) : std::vector<RGBQUAD>(), loops, {}};
  file.images = imagesOf(std::move(animation), file.palette);
  return file;
}

}  // namespace host
