// SPDX-License-Identifier: Apache-2.0
#include "Display.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <cstdlib>

namespace platen::tool {

namespace {

constexpr std::size_t kUsualWidth = 100;
constexpr std::size_t kLeastWidth = 20;

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::size_t widthFromEnvironment() {
  const std::string_view text = environment("COLUMNS");
  std::size_t width = 0;
  std::from_chars(text.data(), text.data() + text.size(), width);
  return width;
}

std::size_t detectedWidth() {
  for (const std::size_t width :
       {terminalWidth(STDOUT_FILENO).value_or(0), widthFromEnvironment()}) {
    if (width >= kLeastWidth) {
      return width;
    }
  }
  return kUsualWidth;
}

bool showsStyles() { return isCapableTerminal(STDOUT_FILENO) && environment("NO_COLOR").empty(); }

}  // namespace

std::optional<std::size_t> terminalWidth(int descriptor) {
  winsize size{};
  const bool isKnown = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? std::optional<std::size_t>(size.ws_col) : std::nullopt;
}

bool isCapableTerminal(int descriptor) {
  return ::isatty(descriptor) == 1 && environment("TERM") != "dumb";
}

Display Display::ofStandardOutput(std::optional<std::size_t> width) {
  const std::size_t chosen = width.value_or(detectedWidth());
  return {chosen == 0 ? SIZE_MAX : chosen, showsStyles()};
}

std::string Display::strong(std::string_view text) const { return in("\x1b[1m", text); }

std::string Display::added(std::string_view text) const { return in("\x1b[32m", text); }

std::string Display::removed(std::string_view text) const { return in("\x1b[31m", text); }

std::string Display::changed(std::string_view text) const { return in("\x1b[33m", text); }

std::string Display::faint(std::string_view text) const { return in("\x1b[2m", text); }

std::string Display::in(std::string_view style, std::string_view text) const {
  return styled_ ? std::string(style).append(text).append("\x1b[0m") : std::string(text);
}

}  // namespace platen::tool
