// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// IPP messages by hand (RFC 8010 §3.1), independent of the library's own encoder.

namespace platen::test {

inline std::string int16(std::uint32_t value) {
  return {static_cast<char>((value >> 8U) & 0xFFU), static_cast<char>(value & 0xFFU)};
}

inline std::string int32(std::int64_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return int16(bits >> 16U) + int16(bits & 0xFFFFU);
}

inline std::string counted(std::string_view octets) {
  return int16(static_cast<std::uint32_t>(octets.size())) + std::string(octets);
}

inline std::string octet(unsigned value) { return std::string(1, static_cast<char>(value)); }

/// Version 1.1 and request-id 1.
inline std::string header(std::uint32_t code) {
  return octet(1) + octet(1) + int16(code) + int32(1);
}

inline std::string attribute(unsigned tag, std::string_view name, std::string_view value) {
  return octet(tag) + counted(name) + counted(value);
}

/// One more value of the attribute before.
inline std::string also(unsigned tag, std::string_view value) { return attribute(tag, "", value); }

inline std::string member(std::string_view name, unsigned tag, std::string_view value) {
  return also(0x4A, name) + also(tag, value);
}

inline std::string memberCollection(std::string_view name, std::string_view members) {
  return also(0x4A, name) + also(0x34, "") + std::string(members) + also(0x37, "");
}

inline std::string collection(std::string_view name, std::string_view members) {
  return attribute(0x34, name, "") + std::string(members) + also(0x37, "");
}

inline std::string charsetAndLanguage() {
  return attribute(0x47, "attributes-charset", "utf-8") +
         attribute(0x48, "attributes-natural-language", "en");
}

/// A response with these groups behind its operation group.
inline std::string response(std::uint32_t status, std::string_view groups) {
  return header(status) + "\x01" + charsetAndLanguage() + std::string(groups) + "\x03";
}

/// A response whose one printer group holds these attributes.
inline std::string printerResponse(std::string_view attributes) {
  return header(0) + "\x04" + std::string(attributes) + "\x03";
}

}  // namespace platen::test
