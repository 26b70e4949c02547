#include <array>
#include <cstring>
#include <string_view>

#include "errors.h"
#include "formats/formats.h"

namespace host {

namespace {

struct Signature {
  std::string_view start;
  std::size_t furtherOffset;
  std::string_view further;
  Animation (*read)(ByteView, Keep);
};

using namespace std::string_view_literals;

constexpr std::array<Signature, 5> signatures{{
    {"\x89PNG\r\n\x1A\n"sv, 0, ""sv, [](ByteView bytes, Keep) { return readPng(bytes); }},
    {"\xFF\xD8\xFF"sv, 0, ""sv, [](ByteView bytes, Keep) { return readJpeg(bytes); }},
    {"GIF8"sv, 5, "a"sv, readGif},
    {"RIFF"sv, 8, "WEBP"sv, readWebp},
    {"BM"sv, 0, ""sv, [](ByteView bytes, Keep) { return readBmp(bytes); }},
}};

bool hasAt(ByteView bytes, std::size_t offset, std::string_view text) {
  return bytes.size() >= offset + text.size() &&
         std::memcmp(bytes.data() + offset, text.data(), text.size()) == 0;
}

}  // namespace

Animation readAnimation(ByteView bytes, Keep keep) {
  if (bytes.empty()) throw FormatError("the file is empty");
  for (const Signature& signature : signatures) {
    if (hasAt(bytes, 0, signature.start) && hasAt(bytes, signature.furtherOffset, signature.further)) {
      return signature.read(bytes, keep);
    }
  }
  throw FormatError("not a PNG, JPEG, GIF, BMP or WebP file");
}

Animation readAnimationFile(const std::string& path, Keep keep) {
  const Bytes bytes = readFile(path);
  try {
    return readAnimation(bytes, keep);
  } catch (const FormatError& error) {
    throw FileError(path, error.what());
  }
}

Picture readPictureFile(const std::string& path) {
  return std::move(readAnimationFile(path, Keep::firstFrame).frames.front().picture);
}

}  // namespace host
