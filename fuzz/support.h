#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "dib/view.h"

/// Turns the fuzzer's bytes into arguments. Images come in blocks of exactly the size that their own header
/// describes, so that the sanitizer sees every step outside.
namespace fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

  bool empty() const { return left_ == 0; }
  std::uint8_t byte() {
    if (left_ == 0) return 0;
    --left_;
    return *data_++;
  }
  /// Mostly small, now and then any 32 bits.
  int number() {
    const std::uint8_t kind = byte();
    if (kind < 200) return static_cast<std::int8_t>(byte());
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | byte();
    return static_cast<int>(value);
  }
  POINT point() {
    const int x = number();
    return {x, number()};
  }
  RECT rect() {
    const POINT corner = point();
    const POINT other = point();
    return {corner.x, corner.y, other.x, other.y};
  }

 private:
  const std::uint8_t* data_;
  std::size_t left_;
};

/// An image with a header of the fuzzer's choice, sometimes a hostile one (odd depth, huge biClrUsed,
/// negative size, longer or shorter header). The block is as long as the header says, at least a header, at
/// most 1 MiB: get() is null for headers that describe more.
class Image {
 public:
  /// \param usualDepth the depth that three images out of four have; 0 draws one of the six
  explicit Image(Input& input, int usualDepth = 0) {
    static constexpr int depths[] = {1, 4, 8, 16, 24, 32};
    const std::uint8_t kind = input.byte();
    BITMAPINFOHEADER header{};
    header.biSize = 40;
    header.biPlanes = 1;
    header.biWidth = input.byte() % 40;
    header.biHeight = input.byte() % 40;
    header.biBitCount =
        static_cast<WORD>(usualDepth != 0 && kind % 4 != 0 ? usualDepth : depths[input.byte() % 6]);
    if (header.biBitCount <= 8) header.biClrUsed = input.byte() % 20;
    if (kind >= 240) {
      if (kind & 1) header.biSize = 36U + input.byte();
      if (kind & 2) header.biBitCount = input.byte();
      if (kind & 4) header.biCompression = BI_BITFIELDS;
      if (kind & 8) header.biClrUsed = static_cast<DWORD>(input.number());
      if (kind == 255) header.biHeight = input.number();
    }
    // Some operations read negative sizes as positive ones: the block has room for those rows too.
    BITMAPINFOHEADER positive = header;
    if (header.biHeight < 0) positive.biHeight = header.biHeight == INT32_MIN ? INT32_MAX : -header.biHeight;
    const auto layout = dibkit::layoutOf(&positive);
    if (layout && layout->total > (1 << 20)) return;
    block_.resize(layout ? static_cast<std::size_t>(layout->total) : sizeof(header));
    for (std::size_t i = sizeof(header); i < block_.size() && !input.empty() && i < 4096; ++i)
      block_[i] = input.byte();
    std::memcpy(block_.data(), &header, sizeof(header));
  }
  BITMAPINFOHEADER* get() {
    return block_.empty() ? nullptr : reinterpret_cast<BITMAPINFOHEADER*>(block_.data());
  }

 private:
  std::vector<BYTE> block_;
};

}  // namespace fuzz
