#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
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
  std::string from;
  std::string to;
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

/// The two pictures and their files.
struct Sources {
  std::vector<std::string> files;  ///< as the commands name them: drawn ones in the folder, others as given
  std::vector<Picture> pictures;
  bool drawn = false;
};

/// Reads the pictures that were given, or draws two.
Sources sourcesFor(const Arguments& arguments) {
  Sources sources;
  if (arguments.from.empty()) {
    constexpr Size sampleSize{480, 320};
    sources.files = {"lake.png", "dahlia.png"};
    sources.pictures.push_back(drawLake(sampleSize));
    sources.pictures.push_back(drawDahlia(sampleSize));
    sources.drawn = true;
    return sources;
  }
  sources.files = {arguments.from, arguments.to};
  for (const std::string& path : sources.files) sources.pictures.push_back(readPictureFile(path));
  return sources;
}

Size usualSize(Size picture) {
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

const dibkit::EffectStyle* styleOf(const ChosenEffect& chosen) {
  const dibkit::Effect& effect = *chosen.effect;
  return effect.styles.empty() ? nullptr : &effect.styles[static_cast<std::size_t>(chosen.style)];
}

/// Of the effect's files, without their extension.
std::string nameOf(const ChosenEffect& chosen) {
  const dibkit::EffectStyle* style = styleOf(chosen);
  return chosen.effect->name + (style != nullptr ? std::string("-") + style->name : "");
}

GalleryCard makeCard(const Arguments& arguments, const ChosenEffect& chosen,
                     const std::vector<Picture>& pictures, const std::vector<std::string>& files) {
  const dibkit::Effect& effect = *chosen.effect;
  const dibkit::EffectStyle* style = styleOf(chosen);
  const std::string name = nameOf(chosen);
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

/// As the page sees them.
const std::vector<std::string> fittedFiles{"from.png", "to.png"};

/// A picture in the gallery's folder may have the name of one of its files.
void requireOthersThan(const Sources& sources, const std::string& folder) {
  std::vector<std::string> names = fittedFiles;
  for (const ChosenEffect& chosen : everyStyle()) {
    for (const char* extension : {".gif", ".png"}) names.push_back(nameOf(chosen) + extension);
  }
  for (const std::string& file : sources.files) {
    for (const std::string& name : names) {
      std::error_code missing;
      if (std::filesystem::equivalent(folder + "/" + name, file, missing))
        throw UsageError("the gallery would replace " + file + "; choose another folder");
    }
  }
}

void run(const Arguments& arguments, const Settings& settings) {
  if (!arguments.from.empty() && arguments.to.empty())
    throw UsageError("a gallery needs two pictures, or none for the built-in ones");
  const std::optional<Size> asked =
      arguments.size.empty() ? std::nullopt : std::optional(parseSize(arguments.size));
  if (asked) requireRoomFor(*asked, countFrames(2, planFor({})));
  const Sources sources = sourcesFor(arguments);
  GalleryPage page;
  page.size = asked ? *asked : usualSize(sources.pictures.front().size());
  page.captions = sources.files;
  page.pictures = fittedFiles;
  if (!sources.drawn) requireOthersThan(sources, arguments.folder);
  makeFolder(arguments.folder);
  const auto put = [&arguments](const std::string& name, const Bytes& bytes) {
    writeFile(arguments.folder + "/" + name, bytes);
  };
  std::vector<Picture> pictures;
  for (std::size_t i = 0; i < sources.pictures.size(); ++i) {
    if (sources.drawn) put(sources.files[i], writePng(sources.pictures[i].dib()));
    pictures.push_back(fitted(sources.pictures[i], page.size, Fit::contain, parseColour("black")));
    put(page.pictures[i], writePng(pictures.back().dib()));
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
  put("index.html", Bytes(html.begin(), html.end()));
  if (!settings.quiet) {
    std::printf("%s/index.html: %zu transitions\n", arguments.folder.c_str(), page.cards.size());
  }
}

}  // namespace

void addGalleryCommand(CLI::App& program, const Settings& settings) {
  CLI::App* command = program.add_subcommand("gallery", "Make a page that shows every effect and style");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("DIR", arguments->folder, "The folder to make; open its index.html")
      ->required()
      ->type_name("");
  command->add_option("FROM", arguments->from, "The first picture; without pictures, two are drawn")
      ->type_name("");
  command->add_option("TO", arguments->to, "The second picture")->type_name("");
  command
      ->add_option("--size", arguments->size,
                   "Size of the GIFs; else 240 wide, as high as the first picture asks")
      ->type_name("WxH");
  command->footer("Examples:\n  dibkit gallery pages\n  dibkit gallery pages summer.jpg winter.jpg");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
