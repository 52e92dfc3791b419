// SPDX-License-Identifier: Apache-2.0
#include "Characters.h"

#include <algorithm>
#include <array>

namespace platen::tool {

namespace {

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

}  // namespace

Character firstCharacter(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = lengthFrom(first);
  if (length == 0 || length > text.size()) {
    return {kNoCharacter, 1};
  }
  char32_t code = length == 1 ? first : first & (0x7FU >> length);
  for (const char octet : text.substr(1, length - 1)) {
    if ((static_cast<unsigned char>(octet) & 0xC0U) != 0x80U) {
      return {kNoCharacter, 1};
    }
    code = (code << 6U) | (static_cast<unsigned char>(octet) & 0x3FU);
  }
  return isShortest(code, length) ? Character{code, length} : Character{kNoCharacter, 1};
}

bool isHarmful(char32_t code) {
  return std::any_of(kHarmful.begin(), kHarmful.end(), [code](const Interval& interval) {
    return code >= interval.first && code <= interval.last;
  });
}

std::string escaped(char32_t code, std::string (*numbered)(char32_t code)) {
  switch (code) {
    case U'\n':
      return "\\n";
    case U'\r':
      return "\\r";
    case U'\t':
      return "\\t";
    default:
      return numbered(code);
  }
}

}  // namespace platen::tool
