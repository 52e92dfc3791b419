// SPDX-License-Identifier: Apache-2.0
#include "Progress.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

#include "Display.h"
#include "DisplayText.h"

namespace platen::tool {

namespace {

constexpr std::size_t kUsualColumns = 80;
constexpr std::size_t kLongestBar = 30;
constexpr std::size_t kShortestBar = 8;
constexpr double kThousand = 1000;
constexpr double kHundred = 100;

// Back to the first column, and after the text all the rest of the line cleared.
constexpr std::string_view kBegin = "\r";
constexpr std::string_view kEnd = "\x1b[K";

// Drawing in the background would spoil what the shell shows; a stopped terminal would stop us.
bool mayDraw() {
  const pid_t foreground = ::tcgetpgrp(STDERR_FILENO);
  pollfd entry{STDERR_FILENO, POLLOUT, 0};
  return (foreground < 0 || foreground == ::getpgrp()) && ::poll(&entry, 1, 0) > 0;
}

void write(const std::string& text) {
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

std::string percentText(double share) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "%3.0f%%", share * kHundred);
  return text.data();
}

std::string bar(double share, std::size_t length) {
  const auto full = static_cast<std::size_t>(share * static_cast<double>(length));
  std::string text(full, '=');
  text.resize(length, ' ');
  if (full < length) {
    text[full] = '>';
  }
  return "[" + text + "]";
}

}  // namespace

Progress::Progress(bool isWanted) : isWanted_(isWanted && isCapableTerminal(STDERR_FILENO)) {}

void Progress::show(Text text) {
  text_ = std::move(text);
  begin_ = Clock::now();
  next_ = begin_ + kInterval;
}

void Progress::refresh() {
  const auto now = Clock::now();
  if (!isWanted_ || !text_ || now < next_ || !mayDraw()) {
    return;
  }
  // The last column stays free: with it the cursor would wait at the edge, or go to the next line.
  const std::size_t columns = terminalWidth(STDERR_FILENO).value_or(kUsualColumns) - 1;
  const std::string text = text_(columns, now - begin_);
  write(std::string(kBegin).append(beginning(text, columns)).append(kEnd));
  isDrawn_ = true;
  next_ = now + kInterval;
}

void Progress::erase() {
  if (std::exchange(isDrawn_, false)) {
    write(std::string(kBegin).append(kEnd));
  }
}

std::string sizeText(double octets) {
  constexpr std::array kUnits{"B", "kB", "MB", "GB", "TB"};
  std::size_t unit = 0;
  // What would be rounded to four digits is of the next unit.
  for (; octets >= kThousand - 0.05 && unit + 1 < kUnits.size(); ++unit) {
    octets /= kThousand;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), unit == 0 ? "%.0f %s" : "%.1f %s", octets, kUnits[unit]);
  return text.data();
}

std::string transferLine(std::uint64_t sent, std::optional<std::uint64_t> length,
                         std::chrono::steady_clock::duration elapsed, std::size_t columns) {
  const double seconds = std::max(std::chrono::duration<double>(elapsed).count(), 0.001);
  const auto octets = static_cast<double>(sent);
  const std::string rate = "  " + sizeText(octets / seconds) + "/s";
  if (!length || *length < sent) {  // unknown, or the file has grown since
    return sizeText(octets) + " sent" + rate;
  }
  const double share = octets / static_cast<double>(*length);
  const std::string text = percentText(share) + "  " + sizeText(octets) + " of " +
                           sizeText(static_cast<double>(*length)) + rate;
  const std::size_t room = columns - std::min(columns, text.size() + 3);
  return room < kShortestBar ? text : bar(share, std::min(room, kLongestBar)) + " " + text;
}

}  // namespace platen::tool
