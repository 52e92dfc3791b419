// SPDX-License-Identifier: Apache-2.0

#include "platen/TextEncoding.h"

#include "platform/CaseFold.h"
#include "platform/ICUConverter.h"
#include "platform/Utf8.h"

namespace platen::inline v0 {
namespace {

std::string_view asText(Bytes octets) noexcept {
  return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

std::optional<std::string> latin1OfUtf8(std::string_view utf8) {
  std::string result;
  result.reserve(utf8.size());
  while (!utf8.empty()) {
    const CodePoint next = firstCodePoint(utf8);
    if (next.size == 0 || next.value > 0xFF) return std::nullopt;
    result.push_back(static_cast<char>(next.value));
    utf8.remove_prefix(next.size);
  }
  return result;
}

std::string utf8OfLatin1(std::string_view octets) {
  std::string result;
  result.reserve(octets.size() + octets.size() / 2);
  for (const char octet : octets) appendUtf8(result, static_cast<unsigned char>(octet));
  return result;
}

}  // namespace

std::optional<TextEncoding> TextEncoding::forIANACharSetName(std::string_view name) {
  // What nearly every message names is answered without the list of charsets.
  if (equalsIgnoringAsciiCase(name, "utf-8")) return utf8();
  if (equalsIgnoringAsciiCase(name, "us-ascii")) return ascii();
  if (equalsIgnoringAsciiCase(name, "iso-8859-1")) return latin1();
  const auto charset = charsetOfIANAName(name);
  if (!charset) return std::nullopt;
  return TextEncoding(*charset);
}

std::string TextEncoding::name() const {
  switch (identifier_) {
    case kUtf8Charset:
      return "UTF-8";
    case kAsciiCharset:
      return "US-ASCII";
    case kLatin1Charset:
      return "ISO-8859-1";
    default:
      return nameOfCharset(identifier_);
  }
}

std::optional<std::string> TextEncoding::encode(std::string_view utf8) const {
  // What needs no conversion in the one direction needs none in the other.
  if (isIdentity({reinterpret_cast<const std::uint8_t*>(utf8.data()), utf8.size()})) {
    return std::string(utf8);
  }
  if (identifier_ <= kAsciiCharset) return std::nullopt;
  if (identifier_ == kLatin1Charset) return latin1OfUtf8(utf8);
  return convertedFromUtf8(identifier_, utf8);
}

std::optional<std::string> TextEncoding::decode(Bytes octets) const {
  if (isIdentity(octets)) return std::string(asText(octets));
  if (identifier_ <= kAsciiCharset) return std::nullopt;
  if (identifier_ == kLatin1Charset) return utf8OfLatin1(asText(octets));
  return convertedToUtf8(identifier_, asText(octets));
}

bool TextEncoding::isIdentity(Bytes octets) const noexcept {
  switch (identifier_) {
    case kUtf8Charset:
      return isValidUtf8(asText(octets));
    case kAsciiCharset:
    case kLatin1Charset:
      return isAscii(asText(octets));
    default:
      return isSameInUtf8(identifier_, asText(octets));
  }
}

}  // namespace platen::inline v0
