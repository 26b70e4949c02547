// Five stages of every transition and style on one sheet: contact_sheet OUT.png
#include <cctype>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include <dibkit.h>
#include <png.h>

namespace {

constexpr int thumbWidth = 96, thumbHeight = 60, gap = 4, labelHeight = 14, stages = 5, columns = 3;
constexpr int stripWidth = stages * (thumbWidth + gap) + 3 * gap,
              stripHeight = thumbHeight + labelHeight + 2 * gap;
constexpr DWORD paper = 0xFFF4F1EA, ink = 0xFF3A3630;

/// A picture whose rule gives the colour at x and y from 0 to 1.
template <class Rule>
dibkit::OwnedDib paint(int width, int height, Rule&& rule) {
  dibkit::OwnedDib dib(CBitmapCreator::CreateDibImage(width, height, 32, 0));
  dibkit::fillPixels<dibkit::Bgra32>(dibkit::View(dib.get()), [&](int x, int y) {
    return 0xFF000000 | rule((x + 0.5) / width, (y + 0.5) / height);
  });
  return dib;
}

DWORD blend(double share, DWORD a, DWORD b) {
  DWORD mixed = 0;
  for (const int shift : {0, 8, 16}) {
    mixed |= static_cast<DWORD>((a >> shift & 255) * (1 - share) + (b >> shift & 255) * share) << shift;
  }
  return mixed;
}

DWORD night(double x, double y) {
  const double moon = std::hypot((x - 0.72) * 1.6, y - 0.3);
  if (moon < 0.14) return 0xF2EBD2;
  if (y > 0.72 + 0.06 * std::sin(x * 9)) return 0x0B1524;
  return blend(y, 0x1B2A58, 0x4A6A9C);
}

DWORD day(double x, double y) {
  const double sun = std::hypot((x - 0.3) * 1.6, y - 0.35);
  if (sun < 0.17) return 0xFFF6C8;
  if (y > 0.75 + 0.05 * std::sin(x * 7 + 2)) return blend(x, 0x3D7A3A, 0x85A83C);
  if (y > 0.6 + 0.12 * std::sin(x * 5)) return blend(y, 0xB4603E, 0x8C4A5A);
  return blend(y, 0xF7C65A, 0xE8824C);
}

/// Letters of 3 x 5 dots, three bits a row from the top.
int dotsOf(char letter) {
  static constexpr int letters[26] = {025575, 065656, 034443, 065556, 074647, 074644, 034553, 055755, 072227,
                                      011152, 055655, 044447, 057755, 065555, 025552, 065644, 025563, 065655,
                                      034216, 072222, 055557, 055552, 055775, 055255, 055222, 071247};
  if (std::isalpha(static_cast<unsigned char>(letter))) return letters[letter - 'a'];
  return letter == '-' ? 00700 : letter == ':' ? 02020 : 0;
}

void write(const dibkit::OwnedDib& sheet, int left, int top, const std::string& text) {
  const dibkit::View view(sheet.get());
  constexpr int size = 2;
  for (const char letter : text) {
    for (int bit = 0; bit < 15 * size * size; ++bit) {
      const int x = bit % (3 * size), y = bit / (3 * size);
      if (dotsOf(letter) >> (14 - (y / size * 3 + x / size)) & 1) {
        dibkit::Bgra32::put(view.row(top + y), left + x, ink);
      }
    }
    left += 4 * size;
  }
}

bool save(const dibkit::OwnedDib& sheet, const char* file) {
  std::vector<png_byte> bytes;
  dibkit::forEachPixel(sheet.get(), [&](int, int, dibkit::Rgb colour) {
    bytes.insert(bytes.end(), {colour.red, colour.green, colour.blue});
  });
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(sheet->biWidth);
  image.height = static_cast<png_uint_32>(sheet->biHeight);
  image.format = PNG_FORMAT_RGB;
  return png_image_write_to_file(&image, file, 0, bytes.data(), 0, nullptr) != 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return std::fprintf(stderr, "usage: contact_sheet OUT.png\n"), 2;
  struct Strip {
    const dibkit::Effect* effect;
    int style;
  };
  std::vector<Strip> strips;
  for (const dibkit::Effect& effect : dibkit::effects()) {
    for (int style = 0; style < std::max(1, static_cast<int>(effect.styles.size())); ++style) {
      strips.push_back({&effect, style});
    }
  }
  const int rows = (static_cast<int>(strips.size()) + columns - 1) / columns;
  const dibkit::OwnedDib incoming = paint(thumbWidth, thumbHeight, day);
  const dibkit::OwnedDib outgoing = paint(thumbWidth, thumbHeight, night);
  const dibkit::OwnedDib sheet = paint(columns * stripWidth + 3 * gap, rows * stripHeight + 3 * gap,
                                       [](double, double) { return paper; });
  for (int i = 0; i < static_cast<int>(strips.size()); ++i) {
    const auto& [effect, style] = strips[static_cast<std::size_t>(i)];
    const int left = 3 * gap + i / rows * stripWidth, top = 3 * gap + i % rows * stripHeight;
    std::string name = effect->name;
    if (!effect->styles.empty())
      name += std::string(": ") + effect->styles[static_cast<std::size_t>(style)].name;
    write(sheet, left, top, name);
    for (int k = 0; k < stages; ++k) {
      const dibkit::OwnedDib frame = effect->frame(incoming.get(), outgoing.get(), style, 0.1 + 0.2 * k);
      const POINT place{left + k * (thumbWidth + gap), top + labelHeight};
      CDIB32::CombineBlock(sheet.get(), {0, 0}, frame.get(), place, 0);
    }
  }
  return save(sheet, arguments[1]) ? 0 : 1;
}
