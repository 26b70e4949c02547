#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "host/bytes.h"
#include "host/formats/diagnostics.h"
#include "host/formats/formats.h"
#include "host/formats/frame_player.h"

namespace host {

/// A frame of an animated PNG, its pixels still compressed.
struct ApngFrame {
  PlacedFrame place;
  std::vector<ByteView> data{};  ///< payloads of chunks, to be decoded one after the other
  bool damaged = false;          ///< a checksum is wrong
};

/// What makes a PNG file an animation.
struct Apng {
  ByteView header;               ///< payload of the chunk that says what kind of picture it is
  std::vector<ByteView> shared;  ///< whole chunks that hold for every frame, those of colours
  bool startsWithStill = false;  ///< the still picture is the first frame of the animation
  std::size_t plays = 0;         ///< how often it plays, 0 for ever
  std::vector<ApngFrame> frames;
};

/// Splits an animated PNG into its frames. Nothing for a still one, and for one without a usable frame:
/// viewers show the still picture then. \param keep for the first frame, the rest of the file is not read
std::optional<Apng> parseApng(ByteView bytes, Keep keep, Diagnostics& diagnostics);

/// A PNG file of its own for a frame. Its checksums are not set.
Bytes fileOf(const Apng& animation, const ApngFrame& frame);

}  // namespace host
