// SPDX-License-Identifier: Apache-2.0

#include "platform/CaseFold.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/Utf8.h"

// The C API only: it alone keeps its binary interface from one release to the next.
#define U_SHOW_CPLUSPLUS_API 0
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/uscript.h>
#include <unicode/ustring.h>

namespace platen::inline v0 {
namespace {

/// ICU counts in 32 bits; a decomposition is at most four times as long as what it came from.
constexpr std::size_t kLongestText = std::size_t{64} << 20U;

/// Combining classes of the marks that make another letter of their base.
constexpr int kNuktaClass = 7;
constexpr int kKanaVoicingClass = 8;
constexpr int kViramaClass = 9;

bool isIgnoredMark(UChar32 character) {
  if (u_charType(character) != U_NON_SPACING_MARK) return false;
  const int combiningClass = u_getCombiningClass(character);
  if (combiningClass == kNuktaClass || combiningClass == kKanaVoicingClass ||
      combiningClass == kViramaClass) {
    return false;
  }
  UErrorCode error = U_ZERO_ERROR;
  return u_hasBinaryProperty(character, UCHAR_DIACRITIC) != 0 ||
         uscript_getScript(character, &error) == USCRIPT_INHERITED;
}

void appendUtf16(std::u16string& text, char32_t character) {
  if (character < 0x10000) {
    text.push_back(static_cast<char16_t>(character));
    return;
  }
  const char32_t offset = character - 0x10000;
  text.push_back(static_cast<char16_t>(0xD800U + (offset >> 10U)));
  text.push_back(static_cast<char16_t>(0xDC00U + (offset & 0x3FFU)));
}

std::optional<std::u16string> utf16OfUtf8(std::string_view utf8) {
  std::u16string result;
  result.reserve(utf8.size());
  while (!utf8.empty()) {
    const CodePoint next = firstCodePoint(utf8);
    if (next.size == 0) return std::nullopt;
    appendUtf16(result, next.value);
    utf8.remove_prefix(next.size);
  }
  return result;
}

/// The UTF-16 here comes from valid UTF-8, so every surrogate has its partner.
std::u32string utf32OfUtf16(std::u16string_view utf16) {
  std::u32string result;
  result.reserve(utf16.size());
  for (std::size_t index = 0; index < utf16.size(); ++index) {
    char32_t character = utf16[index];
    if (character >= 0xD800 && character < 0xDC00 && index + 1 < utf16.size()) {
      ++index;
      character = 0x10000U + ((character - 0xD800U) << 10U) + (utf16[index] - 0xDC00U);
    }
    result.push_back(character);
  }
  return result;
}

std::optional<std::u16string> normalized(const UNormalizer2* form, std::u16string_view text) {
  std::u16string result(text.size() + text.size() / 2 + 16, u'\0');
  for (int attempt = 0; attempt < 2; ++attempt) {
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length =
        unorm2_normalize(form, text.data(), static_cast<std::int32_t>(text.size()), result.data(),
                         static_cast<std::int32_t>(result.size()), &error);
    if (error != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(error)) return std::nullopt;
    result.resize(static_cast<std::size_t>(length));
    if (U_SUCCESS(error)) return result;
  }
  return std::nullopt;
}

/// Case is folded between decomposition and composition, so that two texts that differ in case
/// only are the same text by the time they are composed.
std::u16string foldedDecomposed(std::u16string_view decomposed) {
  std::u16string result;
  result.reserve(decomposed.size());
  for (const char32_t character : utf32OfUtf16(decomposed)) {
    const auto value = static_cast<UChar32>(character);
    if (isIgnoredMark(value)) continue;
    appendUtf16(result, static_cast<char32_t>(u_foldCase(value, U_FOLD_CASE_DEFAULT)));
  }
  return result;
}

}  // namespace

bool equalsIgnoringAsciiCase(std::string_view left, std::string_view right) noexcept {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return asciiLower(a) == asciiLower(b); });
}

std::optional<std::u32string> foldedCaseAndDiacritics(std::string_view utf8) {
  if (utf8.size() > kLongestText) return std::nullopt;
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2* decomposing = unorm2_getNFDInstance(&error);
  const UNormalizer2* composing = unorm2_getNFCInstance(&error);
  if (U_FAILURE(error)) return std::nullopt;
  const auto text = utf16OfUtf8(utf8);
  if (!text) return std::nullopt;
  const auto decomposed = normalized(decomposing, *text);
  if (!decomposed) return std::nullopt;
  const auto composed = normalized(composing, foldedDecomposed(*decomposed));
  if (!composed) return std::nullopt;
  return utf32OfUtf16(*composed);
}

}  // namespace platen::inline v0
