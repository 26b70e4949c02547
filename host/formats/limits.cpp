#include "host/formats/limits.h"

#include <algorithm>
#include <limits>

#include "host/errors.h"

namespace host {

namespace {

/// How often the side that is enough goes into the stored one.
int timesIn(int stored, int enough) { return enough > 0 ? stored / enough : std::numeric_limits<int>::max(); }

}  // namespace

void requirePixelsIn(std::size_t fileBytes, Size size, std::int64_t maximumPixelsPerByte) {
  if (size.pixels() > harmlessPixels &&
      size.pixels() / maximumPixelsPerByte > static_cast<std::int64_t>(fileBytes)) {
    throw FormatError("the file is too short for " + toString(size) + " pixels");
  }
}

void requireRoomInMemory(Size size, const char* kind) {
  constexpr std::int64_t maximum = 2 * maximumPixels;
  if (size.pixels() <= maximum) return;
  throw TooManyPixels(toString(size) + " pixels are too many for " + kind + ", the limit is " +
                      std::to_string(maximum));
}

Size reduced(Size stored, int factor) {
  return {(stored.width - 1) / factor + 1, (stored.height - 1) / factor + 1};
}

int reductionFor(Size stored, const std::optional<Size>& enough) {
  int factor = 1;
  const bool mayBeReduced = enough && enough->width + enough->height > 0;
  if (mayBeReduced && stored.width > 0 && stored.height > 0 && stored.pixels() <= maximumStoredPixels) {
    const int maximum =
        std::min(timesIn(stored.width, enough->width), timesIn(stored.height, enough->height));
    factor = std::max(1, maximum / 2);
    while (factor < maximum && reduced(stored, factor).pixels() > maximumPixels) ++factor;
  }
  if (enough && stored.pixels() > maximumStoredPixels) {
    throw TooManyPixels(toString(stored) + " pixels are too many, the limit is " +
                        std::to_string(maximumStoredPixels));
  }
  if (factor == 1 || reduced(stored, factor).pixels() > maximumPixels)
    requireUsableSize(stored.width, stored.height);
  return factor;
}

}  // namespace host
