#include <cstdlib>
#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "dib32/dib32.h"
#include "plain.h"
#include "support/palettes.h"

namespace {

/// How many more image blocks, and how many more blocks of any other kind, can be had before one cannot;
/// below 0 all can.
int imagesLeft = -1;
int othersLeft = -1;

bool spent(int& left) { return left >= 0 && --left < 0; }

}  // namespace

/// Every image block comes from here.
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  if (spent(imagesLeft)) return nullptr;
  try {
    return ::operator new[](bytes);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
// Not inlined, here and below: the compiler would see blocks of malloc passed to delete, and of new to free.
[[gnu::noinline]] void* operator new(std::size_t bytes) {
  void* block = spent(othersLeft) ? nullptr : std::malloc(bytes);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

using dibkit::OwnedDib;
using test::Given;
using Operation = std::function<Given()>;

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

TEST(OutOfMemory, EndsEachOperationInItsOwnWay) {
  const OwnedDib frame = test::imageOf(2, 1, 24, {1, 2});
  const OwnedDib mask = test::imageOf(2, 1, 1, {0, 1}, {0, 0xFFFFFF});
  BITMAPINFOHEADER *f = frame.get(), *m = mask.get();
  const POINT origin{0, 0};
  const dibkit::OwnedRegion region(CreateRectRgn(0, 0, 2, 1));
  // The frame's image, its reduction, the mask.
  const Expectation cases[] = {
      {"AlphaBlendByColor", [&] { return test::given(AlphaBlendByColor, f, m, 0U, BYTE{9}); }, {0, 2, 3, 1}},
      {"MergeFrames", [&] { return test::given(MergeFrames, f, m, origin, f, m, origin); }, {0, 0, 2, 1}},
      {"ExtFillFrame", [&] { return test::given(ExtFillFrame, f, m, 0U, 0U, 9, 9); }, {0, 2, 0, 1}},
      // A mask that cannot be copied takes the image along and leaves the result at 1.
      {"ExtFillAdjacentArea",
       [&] { return test::given(ExtFillAdjacentArea, f, m, 0U, 0U, 9, 9, origin); },
       {0, 0, 4, 1}},
      {"CropFrame", [&] { return test::given(CropFrame, f, m, region.get()); }, {0, 0, 0, 1}},
      {"ExtFillBkgnd",
       [&] {
         return test::given(ExtFillBkgnd, f, m, origin, SIZE{2, 1}, 0U, 9, 0, origin);
       },
       {0, 0, 1}},
  };
  for (const Expectation& expectation : cases) {
    for (std::size_t i = 0; i < expectation.results.size(); ++i) {
      const bool enough = i + 1 == expectation.results.size();
      imagesLeft = enough ? -1 : static_cast<int>(i);
      const Given got = expectation.run();
      imagesLeft = -1;
      EXPECT_EQ(kindOf(got), expectation.results[i]) << expectation.name << " at block " << i;
    }
  }
}

/// Once pixels are reached, a flood fill whose work list cannot grow leaves null images and the frame's
/// position.
TEST(OutOfMemory, LeavesAPlaceButNoImagesInTheMiddleOfABackground) {
  const OwnedDib frame = test::image(1, 1, 24);
  bool begun = false;
  for (int others = 0;; ++others) {
    BITMAPINFOHEADER *image = frame.get(), *mask = frame.get();
    POINT position{-77, -77};
    othersLeft = others;
    const int result =
        ExtFillBkgnd(frame.get(), nullptr, {1, 1}, {2, 2}, 0, 9, 0, {0, 0}, &image, &mask, &position);
    othersLeft = -1;
    if (result != 0) {
      const OwnedDib givenImage(image), givenMask(mask);
      EXPECT_TRUE(position.x == 0 && position.y == 0);
      break;
    }
    const bool untouched = image == frame.get() && mask == frame.get() && position.x == -77;
    const bool left = image == nullptr && mask == nullptr && position.x == 1 && position.y == 1;
    ASSERT_TRUE(left || (untouched && !begun)) << others;
    begun = left;
  }
  EXPECT_TRUE(begun);
}

/// Drawing and conversion through the platform's objects: the k-th block of memory fails, for every k.
TEST(OutOfMemory, GivesTheTruePictureOrNone) {
  std::vector<POINT> corners{{2, 3}, {40, 9}, {11, 31}, {2, 30}};
  const OwnedDib picture = test::imageOf(3, 1, 1, {0, 1, 0}, {0xFFFFFF, 0});
  const OwnedDib photo = test::imageOf(2, 1, 24, {0x123456, 0xFEDCBA});
  const auto palette = test::logicalPalette({0x112233, 0xFFFFFF, 0x00FF00});
  const dibkit::OwnedRegion clip(CreateEllipticRgn(5, 0, 60, 50));
  const RECT box{0, 0, 70, 50};
  const std::function<BITMAPINFOHEADER*()> operations[] = {
      [&] { return PaintLineOnPic(picture.get(), box, corners[0], corners[1], 6, 1); },
      [&] { return PaintLineOnPic2(box, corners.data(), 4, 5, 0, nullptr); },
      [&] {
        return PaintShapeOnPic(box, 3, 0, 1, {20, 30}, nullptr);
      },
      [&] { return PaintPolygonOnPic(corners.data(), 4, 4, 1, nullptr); },
      [&] { return CDIB32::GenerateLine(box, corners[0], corners[1], 6, 4, 1, clip.get(), nullptr); },
      [&] { return ConvertDIBFormat(photo.get(), 4, palette.get()); }};
  for (std::size_t i = 0; i < std::size(operations); ++i) {
    const OwnedDib whole(operations[i]());
    ASSERT_NE(whole, nullptr);
    int failures = 0;
    for (bool failed = true; failed; ++failures) {
      othersLeft = failures;
      const OwnedDib got(operations[i]());
      failed = othersLeft < 0;
      othersLeft = -1;
      EXPECT_TRUE(failed ? !got || test::same(got, whole) : test::same(got, whole))
          << i << ", block " << failures;
    }
    EXPECT_GT(failures, 1) << i;  // of the system's own blocks none can fail
  }
}

}  // namespace
