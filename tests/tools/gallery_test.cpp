#include <filesystem>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "journey.h"

namespace {

using namespace journey;

/// All texts that the first group of the pattern finds.
std::vector<std::string> found(const std::string& html, const std::string& pattern) {
  std::vector<std::string> all;
  const std::regex expression(pattern);
  for (std::sregex_iterator match(html.begin(), html.end(), expression), end; match != end; ++match) {
    all.push_back((*match)[1]);
  }
  return all;
}

TEST(Gallery, ShowsEveryStyleWithTheCommandThatMakesIt) {
  const Folder folder;
  const std::string a = folder / "a.png";
  const std::string b = folder / "b.png";
  writePng(
      a, imageBy(48, 32, [](int x, int y) { return 0xFF000000U | unsigned(x * 5) << 16 | unsigned(y * 7); }));
  writePng(
      b, imageBy(48, 32, [](int x, int y) { return 0xFF00FF00U | unsigned(y * 5) << 16 | unsigned(x * 5); }));
  const std::string pages = folder / "pages";
  const Ended ended = run({"gallery", pages, a, b, "--size", "48x32"});
  ASSERT_EQ(ended.status, 0) << ended.err;

  const Bytes bytes = read(pages + "/index.html");
  const std::string html(bytes.begin(), bytes.end());
  EXPECT_EQ(html.find("http"), std::string::npos) << "the page asks for something outside";
  const std::vector<std::string> gifs = found(html, "src=\"([^\"]+\\.gif)\"");
  const std::vector<std::string> sheets = found(html, "data-sheet=\"([^\"]+)\"");
  const std::vector<std::string> commands = found(html, "<code>(dibkit transition .*?)</code></button>");
  std::istringstream names(run({"effects", "--names"}).out);
  std::size_t styles = 0;
  for (std::string line; std::getline(names, line);) ++styles;
  ASSERT_EQ(gifs.size(), styles);
  ASSERT_EQ(sheets.size(), styles);
  ASSERT_EQ(commands.size(), styles);

  for (std::size_t i = 0; i < styles; ++i) {
    SCOPED_TRACE(commands[i]);
    EXPECT_TRUE(std::filesystem::exists(pages + "/" + sheets[i]));
    std::istringstream words(std::regex_replace(commands[i], std::regex("</?span>"), ""));
    std::vector<std::string> arguments;
    for (std::string word; words >> word;) arguments.push_back(word);
    ASSERT_EQ(arguments.back(), gifs[i]);
    arguments.erase(arguments.begin());
    arguments.back() = folder / "again.gif";
    ASSERT_EQ(run(arguments).status, 0);
    EXPECT_EQ(read(folder / "again.gif"), read(pages + "/" + gifs[i]));
  }
}

TEST(Gallery, NeedsTwoPicturesOrNone) {
  const Folder folder;
  writePng(folder / "a.png", flat(4, 4, 0xFFFFFFFF));
  const Ended ended = run({"gallery", folder / "pages", folder / "a.png"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(run({"gallery", folder / "pages", "--size", "9000x7000"}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(folder / "pages"));
}

}  // namespace
