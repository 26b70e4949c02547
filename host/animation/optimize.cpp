#include "host/animation/optimize.h"

#include <cstdint>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

#include "host/animation/animation_writer.h"
#include "host/animation/colour_table.h"
#include "host/animation/gif_images.h"
#include "host/animation/palette.h"
#include "host/errors.h"
#include "host/formats/formats.h"
#include "host/formats/gif_decoder.h"

namespace host {

namespace {

// What the stages cost, measured on films and on screen recordings.
constexpr double surveyShare = 0.3;
constexpr double writeShare = 1 - surveyShare;

constexpr std::size_t maximumEntries = 256;

/// What reading a file adds to the progress, byte by byte.
class ReadingShare {
 public:
  ReadingShare(double share, ByteView bytes) : shareOfByte_(share / static_cast<double>(bytes.size())) {}

  /// The share of what has been read since the last call.
  double upTo(std::size_t position) {
    return shareOfByte_ * static_cast<double>(position - std::exchange(position_, position));
  }

 private:
  double shareOfByte_;
  std::size_t position_ = 0;
};

/// What has to be known of a GIF before it can be rewritten.
struct Survey {
  Size canvas;
  ShownColours colours;
  std::optional<int> loops;
  std::vector<GifExtension> extensions;
  std::vector<std::string> warnings;
};

Survey surveyOf(ByteView bytes, Strictness strictness, Progress& progress) {
  Survey survey;
  GifDecoder decoder(bytes, strictness);
  survey.canvas = decoder.size();
  ReadingShare share(surveyShare, bytes);
  while (decoder.next()) {
    survey.colours.add(decoder.canvas(), decoder.changed());
    progress.add(share.upTo(decoder.position()));
  }
  progress.add(share.upTo(bytes.size()));
  survey.loops = decoder.loops();
  survey.extensions = decoder.extensions();
  survey.warnings = decoder.warnings();
  return survey;
}

std::uint32_t colourOf(const Pixel& pixel) {
  std::uint32_t colour = 0;
  std::memcpy(&colour, &pixel, sizeof(colour));
  return colour;
}

/// Writes the frames, each as far as it may have changed.
template <class Cell, class CellOf>
void writeFrames(ByteView bytes, AnimationWriter<Cell>& writer, CellOf cellOf, Progress& progress) {
  GifDecoder decoder(bytes, Strictness::lenient);
  ReadingShare share(writeShare, bytes);
  while (decoder.next()) {
    Patch<Cell> patch(decoder.changed());
    for (int y = patch.place.top; y < patch.place.bottom; ++y) {
      const Pixel* from = decoder.canvas().row(y) + patch.place.left;
      Cell* to = patch.line(y);
      for (int x = 0; x < patch.width(); ++x)
        to[x] = x > 0 && from[x] == from[x - 1] ? to[x - 1] : cellOf(from[x]);
    }
    writer.add(patch, decoder.delay(), share.upTo(decoder.position()));
  }
  writer.finish();
  progress.add(share.upTo(bytes.size()));
}

/// All frames on one palette: the colours that show, and one more entry for what is transparent or left out.
Bytes onOnePalette(ByteView bytes, const Survey& survey, Progress& progress, Workers& workers) {
  std::vector<RGBQUAD> palette = survey.colours.first();
  ColourTable indices;
  for (const RGBQUAD& colour : palette)
    indices.findOrAdd(colourOf({colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 255}));
  std::optional<std::uint8_t> transparent;
  if (palette.size() < maximumEntries) {
    transparent = static_cast<std::uint8_t>(palette.size());
    palette.push_back(RGBQUAD{});
  }
  GifWriter file(survey.canvas, palette, survey.loops);
  AnimationWriter<std::uint8_t> writer(file, survey.canvas, transparent, survey.extensions, progress,
                                       workers);
  writeFrames(
      bytes, writer,
      [&](const Pixel& pixel) {
        return pixel.alpha < opaqueFrom ? transparent.value_or(0) : indices.find(colourOf(pixel)).value_or(0);
      },
      progress);
  return file.finish();
}

/// Every frame on a palette of its own. Throws TooManyColours.
Bytes onOwnPalettes(ByteView bytes, const Survey& survey, Progress& progress, Workers& workers) {
  constexpr std::uint32_t transparent = 0;
  GifWriter file(survey.canvas, {}, survey.loops);
  AnimationWriter<std::uint32_t> writer(file, survey.canvas, transparent, survey.extensions, progress,
                                        workers);
  writeFrames(
      bytes, writer,
      [](const Pixel& pixel) { return pixel.alpha < opaqueFrom ? transparent : colourOf(pixel); }, progress);
  return file.finish();
}

/// A GIF without some of its extension blocks.
Bytes without(std::span<const GifExtension> extensions, ByteView bytes) {
  constexpr std::ptrdiff_t introducerBytes = 2;
  Bytes rest;
  const std::uint8_t* kept = bytes.data();
  for (const GifExtension& extension : extensions) {
    rest.insert(rest.end(), kept, extension.blocks.data() - introducerBytes);
    kept = extension.blocks.data() + extension.blocks.size();
  }
  rest.insert(rest.end(), kept, bytes.data() + bytes.size());
  return rest;
}

}  // namespace

OptimizedGif optimizedGif(ByteView bytes, const OptimizeOptions& options, Progress& progress) {
  if (!isGif(bytes))
    throw FormatError("not a GIF file but " + readAnimation(bytes, {.keep = Keep::firstFrame}).format);
  Survey survey = surveyOf(bytes, options.strictness, progress);
  std::vector<GifExtension> dropped;
  if (options.strip) survey.extensions.swap(dropped);
  Bytes asItIs = without(dropped, bytes);
  const bool fit = survey.colours.count() + (survey.colours.anyTransparent() ? 1 : 0) <= maximumEntries;
  Workers workers;
  try {
    Bytes smaller = fit ? onOnePalette(bytes, survey, progress, workers)
                        : onOwnPalettes(bytes, survey, progress, workers);
    if (smaller.size() < asItIs.size() || !survey.warnings.empty())
      return {std::move(smaller), survey.warnings};
  } catch (const TooManyColours&) {
    // The file shows such a frame by several steps over one another: they cannot become one image.
  }
  return {std::move(asItIs), survey.warnings};
}

}  // namespace host
