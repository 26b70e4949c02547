#include <cstring>
#include <map>

#include <gtest/gtest.h>

#include "platform/recorded.h"

namespace {

using test::GoldenCase;
using test::Rows;

/// A recorded `box` line beside the region's own.
void expectBox(const GoldenCase& recorded, HRGN region) {
  const std::vector<std::int64_t> box = recorded.at("box").numbers();
  RECT rect{-7, -7, -7, -7};
  EXPECT_EQ(GetRgnBox(region, &rect), box[0]);
  const RECT expected = test::rectOf(box, 1);
  EXPECT_TRUE(EqualRect(&rect, &expected));
}

void expectRegion(const GoldenCase& recorded, HRGN region) {
  expectBox(recorded, region);
  EXPECT_EQ(test::joined(test::rowsOf(region)), test::recordedRows(recorded));
}

void shape(const GoldenCase& recorded) {
  const test::OwnedRegion region = test::shapeOf(recorded.at("shape").rest);
  EXPECT_EQ(region != nullptr, recorded.at("made").numbers()[0] == 1);
  expectRegion(recorded, region.get());
}

void boxOnly(const GoldenCase& recorded) {
  expectBox(recorded, test::shapeOf(recorded.at("shape").rest).get());
}

void combination(const GoldenCase& recorded) {
  const test::OwnedRegion a = test::shapeOf(recorded.at("a").rest);
  const test::OwnedRegion b = test::shapeOf(recorded.at("b").rest);
  const test::OwnedRegion other(CreateRectRgn(0, 0, 1, 1));
  const std::string& mode = recorded.at("mode").rest;
  const HRGN destination = mode.find("dest=a") != std::string::npos ? a.get() : other.get();
  EXPECT_EQ(CombineRgn(destination, a.get(), b.get(), std::stoi(mode)), recorded.at("ret").numbers()[0]);
  expectRegion(recorded, destination);
}

void nullCombination(const GoldenCase& recorded) {
  const test::OwnedRegion region(CreateRectRgn(0, 0, 1, 1));
  const std::vector<std::int64_t> results = recorded.at("ret").numbers();
  EXPECT_EQ(CombineRgn(region.get(), region.get(), nullptr, RGN_OR), results[0]);
  EXPECT_EQ(CombineRgn(region.get(), nullptr, region.get(), RGN_OR), results[1]);
  EXPECT_EQ(CombineRgn(nullptr, region.get(), region.get(), RGN_OR), results[2]);
  expectRegion(recorded, region.get());
}

void move(const GoldenCase& recorded) {
  const test::OwnedRegion region = test::shapeOf(recorded.at("a").rest);
  const std::vector<std::int64_t> by = recorded.at("by").numbers();
  EXPECT_EQ(OffsetRgn(region.get(), static_cast<int>(by[0]), static_cast<int>(by[1])),
            recorded.at("ret").numbers()[0]);
  expectRegion(recorded, region.get());
}

void rectangleList(const GoldenCase& recorded) {
  constexpr DWORD byteCount = 1632;
  std::vector<DWORD> block(byteCount / sizeof(DWORD));
  auto* data = reinterpret_cast<RGNDATA*>(block.data());
  const std::vector<std::int64_t> list = recorded.at("list").numbers();
  data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, static_cast<DWORD>(list[0]), 0,
               test::rectOf(recorded.at("bound").numbers(), 0)};
  for (std::size_t i = 1; i < list.size(); i += 4) {
    const RECT rect = test::rectOf(list, i);
    std::memcpy(data->Buffer + (i - 1) / 4 * sizeof(RECT), &rect, sizeof(RECT));
  }
  const test::OwnedRegion region(ExtCreateRegion(nullptr, byteCount, data));
  EXPECT_EQ(region != nullptr, recorded.at("made").numbers()[0] == 1);
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
  const std::map<std::string, void (*)(const GoldenCase&)> checks{
      {"region", shape},
      {"boxonly", boxOnly},
      {"combine", combination},
      {"offset", move},
      {"extcreate", rectangleList},
      {"points", points},
      {"box-null", nullBox},
      {"combine-null", nullCombination},
  };
  const std::map<std::string, int> expected{{"region", 1331}, {"boxonly", 79},    {"combine", 188},
                                            {"offset", 35},   {"extcreate", 40},  {"points", 35},
                                            {"box-null", 1},  {"combine-null", 1}};
  EXPECT_EQ(test::checkRecorded("regions.txt", checks), expected);
}

}  // namespace
