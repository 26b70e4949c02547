#include "dib/view.h"
#include "dib32/dib32.h"
#include "dib32/sampling.h"
#include "kernels/blend.h"
#include "kernels/copy.h"
#include "platform/guard.h"

namespace dibkit {
namespace {

/// Draws pixel by pixel, from the top, each row from the left.
template <class Draw>
void forEachSampledPixel(const View& destination, const View& source, const Sampling& sampling, Draw&& draw) {
  for (std::size_t i = 0; i < sampling.rows.size(); ++i) {
    Bgra* to = pixelsOf(destination.row(sampling.top + static_cast<int>(i))) + sampling.left;
    Bgra* from = pixelsOf(source.row(sampling.rows[i]));
    for (std::size_t x = 0; x < sampling.columns.size(); ++x) draw(to[x], from[sampling.columns[x]]);
  }
}

/// Writes the scaled source row.
void gatherRow(const Bgra* from, const Sampling& sampling, Bgra* row) {
  const int width = sampling.width();
  const int* const columns = sampling.columns.data();
  const auto gather = [&](int begin, int end) {
    for (int x = begin; x < end; ++x) putWord(row, x, wordAt(from, columns[x]));
  };
  if (sampling.columnStep == 2) {
    kernels<CopyKernels>().everySecond(bytesOf(from + columns[0]), width, bytesOf(row));
  } else if (sampling.repeat == 2) {
    // Both ends may show one half of a pair.
    const int begin = width > 1 && columns[0] != columns[1] ? 1 : 0;
    const int pairs = (width - begin) / 2;
    gather(0, begin);
    if (pairs > 0)
      kernels<CopyKernels>().doubled(bytesOf(from + columns[begin]), pairs, bytesOf(row + begin));
    gather(begin + 2 * pairs, width);
  } else {
    gather(0, width);
  }
}

bool isOpaque(const Bgra* pixels, int count) {
  return kernels<CopyKernels>().commonBits(bytesOf(pixels), count) > 0xFEFFFFFF;
}

void copyVisible(Bgra* to, const Bgra* from, int count) {
  for (int x = 0; x < count; ++x) {
    const DWORD above = wordAt(from, x);
    putWord(to, x, above > colourBits ? above : wordAt(to, x));
  }
}

/// How a scaled source is drawn. If source and destination are one image both rules draw pixel by pixel,
/// since drawn pixels are read again.
using Draw = void (*)(const View& destination, const View& source, const Sampling& sampling, BYTE reduction);

/// By BlendKernels::evenMix.
void mix(const View& destination, const View& source, const Sampling& sampling, BYTE reduction) {
  if (destination.row(0) == source.row(0)) {
    forEachSampledPixel(destination, source, sampling, [=](Bgra& to, const Bgra& from) {
      plainKernels<BlendKernels>().evenMix(&to.blue, &from.blue, 1, {reduction}, nullptr);
    });
    return;
  }
  forEachSampledRow(
      destination, sampling, [&](int y, Bgra* row) { gatherRow(pixelsOf(source.row(y)), sampling, row); },
      [&](Bgra* to, const Bgra* row) {
        kernels<BlendKernels>().evenMix(bytesOf(to), bytesOf(row), sampling.width(), {reduction}, nullptr);
      });
}

/// By BlendKernels::copyOrShade. A translucent source pixel changes with every destination pixel that shows
/// it, and the next one reads the changed value. So only rows without translucent pixels may be gathered and
/// copied. With a reduction no pixel is opaque.
void copyOrShadeSource(const View& destination, const View& source, const Sampling& sampling,
                       BYTE reduction) {
  const auto drawPixel = [reduction](Bgra& to, Bgra& from) {
    plainKernels<BlendKernels>().copyOrShade(&to.blue, &from.blue, 1, {reduction}, nullptr);
  };
  if (reduction != 0 || destination.row(0) == source.row(0)) {
    forEachSampledPixel(destination, source, sampling, drawPixel);
    return;
  }
  Bgra* from = nullptr;
  AlphaKind kind{};
  const Bgra* drawn = nullptr;  // a row of the destination that shows the opaque row `from`
  forEachSampledRow(
      destination, sampling,
      [&](int y, Bgra* row) {
        from = pixelsOf(source.row(y));
        drawn = nullptr;
        // Opaque pixels need no buffer. A row of which few pixels are shown is not examined for that.
        const int first = sampling.columns.front();
        const std::int64_t shown = std::int64_t{sampling.columns.back()} - first + 1;
        kind = AlphaKind::opaque;
        if (shown <= 2 * std::int64_t{sampling.width()} && isOpaque(from + first, static_cast<int>(shown)))
          return;
        gatherRow(from, sampling, row);
        kind = alphaKindOf(row, sampling.width());
      },
      [&](Bgra* to, const Bgra* row) {
        if (kind == AlphaKind::opaque) {
          if (drawn == nullptr) {
            gatherRow(from, sampling, to);
            drawn = to;
          } else {
            std::copy_n(drawn, sampling.width(), to);
          }
        } else if (kind == AlphaKind::opaqueOrTransparent) {
          copyVisible(to, row, sampling.width());
        } else {
          for (std::size_t x = 0; x < sampling.columns.size(); ++x)
            drawPixel(to[x], from[sampling.columns[x]]);
        }
      });
}

/// Draws the source over the destination, at the places that sample(destination, source) gives.
template <class Sample>
void drawScaled(BITMAPINFOHEADER* destinationDib, BITMAPINFOHEADER* sourceDib, BYTE reduction, Draw draw,
                Sample&& sample) {
  const View destination = viewOfDepth(destinationDib, 32);
  const View source = viewOfDepth(sourceDib, 32);
  catchOutOfMemory([&] {
    const Sampling sampling = sample(Extent(destination), Extent(source));
    if (!sampling.rows.empty()) draw(destination, source, sampling, reduction);
  });
}

void stretch(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source, const POINT& origin, DWORD scale,
             BYTE reduction, Draw draw) {
  drawScaled(destination, source, reduction, draw,
             [&](Extent to, Extent from) { return stretchSampling(to, from, origin, scale); });
}

void zoomIn(BITMAPINFOHEADER* destination, const POINT& destinationOrigin, BITMAPINFOHEADER* source,
            const POINT& sourceOrigin, int factor, BYTE reduction, Draw draw) {
  drawScaled(destination, source, reduction, draw, [&](Extent to, Extent from) {
    return zoomInSampling(to, destinationOrigin, from, sourceOrigin, factor);
  });
}

void zoomOut(BITMAPINFOHEADER* destination, const POINT& destinationOrigin, BITMAPINFOHEADER* source,
             const POINT& sourceOrigin, int factor, BYTE reduction, Draw draw, ZoomOutArea area) {
  drawScaled(destination, source, reduction, draw, [&](Extent to, Extent from) {
    return zoomOutSampling(to, destinationOrigin, from, sourceOrigin, factor, area);
  });
}

}  // namespace
}  // namespace dibkit

using namespace dibkit;

void CDIB32::Stretch32DIB(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source, const POINT& sourceOrigin,
                          DWORD scale) {
  Stretch32DIB(destination, source, sourceOrigin, scale, 0);
}

void CDIB32::Stretch32DIB(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source, const POINT& sourceOrigin,
                          DWORD scale, BYTE reduction) {
  stretch(destination, source, sourceOrigin, scale, reduction, copyOrShadeSource);
}

void CDIB32::Stretch32DIBMMX(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source,
                             const POINT& sourceOrigin, DWORD scale) {
  Stretch32DIBMMX(destination, source, sourceOrigin, scale, 0);
}

void CDIB32::Stretch32DIBMMX(BITMAPINFOHEADER* destination, BITMAPINFOHEADER* source,
                             const POINT& sourceOrigin, DWORD scale, BYTE reduction) {
  stretch(destination, source, sourceOrigin, scale, reduction, mix);
}

void CDIB32::ZoomIn32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                         BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor, BYTE reduction) {
  zoomIn(destination, destinationOrigin, source, sourceOrigin, factor, reduction, copyOrShadeSource);
}

void CDIB32::ZoomIn32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                            BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor, BYTE reduction) {
  zoomIn(destination, destinationOrigin, source, sourceOrigin, factor, reduction, mix);
}

void CDIB32::ZoomOut32DIB(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                          BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor, BYTE reduction) {
  // Deliberately, this zoom alone uses the destination's width and height as right and bottom edge. Hosts
  // draw onto a destination at (0, 0), where that is the same.
  zoomOut(destination, destinationOrigin, source, sourceOrigin, factor, reduction, copyOrShadeSource,
          ZoomOutArea::sizeAsEdge);
}

void CDIB32::ZoomOut32DIBMMX(BITMAPINFOHEADER* destination, const POINT& destinationOrigin,
                             BITMAPINFOHEADER* source, const POINT& sourceOrigin, int factor,
                             BYTE reduction) {
  zoomOut(destination, destinationOrigin, source, sourceOrigin, factor, reduction, mix, ZoomOutArea::placed);
}
