// SPDX-License-Identifier: Apache-2.0

/// base64, RFC 4648 §4:
///
///     base64 = *4DIGIT [ 2DIGIT "==" / 3DIGIT "=" ]     ; unused bits are zero

#include <array>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveForm.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::uint32_t octetAt(std::string_view octets, std::size_t index) {
  return index < octets.size() ? static_cast<std::uint8_t>(octets[index]) : 0U;
}

std::uint32_t valueOf(char digit) {
  const std::size_t value = kDigits.find(digit);
  if (value == std::string_view::npos) {
    throw ArchiveFault{IPPArchiveError::invalidText, "", "not base64"};
  }
  return static_cast<std::uint32_t>(value);
}

void appendQuantum(std::string& octets, std::string_view digits) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    bits = bits << 6U | (i < digits.size() ? valueOf(digits[i]) : 0);
  }
  for (std::size_t i = 1; i < digits.size(); ++i) {
    octets += static_cast<char>(bits >> (24 - 8 * i));
  }
}

}  // namespace

std::string base64Of(std::string_view octets) {
  std::string text;
  for (std::size_t i = 0; i < octets.size(); i += 3) {
    const std::uint32_t bits =
        octetAt(octets, i) << 16U | octetAt(octets, i + 1) << 8U | octetAt(octets, i + 2);
    const std::size_t used = std::min<std::size_t>(octets.size() - i, 3) + 1;
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit < used ? kDigits[bits >> (18 - 6 * digit) & 63U] : '=';
    }
  }
  return text;
}

std::string octetsOfBase64(std::string_view text) {
  std::string octets;
  std::string_view digits = text.substr(0, text.find('='));
  while (!digits.empty()) {
    appendQuantum(octets, digits.substr(0, 4));
    digits.remove_prefix(std::min<std::size_t>(digits.size(), 4));
  }
  // One spelling for each run of octets: padding that is there, and bits without a use that are 0.
  if (base64Of(octets) != text) {
    throw ArchiveFault{IPPArchiveError::invalidText, "", "not base64"};
  }
  return octets;
}

}  // namespace platen::inline v0
