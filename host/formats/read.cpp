#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "host/errors.h"
#include "host/formats/formats.h"

namespace host {

namespace {

struct Signature {
  std::string_view start;
  std::size_t furtherOffset;
  std::string_view further;
  Animation (*read)(ByteView, const ReadOptions&);
};

using namespace std::string_view_literals;

constexpr std::array<Signature, 5> signatures{{
    {"\x89PNG\r\n\x1A\n"sv, 0, ""sv, readPng},
    {"\xFF\xD8"sv, 0, ""sv, readJpeg},
    {"GIF8"sv, 5, "a"sv, readGif},
    {"RIFF"sv, 8, "WEBP"sv, readWebp},
    {"BM"sv, 0, ""sv, readBmp},
}};

bool hasAt(ByteView bytes, std::size_t offset, std::string_view text) {
  return bytes.size() >= offset + text.size() &&
         std::memcmp(bytes.data() + offset, text.data(), text.size()) == 0;
}

const Signature* signatureOf(ByteView bytes) {
  const auto found = std::find_if(signatures.begin(), signatures.end(), [bytes](const Signature& signature) {
    return hasAt(bytes, 0, signature.start) && hasAt(bytes, signature.furtherOffset, signature.further);
  });
  return found == signatures.end() ? nullptr : &*found;
}

}  // namespace

bool isGif(ByteView bytes) {
  const Signature* signature = signatureOf(bytes);
  return signature != nullptr && signature->read == readGif;
}

Animation readAnimation(ByteView bytes, const ReadOptions& options) {
  if (bytes.empty()) throw FormatError("the file is empty");
  const Signature* signature = signatureOf(bytes);
  if (signature == nullptr) throw FormatError("not a PNG, JPEG, GIF, BMP or WebP file");
  return signature->read(bytes, options);
}

}  // namespace host
