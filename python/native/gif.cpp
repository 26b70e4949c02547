#include <algorithm>
#include <cstring>

#include "frames.h"
#include "host/animation/animation_writer.h"
#include "host/animation/gif_animation.h"
#include "host/animation/gif_images.h"
#include "host/animation/optimize.h"
#include "host/animation/palette.h"
#include "host/formats/gif_reader.h"
#include "host/formats/lzw_encoder.h"

namespace binding {

namespace {

/// How a GIF is written. The palette is one for all frames, or each has its own.
struct GifPlan {
  host::GifOptions options;
  bool onlyChanges = true;
  bool ownPalettes = false;
};

/// Every frame whole, on one palette.
host::Bytes wholeFrames(host::FrameSource& source, const host::GifOptions& options,
                        host::Progress& progress) {
  host::Workers workers;
  const host::SharedPalette palette = host::sharedPaletteOf(source, options.dither, workers, progress, 0.25);
  host::GifWriter file(source.size(), palette.entries, options.loops);
  if (!options.comment.empty()) file.addComment(options.comment);
  const RECT whole{0, 0, source.size().width, source.size().height};
  host::Patch<std::uint8_t> canvas(whole);
  host::LzwEncoder encoder;
  host::forEachIndexedFrame(source, palette, workers,
                            [&](const host::Patch<std::uint8_t>& patch, int number) {
                              for (LONG y = patch.place.top; y < patch.place.bottom; ++y)
                                std::copy_n(patch.line(y), patch.width(), canvas.at(patch.place.left, y));
                              host::Change<std::uint8_t> change;
                              change.versions.push_back(canvas);
                              change.delay = source.delay(number);
                              if (palette.transparent) change.disposal = host::Disposal::background;
                              file.addImage(host::smallestImage(change, palette.transparent, encoder));
                              progress.add(0.75 / source.count());
                            });
  return file.finish();
}

/// Only what changes, each image on a palette of its own: exact for any animation that a GIF can show.
host::Bytes onOwnPalettes(host::FrameSource& source, const host::GifOptions& options,
                          host::Progress& progress) {
  host::Workers workers;
  host::GifWriter file(source.size(), {}, options.loops);
  if (!options.comment.empty()) file.addComment(options.comment);
  host::AnimationWriter<std::uint32_t> writer(file, source.size(), std::uint32_t{0}, {}, progress, workers);
  host::forEachFrame(source, workers, [&](host::RenderedFrame&& frame, int number, const RECT& changed) {
    host::Patch<std::uint32_t> patch(changed);
    for (LONG y = changed.top; y < changed.bottom; ++y) {
      const host::Pixel* from = frame.picture.row(y) + changed.left;
      std::uint32_t* to = patch.line(y);
      for (int x = 0; x < patch.width(); ++x) {
        if (from[x].alpha >= host::opaqueFrom) std::memcpy(to + x, from + x, sizeof(*to));
      }
    }
    writer.add(patch, source.delay(number), 1.0 / source.count());
  });
  writer.finish();
  return file.finish();
}

py::bytes encoded(const Frames& frames, std::optional<int> loop, const std::string& comment,
                  const std::string& dither, bool optimize, const std::string& palette, Callback callback) {
  require(!loop || (*loop >= 0 && *loop <= 65535), "an animation repeats 0 to 65535 times; 0 is for ever");
  require(palette == "shared" || palette == "frame",
          "the palette is \"shared\", or each \"frame\" has its own");
  require(palette == "shared" || optimize, "frames with palettes of their own are always optimized");
  const host::GifOptions options{loop, comment, host::ditherNamed(dither)};
  host::Progress progress;
  if (callback) {
    progress.showOn([&](double share) {
      if (!callback.show(share)) throw Cancelled();
    });
  }
  host::Bytes bytes;
  try {
    const py::gil_scoped_release unlocked;
    bytes = frames.withSource([&](host::FrameSource& source) {
      if (palette == "frame") return onOwnPalettes(source, options, progress);
      return optimize ? host::gifOf(source, options, progress).bytes : wholeFrames(source, options, progress);
    });
  } catch (const Cancelled&) {
    callback.rethrow();
    throw;
  }
  return pythonBytes(bytes);
}

/// The comments of a GIF, a line for each.
std::string commentsOf(host::ByteView bytes) {
  constexpr int commentLabel = 0xFE;
  host::Diagnostics diagnostics(host::Strictness::lenient);
  host::GifReader reader(bytes, diagnostics);
  host::GifFrame frame;
  while (reader.next(frame)) {
  }
  std::string comments;
  for (const host::GifExtension& extension : reader.extensions()) {
    if (extension.label != commentLabel) continue;
    if (!comments.empty()) comments += '\n';
    for (std::size_t at = 0; at < extension.blocks.size() && extension.blocks[at] != 0;) {
      const std::size_t length =
          std::min<std::size_t>(extension.blocks[at], extension.blocks.size() - at - 1);
      comments.append(reinterpret_cast<const char*>(extension.blocks.data()) + at + 1, length);
      at += length + 1;
    }
  }
  return comments;
}

/// Images, delays in hundredths, repetitions, comment and warnings.
py::tuple decoded(const py::object& object, bool strict) {
  const BytesArgument bytes(object);
  host::Animation animation;
  std::string comment;
  std::vector<Image> images;
  std::vector<int> delays;
  {
    const py::gil_scoped_release unlocked;
    const auto strictness = strict ? host::Strictness::strict : host::Strictness::lenient;
    animation = host::readAnimation(bytes, {host::Keep::allFrames, strictness});
    if (host::isGif(bytes)) comment = commentsOf(bytes);
    for (const host::Frame& frame : animation.frames) {
      images.push_back(made(CBitmapCreator::Clone(frame.picture.dib())));
      delays.push_back(frame.delay);
    }
  }
  py::list list;
  for (Image& image : images) list.append(std::move(image));
  PyObject* text = PyUnicode_DecodeUTF8(comment.data(), static_cast<py::ssize_t>(comment.size()), "replace");
  return py::make_tuple(list, delays, animation.loops, py::reinterpret_steal<py::str>(text),
                        animation.warnings);
}

py::tuple optimized(const py::object& object, bool strict, bool strip, Callback callback) {
  const BytesArgument bytes(object);
  host::Progress progress;
  if (callback) {
    progress.showOn([&](double share) {
      if (!callback.show(share)) throw Cancelled();
    });
  }
  host::OptimizedGif gif;
  try {
    const py::gil_scoped_release unlocked;
    const auto strictness = strict ? host::Strictness::strict : host::Strictness::lenient;
    gif = host::optimizedGif(bytes, {strictness, strip}, progress);
  } catch (const Cancelled&) {
    callback.rethrow();
    throw;
  }
  return py::make_tuple(pythonBytes(gif.bytes), gif.warnings);
}

}  // namespace

void defineGifs(py::module_& module, py::class_<Frames>& frames) {
  frames.def("encode", &encoded, py::arg("loop"), py::arg("comment"), py::arg("dither"), py::arg("optimize"),
             py::arg("palette"), py::arg("progress"));
  module.def("decode_animation", &decoded, py::arg("data"), py::arg("strict"));
  module.def("optimize_bytes", &optimized, py::arg("data"), py::arg("strict"), py::arg("strip"),
             py::arg("progress"));
  module.def("dithers", &host::ditherNames, "The names of the ways to show colours that a palette lacks.");
}

}  // namespace binding
