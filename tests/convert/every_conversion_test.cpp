#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "convert/convert.h"
#include "support/images.h"

/// What all conversions that report their progress have in common.
namespace {

using test::OwnedDib;
using Convert = CBitmapConverter;

struct Conversion {
  const char* name;
  int from;
  std::function<BITMAPINFOHEADER*(BITMAPINFOHEADER*, CQorCommonProgress*)> convert;
};

template <auto operation>
BITMAPINFOHEADER* withoutMap(BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  return operation(dib, nullptr, progress);
}
template <auto operation, int number>
BITMAPINFOHEADER* withNumber(BITMAPINFOHEADER* dib, CQorCommonProgress* progress) {
  return operation(dib, number, progress);
}

const Conversion conversions[] = {
    {"1 to 24", 1, Convert::Convert1BitsTo24Bits},
    {"4 to 24", 4, Convert::Convert4BitsTo24Bits},
    {"8 to 24", 8, Convert::Convert8BitsTo24Bits},
    {"16 to 24", 16, Convert::Convert16BitsTo24Bits},
    {"32 to 24", 32, Convert::Convert32BitsTo24Bits},
    {"1 to 16", 1, Convert::Convert1BitsTo16Bits},
    {"4 to 16", 4, Convert::Convert4BitsTo16Bits},
    {"8 to 16", 8, Convert::Convert8BitsTo16Bits},
    {"24 to 16", 24, Convert::Convert24BitsTo16Bits},
    {"32 to 16", 32, Convert::Convert32BitsTo16Bits},
    {"24 to 32", 24, withNumber<Convert::Convert24BitsTo32Bits, 0>},
    {"exactly to 1", 24, withNumber<Convert::ConvertTrueDibTo1BitsDib, 2>},
    {"exactly to 4", 24, withNumber<Convert::ConvertTrueDibTo4BitsDib, 2>},
    {"exactly to 8", 24, withNumber<Convert::ConvertTrueDibTo8BitsDib, 2>},
    {"exactly to the fewest bits", 24, Convert::ConvertTrueDibToLowBitsDib},
    {"1 to 4", 1, withoutMap<Convert::Convert1BitsDibTo4BitsDib>},
    {"1 to 8", 1, withoutMap<Convert::Convert1BitsDibTo8BitsDib>},
    {"4 to 8", 4, withoutMap<Convert::Convert4BitsDibTo8BitsDib>},
    {"8 to 4", 8, withoutMap<Convert::Convert8BitsDibTo4BitsDib>},
    {"8 to 1", 8, withoutMap<Convert::Convert8BitsDibTo1BitsDib>},
    {"4 to 1", 4, withoutMap<Convert::Convert4BitsDibTo1BitsDib>},
    {"gray", 24, Convert::Convert24BitsDIBTo256GraysDIB},
    {"black and white", 8, withNumber<Convert::Convert8BitsGrayDibTo1BitsDib, 128>},
};

TEST(EveryConversion, ReportsEachLineAndGivesNullWhenCancelled) {
  for (const Conversion& conversion : conversions) {
    SCOPED_TRACE(conversion.name);
    const OwnedDib source = test::image(5, 3, conversion.from);
    test::Progress progress;
    EXPECT_TRUE(OwnedDib(conversion.convert(source.get(), &progress)));
    EXPECT_EQ(progress.fractions, (std::vector<float>{0.33F, 0.66F, 1.0F}));
    for (const int cancelAt : {0, 2}) {  // the last line counts as well
      test::Progress cancelling(cancelAt);
      EXPECT_EQ(conversion.convert(source.get(), &cancelling), nullptr);
      EXPECT_EQ(cancelling.fractions.size(), static_cast<std::size_t>(cancelAt) + 1);
    }
  }
}

TEST(EveryConversion, IsDoneAtOnceWithAnImageWithoutPixels) {
  for (const Conversion& conversion : conversions) {
    SCOPED_TRACE(conversion.name);
    for (const auto& [width, height] : {std::pair{0, INT32_MAX}, {INT32_MAX, 0}}) {
      test::Progress progress;
      const OwnedDib result(conversion.convert(test::image(width, height, conversion.from).get(), &progress));
      ASSERT_TRUE(result);
      EXPECT_EQ(result->biWidth, width);
      EXPECT_EQ(result->biHeight, height);
      EXPECT_TRUE(progress.fractions.empty());
    }
  }
}

}  // namespace
