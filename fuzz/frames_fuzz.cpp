#include <array>

#include "dib/dib.h"
#include "frames/frames.h"
#include "gifmask/gifmask.h"
#include "split/split.h"
#include "support.h"

/// Every operation on frames, with frames, masks and numbers of the fuzzer's choice. The first byte names the
/// operation.
namespace {

using dibkit::OwnedDib;
using dibkit::OwnedRegion;

/// Places and margins near the frames, or at the ends of what an int holds: what lies between only asks for
/// more memory.
int place(fuzz::Input& input) {
  const int value = input.number();
  if (value == INT32_MAX || value == INT32_MIN) return value;
  return value % 300;
}
POINT placePoint(fuzz::Input& input) {
  const int x = place(input);
  return {x, place(input)};
}
SIZE canvas(fuzz::Input& input) {
  const int width = input.number() % 300;
  return {width, input.number() % 300};
}
OwnedRegion region(fuzz::Input& input) {
  if (input.byte() % 16 == 0) return nullptr;
  const POINT corner = placePoint(input);
  const POINT other = placePoint(input);
  const auto near = [](LONG value) { return static_cast<int>(value) % 300; };
  return OwnedRegion(input.byte() % 2 == 0
                         ? CreateRectRgn(near(corner.x), near(corner.y), near(other.x), near(other.y))
                         : CreateEllipticRgn(near(corner.x), near(corner.y), near(other.x), near(other.y)));
}

/// Takes over what an operation hands out.
struct Outputs {
  BITMAPINFOHEADER* image = nullptr;
  BITMAPINFOHEADER* mask = nullptr;
  POINT position{};
  ~Outputs() {
    OwnedDib takenImage(image);
    OwnedDib takenMask(mask);
  }
};

struct Arguments {
  explicit Arguments(fuzz::Input& from)
      : input(from),
        a(from),
        maskA(from, 1),
        b(from),
        maskB(from, 1),
        at(placePoint(from)),
        to(placePoint(from)) {}
  fuzz::Input& input;
  fuzz::Image a, maskA, b, maskB;
  POINT at, to;
  BITMAPINFOHEADER* firstMask() { return input.byte() % 3 == 0 ? nullptr : maskA.get(); }
  BITMAPINFOHEADER* secondMask() { return input.byte() % 3 == 0 ? nullptr : maskB.get(); }
  DWORD colour() { return static_cast<DWORD>(input.number()); }
};

void drop(BITMAPINFOHEADER* image) { OwnedDib taken(image); }

constexpr std::array<void (*)(Arguments&), 15> operations{
    [](Arguments& use) { CompareFrame(use.a.get(), use.firstMask(), use.b.get(), use.secondMask()); },
    [](Arguments& use) {
      Outputs out;
      const OwnedRegion cut = region(use.input);
      CropFrame(use.a.get(), use.firstMask(), cut.get(), &out.image, &out.mask);
      drop(Crop32BitsDIB(use.b.get(), cut.get()));
    },
    [](Arguments& use) {
      const OwnedRegion wand(MagicWandRegion(use.a.get(), use.firstMask(), use.at, use.to, use.input.number(),
                                             canvas(use.input)));
    },
    [](Arguments& use) {
      const OwnedRegion opaque(CalcOpacityAreaRgn(use.maskA.get()));
      int margins[4];
      CaclOpaqueBoundary(use.maskB.get(), &margins[0], &margins[1], &margins[2], &margins[3]);
    },
    [](Arguments& use) {
      drop(RemoveNoiseDIB(use.a.get(), use.firstMask(), nullptr));
      drop(Mosaic32BitsDIB(use.b.get(), use.input.number()));
    },
    [](Arguments& use) {
      Outputs out;
      AlphaBlendByColor(use.a.get(), use.firstMask(), use.colour(), use.input.byte(), &out.image, &out.mask);
    },
    [](Arguments& use) {
      Outputs out;
      AlphaBlendByFrame(use.a.get(), use.firstMask(), use.at, use.b.get(), use.secondMask(), use.to,
                        use.colour(), use.input.byte(), &out.image, &out.mask);
    },
    [](Arguments& use) {
      Outputs out;
      MergeFrames(use.a.get(), use.firstMask(), use.at, use.b.get(), use.secondMask(), use.to, &out.image,
                  &out.mask, &out.position);
    },
    [](Arguments& use) {
      Outputs out;
      AlphaBlendByFrame2(use.a.get(), use.firstMask(), use.at, use.b.get(), use.secondMask(), use.to,
                         use.colour(), static_cast<WORD>(use.input.number()), canvas(use.input), &out.image,
                         &out.mask, &out.position);
    },
    [](Arguments& use) {
      Outputs filled;
      ExtFillFrame(use.a.get(), use.firstMask(), use.colour(), use.colour(), use.input.number(),
                   use.input.number(), &filled.image, &filled.mask);
      Outputs adjacent;
      ExtFillAdjacentArea(use.a.get(), use.firstMask(), use.colour(), use.colour(), use.input.number(),
                          use.input.number(), use.at, &adjacent.image, &adjacent.mask);
    },
    [](Arguments& use) {
      Outputs out;
      ExtFillBkgnd(use.a.get(), use.firstMask(), use.at, canvas(use.input), use.colour(), use.input.number(),
                   0, use.to, &out.image, &out.mask, &out.position);
    },
    [](Arguments& use) {
      drop(InflateDib(use.a.get(), use.firstMask(), use.colour(), place(use.input), place(use.input),
                      place(use.input), place(use.input)));
      Outputs out;
      CMaskedBitmapTransform::ExpandDIB(use.b.get(), use.secondMask(), &out.image, &out.mask,
                                        place(use.input), place(use.input), place(use.input),
                                        place(use.input));
    },
    [](Arguments& use) {
      drop(CMaskedBitmapTransform::OutputDIBStream(use.a.get(), use.maskA.get(), use.colour()));
      Outputs out;
      CMaskedBitmapTransform::Spilt32BitsDIBForGIF(use.b.get(), use.colour(), use.colour(), &out.image,
                                                   &out.mask);
    },
    [](Arguments& use) {
      const OwnedRegion area = region(use.input);
      BITMAPINFOHEADER* filled = CMaskedBitmapTransform::FillMask(use.maskA.get(), area.get());
      if (filled != use.maskA.get()) drop(filled);
      CMaskedBitmapTransform::FillMaskDIBBits(use.maskB.get(), use.input.rect(), use.input.byte() % 2 != 0);
      drop(CMaskedBitmapTransform::MarkedMaskDIB(use.maskA.get(), use.maskB.get()));
      drop(CMaskedBitmapTransform::MarkedBmpDIB(use.a.get(), use.maskA.get()));
      drop(CMaskedBitmapTransform::MarkHighBitsDIB(use.a.get(), use.maskA.get()));
      drop(CMaskedBitmapTransform::MarkLowBitsDIB(use.b.get(), use.maskB.get()));
    },
    [](Arguments& use) {
      const auto split = [&](CSpiltEmbededDIB& splitter) {
        splitter.Reset(use.a.get(), use.firstMask(), use.at, use.b.get(), use.secondMask(),
                       use.input.byte() % 2 == 0 ? use.at : use.to);
        int found = 0;
        Outputs opaque;
        splitter.SplitOpacity(&opaque.image, &opaque.mask, &opaque.position, &found);
        Outputs transparent;
        splitter.SplitTransparency(&transparent.image, &transparent.mask, &transparent.position, &found);
      };
      CSpiltEmbededDIB indexed;
      split(indexed);
      CSpiltEmbededDIBEx any;
      split(any);
    },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::size_t operation = input.byte() % operations.size();
  Arguments arguments(input);
  operations[operation](arguments);
  return 0;
}
