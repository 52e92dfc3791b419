// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The tests "like" and "contains" of names, both blind to letter case and diacritic marks.

#include <string>
#include <string_view>

namespace platen::inline v0 {

/// A pattern over a whole text: `*` stands for any run of characters, also none, `?` for exactly
/// one; every other character, the backslash included, stands for itself whatever its letter case
/// and diacritic marks.
///
/// One character is one code point of what `foldedCaseAndDiacritics` makes of the text, so an "é"
/// is one character whether written as one code point or as two, and a mark standing alone is none.
/// A text or a pattern that is not valid UTF-8 is compared octet by octet, ASCII letters without
/// regard to case; then `?` stands for one octet.
///
/// A match takes at most pattern length × text length steps. Where both are ASCII nothing is
/// allocated.
///
/// Threads: immutable; may be shared between threads.
class LikePattern {
 public:
  /// @param pattern  borrowed: its octets must outlive this object.
  explicit LikePattern(std::string_view pattern);

  /// True when the pattern covers the whole of `text`.
  [[nodiscard]] bool matches(std::string_view text) const;

 private:
  [[nodiscard]] bool matchesAscii(std::string_view text) const;
  [[nodiscard]] bool matchesFolded(std::u32string_view text) const;

  std::string_view pattern_;
  std::u32string folded_;  ///< Of a pattern that is valid and not ASCII; otherwise empty.
  bool isAscii_;
  bool isValid_;
  bool hasWildcards_;
};

/// True when `part` occurs somewhere in `text`, by the comparison rule of `LikePattern`. Nothing
/// is special in `part`. Empty `part` occurs in every text.
bool containsFolded(std::string_view text, std::string_view part);

}  // namespace platen::inline v0
