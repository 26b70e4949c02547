#include <algorithm>
#include <stdexcept>

#include <gtest/gtest.h>

#include "gif_parts.h"
#include "journey.h"

namespace journey {

namespace {

/// Reads a file's bytes in order; throws std::out_of_range at their end.
struct Reader {
  const Bytes& bytes;
  std::size_t at = 0;

  int byte() { return bytes.at(at++); }
  int word() {
    const int low = byte();
    return low | byte() << 8;
  }
  /// The contents of blocks up to the empty one, put together.
  Bytes blocks() {
    Bytes all;
    for (int size = byte(); size > 0; size = byte()) {
      for (; size > 0; --size) all.push_back(static_cast<std::uint8_t>(byte()));
    }
    return all;
  }
  /// \param flags bit 7: there is one; bits 0 to 2: the entries are 2 to the power of one more than this
  std::vector<std::uint32_t> palette(int flags) {
    std::vector<std::uint32_t> colours((flags & 0x80) != 0 ? std::size_t{2} << (flags & 7) : 0);
    for (std::uint32_t& colour : colours) {
      colour = 0xFF;
      for (int channel = 0; channel < 3; ++channel) colour = colour << 8 | static_cast<unsigned>(byte());
    }
    return colours;
  }
};

/// Undoes the LZW compression. The table holds whole strings.
Bytes unpacked(const Bytes& data, int symbolBits) {
  const std::size_t clear = std::size_t{1} << symbolBits;
  std::vector<Bytes> table;
  Bytes all;
  Bytes last;
  for (std::size_t bit = 0, width = static_cast<std::size_t>(symbolBits) + 1;;) {
    std::size_t code = 0;
    for (std::size_t i = 0; i < width; ++i, ++bit)
      code |= static_cast<std::size_t>(data.at(bit / 8) >> bit % 8 & 1) << i;
    if (code == clear + 1) return all;
    if (code == clear) {
      table.assign(clear + 2, {});
      for (std::size_t symbol = 0; symbol < clear; ++symbol) table[symbol] = {std::uint8_t(symbol)};
      width = static_cast<std::size_t>(symbolBits) + 1;
      last.clear();
      continue;
    }
    if (!last.empty() && table.size() < 4096) {
      last.push_back(code < table.size() ? table[code].front() : last.front());
      table.push_back(last);
      if (table.size() == std::size_t{1} << width && width < 12) ++width;
    }
    last = table.at(code);
    all.insert(all.end(), last.begin(), last.end());
  }
}

struct Player {
  Reader file;
  Shown shown{};
  Image canvas{};
  std::vector<std::uint32_t> screenPalette{};
  int disposal = unspecified;
  int delay = 0;
  int transparent = -1;

  void screen() {
    file.at = 6;
    const int width = file.word();
    canvas = flat(width, file.word(), 0);
    const int flags = file.byte();
    file.at += 2;
    screenPalette = file.palette(flags);
  }

  void extension() {
    const int kind = file.byte();
    const Bytes bytes = file.blocks();
    if (kind == 0xF9) {
      disposal = bytes.at(0) >> 2 & 7;
      delay = bytes.at(1) | bytes.at(2) << 8;
      transparent = (bytes.at(0) & 1) != 0 ? bytes.at(3) : -1;
    }
    if (kind == 0xFF && std::string(bytes.begin(), bytes.end()).starts_with("NETSCAPE2.0\1"))
      shown.loops = bytes.at(12) | bytes.at(13) << 8;
  }

  void image() {
    const int left = file.word();
    const int top = file.word();
    const int width = file.word();
    const int height = file.word();
    const int flags = file.byte();
    const std::vector<std::uint32_t> own = file.palette(flags);
    const std::vector<std::uint32_t>& palette = own.empty() ? screenPalette : own;
    const int symbolBits = file.byte();
    const Bytes indices = unpacked(file.blocks(), symbolBits);
    const Image before = canvas;
    const auto onCanvas = [&](int x, int y) { return left + x < canvas.width && top + y < canvas.height; };
    const auto place = [&](int x, int y) { return std::size_t((top + y) * canvas.width + left + x); };
    std::size_t next = 0;
    for (const int y : lineOrder(height, (flags & 0x40) != 0)) {
      for (int x = 0; x < width; ++x) {
        const int index = indices.at(next++);
        if (index != transparent && onCanvas(x, y))
          canvas.pixels[place(x, y)] = palette.at(std::size_t(index));
      }
    }
    shown.frames.push_back(canvas);
    shown.delays.push_back(delay);
    shown.storedPixels.push_back(long{width} * height);
    for (int y = 0; disposal == toBackground && y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        if (onCanvas(x, y)) canvas.pixels[place(x, y)] = 0;
      }
    }
    if (disposal == toPrevious) canvas = before;
    disposal = unspecified;
    delay = 0;
    transparent = -1;
  }
};

}  // namespace

Shown play(const std::string& path) {
  const Bytes bytes = read(path);
  Player player{{bytes}};
  try {
    player.screen();
    for (int kind = player.file.byte(); kind != 0x3B; kind = player.file.byte()) {
      if (kind != 0x21 && kind != 0x2C) throw std::out_of_range("an unknown block");
      kind == 0x21 ? player.extension() : player.image();
    }
  } catch (const std::out_of_range& error) {
    ADD_FAILURE() << path << " is no GIF: " << error.what();
  }
  return player.shown;
}

}  // namespace journey
