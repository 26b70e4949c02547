#include "effects/composition.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "dib/allocate.h"
#include "dib/view.h"
#include "effects/catalogue.h"
#include "effects/fade.h"
#include "effects/numbered.h"
#include "effects/piece.h"
#include "effects/ripple_fade.h"
#include "platform/guard.h"
#include "raster/placement.h"

namespace dibkit {
namespace {

long percentAt(double progress) { return std::lround(progress * 100.0); }

/// A new picture of the same size; put(to, from, width) writes each of its rows.
template <class PutRow>
OwnedDib rowByRow(const BITMAPINFOHEADER* picture, PutRow&& put) {
  const ConstView from = viewOfDepth(picture, 32);
  OwnedDib made = createDib(from.width(), from.height(), 32, 0, InitialPixels::unwritten);
  if (!made) return nullptr;
  const View to(made.get());
  for (int y = 0; y < to.height(); ++y) put(to.row(y), from.row(y), to.width());
  return made;
}

/// A new picture of the same size whose pixels are rule(pixel).
template <class Rule>
OwnedDib pixelByPixel(const BITMAPINFOHEADER* picture, Rule&& rule) {
  return rowByRow(picture, [&rule](BYTE* to, const BYTE* from, int width) {
    for (int x = 0; x < width; ++x) Bgra32::put(to, x, rule(Bgra32::get(from, x)));
  });
}

constexpr DWORD opaque = 0xFF000000;

constexpr DWORD opacityOf(DWORD pixel) { return pixel >> 24; }

/// Each colour channel c of a pixel as rule(c), and an opacity.
template <class Rule>
DWORD colourBy(DWORD pixel, DWORD opacity, Rule&& rule) {
  return rule(pixel & 255) | rule(pixel >> 8 & 255) << 8 | rule(pixel >> 16 & 255) << 16 | opacity << 24;
}

/// The picture thawed out of its blocks. Blocks are opaque and show hidden colours too, so a picture with
/// transparent pixels takes two: one of its colours weighted by opacity, one of its opacity.
OwnedDib thawed(BITMAPINFOHEADER* picture, long percent) {
  const auto render = [percent](BITMAPINFOHEADER* source) {
    EffectOutput output{};
    renderThaw(source, percent, output);
    return OwnedDib(output.image);
  };
  if (isOpaque(ConstView(picture))) return render(picture);
  const OwnedDib weighted = pixelByPixel(picture, [](DWORD pixel) {
    return colourBy(pixel, 255, [&](DWORD c) { return (c * opacityOf(pixel) + 127) / 255; });
  });
  const OwnedDib opacity = pixelByPixel(
      picture, [](DWORD pixel) { return colourBy(pixel, 255, [&](DWORD) { return opacityOf(pixel); }); });
  if (!weighted || !opacity) return nullptr;
  const OwnedDib blocks = render(weighted.get());
  OwnedDib stage = render(opacity.get());
  if (!blocks || !stage) return nullptr;
  const View to(stage.get());
  forEachCommonRow(
      [](int count, BYTE* row, const BYTE* colours) {
        for (int x = 0; x < count; ++x) {
          const DWORD a = Bgra32::get(row, x) & 255;
          Bgra32::put(row, x, colourBy(Bgra32::get(colours, x), a, [a](DWORD c) {
                        return a == 0 ? 0 : std::min<DWORD>((c * 255 + a / 2) / a, 255);
                      }));
        }
      },
      Placed{to, POINT{}}, Placed{ConstView(blocks.get()), POINT{}});
  return stage;
}

/// A stage that hides the whole outgoing picture, faded in until a share of the way is done.
OwnedDib fadedIn(OwnedDib stage, const BITMAPINFOHEADER* outgoing, double progress, double until) {
  return progress < until && stage ? fade(stage.get(), outgoing, progress / until) : std::move(stage);
}

/// The sides of GenerateRunPushEffect from which a picture comes or goes sideways, and up or down.
constexpr bool isSideways(long direction) { return direction % 4 != 2; }
constexpr bool isUpOrDown(long direction) { return direction % 4 != 0; }

OwnedDib mirrored(const BITMAPINFOHEADER* picture, bool sideways, bool upOrDown) {
  const ConstView from = viewOfDepth(picture, 32);
  int y = 0;
  return rowByRow(picture, [&](BYTE* to, const BYTE* row, int width) {
    if (upOrDown) row = from.row(from.height() - 1 - y++);
    if (!sideways) {
      std::memcpy(to, row, static_cast<std::size_t>(width) * 4);
      return;
    }
    for (int x = 0; x < width; ++x) Bgra32::put(to, x, Bgra32::get(row, width - 1 - x));
  });
}

}  // namespace

OwnedDib composeFade(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  return fade(incoming, outgoing, progress);
}

OwnedDib composeRipple(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  return orOutOfMemory<OwnedDib>(nullptr, [&] { return rippleFade(incoming, outgoing, progress); });
}

OwnedDib composeDiamonds(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  const auto percent = static_cast<int>(percentAt(progress));
  if (isOpaque(ConstView(incoming)) && isOpaque(ConstView(outgoing)))
    return OwnedDib(DiamondEffectDIB(incoming, outgoing, 0, 0, percent));
  // The effect itself looks at no opacity. From black to white, it shows how far each pixel has come.
  const OwnedDib white = pixelByPixel(incoming, [](DWORD) { return 0xFFFFFFFF; });
  if (!white) return nullptr;
  const OwnedDib shares(DiamondEffectDIB(white.get(), nullptr, 0, 1, percent));
  return shares ? fadeByShares(incoming, outgoing, shares.get()) : nullptr;
}

OwnedDib composePush(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int side, double progress) {
  return OwnedDib(GenerateRunPushEffect(incoming, outgoing, 2 * side, percentAt(progress)));
}

OwnedDib composeThaw(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  constexpr double fadesUntil = 0.4;
  return orOutOfMemory<OwnedDib>(nullptr, [&] {
    return fadedIn(thawed(incoming, percentAt(1.0 - progress)), outgoing, progress, fadesUntil);
  });
}

OwnedDib composeFilm(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style, double progress) {
  constexpr double fadesUntil = 0.4;
  EffectOutput output{};
  // At 0 percent there is no stage.
  if (renderFilm(incoming, style, std::max(percentAt(progress), 1L), output) == FALSE) return nullptr;
  return fadedIn(OwnedDib(output.image), outgoing, progress, fadesUntil);
}

OwnedDib composePiece(int number, BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, long a, long b) {
  OwnedDib frame = copyOf(outgoing);
  if (!frame) return nullptr;
  RECT place{};
  const auto render = [&](BITMAPINFOHEADER* picture) {
    BITMAPINFOHEADER* piece = nullptr;
    // Neither "nothing shows yet" nor a piece that is null is a failure.
    return OwnedDib(GeneralEffectFrame(number, picture, a, b, &piece, &place) != 0 ? piece : nullptr);
  };
  const OwnedDib piece = render(incoming);
  if (!piece) return frame;
  // A piece is transparent where it doesn't cover; that of an opaque picture nowhere else.
  OwnedDib opaquePiece;
  if (!isOpaque(ConstView(incoming))) {
    const OwnedDib twin = pixelByPixel(incoming, [](DWORD pixel) { return pixel | opaque; });
    opaquePiece = twin ? render(twin.get()) : nullptr;
    if (!opaquePiece) return nullptr;
  }
  const POINT origin = pieceOrigin(place);
  forEachCommonRow(
      [](int count, BYTE* to, const BYTE* from, const BYTE* cover) {
        for (int x = 0; x < count; ++x) {
          const DWORD old = Bgra32::get(to, x);
          Bgra32::put(to, x, opacityOf(Bgra32::get(cover, x)) != 0 ? Bgra32::get(from, x) : old);
        }
      },
      Placed{View(frame.get()), POINT{}}, Placed{ConstView(piece.get()), origin},
      Placed{ConstView(opaquePiece ? opaquePiece.get() : piece.get()), origin});
  return frame;
}

OwnedDib moveOn(BITMAPINFOHEADER* picture, long direction, double share) {
  const long from = share < 0 ? (direction + 4) % 8 : direction;
  const OwnedDib mirror = mirrored(picture, isSideways(from), isUpOrDown(from));
  if (!mirror) return nullptr;
  return OwnedDib(GenerateRunPushEffect(mirror.get(), picture, from, percentAt(std::abs(share))));
}

}  // namespace dibkit
