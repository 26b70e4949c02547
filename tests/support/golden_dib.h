#pragma once

#include "support/golden.h"
#include "support/images.h"

/// Recorded packed DIBs and colours.
namespace test {

inline std::vector<DWORD> hexadecimals(const GoldenLine& line) {
  std::vector<DWORD> values;
  for (const std::int64_t value : line.numbers(16)) values.push_back(static_cast<DWORD>(value));
  return values;
}

/// The colours of a line `colours n ...` or `entries n ...`, whose count is decimal.
inline std::vector<DWORD> coloursOf(const GoldenLine& line) {
  std::vector<DWORD> values = hexadecimals(line);
  values.erase(values.begin());
  return values;
}

/// The packed DIB that starts at the line with the given word, as bytes: header fields, masks, colours, rows
/// of stored pixels. Empty when the case has none.
inline std::vector<BYTE> recordedDib(const GoldenCase& recorded, const std::string& word) {
  std::size_t i = 0;
  while (i < recorded.lines.size() && recorded.lines[i].word != word) ++i;
  if (i == recorded.lines.size()) return {};
  const std::vector<std::int64_t> fields = recorded.lines[i].numbers();
  const auto at = [&](std::size_t field) { return static_cast<DWORD>(fields.at(field)); };
  BITMAPINFOHEADER header{at(0), LONG(fields.at(1)), LONG(fields.at(2)), WORD(at(3)), WORD(at(4)), at(5),
                          at(6), LONG(fields.at(7)), LONG(fields.at(8)), at(9),       at(10)};
  std::vector<BYTE> block(static_cast<std::size_t>(dibkit::layoutOf(&header)->total));
  std::memcpy(block.data(), &header, sizeof(header));
  int y = 0;
  for (++i; i < recorded.lines.size(); ++i) {
    const GoldenLine& line = recorded.lines[i];
    if (line.word == "masks" || line.word == "colours") {
      const std::vector<DWORD> values = line.word == "masks" ? hexadecimals(line) : coloursOf(line);
      std::memcpy(block.data() + sizeof(header), values.data(), values.size() * sizeof(DWORD));
    } else if (line.word == "p") {
      int x = 0;
      for (const DWORD pixel : hexadecimals(line)) {
        setPixel(reinterpret_cast<BITMAPINFOHEADER*>(block.data()), x++, y, pixel);
      }
      ++y;
    } else {
      break;
    }
  }
  return block;
}
inline BITMAPINFOHEADER* dibOf(std::vector<BYTE>& block) {
  return reinterpret_cast<BITMAPINFOHEADER*>(block.data());
}

}  // namespace test
