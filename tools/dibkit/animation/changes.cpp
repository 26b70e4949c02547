#include "animation/changes.h"

#include <algorithm>
#include <cstring>

#include "parallel.h"

namespace host {

namespace {

struct Box {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  bool empty() const { return left >= right || top >= bottom; }
};

Box joined(const Box& a, const Box& b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
          std::max(a.bottom, b.bottom)};
}

const std::uint8_t* lineOf(const Bytes& indices, Size canvas, int y) {
  return indices.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(canvas.width);
}

/// The box of all positions in which differs(before, after) holds.
template <class Differs>
Box boxWhere(const Bytes& before, const Bytes& after, Size canvas, Differs differs) {
  Box box{canvas.width, canvas.height, 0, 0};
  for (int y = 0; y < canvas.height; ++y) {
    const std::uint8_t* a = lineOf(before, canvas, y);
    const std::uint8_t* b = lineOf(after, canvas, y);
    if (std::memcmp(a, b, static_cast<std::size_t>(canvas.width)) == 0) continue;
    int first = 0;
    while (first < canvas.width && !differs(a[first], b[first])) ++first;
    if (first == canvas.width) continue;
    int last = canvas.width - 1;
    while (!differs(a[last], b[last])) --last;
    box = {std::min(box.left, first), std::min(box.top, y), std::max(box.right, last + 1), y + 1};
  }
  return box.empty() ? Box{} : box;
}

/// A frame to be stored, and what stands on the canvas before it.
struct Step {
  Box box;
  const Bytes* frame;
  Bytes before;
};

GifImage cut(const Step& step, Size canvas) {
  GifImage image;
  image.left = step.box.left;
  image.top = step.box.top;
  image.size = {step.box.right - step.box.left, step.box.bottom - step.box.top};
  image.indices.reserve(static_cast<std::size_t>(image.size.pixels()));
  for (int y = step.box.top; y < step.box.bottom; ++y) {
    const std::uint8_t* line = lineOf(*step.frame, canvas, y);
    image.indices.insert(image.indices.end(), line + step.box.left, line + step.box.right);
  }
  return image;
}

/// The same with every pixel that is on the canvas already marked transparent.
void leaveOutUnchanged(GifImage& image, const Step& step, Size canvas, int transparent) {
  auto index = image.indices.begin();
  for (int y = step.box.top; y < step.box.bottom; ++y) {
    const std::uint8_t* before = lineOf(step.before, canvas, y);
    for (int x = step.box.left; x < step.box.right; ++x, ++index) {
      if (*index == before[x]) *index = static_cast<std::uint8_t>(transparent);
    }
  }
}

GifImage smallest(const Step& step, Size canvas, int transparent, std::size_t paletteSize) {
  GifImage whole = cut(step, canvas);
  if (transparent < 0) return whole;
  const auto marked = static_cast<std::uint8_t>(transparent);
  if (std::find(whole.indices.begin(), whole.indices.end(), marked) != whole.indices.end()) {
    whole.transparent = transparent;
  }
  GifImage changes = whole;
  leaveOutUnchanged(changes, step, canvas, transparent);
  if (changes.indices == whole.indices) return whole;
  changes.transparent = transparent;
  return compressedSize(changes, paletteSize) < compressedSize(whole, paletteSize) ? changes : whole;
}

void mergeEqual(std::vector<IndexedFrame>& frames) {
  constexpr int longestDelay = 65535;
  std::vector<IndexedFrame> kept;
  for (IndexedFrame& frame : frames) {
    if (!kept.empty() && kept.back().indices == frame.indices &&
        kept.back().delay + frame.delay <= longestDelay) {
      kept.back().delay += frame.delay;
    } else {
      kept.push_back(std::move(frame));
    }
  }
  frames = std::move(kept);
}

void clear(Bytes& indices, const Box& box, Size canvas, int transparent) {
  for (int y = box.top; y < box.bottom; ++y) {
    const std::ptrdiff_t line = std::ptrdiff_t{y} * canvas.width;
    std::fill(indices.begin() + line + box.left, indices.begin() + line + box.right,
              static_cast<std::uint8_t>(transparent));
  }
}

}  // namespace

std::vector<GifImage> storeChanges(Size canvas, std::vector<IndexedFrame> frames, int transparent,
                                   std::size_t paletteSize) {
  mergeEqual(frames);
  const auto differs = [](std::uint8_t a, std::uint8_t b) { return a != b; };
  const auto vanishes = [transparent](std::uint8_t a, std::uint8_t b) { return a != b && b == transparent; };
  std::vector<Step> steps(frames.size());
  std::vector<GifImage> images(frames.size());
  // A viewer starts with nothing on the canvas. Without a transparent index the first frame covers all of it.
  Bytes shown(static_cast<std::size_t>(canvas.pixels()), static_cast<std::uint8_t>(transparent));
  const Box whole{0, 0, canvas.width, canvas.height};
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const Bytes& frame = frames[i].indices;
    Step& step = steps[i];
    step.frame = &frame;
    step.box = i == 0 ? whole : boxWhere(shown, frame, canvas, differs);
    step.before = i == 0 && transparent < 0 ? Bytes(shown.size()) : std::move(shown);
    shown = frame;
    images[i].delay = frames[i].delay;
    // A pixel can only become transparent again when a frame that covers it is taken away.
    const bool last = i + 1 == frames.size();
    const Box vanishing = last ? Box{} : boxWhere(frame, frames[i + 1].indices, canvas, vanishes);
    if (!vanishing.empty()) {
      step.box = joined(step.box, vanishing);
      images[i].disposal = Disposal::toBackground;
      clear(shown, step.box, canvas, transparent);
    }
    // An empty rectangle cannot be stored; a frame that repeats what is shown already stores one pixel of it.
    if (step.box.empty()) step.box = {0, 0, 1, 1};
  }
  forEachIndex(static_cast<int>(frames.size()), [&](int number) {
    const auto i = static_cast<std::size_t>(number);
    GifImage image = smallest(steps[i], canvas, transparent, paletteSize);
    image.delay = images[i].delay;
    image.disposal = images[i].disposal;
    images[i] = std::move(image);
  });
  return images;
}

}  // namespace host
