#include <map>

#include <gtest/gtest.h>

#include "platform/recorded.h"

namespace {

using test::GoldenCase;
using test::Rows;

/// The box, and its code, as GetRgnBox gives them.
void expectBox(const GoldenCase& recorded, HRGN region) {
  const std::vector<std::int64_t> box = recorded.at("box").numbers();
  RECT rect{-7, -7, -7, -7};
  EXPECT_EQ(GetRgnBox(region, &rect), box[0]);
  EXPECT_EQ(rect, test::rectOf(box, 1));
}

void expectRegion(const GoldenCase& recorded, HRGN region) {
  expectBox(recorded, region);
  EXPECT_EQ(test::joined(test::rowsOf(region)), test::recordedRows(recorded));
}

void shape(const GoldenCase& recorded) {
  const test::OwnedRegion region = test::shapeOf(recorded.at("shape").rest);
  EXPECT_EQ(region != nullptr, test::numberOf(recorded, "made") == 1);
  expectRegion(recorded, region.get());
}

void boxOnly(const GoldenCase& recorded) {
  expectBox(recorded, test::shapeOf(recorded.at("shape").rest).get());
}

void combination(const GoldenCase& recorded) {
  const test::OwnedRegion a = test::shapeOf(recorded.at("a").rest), b = test::shapeOf(recorded.at("b").rest);
  const test::OwnedRegion other(CreateRectRgn(0, 0, 1, 1));
  const std::string& mode = recorded.at("mode").rest;
  const HRGN destination = mode.find("dest=a") != std::string::npos ? a.get() : other.get();
  EXPECT_EQ(CombineRgn(destination, a.get(), b.get(), std::stoi(mode)), test::numberOf(recorded, "ret"));
  expectRegion(recorded, destination);
}

void nullCombination(const GoldenCase& recorded) {
  const test::OwnedRegion region(CreateRectRgn(0, 0, 1, 1));
  const HRGN r = region.get();
  const std::vector<std::int64_t> results{CombineRgn(r, r, nullptr, RGN_OR),
                                          CombineRgn(r, nullptr, r, RGN_OR),
                                          CombineRgn(nullptr, r, r, RGN_OR)};
  EXPECT_EQ(results, recorded.at("ret").numbers());
  expectRegion(recorded, r);
}

void move(const GoldenCase& recorded) {
  const test::OwnedRegion region = test::shapeOf(recorded.at("a").rest);
  EXPECT_EQ(OffsetRgn(region.get(), test::numberOf(recorded, "by"), test::numberOf(recorded, "by", 1)),
            test::numberOf(recorded, "ret"));
  expectRegion(recorded, region.get());
}

void rectangleList(const GoldenCase& recorded) {
  const std::vector<std::int64_t> list = recorded.at("list").numbers();
  std::vector<DWORD> block(1632 / sizeof(DWORD));  // room for every list
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(list[0]), 0,
               test::rectOf(recorded.at("bound").numbers())};
  for (std::size_t i = 1; i < list.size(); ++i) block[7 + i] = static_cast<DWORD>(list[i]);
  const test::OwnedRegion region(ExtCreateRegion(nullptr, 1632, data));
  EXPECT_EQ(region != nullptr, test::numberOf(recorded, "made") == 1);
  expectRegion(recorded, region.get());
}

void points(const GoldenCase& recorded) {
  const test::OwnedRegion region = test::shapeOf(recorded.at("a").rest);
  for (const test::GoldenLine& line : recorded.lines) {
    if (line.word != "pt") continue;
    const std::vector<std::int64_t> point = line.numbers();
    EXPECT_EQ(PtInRegion(region.get(), static_cast<int>(point[0]), static_cast<int>(point[1])), point[2])
        << line.rest;
  }
}

void nullBox(const GoldenCase& recorded) { expectBox(recorded, nullptr); }

TEST(RecordedRegions, AllExact) {
  const std::map<std::string, int> expected{{"region", 1331}, {"boxonly", 79},    {"combine", 188},
                                            {"offset", 35},   {"extcreate", 40},  {"points", 35},
                                            {"box-null", 1},  {"combine-null", 1}};
  EXPECT_EQ(test::checkRecorded("regions.txt", {{"region", shape},
                                                {"boxonly", boxOnly},
                                                {"combine", combination},
                                                {"offset", move},
                                                {"extcreate", rectangleList},
                                                {"points", points},
                                                {"box-null", nullBox},
                                                {"combine-null", nullCombination}}),
            expected);
}

}  // namespace
