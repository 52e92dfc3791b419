// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArchiver.h"
#include "platen/IPPStringValue.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

/// A value beside its octets.
struct Body {
  IPPValue::Pointer value;
  std::uint8_t tag;
  std::string octets;
  std::string description;
};

TEST(IPPStringValue, WritesAndReadsEachSyntax) {
  const std::vector<Body> table = {
      {IPPValue::charset("utf-8"), 0x47, "<'utf-8'>", "'utf-8' of charset"},
      {IPPValue::naturalLanguage("en-us"), 0x48, "<'en-us'>", "'en-us' of naturalLanguage"},
      {IPPValue::keyword("none"), 0x44, "<'none'>", "'none' of keyword"},
      {IPPValue::uriScheme("ipps"), 0x46, "<'ipps'>", "'ipps' of uriScheme"},
      {IPPValue::mimeMediaType("text/plain"), 0x49, "<'text/plain'>",
       "'text/plain' of mimeMediaName"},
      {IPPValue::octetString("caf\u00e9"), 0x30, "<'caf' c3a9>", "'caf\u00e9' of octetString"},
      {IPPValue::textWithoutLanguage("caf\u00e9"), 0x41, "<'caf' c3a9>",
       "'caf\u00e9' of textWithoutLanguage"},
      {IPPValue::nameWithoutLanguage("\u65e5"), 0x42, "<e697a5>",
       "'\u65e5' of nameWithoutLanguage"},
      {IPPValue::uri(*URL::parse("IPP://host:631/a%20b")), 0x45, "<'IPP://host:631/a%20b'>",
       "'IPP://host:631/a%20b' of uri"},
  };
  for (const Body& body : table) {
    EXPECT_EQ(body.value->ippTag(), body.tag);
    EXPECT_EQ(encodedHex(*body.value), hexOf(body.octets));
    const auto decoded = decodedValue(body.tag, body.octets);
    EXPECT_TRUE(decoded->isEqual(*body.value)) << body.description;
    EXPECT_EQ(decoded->hash(), body.value->hash());
    EXPECT_EQ(decoded->description(), body.description);
    EXPECT_EQ(body.value->description(), body.description);
  }
}

// --- Limits -----------------------------------------------------------------------------------

/// A factory beside the number of characters from which on it refuses.
struct Limit {
  IPPValue::Pointer (*make)(std::string_view);
  std::size_t limit;
};

const std::vector<Limit>& limits() {
  static const std::vector<Limit> table = {
      {&IPPValue::charset, 64},
      {&IPPValue::naturalLanguage, 64},
      {&IPPValue::uriScheme, 64},
      {&IPPValue::keyword, 256},
      {&IPPValue::mimeMediaType, 256},
      {&IPPValue::nameWithoutLanguage, 256},
      {&IPPValue::octetString, 1024},
      {&IPPValue::textWithoutLanguage, 1024},
      {[](std::string_view text) { return IPPValue::uri(*URL::parse(text)); }, 1024}};
  return table;
}

TEST(IPPStringValue, TakesStringsBelowTheLimitOfTheirSyntax) {
  for (const auto& [make, limit] : limits()) {
    const std::string longest(limit - 1, 'x');
    EXPECT_EQ(make(longest)->stringValue(), longest);
  }
}

TEST(IPPStringValue, RefusesStringsAtTheLimitOfTheirSyntax) {
  for (const auto& limit : limits()) {
    const std::string tooLong(limit.limit, 'x');
    EXPECT_THAT([&] { limit.make(tooLong); }, ThrowsMessage<RangeException>("Invalid parameter"))
        << limit.limit;
  }
}

TEST(IPPStringValue, CountsCharactersAndNotOctets) {
  std::string text;
  for (int i = 0; i < 255; ++i) {
    text += "\u65e5";
  }
  EXPECT_EQ(IPPValue::nameWithoutLanguage(text)->stringValue(), text);
  EXPECT_THROW(IPPValue::nameWithoutLanguage(text + "x"), RangeException);
}

TEST(IPPStringValue, TakesTheEmptyString) {
  const auto value = IPPValue::keyword("");
  EXPECT_EQ(value->stringValue(), "");
  EXPECT_EQ(encodedHex(*value), "00 00");
}

TEST(IPPStringValue, ChecksNoCharacterOfAString) {
  const auto value = IPPValue::keyword("No Keyword; caf\u00e9!");
  EXPECT_EQ(value->stringValue(), "No Keyword; caf\u00e9!");
  EXPECT_EQ(encodedHex(*value), "00 00");  // and ASCII cannot express it
}

TEST(IPPStringValue, ReadsLongerStringsThanItWouldMake) {
  const std::string text(5000, 'x');
  for (const std::uint8_t tag : Data{0x41, 0x42, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x30}) {
    EXPECT_EQ(decodedValue(tag, "<'" + text + "'>")->stringValue(), text);
  }
}

TEST(IPPStringValue, RefusesEveryKindOfRawObjectButItsOwn) {
  const RawValue url = URL::parse("ipp://a/b");
  for (const char* name : {"charset", "naturalLanguage", "uriScheme", "keyword", "mimeMediaName",
                           "nameWithoutLanguage", "octetString", "textWithoutLanguage"}) {
    const IPPValueClass& valueClass = *IPPValue::classForSyntaxName(name);
    EXPECT_TRUE(valueClass._checkValue("text"));
    for (const RawValue& object : {RawValue(), RawValue(Null()), RawValue(1), url,
                                   RawValue(Range{1, 2}), RawValue(RawValue::Array{"text"})}) {
      EXPECT_FALSE(valueClass._checkValue(object)) << name;
      EXPECT_THAT([&] { static_cast<void>(valueClass._ippValue(object)); },
                  ThrowsMessage<RangeException>("Invalid parameter"));
    }
  }
}

TEST(IPPStringValue, RefusesAStringAsAURI) {
  EXPECT_FALSE(IPPUri::descriptor._checkValue("ipp://a/b"));
  EXPECT_THAT([] { static_cast<void>(IPPUri::descriptor._ippValue("ipp://a/b")); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_TRUE(IPPUri::descriptor._checkValue(URL::parse("ipp://a/b")));
}

// --- Conversions --------------------------------------------------------------------------------

TEST(IPPStringValue, ReadsTheDecimalNumberAtTheHeadOfAString) {
  const std::vector<std::pair<std::string, std::int32_t>> table = {{"42abc", 42},
                                                                   {"0", 0},
                                                                   {"none", 0},
                                                                   {"", 0},
                                                                   {"-7 days", -7},
                                                                   {" 12", 12},
                                                                   {"+3", 3},
                                                                   {"99999999999", INT32_MAX},
                                                                   {"-99999999999", INT32_MIN},
                                                                   {"1e3", 1},
                                                                   {"0x10", 0}};
  for (const auto& [text, number] : table) {
    EXPECT_EQ(IPPValue::keyword(text)->intValue(), number) << text;
    EXPECT_EQ(IPPValue::keyword(text)->boolValue(), number != 0) << text;
  }
}

TEST(IPPStringValue, LendsItsTextWithoutACopy) {
  const auto value = decodedValue(0x44, "<'none'>");
  const auto& keyword = dynamic_cast<const IPPKeyword&>(*value);
  EXPECT_EQ(keyword.text(), "none");
  EXPECT_EQ(keyword.text()->data(), keyword.text()->data());
  EXPECT_EQ(keyword.rawValue(), RawValue("none"));
  EXPECT_EQ(keyword.value(), RawValue("none"));
}

TEST(IPPStringValue, HasNoStringWhenTheBodyIsEmpty) {
  for (const std::uint8_t tag : Data{0x41, 0x42, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x30}) {
    const auto value = decodedValue(tag, "0000");
    EXPECT_FALSE(value->stringValue());
    EXPECT_TRUE(value->rawValue().isAbsent());
    EXPECT_EQ(value->intValue(), tag == 0x45 ? -1 : 0);
    EXPECT_FALSE(value->boolValue());
    EXPECT_THAT(value->description(), ::testing::StartsWith("'(null)' of "));
    EXPECT_EQ(encodedHex(*value), "00 00");
  }
}

TEST(IPPStringValue, HasNoStringWhenTheOctetsAreNotValid) {
  for (const std::uint8_t tag : Data{0x44, 0x45, 0x46, 0x47, 0x48, 0x49}) {
    EXPECT_FALSE(decodedValue(tag, "<c3a9>")->stringValue());
  }
  for (const std::uint8_t tag : Data{0x30, 0x41, 0x42}) {
    EXPECT_EQ(decodedValue(tag, "<c3a9>")->stringValue(), "\u00e9");
    EXPECT_FALSE(decodedValue(tag, "<e9>")->stringValue());
  }
}

TEST(IPPStringValue, TellsAnAbsentStringFromAnEmptyOne) {
  EXPECT_FALSE(decodedValue(0x44, "0000")->isEqual(*IPPValue::keyword("")));
  EXPECT_TRUE(decodedValue(0x44, "0000")->isEqual(*decodedValue(0x44, "0000")));
}

TEST(IPPStringValue, WritesAndReadsTextInTheNaturalLanguageEncoding) {
  IPPArchiver archiver(std::make_shared<Data>());
  archiver.setNaturalLanguageEncoding(TextEncoding::latin1());
  archiver.encodeObject(*IPPValue::textWithoutLanguage("\u00e9"));
  archiver.encodeObject(*IPPValue::nameWithoutLanguage("\u00e9"));
  archiver.encodeObject(*IPPValue::octetString("\u00e9"));
  EXPECT_EQ(hex(*archiver.archiverData()), hexOf("<e9> <e9> <c3a9>"));
  const auto coder = unarchiverOf("<e9> <e9> <c3a9>");
  coder->setNaturalLanguageEncoding(TextEncoding::latin1());
  for (const std::uint8_t tag : Data{0x41, 0x42, 0x30}) {
    coder->setCurrentTag(tag);
    EXPECT_EQ(coder->decodeIPPValue()->stringValue(), "\u00e9");
  }
}

TEST(IPPStringValue, TellsATextFromANameOfTheSameString) {
  EXPECT_FALSE(IPPValue::textWithoutLanguage("a")->isEqual(*IPPValue::nameWithoutLanguage("a")));
  EXPECT_FALSE(IPPValue::keyword("a")->isEqual(*IPPValue::keyword("A")));
}

// --- URIs ---------------------------------------------------------------------------------------

TEST(IPPUri, HoldsAURL) {
  const auto value = decodedValue(0x45, "<'Ipp://Host/a'>");
  ASSERT_TRUE(value->value().isURL());
  EXPECT_EQ(value->value().asURL().absoluteString(), "Ipp://Host/a");
  EXPECT_EQ(value->stringValue(), "Ipp://Host/a");
}

TEST(IPPUri, HoldsNothingWhenTheTextIsNoURL) {
  for (const char* text : {"ipp://a b/c", "http://[::1", "ipp://host:99999/", "%zz"}) {
    const auto value = decodedValue(0x45, "<'" + std::string(text) + "'>");
    EXPECT_TRUE(value->value().isAbsent()) << text;
    EXPECT_FALSE(value->stringValue()) << text;
    EXPECT_EQ(encodedHex(*value), "00 00");
  }
}

TEST(IPPUri, ReadsNoNumberFromItsText) {
  const auto value = IPPValue::uri(URL::parse("42").value());
  EXPECT_EQ(value->stringValue(), "42");
  EXPECT_EQ(value->intValue(), -1);
  EXPECT_FALSE(value->boolValue());
}

TEST(IPPUri, ComparesLetterForLetter) {
  const auto value = IPPValue::uri(URL::parse("ipp://a/b").value());
  EXPECT_TRUE(value->isEqual(*IPPValue::uri(URL::parse("ipp://a/b").value())));
  EXPECT_FALSE(value->isEqual(*IPPValue::uri(URL::parse("ipp://A/b").value())));
  EXPECT_FALSE(value->_hasEqualRawValue(*IPPValue::keyword("ipp://a/b")));
  EXPECT_FALSE(IPPValue::keyword("ipp://a/b")->_hasEqualRawValue(*value));
}

}  // namespace
}  // namespace platen::test
