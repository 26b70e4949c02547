#include "journey.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <gif_lib.h>
#include <gtest/gtest.h>
#include <png.h>
#include <signal.h>
#include <sys/resource.h>
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
  list.push_back(nullptr);
  // Shells start what runs in their background with this signal ignored.
  ::signal(SIGINT, SIG_DFL);
  ::execv(list[0], list.data());
  ::_exit(127);
}

/// A program that is only starting does not catch Ctrl-C yet.
void waitUntilItCatches(pid_t child) {
  const std::string path = "/proc/" + std::to_string(child) + "/status";
  for (int i = 0; i < 2000; ++i) {
    std::ifstream status(path);
    for (std::string line; std::getline(status, line);) {
      const bool caught =
          line.starts_with("SigCgt:") && (std::stoull(line.substr(7), nullptr, 16) >> (SIGINT - 1) & 1) != 0;
      if (caught) return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

}  // namespace

Ended run(const std::vector<std::string>& arguments, const Input& input) {
  const Folder folder;
  const std::string in = input.standardInput.empty() ? "/dev/null" : input.standardInput;
  const pid_t child = ::fork();
  const std::string out = input.standardOutput.empty() ? folder / "out" : input.standardOutput;
  if (child == 0) become(arguments, in, out, folder / "err");
  if (input.interruptAfter >= 0) {
    waitUntilItCatches(child);
    std::this_thread::sleep_for(std::chrono::milliseconds(input.interruptAfter));
    ::kill(child, SIGINT);
  }
  int status = 0;
  rusage usage{};
  ::wait4(child, &status, 0, &usage);
  Ended ended;
  ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  ended.out = text(folder / "out");
  ended.err = text(folder / "err");
  ended.mostMemory = usage.ru_maxrss;
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

namespace {

struct GifCloser {
  void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};

void draw(Image& canvas, const SavedImage& frame, const ColorMapObject* screenColours, int transparent) {
  const GifImageDesc& place = frame.ImageDesc;
  const ColorMapObject* colours = place.ColorMap != nullptr ? place.ColorMap : screenColours;
  for (int y = 0; y < place.Height; ++y) {
    for (int x = 0; x < place.Width; ++x) {
      const int index = frame.RasterBits[y * place.Width + x];
      if (index == transparent || place.Left + x >= canvas.width || place.Top + y >= canvas.height) continue;
      const GifColorType colour = colours->Colors[index];
      canvas.pixels[static_cast<std::size_t>((place.Top + y) * canvas.width + place.Left + x)] =
          0xFF000000U | unsigned{colour.Red} << 16 | unsigned{colour.Green} << 8 | colour.Blue;
    }
  }
}

void clear(Image& canvas, const GifImageDesc& place) {
  for (int y = place.Top; y < std::min(canvas.height, place.Top + place.Height); ++y) {
    for (int x = place.Left; x < std::min(canvas.width, place.Left + place.Width); ++x) {
      canvas.pixels[static_cast<std::size_t>(y * canvas.width + x)] = 0;
    }
  }
}

}  // namespace

Shown play(const std::string& path) {
  Shown shown;
  const std::unique_ptr<GifFileType, GifCloser> gif(DGifOpenFileName(path.c_str(), nullptr));
  if (!gif || DGifSlurp(gif.get()) != GIF_OK) {
    ADD_FAILURE() << path << " is no GIF";
    return shown;
  }
  Image canvas = flat(gif->SWidth, gif->SHeight, 0);
  for (int i = 0; i < gif->ImageCount; ++i) {
    const SavedImage& frame = gif->SavedImages[i];
    GraphicsControlBlock control{0, false, 0, NO_TRANSPARENT_COLOR};
    DGifSavedExtensionToGCB(gif.get(), i, &control);
    for (int e = 0; e + 1 < frame.ExtensionBlockCount; ++e) {
      const ExtensionBlock& block = frame.ExtensionBlocks[e];
      if (block.Function == APPLICATION_EXT_FUNC_CODE && std::memcmp(block.Bytes, "NETSCAPE2.0", 11) == 0) {
        const ExtensionBlock& next = frame.ExtensionBlocks[e + 1];
        shown.loops = next.Bytes[1] | next.Bytes[2] << 8;
      }
    }
    const Image before = canvas;
    draw(canvas, frame, gif->SColorMap, control.TransparentColor);
    shown.frames.push_back(canvas);
    shown.delays.push_back(control.DelayTime);
    shown.storedPixels.push_back(long{frame.ImageDesc.Width} * frame.ImageDesc.Height);
    if (control.DisposalMode == DISPOSE_BACKGROUND) clear(canvas, frame.ImageDesc);
    if (control.DisposalMode == DISPOSE_PREVIOUS) canvas = before;
  }
  return shown;
}

}  // namespace journey
