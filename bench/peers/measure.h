#pragma once

#include "row.h"

namespace bench {

/// Where new blocks of memory come from.
enum class Memory {
  fresh,  ///< from the system: each large block costs its page faults again
  warm,   ///< blocks that were released are given again, as in a program that runs for a while
};
void useMemory(Memory memory);

/// Times of one call of each side, in nanoseconds for each pixel, and their ratio: medians over the pairs.
struct Figures {
  double ours = 0;
  double peer = 0;
  double ratio = 0;
};

/// Times both sides in turn, by the processor time of the thread, until `seconds` are over and there are
/// enough pairs.
Figures measure(const Trial& trial, double seconds);

}  // namespace bench
