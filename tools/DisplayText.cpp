// SPDX-License-Identifier: Apache-2.0
#include "DisplayText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "CharacterWidths.h"
#include "Characters.h"

namespace platen::tool {

namespace {

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
    width += columnsOf(character.code);
    text.remove_prefix(character.length);
  }
  return width;
}

std::string_view beginning(std::string_view text, std::size_t width) {
  std::size_t length = 0;
  while (length < text.size()) {
    const Character character = firstCharacter(text.substr(length));
    const std::size_t own = columnsOf(character.code);
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
