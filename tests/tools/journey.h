#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Runs the program as a user does, and reads what it wrote without the program's own code.
namespace journey {

using Bytes = std::vector<std::uint8_t>;

/// A folder that goes away with the object.
class Folder {
 public:
  Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder();

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }
  /// Names of all that is in it, sorted.
  std::vector<std::string> names() const;

 private:
  std::string path_;
};

struct Ended {
  int status = 0;  ///< exit status, or 1000 + the signal that ended it
  std::string out;
  std::string err;
};

/// Commands that write files are given --force: journeys go over their own results again.
/// \param standardInput a file to read as standard input
Ended run(const std::vector<std::string>& arguments, const std::string& standardInput = "/dev/null");

void write(const std::string& path, const Bytes& bytes);
Bytes read(const std::string& path);

/// A picture for the tests: 0xAARRGGBB, lines from the top.
struct Image {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;

  std::uint32_t at(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
  bool operator==(const Image&) const = default;
};

Image flat(int width, int height, std::uint32_t colour);
/// Each pixel by a rule of its place.
template <class Rule>
Image imageBy(int width, int height, Rule rule) {
  Image image{width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) image.pixels.push_back(rule(x, y));
  }
  return image;
}

void writePng(const std::string& path, const Image& image);
Image readPng(const std::string& path);

/// What a viewer shows, frame by frame. Pixels that nothing was drawn on are 0.
struct Shown {
  std::vector<Image> frames;
  std::vector<int> delays;
  std::vector<long> storedPixels;  ///< of each frame's own rectangle
  std::optional<int> loops;
};

/// Plays a GIF; fails the test when it is damaged. Slow and plain, and no code of another GIF library.
Shown play(const std::string& path);

}  // namespace journey
