// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// UTF-8 in the strict form of RFC 3629: no overlong form, no surrogate, nothing above U+10FFFF.
/// All functions are pure and may be called from any thread.

#include <cstddef>
#include <string>
#include <string_view>

namespace platen::inline v0 {

/// One character read from the front of a text.
struct CodePoint {
  char32_t value = 0;
  std::size_t size = 0;  ///< Octets that it occupies, 1 to 4; 0 when none could be read.
};

/// True when every octet is below 0x80; true for empty text.
bool isAscii(std::string_view text) noexcept;

/// True when the whole of `text` is well formed; true for empty text. U+0000 is a character like
/// any other.
bool isValidUtf8(std::string_view text) noexcept;

/// The character at the front of `text`. Its size is 0 when the text is empty or does not begin
/// with a well-formed sequence.
CodePoint firstCodePoint(std::string_view text) noexcept;

/// How many characters `text` has. An octet that is part of no well-formed sequence counts as one.
std::size_t countCodePoints(std::string_view text) noexcept;

/// Appends the UTF-8 form of `character`, which must be a Unicode scalar value.
void appendUtf8(std::string& text, char32_t character);

}  // namespace platen::inline v0
