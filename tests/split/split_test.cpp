#include "split/split.h"

#include <gtest/gtest.h>

#include "frames/plain.h"
#include "support/palettes.h"

namespace {

using dibkit::OwnedDib;
using test::Given;
using test::Shot;

/// The protected counts, as a host's own splitter reaches them.
template <class Base>
struct Opened : Base {
  using Base::CalcBoundaryBottomRightInfo;
  using Base::CalcBoundaryTopLeftInfo;
};

/// Two frames and the scans over them, pixel by pixel.
struct Scene {
  Shot reference, next;
  int left = 0, top = 0, right = 0, bottom = 0;
  bool outside = false;  ///< a scan reached a point outside the new frame, which ends it

  int width() const { return reference.dib->biWidth; }
  int height() const { return reference.dib->biHeight; }
  bool sameArea(const RECT& box) {
    bool same = true;
    test::forEachPixel(box, [&](int x, int y) {
      const int cx = x + reference.at.x, cy = y + reference.at.y;
      const RECT area = next.box();
      outside = outside || (same && !PtInRect(&area, {cx, cy}));
      same = same && !outside && reference.shows(cx, cy) == next.shows(cx, cy) &&
             (!reference.shows(cx, cy) || reference.colour(cx, cy) == next.colour(cx, cy));
    });
    return same;
  }
  bool together() const { return reference.at.x == next.at.x && reference.at.y == next.at.y; }
  bool sameWidth() const { return width() == next.dib->biWidth; }
  bool sameHeight() const { return height() == next.dib->biHeight; }
  int scanTopLeft() {
    left = top = 0;
    outside = false;
    if (together() && sameWidth()) {
      while (top < height() && sameArea({0, top, width(), top + 1})) ++top;
      if (outside) return 0;
    }
    if (top == height()) left = width();
    if (top < height() && together() && sameHeight()) {
      while (left < width() && sameArea({left, top, left + 1, height()})) ++left;
    }
    return !outside && (left != 0 || top != 0);
  }
  int scanBottomRight() {
    right = bottom = 0;
    outside = false;
    if (reference.box().right == next.box().right && reference.at.y == next.at.y && sameHeight()) {
      while (width() - 1 - right >= left && sameArea({width() - 1 - right, top, width() - right, height()}))
        ++right;
      if (outside) return 0;
    }
    if (together() && sameWidth()) {
      const auto row = [&] { return height() - 1 - bottom; };
      while (row() >= top && sameArea({left, row(), width() - right, row() + 1})) ++bottom;
    }
    return !outside && (bottom != 0 || right != 0);
  }
  void reset(CSpiltEmbededDIB& splitter) const {
    splitter.Reset(reference.dib.get(), reference.mask.get(), reference.at, next.dib.get(), next.mask.get(),
                   next.at);
  }

  /// The piece, pixel by pixel.
  Given cut(bool indexed, bool makeSame, int& sameFound) const {
    const RECT box = next.box();
    const RECT area{box.left + left, box.top + top, box.right - right, box.bottom - bottom};
    if (IsRectEmpty(&area)) return {};
    OwnedDib indexes;
    if (indexed) {
      indexes = test::image(area.right - area.left, area.bottom - area.top, 8, test::entriesOf(next.dib));
    }
    test::PlainPicture picture(area);
    bool lost = false, found = false;
    test::forEachPixel(area, [&](int x, int y) {
      if (!next.shows(x, y)) {
        lost = lost || reference.shows(x, y);
        return picture.leaveOut(x, y);
      }
      if (indexed) {
        test::setPixel(indexes, x - area.left, y - area.top,
                       test::pixel(next.dib, x - next.at.x, y - next.at.y));
      }
      const bool same = reference.shows(x, y) && reference.colour(x, y) == next.colour(x, y);
      found = found || same;
      same&& makeSame ? picture.leaveOut(x, y) : picture.put(x, y, next.colour(x, y));
    });
    if (lost) return {};
    sameFound = found;
    Given given = picture.finish();
    if (indexed) given.image = std::move(indexes);
    return given;
  }
};

/// Frames that mostly agree, or of one flat colour at any sizes and places, so that scans run far.
Scene randomScene(test::Random& random, int depth) {
  Scene scene{Shot(random, depth), Shot(random, depth)};
  Shot &reference = scene.reference, &next = scene.next;
  const int kind = test::below(random, 8);
  const int width = reference.dib->biWidth, height = reference.dib->biHeight;
  next.at = reference.at;
  if (kind < 5) {
    next.dib = test::copyOf(reference.dib);
    next.mask = test::copyOf(reference.mask);
    for (int i = test::below(random, 4); i > 0; --i) {
      const int x = test::below(random, width), y = test::below(random, height);
      test::setPixel(next.dib, x, y, test::pixel(reference.dib, 0, 0));
      if (next.mask && kind == 0)
        test::setPixel(next.mask, x, y % next.mask->biHeight, test::below(random, 2));
    }
    return scene;
  }
  const int dx = kind == 5 ? test::below(random, 7) - 3 : 0, dy = kind == 6 ? test::below(random, 7) - 3 : 0;
  const std::vector<DWORD> palette(depth > 8 ? 0 : 2, 0x123456);
  reference.mask.reset();
  next.mask.reset();
  reference.dib = test::image(width, height, depth, palette);
  next.dib = test::image(kind == 7 ? 1 + test::below(random, 24) : std::max(width + dx, 1),
                         std::max(height + dy, 1), depth, palette);
  if (test::below(random, 2) == 0) next.at = {reference.at.x - dx, reference.at.y - dy};
  return scene;
}

template <class Splitter>
void expectLikePlain(Scene scene, bool indexed) {
  Splitter splitter;
  scene.reset(splitter);
  if (splitter.IsCanSpilt()) {
    scene.scanTopLeft();
    scene.scanBottomRight();
  }
  ASSERT_EQ(splitter.m_nLeftSame, scene.left);
  ASSERT_EQ(splitter.m_nTopSame, scene.top);
  ASSERT_EQ(splitter.m_nRightSame, scene.right);
  ASSERT_EQ(splitter.m_nBottomSame, scene.bottom);
  ASSERT_EQ(splitter.IsEqual(),
            scene.left == scene.next.dib->biWidth || scene.top == scene.next.dib->biHeight);
  for (const bool makeSame : {false, true}) {
    int found = 7, expectedFound = 0;
    const Given got = test::given([&](auto image, auto mask, POINT* at) {
      return makeSame ? splitter.SplitTransparency(image, mask, at, &found)
                      : splitter.SplitOpacity(image, mask, at, &found);
    });
    ASSERT_TRUE(test::same(got, scene.cut(indexed, makeSame, expectedFound)));
    // The flag is set, never cleared, and not at all by the transparent split.
    ASSERT_EQ(found, expectedFound && !makeSame ? 1 : 7);
  }
}

TEST(Splitters, CountAndCutLikeThePlainScans) {
  test::Random random(101);
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE(round);
    const int depths[] = {1, 4, 8, 16, 24, 32};
    if (round % 2 == 0) {
      expectLikePlain<CSpiltEmbededDIB>(randomScene(random, 8), true);
    } else {
      expectLikePlain<CSpiltEmbededDIBEx>(randomScene(random, depths[round / 2 % 6]), false);
    }
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(Splitters, EndAScanAtAPointOutsideTheNewFrame) {
  test::Random random(103);
  int outside = 0;
  for (int round = 0; round < 1500; ++round) {
    Scene scene = randomScene(random, 24);
    Opened<CSpiltEmbededDIBEx> splitter;
    scene.reset(splitter);  // the counts are then asked whatever IsCanSpilt says, as a derived splitter may
    int left = -1, top = -1, right = -1, bottom = -1;
    ASSERT_EQ(splitter.CalcBoundaryTopLeftInfo(&left, &top), scene.scanTopLeft()) << round;
    ASSERT_EQ(std::pair(left, top), std::pair(scene.left, scene.top)) << round;
    outside += scene.outside;
    // From any counts, not only those that the first scan leaves.
    scene.left = test::below(random, scene.width() + 1);
    scene.top = test::below(random, scene.height() + 1);
    ASSERT_EQ(splitter.CalcBoundaryBottomRightInfo(scene.left, scene.top, &right, &bottom),
              scene.scanBottomRight())
        << round;
    ASSERT_EQ(std::pair(right, bottom), std::pair(scene.right, scene.bottom)) << round;
    outside += scene.outside;
  }
  EXPECT_GT(outside, 50);
}

TEST(Splitters, CountRowsWithoutPixelsAsSame) {
  const OwnedDib high = test::image(0, INT32_MAX, 8), low = test::image(0, 3, 8);
  Opened<CSpiltEmbededDIB> splitter;
  splitter.Reset(high.get(), nullptr, {0, 0}, low.get(), nullptr, {0, 0});
  int left = -1, top = -1;
  EXPECT_EQ(splitter.CalcBoundaryTopLeftInfo(&left, &top), 1);
  EXPECT_EQ(std::pair(left, top), std::pair(0, INT32_MAX));
}

TEST(Splitters, StartEmptyCopyEverythingAndCutNothingOutside) {
  const auto cut = [](const CSpiltEmbededDIB& from) {
    return test::given(
               [&](auto image, auto mask, POINT* at) { return from.SplitOpacity(image, mask, at, nullptr); })
        .result;
  };
  CSpiltEmbededDIB splitter;
  EXPECT_EQ(splitter.IsCanSpilt() + splitter.IsEqual() + cut(splitter), 0);
  const OwnedDib frame = test::image(3, 2, 8), deep = test::image(3, 2, 24);
  const OwnedDib other = test::imageOf(3, 2, 8, {1, 1, 1, 1, 1, 1}, {0, 1});
  splitter.Reset(frame.get(), nullptr, {1, 2}, other.get(), nullptr, {1, 2});
  EXPECT_EQ(cut(CSpiltEmbededDIB(splitter)), 1);
  splitter.m_nLeftSame = INT32_MAX;
  splitter.m_nRightSame = INT32_MIN;
  EXPECT_EQ(cut(splitter), 0);
  splitter.Reset(frame.get(), nullptr, {0, 0}, deep.get(), nullptr, {0, 0});
  EXPECT_EQ(cut(splitter), 0);  // the piece of the plain splitter is one byte a pixel
}

}  // namespace
