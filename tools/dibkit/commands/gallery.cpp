#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "animation/changes.h"
#include "animation/fit.h"
#include "animation/transition.h"
#include "commands/commands.h"
#include "errors.h"
#include "gallery/page.h"
#include "options.h"
#include "progress_bar.h"
#include "samples/samples.h"

namespace host {

namespace {

struct Arguments {
  std::string folder;
  std::vector<std::string> pictures;
  std::string size;
};

/// The same as what `transition` does when it is told nothing, but there and back.
TransitionPlan planFor(const ChosenEffect& chosen) {
  TransitionPlan plan;
  plan.chosen = chosen;
  plan.back = true;
  return plan;
}

/// A word as a shell reads it back.
std::string quoted(const std::string& word) {
  const auto plain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("/._-+").find(c) != std::string_view::npos;
  };
  if (!word.empty() && std::all_of(word.begin(), word.end(), plain)) return word;
  std::string text = "'";
  for (const char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

/// The pictures, their size on the page and their files.
struct Sources {
  std::vector<std::string> files;  ///< as a command in the folder names them
  std::vector<Picture> pictures;
};

/// Draws the sample pictures into the folder, or reads the ones that were given.
Sources sourcesFor(const Arguments& arguments) {
  Sources sources;
  if (arguments.pictures.empty()) {
    constexpr Size sampleSize{480, 320};
    sources.files = {"lake.png", "dahlia.png"};
    sources.pictures.push_back(drawLake(sampleSize));
    sources.pictures.push_back(drawDahlia(sampleSize));
    for (std::size_t i = 0; i < sources.files.size(); ++i) {
      writeFile(arguments.folder + "/" + sources.files[i], writePng(sources.pictures[i].dib()));
    }
    return sources;
  }
  sources.files = arguments.pictures;
  for (const std::string& path : arguments.pictures) sources.pictures.push_back(readPictureFile(path));
  return sources;
}

Size sizeOnPage(const Arguments& arguments, Size picture) {
  if (!arguments.size.empty()) return parseSize(arguments.size);
  constexpr int width = 240;
  return {width,
          std::clamp(static_cast<int>(std::int64_t{width} * picture.height / picture.width), 1, 4 * width)};
}

/// The frames from the first picture to the second below each other.
Bytes stripOf(const CanvasAnimation& animation, int frames) {
  const int height = animation.canvas.height;
  IndexedPicture strip{
      {animation.canvas.width, height * frames}, {}, paletteOf(animation.frames.front().image.get()), {}};
  if (animation.hasTransparent) strip.transparent = entryOf(strip.palette, animation.transparent);
  const std::ptrdiff_t stride = (std::ptrdiff_t{animation.canvas.width} + 3) / 4 * 4;
  for (int i = 0; i < frames; ++i) {
    const BYTE* bits = GetDIBBits(animation.frames[static_cast<std::size_t>(i)].image.get());
    for (int y = height - 1; y >= 0; --y) {
      strip.indices.insert(strip.indices.end(), bits + y * stride,
                           bits + y * stride + animation.canvas.width);
    }
  }
  return writePng(strip);
}

GalleryCard makeCard(const Arguments& arguments, const ChosenEffect& chosen,
                     const std::vector<Picture>& pictures, const std::vector<std::string>& files) {
  const dibkit::Effect& effect = *chosen.effect;
  const dibkit::EffectStyle* style =
      effect.styles.empty() ? nullptr : &effect.styles[static_cast<std::size_t>(chosen.style)];
  const std::string name = effect.name + (style != nullptr ? std::string("-") + style->name : "");
  const TransitionPlan plan = planFor(chosen);
  GalleryCard card{effect.family,
                   effect.title,
                   style != nullptr ? style->title : "",
                   name + ".gif",
                   name + ".png",
                   plan.frames + 1,
                   ""};
  card.command = "dibkit transition " + quoted(files[0]) + " " + quoted(files[1]) + " --effect " +
                 effect.name + (style != nullptr ? std::string(" --style ") + style->name : "") + " --size " +
                 toString(pictures.front().size()) + " --back -o " + card.gif;
  const auto nothing = [] {};
  CanvasAnimation animation = indexFrames(renderTransitions(pictures, plan, nothing), Dither::none, nothing);
  writeFile(arguments.folder + "/" + card.strip, stripOf(animation, card.frames));
  writeFile(arguments.folder + "/" + card.gif, writeGif(gifOf(std::move(animation), 0)));
  return card;
}

std::vector<ChosenEffect> everyStyle() {
  std::vector<ChosenEffect> all;
  for (const dibkit::Effect& effect : dibkit::effects()) {
    const int styles = std::max(1, static_cast<int>(effect.styles.size()));
    for (int style = 0; style < styles; ++style) all.push_back({&effect, style});
  }
  return all;
}

void run(const Arguments& arguments, const Settings& settings) {
  if (arguments.pictures.size() == 1)
    throw UsageError("a gallery needs two pictures, or none for the built-in ones");
  makeFolder(arguments.folder);
  const Sources sources = sourcesFor(arguments);
  GalleryPage page;
  page.size = sizeOnPage(arguments, sources.pictures.front().size());
  page.captions = sources.files;
  std::vector<Picture> pictures;
  for (const Picture& picture : sources.pictures) {
    pictures.push_back(fitted(picture, page.size, Fit::contain, parseColour("black")));
    page.pictures.push_back(page.pictures.empty() ? "from.png" : "to.png");
    writeFile(arguments.folder + "/" + page.pictures.back(), writePng(pictures.back().dib()));
  }
  const std::vector<ChosenEffect> all = everyStyle();
  {
    ProgressBar bar("gallery", static_cast<int>(all.size()), settings.quiet);
    for (const ChosenEffect& chosen : all) {
      page.cards.push_back(makeCard(arguments, chosen, pictures, sources.files));
      bar.step();
    }
  }
  const std::string html = htmlOf(page);
  const std::string path = arguments.folder + "/index.html";
  writeFile(path, Bytes(html.begin(), html.end()));
  if (!settings.quiet) std::printf("%s: %zu transitions\n", path.c_str(), page.cards.size());
}

}  // namespace

void addGalleryCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("gallery", "Make a page that shows every effect and style");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("DIR", arguments->folder, "The folder to make; open its index.html")->required();
  command->add_option("PICTURES", arguments->pictures, "Two pictures; else two are drawn")->expected(0, 2);
  command->add_option("--size", arguments->size,
                      "WxH of the GIFs; else 240 wide, as high as the first picture asks");
  command->footer("Examples:\n  dibkit gallery pages\n  dibkit gallery pages summer.jpg winter.jpg");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
