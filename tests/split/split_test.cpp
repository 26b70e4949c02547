#include "split/split.h"

#include <gtest/gtest.h>

#include "frames/plain_finish.h"

namespace {

using dibkit::OwnedDib;
using test::Given;

/// The protected counts, as a host's own splitter reaches them.
template <class Base>
struct Opened : Base {
  using Base::CalcBoundaryBottomRightInfo;
  using Base::CalcBoundaryTopLeftInfo;
};
using Splitter = Opened<CSpiltEmbededDIB>;
using SplitterEx = Opened<CSpiltEmbededDIBEx>;

struct Scene {
  OwnedDib reference, referenceMask, next, nextMask;
  POINT ref{0, 0};
  POINT at{0, 0};

  void reset(CSpiltEmbededDIB& splitter) const {
    splitter.Reset(reference.get(), referenceMask.get(), ref, next.get(), nextMask.get(), at);
  }
  bool inNext(int x, int y) const { return x >= 0 && y >= 0 && x < next->biWidth && y < next->biHeight; }
  bool inReference(int x, int y) const {
    return x >= 0 && y >= 0 && x < reference->biWidth && y < reference->biHeight;
  }
  bool same(int rx, int ry, int nx, int ny) const {
    const bool clear = test::transparentAt(referenceMask.get(), rx, ry);
    if (clear != test::transparentAt(nextMask.get(), nx, ny)) return false;
    return clear || test::colourAt(reference.get(), rx, ry) == test::colourAt(next.get(), nx, ny);
  }
};

/// The scans as they are told, pixel by pixel. A point outside the new frame ends everything: `outside`.
struct PlainScan {
  const Scene& scene;
  int left = 0, top = 0, right = 0, bottom = 0;
  bool outside = false;

  bool sameAt(int x, int y) {
    const int nx = x + scene.ref.x - scene.at.x;
    const int ny = y + scene.ref.y - scene.at.y;
    if (!scene.inNext(nx, ny)) outside = true;
    return !outside && scene.same(x, y, nx, ny);
  }
  bool sameRow(int y, int from, int end) {
    for (int x = from; x < end; ++x) {
      if (!sameAt(x, y)) return false;
    }
    return true;
  }
  bool sameColumn(int x, int from, int end) {
    for (int y = from; y < end; ++y) {
      if (!sameAt(x, y)) return false;
    }
    return true;
  }
  int topLeft() {
    const int width = scene.reference->biWidth;
    const int height = scene.reference->biHeight;
    const bool together = scene.ref.x == scene.at.x && scene.ref.y == scene.at.y;
    if (together && width == scene.next->biWidth) {
      while (top < height && sameRow(top, 0, width)) ++top;
      if (outside) return 0;
    }
    if (top == height) {
      left = width;
      return 1;
    }
    if (together && height == scene.next->biHeight) {
      while (left < width && sameColumn(left, top, height)) ++left;
      if (outside) return 0;
    }
    return left != 0 || top != 0;
  }
  int bottomRight() {
    const int width = scene.reference->biWidth;
    const int height = scene.reference->biHeight;
    const bool together = scene.ref.x == scene.at.x && scene.ref.y == scene.at.y;
    if (scene.ref.x + width == scene.at.x + scene.next->biWidth && scene.ref.y == scene.at.y &&
        height == scene.next->biHeight) {
      while (width - 1 - right >= left && sameColumn(width - 1 - right, top, height)) ++right;
      if (outside) return 0;
    }
    if (together && width == scene.next->biWidth) {
      while (height - 1 - bottom >= top && sameRow(height - 1 - bottom, left, width - right)) ++bottom;
      if (outside) return 0;
    }
    return bottom != 0 || right != 0;
  }
};

/// The piece as it is told.
Given plainPiece(const Scene& scene, const PlainScan& counts, bool indexed, bool makeSame, int& sameFound) {
  const int width = scene.next->biWidth - counts.left - counts.right;
  const int height = scene.next->biHeight - counts.top - counts.bottom;
  if (width <= 0 || height <= 0) return {};
  OwnedDib indexes = test::image(width, height, 8);
  if (indexed) {
    indexes.reset(CBitmapCreator::CreateDibImage(width, height, 8, static_cast<int>(scene.next->biClrUsed)));
    std::memcpy(indexes.get() + 1, scene.next.get() + 1, GetDIBPaletteSize(scene.next.get()) * 4);
  }
  test::PlainPicture picture(width, height);
  OwnedDib mask = test::newMask(width, height);
  bool marked = false;
  bool found = false;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int nx = x + counts.left;
      const int ny = y + counts.top;
      const int rx = nx + scene.at.x - scene.ref.x;
      const int ry = ny + scene.at.y - scene.ref.y;
      const bool under = scene.inReference(rx, ry) && !test::transparentAt(scene.referenceMask.get(), rx, ry);
      const auto mark = [&] {
        test::setPixel(mask, x, y, 1);
        marked = true;
      };
      if (test::transparentAt(scene.nextMask.get(), nx, ny)) {
        if (under) return {};
        mark();
        continue;
      }
      const DWORD colour = test::colourAt(scene.next.get(), nx, ny);
      const bool same = under && test::colourAt(scene.reference.get(), rx, ry) == colour;
      found = found || same;
      if (indexed) test::setPixel(indexes, x, y, test::pixel(scene.next, nx, ny));
      if (same && makeSame) {
        mark();
        continue;
      }
      picture.put(x, y, colour);
      picture.note(colour);
    }
  }
  if (found) sameFound = 1;
  Given given;
  given.result = 1;
  given.image = indexed ? std::move(indexes) : picture.finish();
  if (marked) given.mask = std::move(mask);
  given.position = {scene.at.x + counts.left, scene.at.y + counts.top};
  return given;
}

void expectSame(const Given& expected, const Given& got) {
  ASSERT_EQ(got.result, expected.result);
  ASSERT_TRUE(test::sameBytes(expected.image, got.image.get()));
  ASSERT_TRUE(test::sameBytes(expected.mask, got.mask.get()));
  ASSERT_EQ(got.position.x, expected.position.x);
  ASSERT_EQ(got.position.y, expected.position.y);
}

/// Frames that mostly agree; sizes and positions as hosts have them, or any.
Scene randomScene(test::Random& random, int depth) {
  Scene scene;
  const int width = 1 + test::below(random, 24);
  const int height = 1 + test::below(random, 12);
  scene.reference = test::flatFrame(width, height, depth, 2, random);
  scene.ref = {test::below(random, 4), test::below(random, 4)};
  scene.at = scene.ref;
  const int kind = test::below(random, 8);
  if (kind < 5) {
    scene.next.reset(CBitmapCreator::Clone(scene.reference.get()));
    scene.referenceMask = test::below(random, 2) == 0 ? test::randomMask(width, height, 10, random) : nullptr;
    scene.nextMask.reset(CBitmapCreator::Clone(scene.referenceMask.get()));
    for (int i = test::below(random, 4); i > 0; --i) {
      const int x = test::below(random, width);
      const int y = test::below(random, height);
      test::setPixel(scene.next, x, y, test::pixel(scene.next, x, y) ^ 1);
    }
    if (scene.nextMask && kind == 0) test::setPixel(scene.nextMask, 0, 0, 0);
    if (scene.nextMask && kind == 1) test::setPixel(scene.nextMask, width / 2, height / 2, 1);
  } else {
    // One flat colour in both, so that scans run far, at any sizes and places.
    scene.reference = test::flatFrame(width, height, depth, 1, random);
    const int dx = kind == 5 ? test::below(random, 7) - 3 : 0;
    const int dy = kind == 6 ? test::below(random, 7) - 3 : 0;
    const int newWidth = kind == 7 ? 1 + test::below(random, 24) : std::max(width + dx, 1);
    const int newHeight = std::max(height + dy, 1);
    scene.next = test::image(newWidth, newHeight, depth,
                             depth <= 8 ? std::vector<DWORD>(2, test::colourAt(scene.reference.get(), 0, 0))
                                        : std::vector<DWORD>{});
    for (int y = 0; y < newHeight; ++y) {
      for (int x = 0; x < newWidth; ++x)
        test::setPixel(scene.next, x, y, depth <= 8 ? 0 : test::pixel(scene.reference, 0, 0));
    }
    if (test::below(random, 2) == 0) scene.at = {scene.ref.x - dx, scene.ref.y - dy};
  }
  return scene;
}

template <class Type>
void expectLikePlain(const Scene& scene, bool indexed) {
  Type splitter;
  scene.reset(splitter);
  PlainScan counts{scene};
  if (splitter.IsCanSpilt()) {
    counts.topLeft();
    counts.outside = false;
    counts.bottomRight();
  }
  ASSERT_EQ(splitter.m_nLeftSame, counts.left);
  ASSERT_EQ(splitter.m_nTopSame, counts.top);
  ASSERT_EQ(splitter.m_nRightSame, counts.right);
  ASSERT_EQ(splitter.m_nBottomSame, counts.bottom);
  ASSERT_EQ(splitter.IsEqual(), counts.left == scene.next->biWidth || counts.top == scene.next->biHeight);

  for (const bool makeSame : {false, true}) {
    int found = 0;
    int expectedFound = 0;
    const Given got = test::given([&](auto image, auto mask, POINT* position) {
      return makeSame ? splitter.SplitTransparency(image, mask, position, &found)
                      : splitter.SplitOpacity(image, mask, position, &found);
    });
    expectSame(plainPiece(scene, counts, indexed, makeSame, expectedFound), got);
    // The transparent split tells nothing.
    ASSERT_EQ(found, makeSame ? 0 : expectedFound);
  }
}

TEST(SpiltEmbededDIB, CountsAndCutsLikeThePlainScans) {
  test::Random random(101);
  for (int round = 0; round < 1500; ++round) {
    SCOPED_TRACE(round);
    expectLikePlain<Splitter>(randomScene(random, 8), true);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(SpiltEmbededDIBEx, CountsAndCutsEveryDepthLikeThePlainScans) {
  test::Random random(102);
  for (int round = 0; round < 1500; ++round) {
    SCOPED_TRACE(round);
    expectLikePlain<SplitterEx>(randomScene(random, test::allDepths[round % 6]), false);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(SpiltEmbededDIB, EndsAScanAtAPointOutsideTheNewFrame) {
  test::Random random(103);
  int outside = 0;
  for (int round = 0; round < 1000; ++round) {
    // Asked without IsCanSpilt, as a derived splitter may.
    const Scene scene = randomScene(random, 8);
    Splitter splitter;
    splitter.m_pRefDIB = scene.reference.get();
    splitter.m_pRefMask = scene.referenceMask.get();
    splitter.m_pNewDIB = scene.next.get();
    splitter.m_pNewMask = scene.nextMask.get();
    splitter.m_ptRef = scene.ref;
    splitter.m_ptNew = scene.at;
    PlainScan plain{scene};
    int left = -1;
    int top = -1;
    ASSERT_EQ(splitter.CalcBoundaryTopLeftInfo(&left, &top), plain.topLeft()) << round;
    ASSERT_EQ(left, plain.left) << round;
    ASSERT_EQ(top, plain.top) << round;
    outside += plain.outside;
    // From any counts, not only those that the first scan leaves.
    plain.left = test::below(random, scene.reference->biWidth + 1);
    plain.top = test::below(random, scene.reference->biHeight + 1);
    plain.outside = false;
    int right = -1;
    int bottom = -1;
    ASSERT_EQ(splitter.CalcBoundaryBottomRightInfo(plain.left, plain.top, &right, &bottom),
              plain.bottomRight())
        << round;
    ASSERT_EQ(right, plain.right) << round;
    ASSERT_EQ(bottom, plain.bottom) << round;
    outside += plain.outside;
  }
  EXPECT_GT(outside, 50);
}

TEST(SpiltEmbededDIB, TrimsTopBeforeLeftBeforeRightBeforeBottom) {
  // The change is a diagonal: each scan is restricted to what the ones before left.
  const OwnedDib reference = test::image(5, 4, 24);
  const OwnedDib next = test::image(5, 4, 24);
  test::setPixel(next, 3, 1, 0xFFFFFF);
  test::setPixel(next, 1, 2, 0xFFFFFF);
  SplitterEx splitter;
  splitter.Reset(reference.get(), nullptr, {7, 9}, next.get(), nullptr, {7, 9});
  EXPECT_EQ(splitter.m_nTopSame, 1);
  EXPECT_EQ(splitter.m_nLeftSame, 1);
  EXPECT_EQ(splitter.m_nRightSame, 1);
  EXPECT_EQ(splitter.m_nBottomSame, 1);
  const Given got = test::given([&](auto image, auto mask, POINT* position) {
    return splitter.SplitTransparency(image, mask, position, nullptr);
  });
  EXPECT_EQ(got.position.x, 8);
  EXPECT_EQ(got.position.y, 10);
  // White alone is in the palette: what became transparent is index 0 without being entered.
  EXPECT_EQ(got.image->biClrUsed, 1U);
  EXPECT_EQ(test::pixelsOf(got.mask), (std::vector<DWORD>{1, 1, 0, 0, 1, 1}));
}

TEST(SpiltEmbededDIB, NeverClearsTheSameFoundFlagAndWritesNothingOnFailure) {
  const OwnedDib reference = test::imageOf(2, 1, 8, {0, 1}, {0, 0xFFFFFF});
  const OwnedDib next = test::imageOf(2, 1, 8, {1, 1}, {0, 0xFFFFFF});
  CSpiltEmbededDIB splitter;
  splitter.Reset(reference.get(), nullptr, {0, 0}, next.get(), nullptr, {0, 0});
  int found = 7;
  const Given got = test::given([&](auto image, auto mask, POINT* position) {
    return splitter.SplitOpacity(image, mask, position, &found);
  });
  EXPECT_EQ(test::pixelsOf(got.image), (std::vector<DWORD>{1}));
  EXPECT_EQ(found, 7);
  const OwnedDib opaqueToClear = test::imageOf(2, 1, 1, {1, 0});
  splitter.Reset(reference.get(), nullptr, {0, 0}, next.get(), opaqueToClear.get(), {0, 0});
  const Given failed = test::given([&](auto image, auto mask, POINT* position) {
    return splitter.SplitOpacity(image, mask, position, &found);
  });
  EXPECT_EQ(failed.result, 0);
  EXPECT_FALSE(failed.image);
  EXPECT_EQ(failed.position.x, -77);
}

/// Counts the calls that reach the one virtual operation.
struct Counting : CSpiltEmbededDIB {
  mutable std::vector<std::pair<int, bool>> calls;
  int CropEmbededDIB(BITMAPINFOHEADER**, BITMAPINFOHEADER**, POINT*, int makeSame,
                     int* found) const override {
    calls.emplace_back(makeSame, found != nullptr);
    return 42;
  }
};

TEST(SpiltEmbededDIB, SplitsThroughTheVirtualOperation) {
  const Counting counting;
  int found = 0;
  EXPECT_EQ(counting.SplitOpacity(nullptr, nullptr, nullptr, &found), 42);
  EXPECT_EQ(counting.SplitTransparency(nullptr, nullptr, nullptr, &found), 42);
  EXPECT_EQ(counting.calls, (std::vector<std::pair<int, bool>>{{0, true}, {1, false}}));
}

TEST(SpiltEmbededDIB, StartsEmptyCopiesEverythingAndRefusesWhatCannotBe) {
  CSpiltEmbededDIB empty;
  EXPECT_EQ(empty.m_pRefDIB, nullptr);
  EXPECT_EQ(empty.m_ptNew.x, 0);
  EXPECT_EQ(empty.IsCanSpilt(), 0);
  EXPECT_EQ(empty.IsEqual(), 0);
  const auto cut = [](const CSpiltEmbededDIB& splitter) {
    return test::given([&](auto image, auto mask, POINT* position) {
             return splitter.SplitOpacity(image, mask, position, nullptr);
           })
        .result;
  };
  EXPECT_EQ(cut(empty), 0);

  const OwnedDib frame = test::image(3, 2, 8);
  const OwnedDib other = test::imageOf(3, 2, 8, {1, 1, 1, 1, 1, 1}, {0, 1});
  CSpiltEmbededDIB splitter;
  splitter.Reset(frame.get(), nullptr, {1, 2}, frame.get(), nullptr, {1, 2});
  EXPECT_EQ(splitter.IsEqual(), 1);
  EXPECT_EQ(cut(splitter), 0);  // nothing to cut
  splitter.Reset(frame.get(), nullptr, {1, 2}, other.get(), nullptr, {1, 2});
  const CSpiltEmbededDIB copy(splitter);
  EXPECT_EQ(copy.m_pNewDIB, other.get());
  EXPECT_EQ(copy.m_ptNew.y, 2);
  EXPECT_EQ(cut(copy), 1);
  splitter.m_nLeftSame = -1;
  EXPECT_EQ(cut(splitter), 0);
  splitter.m_nLeftSame = INT32_MAX;
  splitter.m_nRightSame = INT32_MIN;
  EXPECT_EQ(cut(splitter), 0);
  const OwnedDib deep = test::image(3, 2, 24);
  splitter.Reset(frame.get(), nullptr, {0, 0}, deep.get(), nullptr, {0, 0});
  EXPECT_EQ(cut(splitter), 0);  // the piece of the plain splitter is one byte a pixel
  splitter.Reset(frame.get(), nullptr, {INT32_MAX, INT32_MAX}, frame.get(), nullptr, {INT32_MIN, 0});
  EXPECT_EQ(splitter.IsCanSpilt(), 0);
}

TEST(SpiltEmbededDIB, LiesInMemoryAsHostsExpect) {
  static_assert(sizeof(CSpiltEmbededDIBEx) == sizeof(CSpiltEmbededDIB));
  CSpiltEmbededDIB splitter;
  const auto offset = [&](const void* field) {
    return static_cast<const char*>(field) - reinterpret_cast<const char*>(&splitter);
  };
  const auto pointer = static_cast<std::ptrdiff_t>(sizeof(void*));
  EXPECT_EQ(offset(&splitter.m_pRefDIB), pointer);  // after the pointer to the virtual table
  EXPECT_EQ(offset(&splitter.m_pNewMask), 4 * pointer);
  EXPECT_EQ(offset(&splitter.m_ptRef), 5 * pointer);
  EXPECT_EQ(offset(&splitter.m_ptNew), 5 * pointer + 8);
  EXPECT_EQ(offset(&splitter.m_nLeftSame), 5 * pointer + 16);
  EXPECT_EQ(offset(&splitter.m_nTopSame), 5 * pointer + 20);
  EXPECT_EQ(offset(&splitter.m_nBottomSame), 5 * pointer + 28);
}

}  // namespace
