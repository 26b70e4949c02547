// For the sources with vector instructions. Such a source is compiled once for each instruction set, and once
// for none (HWY_SCALAR), where it defines no kernels. At its end it records its table of kernels, and in the
// last compilation lists them all:
//
//   recordedKernels<Family, HWY_TARGET> is set to the table;
//   compiledKernels<Family>() returns everyRecorded<Family, HWY_TARGETS>().

#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "kernels/dispatch.h"

namespace dibkit {

template <class Family, std::int64_t instructions>
constexpr const Family* recordedKernels = nullptr;

/// The recorded tables; in Highway's order, which has the fastest first.
template <class Family, std::int64_t allInstructions>
std::span<const Compiled<Family>> everyRecorded() {
  static constexpr auto all = []<std::size_t... bit>(std::index_sequence<bit...>) {
    constexpr std::size_t count =
        (std::size_t{(allInstructions >> bit & 1) != 0 &&
                     recordedKernels<Family, (allInstructions & std::int64_t{1} << bit)> != nullptr} +
         ...);
    std::array<Compiled<Family>, count> result{};
    std::size_t next = 0;
    const auto add = [&](std::int64_t set, const Family* kernels) {
      if (kernels != nullptr) result[next++] = {set, kernels};
    };
    (add(std::int64_t{1} << bit, recordedKernels<Family, (allInstructions & std::int64_t{1} << bit)>), ...);
    return result;
  }
  (std::make_index_sequence<63>());
  return all;
}

}  // namespace dibkit
