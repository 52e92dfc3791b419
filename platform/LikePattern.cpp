// SPDX-License-Identifier: Apache-2.0

#include "platform/LikePattern.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/CaseFold.h"
#include "platform/Utf8.h"

namespace platen::inline v0 {
namespace {

// ASCII text is compared as it lies, other text in its folded copy. `unit` brings both to the same
// ground, so that either may be matched against either.
char32_t unit(char octet) noexcept { return static_cast<unsigned char>(asciiLower(octet)); }
char32_t unit(char32_t folded) noexcept { return folded; }

/// Only the last `*` is ever gone back to: whatever an earlier one could have taken instead, the
/// last can take as well. That keeps hostile patterns at pattern length × text length steps.
template <typename P, typename T>
bool matchesWhole(std::basic_string_view<P> pattern, std::basic_string_view<T> text) noexcept {
  constexpr std::size_t kNone = std::basic_string_view<P>::npos;
  std::size_t inPattern = 0;
  std::size_t inText = 0;
  std::size_t afterStar = kNone;
  std::size_t retry = 0;
  while (inText < text.size()) {
    const bool more = inPattern < pattern.size();
    if (more && pattern[inPattern] == P{'*'}) {
      afterStar = ++inPattern;
      retry = inText;
    } else if (more &&
               (pattern[inPattern] == P{'?'} || unit(pattern[inPattern]) == unit(text[inText]))) {
      ++inPattern;
      ++inText;
    } else if (afterStar != kNone) {
      inPattern = afterStar;
      inText = ++retry;
    } else {
      return false;
    }
  }
  while (inPattern < pattern.size() && pattern[inPattern] == P{'*'}) ++inPattern;
  return inPattern == pattern.size();
}

template <typename P, typename T>
bool contains(std::basic_string_view<T> text, std::basic_string_view<P> part) {
  const auto same = [](T left, P right) { return unit(left) == unit(right); };
  return part.empty() ||
         std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern)
    : pattern_(pattern),
      isAscii_(isAscii(pattern)),
      isValid_(true),
      hasWildcards_(pattern.find_first_of("*?") != std::string_view::npos) {
  if (isAscii_) return;
  auto folded = foldedCaseAndDiacritics(pattern);
  isValid_ = folded.has_value();
  if (isValid_) folded_ = std::move(*folded);
}

bool LikePattern::matchesAscii(std::string_view text) const {
  if (isAscii_ && !hasWildcards_) return equalsIgnoringAsciiCase(pattern_, text);
  if (isAscii_ || !isValid_) return matchesWhole(pattern_, text);
  return matchesWhole(std::u32string_view{folded_}, text);
}

bool LikePattern::matchesFolded(std::u32string_view text) const {
  return isAscii_ ? matchesWhole(pattern_, text) : matchesWhole(std::u32string_view{folded_}, text);
}

bool LikePattern::matches(std::string_view text) const {
  if (isAscii(text)) return matchesAscii(text);
  if (!isValid_) return matchesWhole(pattern_, text);
  const auto folded = foldedCaseAndDiacritics(text);
  return folded ? matchesFolded(*folded) : matchesWhole(pattern_, text);
}

bool containsFolded(std::string_view text, std::string_view part) {
  if (isAscii(text) && isAscii(part)) return contains(text, part);
  const auto foldedText = foldedCaseAndDiacritics(text);
  const auto foldedPart = foldedCaseAndDiacritics(part);
  if (!foldedText || !foldedPart) return contains(text, part);
  return contains(std::u32string_view{*foldedText}, std::u32string_view{*foldedPart});
}

}  // namespace platen::inline v0
