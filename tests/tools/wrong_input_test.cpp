#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "journey.h"

namespace {

using namespace journey;

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

/// A GIF of one pixel, made by hand: screen, palette of two, image, codes "clear, 0, end" of 3 bits, trailer.
const Bytes onePixelGif{'G', 'I',  'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 255,  255,  255, 0,   0,
                        0,   0x2C, 0,   0,   0,   0,   1, 0, 1, 0, 0,    2, 2, 0x44, 0x01, 0,   0x3B};

Bytes withSize(Bytes gif, std::size_t offset, int width, int height) {
  for (const int value : {width, height}) {
    gif[offset++] = static_cast<std::uint8_t>(value & 255);
    gif[offset++] = static_cast<std::uint8_t>(value >> 8);
  }
  return gif;
}

Bytes cutTo(Bytes bytes, std::size_t size) {
  bytes.resize(size);
  return bytes;
}

class WrongInput : public testing::Test {
 protected:
  void SetUp() override {
    writePng(folder_ / "a.png", flat(8, 6, 0xFFFF0000));
    writePng(folder_ / "b.png", flat(8, 6, 0xFF0000FF));
  }

  Ended transition(const std::string& b, const std::string& output, std::vector<std::string> options = {}) {
    std::vector<std::string> arguments{"transition", folder_ / "a.png", b, "-o", output};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments);
  }

  static void expectOneLine(const Ended& ended, int status, const std::string& part) {
    EXPECT_EQ(ended.status, status);
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << ended.err;
    EXPECT_EQ(ended.err.substr(0, 8), "dibkit: ");
    EXPECT_NE(ended.err.find(part), std::string::npos) << ended.err;
  }

  Folder folder_;
};

TEST_F(WrongInput, FilesThatAreNoPicture) {
  struct Case {
    const char* name;
    Bytes bytes;
    const char* message;
  };
  Bytes png = read(folder_ / "a.png");
  Bytes brokenPng = png;
  brokenPng[png.size() / 2] ^= 0xFF;
  Bytes corruptGif = onePixelGif;
  corruptGif[31] = 0xFF;  // a code that the table does not have yet
  const Case cases[] = {
      {"text.png", bytesOf("This is not a picture.\n"), "not a PNG, JPEG, GIF, BMP or WebP file"},
      {"empty.png", {}, "the file is empty"},
      {"cut.png", cutTo(png, png.size() / 2), ""},
      {"broken.png", brokenPng, "PNG"},
      {"head.gif", cutTo(onePixelGif, 6), "truncated"},
      {"cut.gif", cutTo(onePixelGif, 31), "truncated"},
      {"notrailer.gif", cutTo(onePixelGif, onePixelGif.size() - 1), "truncated"},
      {"corrupt.gif", corruptGif, "damaged"},
      {"noframes.gif",
       [] {
         Bytes b = cutTo(onePixelGif, 19);
         b.push_back(0x3B);
         return b;
       }(),
       "no picture"},
      {"zeroframe.gif", withSize(onePixelGif, 24, 0, 1), "no pixels"},
      {"hugeframe.gif", withSize(onePixelGif, 24, 65535, 65535), "truncated"},
      {"hugescreen.gif", withSize(onePixelGif, 6, 65535, 65535), "too many"},
      {"largescreen.gif", withSize(onePixelGif, 6, 8192, 8192), "truncated"},
      {"cut.jpg", {0xFF, 0xD8, 0xFF, 0xE0}, ""},
      {"cut.bmp", bytesOf("BM"), "truncated"},
      {"cut.webp", bytesOf("RIFF\1\2\3\4WEBPVP8 "), ""},
  };
  for (const Case& wrong : cases) {
    SCOPED_TRACE(wrong.name);
    const std::string path = folder_ / wrong.name;
    write(path, wrong.bytes);
    const Ended ended = transition(path, folder_ / "out.gif");
    expectOneLine(ended, 1, path + ": ");
    expectOneLine(ended, 1, wrong.message);
    EXPECT_LT(ended.mostMemory, 400 * 1024);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out.gif"));
  }
  expectOneLine(transition(folder_ / "missing.png", folder_ / "out.gif"), 1,
                "missing.png: No such file or directory");
  expectOneLine(transition(folder_.path(), folder_ / "out.gif"), 1, "Is a directory");
}

TEST_F(WrongInput, ArgumentsThatMakeNoSense) {
  struct Case {
    std::vector<std::string> options;
    const char* message;
  };
  const Case cases[] = {
      {{"--effect", "slid"}, "there is no effect 'slid'; did you mean 'slide'?"},
      {{"--effect", "slide", "--style", "8"}, "8 is not between 0 and 7"},
      {{"--effect", "slide", "--style", "lefd"}, "did you mean 'left'?"},
      {{"--effect", "fade", "--style", "left"}, "no styles"},
      {{"--easing", "sideways"}, "linear"},
      {{"--fit", "squeeze"}, "contain"},
      {{"--size", "0x10"}, "640x360"},
      {{"--size", "100000x1"}, "640x360"},
      {{"--size", "ten"}, "640x360"},
      {{"--matte", "#12"}, "#1e90ff"},
      {{"--frames", "0"}, "--frames"},
      {{"--delay", "-1"}, "--delay"},
      {{"--delay", "nan"}, "--delay: 'nan' is no time from 0 to 600000"},
      {{"--loop", "65536"}, "--loop"},
      {{"--loop", "2", "--once"}, "exclude each other"},
      {{"--dither", "noise"}, "ordered"},
      {{"--size", "8000x8000", "--frames", "900"}, "smaller --size"},
      {{"--unheard"}, "--unheard"},
  };
  for (const Case& wrong : cases) {
    SCOPED_TRACE(wrong.options.back());
    expectOneLine(transition(folder_ / "b.png", folder_ / "out.gif", wrong.options), 2, wrong.message);
  }
  expectOneLine(run({"transition", folder_ / "a.png", "-o", folder_ / "out.gif"}), 2, "two pictures");
  expectOneLine(run({"transition", folder_ / "a.png", folder_ / "b.png"}), 2, "--output");
  expectOneLine(run({"effect"}), 2, "did you mean 'effects'?");
  expectOneLine(run({}), 2, "--help");
  writePng(folder_ / "wide.png", flat(65536, 1, 0xFFFF0000));
  expectOneLine(run({"ripple", folder_ / "wide.png", "-o", folder_ / "out.gif"}), 2,
                "more than a GIF can have");
  std::filesystem::remove(folder_ / "wide.png");
  expectOneLine(run({"convert", folder_ / "a.png", folder_ / "b.png", "-o", "-"}), 2, "folder");
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"a.png", "b.png"}));
}

TEST_F(WrongInput, TargetsThatCannotBeWritten) {
  expectOneLine(transition(folder_ / "b.png", "/dev/full"), 1, "/dev/full: No space left on device");
  expectOneLine(transition(folder_ / "b.png", folder_ / "nowhere/out.gif"), 1, "No such file or directory");
  expectOneLine(transition(folder_ / "b.png", folder_.path()), 1, "Is a directory");
  expectOneLine(transition(folder_ / "b.png", folder_ / "a.png/out.gif"), 1, "Not a directory");
  expectOneLine(run({"effects"}, {.standardOutput = "/dev/full"}), 1, "No space left on device");
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"a.png", "b.png"}));
}

TEST_F(WrongInput, AFailureLeavesAnOldFileAsItWas) {
  write(folder_ / "out.gif", bytesOf("precious"));
  write(folder_ / "bad.png", bytesOf("bad"));
  expectOneLine(transition(folder_ / "bad.png", folder_ / "out.gif"), 1, "bad.png");
  EXPECT_EQ(read(folder_ / "out.gif"), bytesOf("precious"));
}

TEST_F(WrongInput, ControlCLeavesNothingHalfWritten) {
  write(folder_ / "out.gif", bytesOf("precious"));
  const Ended ended = run({"transition", folder_ / "a.png", folder_ / "b.png", "-o", folder_ / "out.gif",
                           "--size", "800x600", "--frames", "500", "--easing", "ease-in"},
                          {"", 150});
  EXPECT_EQ(ended.status, 130);
  EXPECT_EQ(ended.err, "dibkit: cancelled\n");
  EXPECT_EQ(read(folder_ / "out.gif"), bytesOf("precious"));
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"a.png", "b.png", "out.gif"}));
}

TEST_F(WrongInput, ControlCEndsWaitingForAPipe) {
  ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const Ended ended = run({"info", folder_ / "pipe"}, {.interruptAfter = 150});
  EXPECT_EQ(ended.status, 130);
  EXPECT_EQ(ended.err, "dibkit: cancelled\n");
}

TEST_F(WrongInput, AGoodRunReplacesAnOldFileAndKeepsItsPermissionsAndLinks) {
  write(folder_ / "real.gif", bytesOf("old"));
  ::chmod((folder_ / "real.gif").c_str(), 0640);
  std::filesystem::create_symlink("real.gif", folder_ / "link.gif");
  ASSERT_EQ(transition(folder_ / "b.png", folder_ / "link.gif").status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link.gif"));
  EXPECT_FALSE(play(folder_ / "real.gif").frames.empty());
  struct stat now {};
  ::stat((folder_ / "real.gif").c_str(), &now);
  EXPECT_EQ(now.st_mode & 0777, 0640u);
}

TEST_F(WrongInput, QuietSaysNothing) {
  const Ended ended = transition(folder_ / "b.png", folder_ / "out.gif", {"--quiet"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out + ended.err, "");
}

}  // namespace
