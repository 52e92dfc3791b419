// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Utf8.h"

namespace platen {
namespace {

using namespace std::string_view_literals;

struct Vector {
  std::string_view octets;
  std::u32string_view characters;
};

// The corners of RFC 3629 §4, from both sides, in both directions.
constexpr Vector kWellFormed[] = {
    {""sv, U""sv},
    {"a"sv, U"a"sv},
    {"\0"sv, U"\0"sv},
    {"\x7F"sv, U"\x7F"sv},
    {"\xC2\x80"sv, U"\x80"sv},
    {"\xDF\xBF"sv, U"\x7FF"sv},
    {"\xE0\xA0\x80"sv, U"\x800"sv},
    {"\xED\x9F\xBF"sv, U"\xD7FF"sv},
    {"\xEE\x80\x80"sv, U"\xE000"sv},
    {"\xEF\xBF\xBF"sv, U"\xFFFF"sv},
    {"\xF0\x90\x80\x80"sv, U"\x10000"sv},
    {"\xF4\x8F\xBF\xBF"sv, U"\x10FFFF"sv},
    {"Gr\xC3\xBC\xC3\x9F"
     "e \xE2\x82\xAC \xF0\x9F\x96\xA8 printer"sv,
     U"Grüße € 🖨 printer"sv},
};

constexpr std::string_view kIllFormed[] = {
    "\x80"sv,              // a tail without a lead
    "\xBF"sv,              //
    "\xC0\x80"sv,          // U+0000 in two octets
    "\xC1\xBF"sv,          // U+007F in two octets
    "\xE0\x9F\xBF"sv,      // U+07FF in three octets
    "\xF0\x8F\xBF\xBF"sv,  // U+FFFF in four octets
    "\xED\xA0\x80"sv,      // the first surrogate
    "\xED\xBF\xBF"sv,      // the last surrogate
    "\xF4\x90\x80\x80"sv,  // U+110000
    "\xF5\x80\x80\x80"sv,  // a lead that can only begin something larger
    "\xF8\x88\x80\x80\x80"sv,
    "\xFF"sv,
    "\xFE"sv,
    "\xC3("sv,          // a lead without its tail
    "\xE2\x82("sv,      //
    "\xC3\xC3\xA9"sv,   //
    "\xF0\x9F\x96o"sv,  //
};

std::string encoded(std::u32string_view characters) {
  std::string text;
  for (const char32_t character : characters) appendUtf8(text, character);
  return text;
}

std::u32string decoded(std::string_view text) {
  std::u32string characters;
  while (!text.empty()) {
    const CodePoint next = firstCodePoint(text);
    if (next.size == 0) break;
    characters.push_back(next.value);
    text.remove_prefix(next.size);
  }
  return characters;
}

TEST(Utf8, ReadsAndWritesTheCornersOfEveryLength) {
  for (const auto& [octets, characters] : kWellFormed) {
    EXPECT_TRUE(isValidUtf8(octets)) << octets;
    EXPECT_EQ(encoded(characters), octets);
    EXPECT_EQ(decoded(octets), characters) << octets;
    EXPECT_EQ(countCodePoints(octets), characters.size()) << octets;
  }
}

TEST(Utf8, RefusesWhatIsNotWellFormedWhereverItStands) {
  for (const std::string_view octets : kIllFormed) {
    EXPECT_EQ(firstCodePoint(octets).size, 0U) << testing::PrintToString(octets);
    for (std::size_t before = 0; before < 20; ++before) {
      const std::string text = std::string(before, 'x') + std::string(octets) + "tail of the text";
      EXPECT_FALSE(isValidUtf8(text)) << testing::PrintToString(text);
      EXPECT_FALSE(isAscii(text));
    }
  }
}

TEST(Utf8, RefusesTextThatIsCutWithinACharacter) {
  for (const std::string_view whole : {"\xC3\xA9"sv, "\xE2\x82\xAC"sv, "\xF0\x9F\x96\xA8"sv}) {
    for (std::size_t length = 1; length < whole.size(); ++length) {
      EXPECT_FALSE(isValidUtf8(whole.substr(0, length)));
      EXPECT_EQ(firstCodePoint(whole.substr(0, length)).size, 0U);
    }
  }
}

TEST(Utf8, FindsALoneHighOctetAtEveryPlaceOfALongText) {
  for (std::size_t length = 1; length < 40; ++length) {
    const std::string ascii(length, 'k');
    EXPECT_TRUE(isAscii(ascii));
    EXPECT_TRUE(isValidUtf8(ascii));
    for (std::size_t place = 0; place < length; ++place) {
      std::string text = ascii;
      text[place] = '\x80';
      EXPECT_FALSE(isAscii(text));
      EXPECT_FALSE(isValidUtf8(text));
    }
  }
}

TEST(Utf8, RoundTripsEveryScalarValueAndNoOther) {
  for (char32_t value = 0; value <= 0x110000; ++value) {
    std::string text;
    appendUtf8(text, value);
    const bool isScalar = value < 0xD800 || (value > 0xDFFF && value <= 0x10FFFF);
    const CodePoint read = firstCodePoint(text);
    ASSERT_EQ(read.size, isScalar ? text.size() : 0U) << std::hex << std::uint32_t{value};
    ASSERT_EQ(isValidUtf8(text), isScalar) << std::hex << std::uint32_t{value};
    if (isScalar) {
      ASSERT_EQ(read.value, value);
    }
  }
}

TEST(Utf8, CountsAnOctetOfNoCharacterAsOne) {
  EXPECT_EQ(countCodePoints("a\x80z"sv), 3U);
  EXPECT_EQ(countCodePoints("\xE2\x82"sv), 2U);
  EXPECT_EQ(countCodePoints("12345678\xFF\xC3\xA9"sv), 10U);
}

TEST(Utf8, ReadsNothingFromEmptyText) { EXPECT_EQ(firstCodePoint("").size, 0U); }

}  // namespace
}  // namespace platen
