#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "plain.h"

namespace {

/// How many more image blocks can be had before one cannot; below 0 all can.
int blocksLeft = -1;

}  // namespace

/// Every image block comes from here.
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  if (blocksLeft >= 0 && --blocksLeft < 0) return nullptr;
  try {
    return ::operator new[](bytes);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

namespace {

using dibkit::OwnedDib;
using test::Given;
using Operation = std::function<int(BITMAPINFOHEADER**, BITMAPINFOHEADER**, POINT*)>;

struct Expectation {
  const char* name;
  Operation run;
  /// The result when the first, second, ... block cannot be had, and with all of them: 0 is a failure, 1 a
  /// success, 2 a success without image, 3 one without mask, 4 one with neither.
  std::vector<int> results;
};

int kindOf(const Given& got) {
  if (got.result == 0) return got.image || got.mask || got.position.x != -77 ? -1 : 0;
  if (got.image && got.mask) return 1;
  return got.mask ? 2 : got.image ? 3 : 4;
}

TEST(OutOfMemory, EndsEveryOperationAsItIsTold) {
  const OwnedDib frame = test::imageOf(2, 1, 24, {1, 2});
  const OwnedDib mask = test::imageOf(2, 1, 1, {0, 1}, {0, 0xFFFFFF});
  const POINT origin{0, 0};
  const dibkit::OwnedRegion region(CreateRectRgn(0, 0, 2, 1));
  // The frame's image, its reduction, the mask.
  const Expectation cases[] = {
      {"AlphaBlendByColor",
       [&](auto image, auto out, POINT*) {
         return AlphaBlendByColor(frame.get(), mask.get(), 0, 9, image, out);
       },
       {0, 2, 3, 1}},
      {"MergeFrames",
       [&](auto image, auto out, POINT* position) {
         return MergeFrames(frame.get(), mask.get(), origin, frame.get(), mask.get(), origin, image, out,
                            position);
       },
       {0, 0, 2, 1}},
      {"ExtFillFrame",
       [&](auto image, auto out, POINT*) {
         return ExtFillFrame(frame.get(), mask.get(), 0, 0, 9, 9, image, out);
       },
       {0, 2, 0, 1}},
      // A mask that cannot be copied takes the image along and leaves the result at 1.
      {"ExtFillAdjacentArea",
       [&](auto image, auto out, POINT*) {
         return ExtFillAdjacentArea(frame.get(), mask.get(), 0, 0, 9, 9, origin, image, out);
       },
       {0, 0, 4, 1}},
      {"CropFrame",
       [&](auto image, auto out, POINT*) {
         return CropFrame(frame.get(), mask.get(), region.get(), image, out);
       },
       {0, 0, 0, 1}},
      {"ExtFillBkgnd",
       [&](auto image, auto out, POINT* position) {
         return ExtFillBkgnd(frame.get(), mask.get(), origin, {2, 1}, 0, 9, 0, origin, image, out, position);
       },
       {0, 0, 1}},
  };
  for (const Expectation& expectation : cases) {
    for (std::size_t i = 0; i < expectation.results.size(); ++i) {
      const bool enough = i + 1 == expectation.results.size();
      blocksLeft = enough ? -1 : static_cast<int>(i);
      const Given got = test::given(expectation.run);
      blocksLeft = -1;
      EXPECT_EQ(kindOf(got), expectation.results[i]) << expectation.name << " at block " << i;
    }
  }
}

}  // namespace
