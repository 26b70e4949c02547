#include "effects/composition.h"

#include <algorithm>
#include <cmath>

#include "dib/view.h"
#include "effects/fade.h"
#include "effects/numbered.h"
#include "effects/piece.h"
#include "effects/ripple_fade.h"
#include "platform/guard.h"
#include "raster/placement.h"

namespace dibkit {
namespace {

long percentAt(double progress) { return std::lround(progress * 100.0); }

/// A new picture of the same size whose pixels are rule(pixel).
template <class Rule>
OwnedDib pixelByPixel(const BITMAPINFOHEADER* picture, Rule&& rule) {
  const ConstView from(picture);
  return makeRows(from, [&](BYTE* row, int y) {
    for (int x = 0; x < from.width(); ++x) Bgra32::put(row, x, rule(Bgra32::get(from.row(y), x)));
  });
}

constexpr DWORD alphaOf(DWORD pixel) { return pixel >> 24; }

/// A pixel of rule(c) for each colour channel c of another, and an alpha.
template <class Rule>
DWORD colourBy(DWORD pixel, DWORD alpha, Rule&& rule) {
  return rule(pixel & 255) | rule(pixel >> 8 & 255) << 8 | rule(pixel >> 16 & 255) << 16 | alpha << 24;
}

/// The picture in blocks. renderThaw ignores alpha, so a picture with transparent pixels takes two calls: one
/// for its premultiplied colours and one for its alpha.
OwnedDib thawed(BITMAPINFOHEADER* picture, long percent) {
  const auto render = [percent](BITMAPINFOHEADER* source) {
    EffectOutput output{};
    renderThaw(source, 0, percent, output);
    return OwnedDib(output.image);
  };
  if (isOpaque(ConstView(picture))) return render(picture);
  const OwnedDib premultiplied = pixelByPixel(picture, [](DWORD pixel) {
    return colourBy(pixel, 255, [&](DWORD c) { return (c * alphaOf(pixel) + 127) / 255; });
  });
  const OwnedDib alphas = pixelByPixel(
      picture, [](DWORD pixel) { return colourBy(pixel, 255, [&](DWORD) { return alphaOf(pixel); }); });
  if (!premultiplied || !alphas) return nullptr;
  const OwnedDib blocks = render(premultiplied.get());
  OwnedDib stage = render(alphas.get());
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

/// Fades a stage in, which by itself hides the whole outgoing picture.
OwnedDib fadedIn(OwnedDib stage, const BITMAPINFOHEADER* outgoing, double progress) {
  constexpr double fadeEnd = 0.4;
  return progress < fadeEnd && stage ? fade(stage.get(), outgoing, progress / fadeEnd) : std::move(stage);
}

/// Whether a direction of GenerateRunPushEffect moves pictures horizontally or vertically; diagonals do both.
constexpr bool isHorizontal(long direction) { return direction % 4 != 2; }
constexpr bool isVertical(long direction) { return direction % 4 != 0; }

OwnedDib mirrored(const BITMAPINFOHEADER* picture, bool horizontally, bool vertically) {
  const ConstView from(picture);
  const int width = from.width();
  return makeRows(from, [&](BYTE* row, int y) {
    const BYTE* source = from.row(vertically ? from.height() - 1 - y : y);
    for (int x = 0; x < width; ++x) {
      Bgra32::put(row, x, Bgra32::get(source, horizontally ? width - 1 - x : x));
    }
  });
}

}  // namespace

OwnedDib composeFade(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  return fade(incoming, outgoing, progress);
}

OwnedDib composeRipple(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  return catchOutOfMemory([&] { return rippleFade(incoming, outgoing, progress); });
}

OwnedDib composeDiamonds(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  const auto percent = static_cast<int>(percentAt(progress));
  if (isOpaque(ConstView(incoming)) && isOpaque(ConstView(outgoing)))
    return OwnedDib(DiamondEffectDIB(incoming, outgoing, 0, 0, percent));
  // The effect ignores alpha. Run from black to white, it gives each pixel's share of the incoming picture.
  const OwnedDib white = pixelByPixel(incoming, [](DWORD) { return 0xFFFFFFFF; });
  if (!white) return nullptr;
  const OwnedDib shares(DiamondEffectDIB(white.get(), nullptr, 0, 1, percent));
  return shares ? fadeByShares(incoming, outgoing, shares.get()) : nullptr;
}

OwnedDib composePush(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int side, double progress) {
  return OwnedDib(GenerateRunPushEffect(incoming, outgoing, 2 * side, percentAt(progress)));
}

OwnedDib composeThaw(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int, double progress) {
  return catchOutOfMemory(
      [&] { return fadedIn(thawed(incoming, percentAt(1.0 - progress)), outgoing, progress); });
}

OwnedDib composeFilm(BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing, int style, double progress) {
  EffectOutput output{};
  // There is no piece at 0 percent.
  if (renderFilm(incoming, style, std::max(percentAt(progress), 1L), output) == FALSE) return nullptr;
  return fadedIn(OwnedDib(output.image), outgoing, progress);
}

OwnedDib composePiece(int number, BITMAPINFOHEADER* incoming, BITMAPINFOHEADER* outgoing,
                      EffectParameters parameters, RECT& changed) {
  changed = {};
  OwnedDib frame = copyOf(outgoing);
  if (!frame) return nullptr;
  RECT place{};
  const auto render = [&](BITMAPINFOHEADER* picture) {
    BITMAPINFOHEADER* piece = nullptr;
    GeneralEffectFrame(number, picture, parameters.a, parameters.b, &piece, &place);
    return OwnedDib(piece);
  };
  const OwnedDib piece = render(incoming);
  if (!piece) return frame;  // nothing shows at this stage
  // The piece of an opaque picture is transparent only where it does not cover the frame. A picture with
  // transparent pixels needs the piece of an opaque copy to tell the two apart.
  OwnedDib opaquePiece;
  if (!isOpaque(ConstView(incoming))) {
    const OwnedDib opaque = pixelByPixel(incoming, [](DWORD pixel) { return pixel | opaqueAlpha; });
    opaquePiece = opaque ? render(opaque.get()) : nullptr;
    if (!opaquePiece) return nullptr;
  }
  const POINT origin = pieceOrigin(place);
  const RECT box{origin.x, origin.y, origin.x + piece->biWidth, origin.y + piece->biHeight};
  const RECT whole{0, 0, outgoing->biWidth, outgoing->biHeight};
  IntersectRect(&changed, &box, &whole);
  forEachCommonRow(
      [](int count, BYTE* to, const BYTE* from, const BYTE* cover) {
        for (int x = 0; x < count; ++x) {
          const DWORD old = Bgra32::get(to, x);
          Bgra32::put(to, x, alphaOf(Bgra32::get(cover, x)) != 0 ? Bgra32::get(from, x) : old);
        }
      },
      Placed{View(frame.get()), POINT{}}, Placed{ConstView(piece.get()), origin},
      Placed{ConstView(opaquePiece ? opaquePiece.get() : piece.get()), origin});
  return frame;
}

OwnedDib moveOn(BITMAPINFOHEADER* picture, long direction, double share) {
  const long from = share < 0 ? (direction + 4) % 8 : direction;
  const OwnedDib mirror = mirrored(picture, isHorizontal(from), isVertical(from));
  if (!mirror) return nullptr;
  return OwnedDib(GenerateRunPushEffect(mirror.get(), picture, from, percentAt(std::abs(share))));
}

}  // namespace dibkit
