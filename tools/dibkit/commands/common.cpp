#include "commands/common.h"

#include <charconv>
#include <cstdio>
#include <iostream>

#include "files/files.h"
#include "host/animation/timing.h"
#include "host/names.h"

namespace host {

namespace {

/// Whether the whole text is a number between the limits; NaN is none.
template <class Number>
bool isNumber(const std::string& text, Number minimum, Number maximum) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() && value >= minimum && value <= maximum;
}

template <class Number>
void take(CLI::Option* option, const char* kind, const char* what, Number minimum, std::int64_t maximum) {
  const std::string message = std::string(" is no ") + what + " from " +
                              std::to_string(std::int64_t(minimum)) + " to " + std::to_string(maximum);
  option->type_name(kind)->capture_default_str()->check(
      [minimum, maximum, message](const std::string& text) {
        return isNumber<Number>(text, minimum, static_cast<Number>(maximum)) ? std::string()
                                                                             : "'" + text + "'" + message;
      },
      "");
}

/// \param advice appended to the message for a picture that is too large
Animation readAnimationFile(const std::string& path, const ReadOptions& options, const std::string& advice) {
  const Bytes bytes = readFile(path);
  try {
    return readAnimation(bytes, options);
  } catch (const TooManyPixels& error) {
    throw FileError(path, error.what() + advice);
  } catch (const FormatError& error) {
    throw FileError(path, error.what());
  }
}

}  // namespace

void complain(const FileError& error) {
  std::cerr << "dibkit: " << error.file() << ": " << error.what() << '\n';
}

ReadOptions readOptions(Keep keep, const Settings& settings) {
  return {keep, settings.strict ? Strictness::strict : Strictness::lenient};
}

void warn(const std::string& file, const std::vector<std::string>& faults, const Settings& settings) {
  if (faults.empty() || settings.quiet) return;
  std::cerr << "dibkit: " << file << ": warning: " << faults.front();
  if (faults.size() > 1) std::cerr << " (and " << faults.size() - 1 << " more)";
  std::cerr << '\n';
}

Animation readAnimation(const std::string& path, Keep keep, const Settings& settings) {
  Animation animation = readAnimationFile(path, readOptions(keep, settings), "");
  warn(path, animation.warnings, settings);
  return animation;
}

Picture readPicture(const std::string& path, const Settings& settings) {
  return std::move(readAnimation(path, Keep::firstFrame, settings).frames.front().picture);
}

Picture readPictureFor(Size sides, const std::string& path, const Settings& settings) {
  const bool known = sides != Size{};
  ReadOptions options = readOptions(Keep::firstFrame, settings);
  if (known) options.enough = sides;
  Animation animation =
      readAnimationFile(path, options, known ? "; choose a smaller --size" : "; choose a --size in pixels");
  warn(path, animation.warnings, settings);
  return std::move(animation.frames.front().picture);
}

void takeNumber(CLI::Option* option, std::int64_t minimum, std::int64_t maximum) {
  take<std::int64_t>(option, "N", "whole number", minimum, maximum);
}

void takeMilliseconds(CLI::Option* option) {
  constexpr std::int64_t tenMinutes = 600000;
  take<double>(option, "MS", "time", 0.0, tenMinutes);
}

void warnOfShortDelay(const OutputTarget& output, double milliseconds, const Settings& settings) {
  if (milliseconds >= HundredthsClock::minimumMilliseconds) return;
  const std::string minimum = std::to_string(HundredthsClock::minimumMilliseconds) + " ms";
  warn(output.path(),
       {"delays under " + minimum + " become " + minimum + ": viewers show shorter ones for 100 ms"},
       settings);
}

void addRepeats(CLI::App* command, Repeats& repeats) {
  takeNumber(command->add_option("--loop", repeats.loop, "How often it repeats; for ever if 0 or not given"),
             0, 65535);
  command->add_flag("--once", repeats.once, "Play once and stop at the last frame");
}

void addOverwriting(CLI::App* command, OverwriteRules& rules) {
  command->add_flag("-f,--force", rules.force, "Replace files that exist already");
  command->add_flag("-n,--no-clobber", rules.noClobber,
                    "Keep files that exist already, and make only the others");
}

void addOutput(CLI::App* command, Output& output, const std::string& help) {
  command->add_option("-o,--output", output.path, help)->required()->type_name("FILE");
  addOverwriting(command, output.rules);
}

std::optional<OutputTarget> claim(const std::string& path, const OverwriteRules& rules,
                                  std::span<const std::string> inputs, const Settings& settings) {
  OutputTarget target(path, rules, inputs);
  if (!target.leftAlone()) return target;
  if (!settings.quiet) std::printf("%s: exists already and is left as it is\n", path.c_str());
  return {};
}

std::optional<OutputTarget> claimGif(const Output& output, std::span<const std::string> inputs,
                                     const Settings& settings) {
  requireEnding(output.path, "GIF", {".gif"});
  requireFolderOf(output.path);
  return claim(output.path, output.rules, inputs, settings);
}

void writeAnimation(OutputTarget& output, const GifFile& file, const Settings& settings) {
  output.write(file.bytes);
  if (settings.quiet || output.standardOutput()) return;
  const std::string merged =
      file.merged > 0 ? " (" + std::to_string(file.merged) + " more merged, equal to the one before)" : "";
  std::printf("%s: %s, %s%s, %.2f s, %zu bytes\n", output.path().c_str(), toString(file.canvas).c_str(),
              counted(file.frames, "frame").c_str(), merged.c_str(),
              static_cast<double>(file.duration) / 100.0, file.bytes.size());
}

}  // namespace host
