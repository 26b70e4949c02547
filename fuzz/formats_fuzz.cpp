#include <cstdlib>
#include <new>
#include <optional>

#include "errors.h"
#include "formats/formats.h"

/// The command line's readers on any bytes: what they read is a whole animation, and its first frame is what
/// a reader of one picture gets; what they refuse, both refuse.

namespace {

/// Nothing where the bytes are refused.
std::optional<host::Animation> read(host::ByteView bytes, host::Keep keep) {
  try {
    return host::readAnimation(bytes, keep);
  } catch (const host::FormatError&) {
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::optional<host::Animation> all = read({data, size}, host::Keep::allFrames);
  if (!all) return 0;
  if (all->frames.empty()) std::abort();
  for (const host::Frame& frame : all->frames) {
    if (frame.picture.size() != all->size() || frame.delay < 0) std::abort();
  }
  const std::optional<host::Animation> first = read({data, size}, host::Keep::firstFrame);
  if (!first || !looksEqual(first->frames.front().picture, all->frames.front().picture)) std::abort();
  return 0;
}
