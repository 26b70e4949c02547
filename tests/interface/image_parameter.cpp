#include "image_parameter.h"

#include <sstream>

namespace interface_test {
namespace {

/// Of the block that a header describes, its sizes taken without their signs; a little more than the header
/// for blocks that nobody has.
std::size_t bytesOf(const BITMAPINFOHEADER& header) {
  const double colours = header.biBitCount > 8   ? 0.0
                         : header.biClrUsed != 0 ? header.biClrUsed
                                                 : 1 << header.biBitCount;
  const double stride = std::floor((std::fabs(header.biWidth) * header.biBitCount + 31) / 32) * 4;
  const double size = std::max<double>(header.biSize, sizeof(header)) +
                      (header.biCompression == BI_BITFIELDS ? 12 : 0) + colours * 4 +
                      stride * std::fabs(header.biHeight);
  return size < 1e6 ? static_cast<std::size_t>(size) : sizeof(header) + 8;
}

/// How a header differs from that of a right image, and the field of the rule that judges it.
struct Variant {
  Verdict ImageRule::*verdict;
  LONG width = 5, height = 4;
  DWORD size = 40, coloursUsed = 0, compression = BI_RGB;
};
constexpr Variant variants[] = {
#include "image_variants.inc"
};

}  // namespace

DibBlock::DibBlock(const BITMAPINFOHEADER& header, int salt) {
  const std::size_t bytes = bytesOf(header);
  bytes_.resize(guard + bytes + guard, 0xA5);
  BYTE* start = bytes_.data() + guard;
  for (std::size_t i = 0; i < bytes; ++i) start[i] = static_cast<BYTE>(i * i / 7 + i * 29 + salt * 77);
  std::memcpy(start, &header, sizeof(header));
  if (header.biBitCount == 1 && bytes > 48) std::memcpy(start + header.biSize, "\0\0\0\0\xFF\xFF\xFF", 8);
  if (header.biBitCount == 32 && header.biWidth == 5) {
    std::memcpy(start + bytes - 20, &topLeft, sizeof(topLeft));
    start[bytes - 13] = 0;
    start[bytes - 9] = 255;
  }
  original_ = bytes_;
}

ImageParameter::ImageParameter(const ImageRule& rule) : changes_(rule.changed) {
  static int canvases = 0;
  const int salt = changes_ ? ++canvases : 0;
  const int usual = rule.depths.front();
  const auto add = [&](Verdict verdict, int depth, const Variant& v) {
    const DWORD compression = v.compression != BI_RGB ? v.compression : rule.compression;
    values_.push_back({verdict, DibBlock({v.size, v.width, v.height, 1, static_cast<WORD>(depth), compression,
                                          0, 0, 0, v.coloursUsed, 0},
                                         salt)});
  };
  add(V::right, usual, {});
  values_.push_back({rule.noImage, std::nullopt});
  for (const int depth : {0, 1, 2, 3, 4, 8, 12, 16, 24, 32, 48}) {
    const bool known = std::count(rule.depths.begin(), rule.depths.end(), depth) != 0;
    if (depth != usual) add(known ? V::taken : depth < usual ? rule.shallower : rule.deeper, depth, {});
  }
  for (const Variant& variant : variants) {
    // Images without a palette do not look at the number of its entries.
    const bool ignored = variant.coloursUsed != 0 && usual > 8;
    add(ignored ? V::taken : rule.*variant.verdict, usual, variant);
  }
}

std::string ImageParameter::name(std::size_t value) const {
  if (!values_[value].block) return "null";
  const BITMAPINFOHEADER& h = *values_[value].block->dib();
  std::ostringstream text;
  text << h.biWidth << 'x' << h.biHeight << ", " << h.biBitCount << " bits, header of " << h.biSize << ", "
       << h.biClrUsed << " colours, compression " << h.biCompression;
  return text.str();
}

std::string ImageParameter::settle(Verdict call) {
  if (!chosen_->block) return "";
  DibBlock& block = *chosen_->block;
  if (!block.changed()) return changes_ && call == V::right ? "did not change" : "";
  const bool around = block.changedAround();
  block.restore();
  if (around) return "was written around";
  return changes_ && (call == V::right || call == V::taken) ? "" : "was changed";
}

}  // namespace interface_test
