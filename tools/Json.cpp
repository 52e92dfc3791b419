// SPDX-License-Identifier: Apache-2.0
#include "Json.h"

#include <array>
#include <cstdio>

#include "Characters.h"

namespace platen::tool {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr char32_t kFirstOfPairs = 0x10000;

std::string numberedUnit(char32_t unit) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "\\u%04x", static_cast<unsigned>(unit) & 0xFFFFU);
  return text.data();
}

// RFC 8259 §7: beyond 16 bits as a pair of surrogates.
std::string numbered(char32_t code) {
  if (code < kFirstOfPairs) {
    return numberedUnit(code);
  }
  const char32_t rest = code - kFirstOfPairs;
  return numberedUnit(0xD800U + (rest >> 10U)) + numberedUnit(0xDC00U + (rest & 0x3FFU));
}

std::string written(const Character& character, std::string_view octets) {
  if (character.code == kNoCharacter) {
    return std::string(kReplacement);
  }
  if (character.code == U'"' || character.code == U'\\') {
    return "\\" + std::string(octets);
  }
  return isHarmful(character.code) ? escaped(character.code, &numbered) : std::string(octets);
}

}  // namespace

Json::Json(std::string_view text) : text_("\"") {
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    text_ += written(character, text.substr(0, character.length));
    text.remove_prefix(character.length);
  }
  text_ += '"';
}

Json Json::array(const std::vector<Json>& values) {
  Json result;
  result.text_ = "[";
  for (const Json& value : values) {
    result.text_.append(result.text_.size() > 1 ? "," : "").append(value.text());
  }
  result.text_ += "]";
  return result;
}

Json Json::object(const std::vector<Member>& members) {
  Json result;
  result.text_ = "{";
  for (const auto& [name, value] : members) {
    result.text_.append(result.text_.size() > 1 ? "," : "").append(Json(name).text());
    result.text_.append(":").append(value.text());
  }
  result.text_ += "}";
  return result;
}

}  // namespace platen::tool
