#include "commands/common.h"

#include <charconv>
#include <cstdio>
#include <iostream>

#include "interrupt.h"

namespace host {

namespace {

/// Whether all of the text is a number between the limits; "not a number" is none.
template <class Number>
bool isNumber(const std::string& text, Number least, Number most) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() && value >= least && value <= most;
}

template <class Number>
void take(CLI::Option* option, const char* kind, const char* what, Number least, std::int64_t most) {
  const std::string message = std::string(" is no ") + what + " from " + std::to_string(std::int64_t(least)) +
                              " to " + std::to_string(most);
  option->type_name(kind)->capture_default_str()->check(
      [least, most, message](const std::string& text) {
        return isNumber<Number>(text, least, static_cast<Number>(most)) ? std::string()
                                                                        : "'" + text + "'" + message;
      },
      "");
}

}  // namespace

void complain(const FileError& error) {
  std::cerr << "dibkit: " << error.file() << ": " << error.what() << '\n';
}

void takeNumber(CLI::Option* option, std::int64_t least, std::int64_t most) {
  take<std::int64_t>(option, "N", "whole number", least, most);
}

void takeMilliseconds(CLI::Option* option) {
  constexpr std::int64_t tenMinutes = 600000;
  take<double>(option, "MS", "time", 0.0, tenMinutes);
}

void addRepeats(CLI::App* command, Repeats& repeats) {
  takeNumber(command->add_option("--loop", repeats.loop, "How often it repeats, 0 for ever; else for ever"),
             0, 65535);
  command->add_flag("--once", repeats.once, "Play once and stay at the end");
}

void writeAnimation(const std::string& output, const GifFile& file, const Settings& settings) {
  const Bytes bytes = writeGif(file);
  throwIfInterrupted();
  writeFile(output, bytes);
  if (settings.quiet || output == "-") return;
  int duration = 0;
  for (const GifImage& image : file.images) duration += image.delay;
  std::printf("%s: %s, %zu %s, %.2f s, %zu bytes\n", output.c_str(), toString(file.canvas).c_str(),
              file.images.size(), file.images.size() == 1 ? "frame" : "frames", duration / 100.0,
              bytes.size());
}

}  // namespace host
