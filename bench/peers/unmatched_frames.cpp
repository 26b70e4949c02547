#include "adapters.h"
#include "frames/frames.h"
#include "gifmask/gifmask.h"
#include "split/split.h"
#include "unmatched.h"

/// Frames of an animation.
namespace bench {
namespace {

constexpr POINT corner{0, 0};

template <bool masked>
Dib compared(const Scene& s) {
  keep(CompareFrame(s.a.get(), masked ? s.mask.get() : nullptr, s.b.get(), masked ? s.mask.get() : nullptr));
  return nullptr;
}

/// A picture with another colour in the middle.
template <OwnedDib (*make)(int, int)>
OwnedDib changed(int width, int height) {
  OwnedDib picture = make(width, height);
  const dibkit::View view(picture.get());
  for (int y = height / 8; y < height / 8 * 7; ++y) {
    std::memset(view.row(y) + view.stride() / 8, 7, static_cast<std::size_t>(view.stride() / 8 * 6));
  }
  return picture;
}

/// Cuts out what changed.
template <class Splitter>
Dib split(const Scene& s) {
  Splitter splitter;
  splitter.Reset(s.a.get(), nullptr, corner, s.b.get(), nullptr, corner);
  return firstOf([&](auto image, auto mask, POINT* position) {
    splitter.SplitTransparency(image, mask, position, nullptr);
  });
}

constexpr Unmatched rowsOfFrames[] = {
    {"CompareFrame, 24 bits, masked", "cartoon", cartoon24, compared<true>, 6.25},
    {"CompareFrame, 8 bits", "photo", gray8, compared<false>, 2},
    {"RemoveNoiseDIB, masked", "cartoon", cartoon24,
     [](const Scene& s) { return RemoveNoiseDIB(s.a.get(), s.mask.get(), nullptr); }, 6.125},
    {"Mosaic32BitsDIB, 2", "photo", photo, [](const Scene& s) { return Mosaic32BitsDIB(s.a.get(), 2); }, 8},
    {"Mosaic32BitsDIB, 1", "photo", photo, [](const Scene& s) { return Mosaic32BitsDIB(s.a.get(), 1); }, 8},
    {"AlphaBlendByFrame, masked", "cartoon", cartoon24,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT*) {
         AlphaBlendByFrame(s.a.get(), s.mask.get(), corner, s.b.get(), nullptr, corner, 0, 100, image, mask);
       });
     },
     9.25},
    {"AlphaBlendByFrame2", "cartoon", cartoon24,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT* position) {
         AlphaBlendByFrame2(s.a.get(), nullptr, corner, s.b.get(), nullptr, corner, 0, 100, s.size(), image,
                            mask, position);
       });
     },
     7},
    {"MergeFrames", "cartoon", cartoon24,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT* position) {
         MergeFrames(s.a.get(), s.mask.get(), corner, s.b.get(), nullptr, corner, image, mask, position);
       });
     },
     7.125},
    {"ExtFillFrame", "flat", flat24,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT*) {
         ExtFillFrame(s.a.get(), nullptr, 0xA05A28, 0x0000FF, 60, 40, image, mask);
       });
     },
     4},
    {"ExtFillFrame", "photo", photo24,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT*) {
         ExtFillFrame(s.a.get(), nullptr, 0x555555, 0x0000FF, 60, 40, image, mask);
       });
     },
     6},
    {"ExtFillAdjacentArea", "drawing", discs24,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT*) {
         ExtFillAdjacentArea(s.a.get(), nullptr, 0xA05A28, 0x0000FF, 60, 2, corner, image, mask);
       });
     },
     4},
    {"ExtFillBkgnd", "cartoon", cartoon24,
     [](const Scene& s) {
       const SIZE canvas{s.size().cx + 40, s.size().cy + 40};
       return firstOf([&](auto image, auto mask, POINT* position) {
         ExtFillBkgnd(s.a.get(), s.mask.get(), {20, 20}, canvas, 0x0000FF, 60, 0, corner, image, mask,
                      position);
       });
     },
     6.25},
    {"Spilt32BitsDIBForGIF", "photo", photo,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT*) {
         CMaskedBitmapTransform::Spilt32BitsDIBForGIF(s.a.get(), 0xFFFFFF, 0, image, mask);
       });
     },
     7.125},
    {"Spilt32BitsDIBForGIF", "cartoon", cartoon,
     [](const Scene& s) {
       return firstOf([&](auto image, auto mask, POINT*) {
         CMaskedBitmapTransform::Spilt32BitsDIBForGIF(s.a.get(), 0xFFFFFF, 0, image, mask);
       });
     },
     7.125},
    {"CSpiltEmbededDIB::SplitTransparency", "photo", gray8, split<CSpiltEmbededDIB>, 2.25, false,
     changed<gray8>},
    {"CSpiltEmbededDIBEx::SplitTransparency", "photo", photo24, split<CSpiltEmbededDIBEx>, 7, false,
     changed<photo24>},
    {"PaintLineOnPic, width 9", "flat", flat,
     [](const Scene& s) {
       const auto [w, h] = s.size();
       return PaintLineOnPic(nullptr, {0, 0, w, h}, {9, 9}, {w - 9, h - 9}, 9, 1);
     },
     0.125},
    {"PaintShapeOnPic, ellipse", "flat", flat,
     [](const Scene& s) {
       const auto [w, h] = s.size();
       return PaintShapeOnPic({0, 0, w, h}, 3, 1, 1, {0, 0}, nullptr);
     },
     0.5},
};

}  // namespace

void addUnmatchedFrames(Rows& rows) {
  for (const Unmatched& row : rowsOfFrames) add(rows, row);
}

}  // namespace bench
