#include "journey.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/wait.h>
#include <unistd.h>

namespace journey {

namespace fs = std::filesystem;

Folder::Folder() {
  std::string name = (fs::temp_directory_path() / "dibkit-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

Folder::~Folder() {
  std::error_code ignored;
  fs::permissions(path_, fs::perms::owner_all, ignored);
  fs::remove_all(path_, ignored);
}

std::vector<std::string> Folder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

namespace {

std::string text(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

[[noreturn]] void become(const std::vector<std::string>& arguments, const std::string& in,
                         const std::string& out, const std::string& err) {
  ::dup2(::open(in.c_str(), O_RDONLY), STDIN_FILENO);
  ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
  ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
  std::vector<char*> list;
  std::string program = DIBKIT_PROGRAM;
  list.push_back(program.data());
  for (const std::string& argument : arguments) list.push_back(const_cast<char*>(argument.c_str()));
  std::string force = "--force";
  const bool writes = std::find(arguments.begin(), arguments.end(), "-o") != arguments.end();
  if (writes) list.push_back(force.data());
  list.push_back(nullptr);
  ::execv(list[0], list.data());
  ::_exit(127);
}

}  // namespace

Ended run(const std::vector<std::string>& arguments, const std::string& standardInput) {
  const Folder folder;
  const pid_t child = ::fork();
  if (child == 0) become(arguments, standardInput, folder / "out", folder / "err");
  int status = 0;
  ::waitpid(child, &status, 0);
  Ended ended;
  ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  ended.out = text(folder / "out");
  ended.err = text(folder / "err");
  return ended;
}

void write(const std::string& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

Bytes read(const std::string& path) {
  const std::string content = text(path);
  return {content.begin(), content.end()};
}

Image flat(int width, int height, std::uint32_t colour) {
  return imageBy(width, height, [colour](int, int) { return colour; });
}

void writePng(const std::string& path, const Image& image) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = PNG_FORMAT_BGRA;
  ASSERT_NE(png_image_write_to_file(&png, path.c_str(), 0, image.pixels.data(), 0, nullptr), 0)
      << png.message;
}

Image readPng(const std::string& path) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  Image image;
  if (png_image_begin_read_from_file(&png, path.c_str()) != 0) {
    png.format = PNG_FORMAT_BGRA;
    image = flat(static_cast<int>(png.width), static_cast<int>(png.height), 0);
    png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr);
  }
  EXPECT_EQ(png.warning_or_error, 0u) << path << ": " << png.message;
  return image;
}

}  // namespace journey
