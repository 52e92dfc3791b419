// SPDX-License-Identifier: Apache-2.0
#include "DisplayText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>

namespace platen::tool {

namespace {

constexpr char32_t kInvalid = 0xFFFFFFFF;

struct Character {
  char32_t code;
  std::size_t length;
};

struct Interval {
  char32_t first;
  char32_t last;
};

template <std::size_t count>
bool contains(const std::array<Interval, count>& intervals, char32_t code) {
  return std::any_of(intervals.begin(), intervals.end(), [code](const Interval& interval) {
    return code >= interval.first && code <= interval.last;
  });
}

// C0, DEL, C1, zero-width blanks, marks of direction, separators, invisible format characters. The
// two joiners are left alone: Persian and the scripts of India need them.
constexpr std::array<Interval, 9> kHarmful{{{0x00, 0x1F},
                                            {0x7F, 0x9F},
                                            {0x61C, 0x61C},
                                            {0x200B, 0x200B},
                                            {0x200E, 0x200F},
                                            {0x2028, 0x202E},
                                            {0x2060, 0x206F},
                                            {0xFEFF, 0xFEFF},
                                            {0xE0000, 0xE007F}}};

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

// How many octets a character has by its first one; 0 for one that begins none.
std::size_t lengthFrom(unsigned char first) {
  if (first < 0x80) {
    return 1;
  }
  if (first < 0xC2 || first > 0xF4) {
    return 0;
  }
  return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

bool isShortest(char32_t code, std::size_t length) {
  constexpr std::array<char32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code >= kLeast.at(length) && code <= 0x10FFFF && !isSurrogate;
}

// The first character of `text`, which is not empty; an octet that begins none counts as one.
Character firstOf(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = lengthFrom(first);
  if (length == 0 || length > text.size()) {
    return {kInvalid, 1};
  }
  char32_t code = length == 1 ? first : first & (0x7FU >> length);
  for (const char octet : text.substr(1, length - 1)) {
    if ((static_cast<unsigned char>(octet) & 0xC0U) != 0x80U) {
      return {kInvalid, 1};
    }
    code = (code << 6U) | (static_cast<unsigned char>(octet) & 0x3FU);
  }
  return isShortest(code, length) ? Character{code, length} : Character{kInvalid, 1};
}

std::string numbered(const char* format, char32_t code) {
  std::array<char, 16> text{};
  const int size = std::snprintf(text.data(), text.size(), format, static_cast<unsigned>(code));
  return {text.data(), static_cast<std::size_t>(std::max(size, 0))};
}

std::string escaped(char32_t code) {
  switch (code) {
    case U'\n':
      return "\\n";
    case U'\r':
      return "\\r";
    case U'\t':
      return "\\t";
    default:
      return numbered(code < 0x80 ? "\\x%02x" : "\\u%04x", code);
  }
}

std::string harmlessCharacter(const Character& character, std::string_view octets) {
  if (character.code == kInvalid) {
    return numbered("\\x%02x", static_cast<unsigned char>(octets.front()));
  }
  return contains(kHarmful, character.code) ? escaped(character.code) : std::string(octets);
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
    const Character character = firstOf(text);
    result += harmlessCharacter(character, text.substr(0, character.length));
    text.remove_prefix(character.length);
  }
  return result;
}

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = firstOf(text);
    width += widthOf(character.code);
    text.remove_prefix(character.length);
  }
  return width;
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
