// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The charsets that ICU converts, and conversion between them and UTF-8.
///
/// The list is built once, on the first call, and only read afterwards; it holds what this system
/// can convert and nothing else, so names that come off the wire cannot make it grow. A charset is
/// known by its place in it. Every conversion opens converters of its own (a quarter of a
/// microsecond), so all functions may be called from any thread.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platen::inline v0 {

// The first places of the list, whatever ICU offers; they are converted without ICU.
inline constexpr std::uint32_t kUtf8Charset = 0;
inline constexpr std::uint32_t kAsciiCharset = 1;
inline constexpr std::uint32_t kLatin1Charset = 2;

/// The charset of a registered name or alias, in any letter case; the rest of the name must be
/// exact. Nothing for every other name and for charsets whose octets depend on a shift state.
std::optional<std::uint32_t> charsetOfIANAName(std::string_view name);

/// How many charsets the list holds; their places are the numbers below it.
std::uint32_t charsetCount();

/// The preferred MIME name, else the registered name. `charset` must come from this file.
const std::string& nameOfCharset(std::uint32_t charset);

/// True when every one of `octets` is in `charset` just the ASCII character that it is in UTF-8,
/// in both directions; so the text is its own UTF-8 form.
bool isSameInUtf8(std::uint32_t charset, std::string_view octets);

/// `utf8` in `charset`. Nothing when it is not valid, or when a character has no place there;
/// nothing is substituted, and nothing is left out.
std::optional<std::string> convertedFromUtf8(std::uint32_t charset, std::string_view utf8);

/// `octets` of `charset` in UTF-8. Nothing when an octet stands for no character there, or when
/// the last character is cut off.
std::optional<std::string> convertedToUtf8(std::uint32_t charset, std::string_view octets);

}  // namespace platen::inline v0
