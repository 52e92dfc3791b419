// SPDX-License-Identifier: Apache-2.0
#include "platform/IntegerText.h"

#include <algorithm>
#include <limits>

namespace platen::inline v0 {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

std::string_view withoutLeadingBlanks(std::string_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}

constexpr bool isDigit(char character) noexcept { return character >= '0' && character <= '9'; }

/// The leading digits of `text` as a number, but never more than `limit`.
std::int64_t leadingDigits(std::string_view text, std::int64_t limit) noexcept {
  std::int64_t magnitude = 0;
  for (const char character : text) {
    if (!isDigit(character)) break;
    magnitude = magnitude * 10 + (character - '0');
    // Further digits cannot bring it back, and must not overflow the wider type either.
    if (magnitude >= limit) return limit;
  }
  return magnitude;
}

}  // namespace

std::int32_t leadingIntValue(std::string_view text) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  text = withoutLeadingBlanks(text);
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  if (!isNegative) return static_cast<std::int32_t>(leadingDigits(text, Limits::max()));
  return static_cast<std::int32_t>(-leadingDigits(text, -std::int64_t{Limits::min()}));
}

}  // namespace platen::inline v0
