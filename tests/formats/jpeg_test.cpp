#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>
#include <jpeglib.h>

#include "formats/shown.h"

namespace {

using namespace shown;

/// Flat blocks of 8 x 8 come back exactly: the letters are their grays. \param scans progressive
Bytes jpegOf(const Strings& blocks, const Bytes& exif = {}, bool scans = false) {
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&jpeg, &buffer, &size);
  jpeg.image_width = static_cast<JDIMENSION>(8 * blocks.front().size());
  jpeg.image_height = static_cast<JDIMENSION>(8 * blocks.size());
  jpeg.input_components = 1;
  jpeg.in_color_space = JCS_GRAYSCALE;
  jpeg_set_defaults(&jpeg);
  jpeg_set_quality(&jpeg, 100, TRUE);
  if (scans) jpeg_simple_progression(&jpeg);
  jpeg_start_compress(&jpeg, TRUE);
  if (!exif.empty()) jpeg_write_marker(&jpeg, JPEG_APP0 + 1, exif.data(), static_cast<unsigned>(exif.size()));
  for (JDIMENSION y = 0; y < jpeg.image_height; ++y) {
    Bytes line;
    for (const char gray : blocks[y / 8])
      line.insert(line.end(), 8, static_cast<std::uint8_t>(40 * (gray - '0')));
    JSAMPROW row = line.data();
    jpeg_write_scanlines(&jpeg, &row, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  const std::unique_ptr<unsigned char, void (*)(void*)> owner(buffer, std::free);
  return {buffer, buffer + size};
}

std::string blocksOf(const Bytes& file) {
  return textOf(host::readAnimation(file, {}).frames.front().picture, 8);
}

const Strings six{"12", "34", "56"};

/// The picture of those blocks, pixel by pixel.
std::string enlarged(const Strings& blocks) {
  std::string text;
  for (const std::string& line : blocks) {
    for (int i = 0; i < 8; ++i) {
      text += text.empty() ? "" : "/";
      for (const char gray : line) text.append(8, gray);
    }
  }
  return text;
}

TEST(Jpeg, IsUpright) {
  // Line 0 and column 0 of the stored picture are, in order: top and left, top and right, bottom and right,
  // bottom and left, left and top, right and top, right and bottom, left and bottom; there is no ninth.
  const Strings expected{"12/34/56", "21/43/65", "65/43/21", "56/34/12", "135/246",
                         "531/642",  "642/531",  "246/135",  "12/34/56"};
  const Bytes mark{'E', 'x', 'i', 'f', 0, 0};
  for (int orientation = 1; orientation <= 9; ++orientation) {
    const Bytes exif = joined({mark, exifOf(orientation, orientation % 2 == 0)});
    EXPECT_EQ(blocksOf(jpegOf(six, exif)), expected[static_cast<std::size_t>(orientation - 1)]);
  }
  EXPECT_EQ(blocksOf(jpegOf(six, without(joined({mark, exifOf(6)}), 12))), "12/34/56")
      << "Exif data that end too soon";
}

TEST(Jpeg, ShowsWhatViewersShow) {
  const Bytes whole = jpegOf(six);
  const Bytes data(whole.begin() + 2, whole.end());
  Bytes gap = whole;
  gap.erase(gap.end() - 6, gap.end() - 2);
  const Sample samples[] = {
      {"whole", whole, {enlarged(six)}},
      {"progressive", jpegOf(six, {}, true), {enlarged(six)}},
      {"stray bytes behind its start",
       joined({{0xFF, 0xD8, 0, 7}, data}),
       {enlarged(six)},
       "JPEG: there are stray bytes between its parts"},
      {"no end", without(whole, 2), {enlarged(six)}, "the file is truncated"},
      {"nothing but its start", {0xFF, 0xD8, 0xFF, 0xE0}, {}, "the file is truncated"},
      {"another kind of file that starts like one", {0xFF, 0xD8, 'x', 'y'}, {}, "the file is truncated"},
  };
  for (const Sample& sample : samples) expectShown(sample);
  const host::Animation lost = host::readAnimation(gap, {});
  EXPECT_EQ(lost.warnings, Strings{"JPEG: the data are damaged"});
  EXPECT_EQ(textOf(lost.frames.front().picture, 8).substr(0, 5), "12/34") << "what is in front of the gap";
}

TEST(Jpeg, CutAtEveryByte) {
  // The decoder fills what is missing, with anything: what is in front of that is right, and ever more.
  const std::string whole = "12/34/56";
  std::size_t right = 0;
  for (const Strings& frames : shownAtEveryLength(jpegOf(six), 8)) {
    if (frames.empty()) continue;
    const auto different =
        std::mismatch(whole.begin(), whole.end(), frames.front().begin(), frames.front().end()).first;
    const auto now = static_cast<std::size_t>(different - whole.begin());
    EXPECT_GE(now, right);
    right = now;
  }
  EXPECT_EQ(right, whole.size());
}

}  // namespace
