// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Text with letter case and diacritic marks taken away. All functions are pure and may be called
/// from any thread.

#include <optional>
#include <string>
#include <string_view>

namespace platen::inline v0 {

/// The small form of an ASCII letter; any other octet as it is, whatever the locale.
constexpr char asciiLower(char octet) noexcept {
  return octet >= 'A' && octet <= 'Z' ? static_cast<char>(octet - 'A' + 'a') : octet;
}

/// True when the two have the same length and differ in the case of ASCII letters only.
bool equalsIgnoringAsciiCase(std::string_view left, std::string_view right) noexcept;

/// `utf8` as the characters that count in a comparison that ignores case and diacritic marks.
///
/// - Canonically equivalent texts give the same characters.
/// - Case is folded simply (one character to one): "ẞ" gives "ß", never "ss", so that a wildcard
///   for one character stays one.
/// - Taken away are the nonspacing marks that have the Unicode property Diacritic or belong to no
///   one script: accents, tone marks, Arabic and Hebrew points, variation selectors. Marks that
///   make another letter of their base are kept: viramas, nuktas, the kana sound marks, and the
///   vowel signs of Indic and Thai script. A letter with a stroke ("ø", "ł") is a letter of its
///   own, for Unicode does not decompose it.
/// - What is left is composed, so that a Hangul syllable is one character.
///
/// Nothing when the text is not valid UTF-8 or longer than 64 MiB.
std::optional<std::u32string> foldedCaseAndDiacritics(std::string_view utf8);

}  // namespace platen::inline v0
