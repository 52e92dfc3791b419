// SPDX-License-Identifier: Apache-2.0

/// The primitive fields of the binary form (RFC 8010 §3), the same for every sequential coder:
///
///     byte    = OCTET
///     int16   = 2OCTET              ; most significant first, two's complement
///     int32   = 4OCTET              ; the same
///     string  = int16 *OCTET        ; as many octets as the int16 says
///
/// The writer does not check a run against the 16 bits of its count and the reader takes no count
/// of 0x8000 and above: both limits are kept apart on purpose, 32767 octets always work.

#include <cstring>

#include "platen/Exception.h"
#include "platen/IPPCoder.h"

namespace platen::inline v0 {

void IPPCoder::encodeByte(std::uint8_t value) { encodeValueOfType('c', &value); }

void IPPCoder::encodeInt16(std::int16_t value) { encodeValueOfType('s', &value); }

void IPPCoder::encodeInt32(std::int32_t value) { encodeValueOfType('i', &value); }

namespace {

std::string_view upToFirstZero(std::string_view octets) {
  return octets.substr(0, octets.find('\0'));
}

}  // namespace

void IPPCoder::encodeString(std::optional<std::string_view> string, TextEncoding encoding) {
  if (!string) {
    encodeBytes(nullptr, 0);
    return;
  }
  const Bytes octets(reinterpret_cast<const std::uint8_t*>(string->data()), string->size());
  if (encoding.isIdentity(octets)) {
    const std::string_view written = upToFirstZero(*string);
    encodeBytes(written.data(), written.size());
    return;
  }
  const std::optional<std::string> converted = encoding.encode(*string);
  const std::string_view written = converted ? upToFirstZero(*converted) : std::string_view();
  encodeBytes(written.data(), written.size());
}

void IPPCoder::encodeNaturalLanguageString(std::optional<std::string_view> string) {
  encodeString(string, naturalLanguageEncoding());
}

void IPPCoder::encodeASCIIString(std::optional<std::string_view> string) {
  encodeString(string, TextEncoding::ascii());
}

void IPPCoder::encodeOctetString(std::optional<std::string_view> string) {
  encodeString(string, TextEncoding::utf8());
}

std::uint8_t IPPCoder::decodeByte() {
  if (next_ != end_) {
    return *next_++;
  }
  std::uint8_t value = 0;
  decodeValueOfType('c', &value);
  return value;
}

std::int16_t IPPCoder::decodeInt16() {
  if (end_ - next_ >= 2) {
    const auto value = static_cast<std::int16_t>(next_[0] << 8U | next_[1]);
    next_ += 2;
    return value;
  }
  std::uint16_t value = 0;
  decodeValueOfType('s', &value);
  return static_cast<std::int16_t>(value);
}

std::int32_t IPPCoder::decodeInt32() {
  std::uint32_t value = 0;
  decodeValueOfType('i', &value);
  return static_cast<std::int32_t>(value);
}

Text IPPCoder::decodeStringUsingEncoding(TextEncoding encoding) {
  const Bytes octets = decodeBytesWithReturnedLength();
  if (octets.empty()) {
    return {};
  }
  if (encoding.isIdentity(octets)) {
    return keepText({reinterpret_cast<const char*>(octets.data()), octets.size()});
  }
  const std::optional<std::string> converted = encoding.decode(octets);
  return converted ? keepText(*converted) : Text();
}

Text IPPCoder::decodeNaturalLanguageString() {
  return decodeStringUsingEncoding(naturalLanguageEncoding());
}

Text IPPCoder::decodeASCIIString() { return decodeStringUsingEncoding(TextEncoding::ascii()); }

Text IPPCoder::decodeOctetString() { return decodeStringUsingEncoding(TextEncoding::utf8()); }

std::int32_t IPPCoder::decodeIPPTag() {
  const auto tag = static_cast<std::int8_t>(decodeByte());
  setCurrentTag(tag);
  return tag;
}

}  // namespace platen::inline v0
