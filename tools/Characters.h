// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Characters out of UTF-8 that nobody has checked.

#include <cstddef>
#include <string>
#include <string_view>

namespace platen::tool {

/// The code of an octet that begins no character.
constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct Character {
  char32_t code;
  /// In octets.
  std::size_t length;
};

/// The first character of `text`, which is not empty; an octet that begins none counts as one.
Character firstCharacter(std::string_view text);

/// Whether the character could act on a terminal or turn the words around it: control characters,
/// line and paragraph separators, marks of writing direction, what cannot be seen.
bool isHarmful(char32_t code);

/// A character of which only a name may be written: `\n`, `\r` and `\t`, all others by `numbered`.
std::string escaped(char32_t code, std::string (*numbered)(char32_t code));

/// Codes from one to another, both included.
struct Interval {
  char32_t first;
  char32_t last;
};

}  // namespace platen::tool
