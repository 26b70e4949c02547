#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/common.h"
#include "files/files.h"
#include "gallery/page.h"
#include "host/animation/alpha.h"
#include "host/animation/fit.h"
#include "host/animation/gif_animation.h"
#include "host/animation/transition.h"
#include "host/errors.h"
#include "host/samples/samples.h"
#include "options.h"
#include "progress_bar.h"

namespace host {

namespace {

struct Arguments {
  std::string folder;
  OverwriteRules rules;
  std::string from;
  std::string to;
  std::string size;
};

/// The defaults of `transition`, with --back.
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

/// The files that the gallery will write, by name.
using Files = std::map<std::string, OutputTarget>;

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

void put(Files& files, const std::string& name, const Bytes& bytes) {
  if (const auto file = files.find(name); file != files.end()) file->second.write(bytes);
}

/// The two pictures and their files.
struct Sources {
  std::vector<std::string> files;  ///< as the commands name them: drawn ones in the folder, others as given
  std::vector<Picture> pictures;
  bool drawn = false;
};

/// Reads the pictures that were given, for a gallery of that size, or draws two.
Sources sourcesFor(const Arguments& arguments, Size size, const Settings& settings) {
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
  for (const std::string& path : sources.files)
    sources.pictures.push_back(readPictureFor(size, path, settings));
  return sources;
}

constexpr int usualWidth = 240;

Size usualSize(Size picture) {
  const auto height = static_cast<int>(std::int64_t{usualWidth} * picture.height / picture.width);
  return {usualWidth, std::clamp(height, 1, 4 * usualWidth)};
}

/// A picture of all frames in rows of as many columns.
class Sheet {
 public:
  Sheet(Size frame, int frames, int columns) : frame_(frame), columns_(columns) {
    sheet_.size = {frame.width * columns, frame.height * ((frames + columns - 1) / columns)};
    sheet_.indices.resize(static_cast<std::size_t>(sheet_.size.pixels()));
  }

  /// Adds the next frame: the one before, with the patch in it.
  void add(const SharedPalette& palette, const Patch<std::uint8_t>& patch) {
    sheet_.palette = palette.entries;
    sheet_.transparent = palette.transparent;
    for (int y = 0; next_ > 0 && y < frame_.height; ++y)
      std::copy_n(at(next_ - 1, 0, y), frame_.width, at(next_, 0, y));
    for (int y = patch.place.top; y < patch.place.bottom; ++y)
      std::copy_n(patch.line(y), patch.width(), at(next_, patch.place.left, y));
    ++next_;
  }
  Bytes png() const { return writePng(sheet_); }

 private:
  std::uint8_t* at(int frame, int x, int y) {
    const std::ptrdiff_t line = frame / columns_ * frame_.height + y;
    return sheet_.indices.data() + line * sheet_.size.width + frame % columns_ * frame_.width + x;
  }

  Size frame_;
  int columns_;
  IndexedPicture sheet_;
  int next_ = 0;
};

/// A sheet about as many frames wide as high.
int columnsFor(int frames) { return static_cast<int>(std::ceil(std::sqrt(frames))); }

const dibkit::EffectStyle* styleOf(const ChosenEffect& chosen) {
  const dibkit::Effect& effect = *chosen.effect;
  return effect.styles.empty() ? nullptr : &effect.styles[static_cast<std::size_t>(chosen.style)];
}

/// Of the effect's files, without their extension.
std::string nameOf(const ChosenEffect& chosen) {
  const dibkit::EffectStyle* style = styleOf(chosen);
  return chosen.effect->name + (style != nullptr ? std::string("-") + style->name : "");
}

/// Makes the files of a card and adds it to the page.
void addCard(GalleryPage& page, Files& files, const ChosenEffect& chosen,
             const std::vector<Picture>& pictures, const std::vector<std::string>& sources) {
  const dibkit::Effect& effect = *chosen.effect;
  const dibkit::EffectStyle* style = styleOf(chosen);
  const std::string name = nameOf(chosen);
  GalleryCard card{effect.family, effect.title,  style != nullptr ? style->title : "",
                   name + ".gif", name + ".png", ""};
  card.command = "dibkit transition " + quoted(sources[0]) + " " + quoted(sources[1]) + " --effect " +
                 effect.name + (style != nullptr ? std::string(" --style ") + style->name : "") + " --size " +
                 toString(pictures.front().size()) + " --back -o " + card.gif;
  TransitionFrames frames(pictures, planFor(chosen));
  page.delays.clear();
  for (int i = 0; i < frames.count(); ++i) page.delays.push_back(frames.delay(i));
  page.sheetColumns = columnsFor(frames.count());
  Sheet sheet(frames.size(), frames.count(), page.sheetColumns);
  Progress silent;
  const GifFile gif = gifOf(frames, {.loops = 0}, silent,
                            [&sheet](const SharedPalette& palette, const Patch<std::uint8_t>& patch) {
                              sheet.add(palette, patch);
                            });
  put(files, card.sheet, sheet.png());
  put(files, card.gif, gif.bytes);
  page.cards.push_back(std::move(card));
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

const char* const pageFile = "index.html";

/// Whether the folder's page says that a gallery made it, and so the pictures that it shows.
bool isGallery(const std::string& folder) {
  std::ifstream page(folder + "/" + pageFile, std::ios::binary);
  std::string head(1024, '\0');
  page.read(head.data(), static_cast<std::streamsize>(head.size()));
  return head.find(galleryMark) != std::string::npos;
}

/// Everything that the gallery will write.
Files claimFiles(const Arguments& arguments, const Sources& sources, const Settings& settings) {
  std::vector<std::string> names = fittedFiles;
  if (sources.drawn) names.insert(names.end(), sources.files.begin(), sources.files.end());
  for (const ChosenEffect& chosen : everyStyle()) {
    for (const char* extension : {".gif", ".png"}) names.push_back(nameOf(chosen) + extension);
  }
  names.emplace_back(pageFile);
  OverwriteRules rules = arguments.rules;
  rules.ownFiles = isGallery(arguments.folder);
  const std::vector<std::string> inputs = sources.drawn ? std::vector<std::string>() : sources.files;
  Files files;
  for (const std::string& name : names) {
    std::optional<OutputTarget> target = claim(arguments.folder + "/" + name, rules, inputs, settings);
    if (target) files.emplace(name, std::move(*target));
  }
  return files;
}

void run(const Arguments& arguments, const Settings& settings) {
  if (!arguments.from.empty() && arguments.to.empty())
    throw UsageError("a gallery needs two pictures, or none for the built-in ones");
  const WantedSize wanted = parseSize(arguments.size);
  const Size sides = arguments.size.empty() ? Size{usualWidth, 0} : wanted.sides();
  const Sources sources = sourcesFor(arguments, sides, settings);
  GalleryPage page;
  const Size first = sources.pictures.front().size();
  page.size = arguments.size.empty() ? usualSize(first) : wanted.of(first);
  requireGifSize(page.size);
  // The sheets hold all frames.
  requireUsableAnimation(page.size, countFrames(2, planFor({})));
  page.captions = sources.files;
  page.pictures = fittedFiles;
  makeFolder(arguments.folder);
  Files files = claimFiles(arguments, sources, settings);
  // From the first picture on the folder says whose they are: a run that is cut short can be repeated.
  put(files, pageFile, bytesOf(unfinishedHtml()));
  std::vector<Picture> pictures;
  for (std::size_t i = 0; i < sources.pictures.size(); ++i) {
    if (sources.drawn) put(files, sources.files[i], writePng(sources.pictures[i].dib()));
    pictures.push_back(fitted(sources.pictures[i], page.size, Fit::contain, parseColour("black")));
    put(files, page.pictures[i], writePng(pictures.back().dib()));
    ditherAlpha(pictures.back());
  }
  const std::vector<ChosenEffect> all = everyStyle();
  {
    ProgressBar bar("gallery", settings.quiet);
    for (const ChosenEffect& chosen : all) {
      addCard(page, files, chosen, pictures, sources.files);
      bar.progress().add(1.0 / static_cast<double>(all.size()));
    }
  }
  put(files, pageFile, bytesOf(htmlOf(page)));
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
      ->add_option(
          "--size", arguments->size,
          "Size of the GIFs: 640x360, 320x, x240 or 50%; else 240x in the shape of the first picture")
      ->type_name("WxH");
  addOverwriting(command, arguments->rules);
  command->footer("Examples:\n  dibkit gallery pages\n  dibkit gallery pages summer.jpg winter.jpg");
  command->callback([arguments, &settings] { run(*arguments, settings); });
}

}  // namespace host
