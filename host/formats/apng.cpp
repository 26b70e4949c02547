#include "host/formats/apng.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "host/formats/png_chunks.h"

namespace host {

namespace {

constexpr std::size_t headerBytes = 13;
constexpr std::size_t controlBytes = 26;

bool isAboutColours(std::string_view chunk) {
  constexpr std::array<std::string_view, 7> names{"PLTE", "tRNS", "gAMA", "cHRM", "sRGB", "iCCP", "sBIT"};
  return std::find(names.begin(), names.end(), chunk) != names.end();
}

class ApngParser {
 public:
  ApngParser(Keep keep, Diagnostics& diagnostics) : keep_(keep), diagnostics_(diagnostics) {}

  std::optional<Apng> parse(ByteView bytes) && {
    PngChunks chunks(bytes);
    while (!done_) {
      const std::optional<PngChunk> chunk = chunks.next();
      if (!chunk) break;
      take(*chunk);
    }
    if (!done_ && !apng_.frames.empty()) apng_.frames.back().place.cut = true;
    if (!animated_ || apng_.frames.empty()) return std::nullopt;
    if (keep_ == Keep::allFrames && apng_.frames.size() < declared_ && diagnostics_.warnings().empty()) {
      diagnostics_.report("PNG: frames are missing, it has " + std::to_string(apng_.frames.size()) + " of " +
                          std::to_string(declared_));
    }
    return std::move(apng_);
  }

 private:
  void take(const PngChunk& chunk) {
    if (chunk.name == "IHDR") {
      done_ = chunk.data.size() != headerBytes;
      apng_.header = chunk.data;
    } else if (chunk.name == "acTL" && chunk.data.size() == 8 && !stillSeen_) {
      animated_ = true;
      declared_ = big32(chunk.data, 0);
      apng_.plays = big32(chunk.data, 4);
    } else if (chunk.name == "fcTL") {
      startFrame(chunk);
    } else if (chunk.name == "IDAT") {
      // The rest is a still picture's.
      done_ = !animated_;
      if (!stillSeen_) apng_.startsWithStill = !apng_.frames.empty();
      stillSeen_ = true;
      if (apng_.startsWithStill && apng_.frames.size() == 1) addData(chunk, 0);
    } else if (chunk.name == "fdAT" && stillSeen_ && !apng_.frames.empty()) {
      addData(chunk, 4);
    } else if (chunk.name == "IEND") {
      done_ = true;
    } else if (!stillSeen_ && isAboutColours(chunk.name)) {
      apng_.shared.push_back(chunk.whole);
    }
  }

  void startFrame(const PngChunk& chunk) {
    if (!animated_) return;
    done_ = keep_ == Keep::firstFrame && !apng_.frames.empty();
    if (done_) return;
    const std::string name = frameName(apng_.frames.size() + 1);
    if (chunk.cut) return endWith(truncated("within " + name));
    if (chunk.data.size() != controlBytes || !chunk.isIntact())
      return endWith("PNG: the data of " + name + " are damaged");
    const std::optional<PlacedFrame> place = placeIn(chunk.data);
    if (!place) return endWith("PNG: " + name + " is not inside of the picture");
    apng_.frames.push_back({*place});
  }

  /// \param control where the frame is, how long it shows, and its disposal
  std::optional<PlacedFrame> placeIn(ByteView control) const {
    const auto inside = [](std::uint64_t offset, std::uint64_t length, std::uint64_t whole) {
      return length > 0 && offset + length <= whole && whole <= std::numeric_limits<int>::max();
    };
    const std::uint32_t width = big32(control, 4), height = big32(control, 8);
    const std::uint32_t left = big32(control, 12), top = big32(control, 16);
    if (apng_.header.empty() || !inside(left, width, big32(apng_.header, 0)) ||
        !inside(top, height, big32(apng_.header, 4))) {
      return std::nullopt;
    }
    PlacedFrame frame;
    frame.left = static_cast<int>(left);
    frame.top = static_cast<int>(top);
    frame.size = {static_cast<int>(width), static_cast<int>(height)};
    const std::uint32_t parts = big16(control, 22);
    frame.seconds = static_cast<double>(big16(control, 20)) / (parts != 0 ? parts : 100);
    constexpr std::array<Disposal, 3> disposals{Disposal::keep, Disposal::background, Disposal::previous};
    frame.disposal = control[24] < disposals.size() ? disposals[control[24]] : Disposal::keep;
    frame.compositing = control[25] == 1 ? Compositing::over : Compositing::replace;
    return frame;
  }

  /// \param from where the pixels start in the chunk
  void addData(const PngChunk& chunk, std::size_t from) {
    ApngFrame& frame = apng_.frames.back();
    frame.place.cut = chunk.cut;
    frame.damaged |= !chunk.cut && !chunk.isIntact();
    if (chunk.data.size() > from) frame.data.push_back(chunk.data.subspan(from));
  }

  void endWith(const std::string& fault) {
    done_ = true;
    diagnostics_.report(fault);
  }

  Keep keep_;
  Diagnostics& diagnostics_;
  Apng apng_;
  bool animated_ = false;
  bool stillSeen_ = false;
  bool done_ = false;
  std::size_t declared_ = 0;
};

void append(Bytes& bytes, ByteView more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

void appendChunk(Bytes& bytes, std::string_view name, ByteView data) {
  append(bytes, big32(data.size()));
  bytes.insert(bytes.end(), name.begin(), name.end());
  append(bytes, data);
  append(bytes, big32(0));
}

}  // namespace

std::optional<Apng> parseApng(ByteView bytes, Keep keep, Diagnostics& diagnostics) {
  return ApngParser(keep, diagnostics).parse(bytes);
}

Bytes fileOf(const Apng& animation, const ApngFrame& frame) {
  constexpr std::string_view signature = "\x89PNG\r\n\x1A\n";
  Bytes header;
  append(header, big32(static_cast<std::size_t>(frame.place.size.width)));
  append(header, big32(static_cast<std::size_t>(frame.place.size.height)));
  append(header, animation.header.subspan(8));
  Bytes file(signature.begin(), signature.end());
  appendChunk(file, "IHDR", header);
  for (const ByteView chunk : animation.shared) append(file, chunk);
  for (const ByteView data : frame.data) appendChunk(file, "IDAT", data);
  if (!frame.place.cut) appendChunk(file, "IEND", {});
  return file;
}

}  // namespace host
