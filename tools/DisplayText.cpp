// SPDX-License-Identifier: Apache-2.0
#include "DisplayText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "Characters.h"

namespace platen::tool {

namespace {

// Characters that stand on the one before them, and the joiners.
constexpr std::array<Interval, 8> kCombining{{{0x300, 0x36F},
                                              {0x483, 0x489},
                                              {0x591, 0x5BD},
                                              {0x1AB0, 0x1AFF},
                                              {0x200C, 0x200D},
                                              {0x20D0, 0x20FF},
                                              {0xFE00, 0xFE0F},
                                              {0xFE20, 0xFE2F}}};

// Wide and full-width blocks (Unicode Standard Annex 11); coarse, which is enough for a column.
constexpr std::array<Interval, 11> kWide{{{0x1100, 0x115F},
                                          {0x2E80, 0x303E},
                                          {0x3041, 0x33FF},
                                          {0x3400, 0x4DBF},
                                          {0x4E00, 0x9FFF},
                                          {0xA000, 0xA4CF},
                                          {0xAC00, 0xD7A3},
                                          {0xF900, 0xFAFF},
                                          {0xFE30, 0xFE6F},
                                          {0xFF00, 0xFF60},
                                          {0x1F300, 0x1FAFF}}};

bool isWide(char32_t code) {
  return contains(kWide, code) || (code >= 0x20000 && code <= 0x3FFFD) ||
         (code >= 0xFFE0 && code <= 0xFFE6);
}

std::string formatted(const char* format, char32_t code) {
  std::array<char, 16> text{};
  const int size = std::snprintf(text.data(), text.size(), format, static_cast<unsigned>(code));
  return {text.data(), static_cast<std::size_t>(std::max(size, 0))};
}

std::string numbered(char32_t code) { return formatted(code < 0x80 ? "\\x%02x" : "\\u%04x", code); }

std::string harmlessCharacter(const Character& character, std::string_view octets) {
  if (character.code == kNoCharacter) {
    return formatted("\\x%02x", static_cast<unsigned char>(octets.front()));
  }
  return isHarmful(character.code) ? escaped(character.code, &numbered) : std::string(octets);
}

std::string withoutBlanksBehind(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

std::size_t widthOf(char32_t code) {
  if (contains(kCombining, code)) {
    return 0;
  }
  return isWide(code) ? 2 : 1;
}

}  // namespace

std::string harmless(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    result += harmlessCharacter(character, text.substr(0, character.length));
    text.remove_prefix(character.length);
  }
  return result;
}

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    width += widthOf(character.code);
    text.remove_prefix(character.length);
  }
  return width;
}

std::string_view beginning(std::string_view text, std::size_t width) {
  std::size_t length = 0;
  while (length < text.size()) {
    const Character character = firstCharacter(text.substr(length));
    const std::size_t own = widthOf(character.code);
    if (own > width) {
      break;
    }
    width -= own;
    length += character.length;
  }
  return text.substr(0, length);
}

std::string padded(std::string_view text, std::size_t width) {
  const std::size_t own = displayWidth(text);
  return std::string(text) + std::string(own < width ? width - own : 0, ' ');
}

Lines wrapped(const std::vector<std::string>& pieces, std::size_t width) {
  Lines lines;
  std::size_t used = 0;
  for (const std::string& piece : pieces) {
    if (lines.empty() || used + displayWidth(withoutBlanksBehind(piece)) > width) {
      lines.emplace_back();
      used = 0;
    }
    lines.back() += piece;
    used += displayWidth(piece);
  }
  for (std::string& line : lines) {
    line = withoutBlanksBehind(line);
  }
  return lines;
}

std::size_t columnsLeft(std::size_t width, std::size_t taken) {
  return width == SIZE_MAX ? width : width - std::min(width, taken);
}

void addBehind(Lines& lines, const std::string& first, std::size_t firstWidth, Lines text) {
  const std::string blanks(firstWidth, ' ');
  for (std::size_t i = 0; i < text.size(); ++i) {
    lines.push_back((i == 0 ? first : blanks) + text[i]);
  }
}

std::vector<std::string> piecesOf(std::string_view text) {
  std::vector<std::string> pieces;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find_first_of(" ;"), text.size() - 1) + 1;
    pieces.emplace_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  return pieces;
}

}  // namespace platen::tool
