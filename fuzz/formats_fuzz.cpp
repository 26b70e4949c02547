#include <algorithm>
#include <cstdlib>
#include <new>
#include <optional>

#include "host/errors.h"
#include "host/formats/formats.h"

/// The readers of pictures on any bytes. What they read is a whole animation without faults or with faults
/// told; the strict reader gives the same when there are none and refuses the rest; a reader of one picture
/// gets the first frame, of more files than the others, as it does not look behind it.

namespace {

/// Nothing where the bytes are refused.
std::optional<host::Animation> read(host::ByteView bytes, host::Keep keep, host::Strictness strictness) {
  try {
    return host::readAnimation(bytes, {keep, strictness});
  } catch (const host::FormatError&) {
    return std::nullopt;
  }
}

void require(bool truth) {
  if (!truth) std::abort();
}

bool sameFrames(const host::Animation& a, const host::Animation& b) {
  return std::equal(a.frames.begin(), a.frames.end(), b.frames.begin(), b.frames.end(),
                    [](const host::Frame& x, const host::Frame& y) {
                      return x.delay == y.delay && looksEqual(x.picture, y.picture);
                    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using enum host::Keep;
  using enum host::Strictness;
  const host::ByteView bytes(data, size);
  const std::optional<host::Animation> all = read(bytes, allFrames, lenient);
  const std::optional<host::Animation> strictly = read(bytes, allFrames, strict);
  if (!all) {
    require(!strictly);
    return 0;
  }
  require(!all->frames.empty());
  for (const host::Frame& frame : all->frames) {
    require(frame.picture.size() == all->size() && frame.delay >= 0);
  }
  require(strictly.has_value() == all->warnings.empty());
  if (strictly) require(sameFrames(*strictly, *all));
  const std::optional<host::Animation> first = read(bytes, firstFrame, lenient);
  // The first frame that shows anything may be behind one that is damaged.
  require(first ? looksEqual(first->frames.front().picture, all->frames.front().picture)
                : !all->warnings.empty());
  return 0;
}
