// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArchiver.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

const IPPStringValueWithLanguage& asValue(const IPPValue::Pointer& value) {
  return dynamic_cast<const IPPStringValueWithLanguage&>(*value);
}

/// A text and its language beside the octets of the value.
struct Body {
  std::string text;
  std::string language;
  std::string octets;
};

TEST(IPPStringValueWithLanguage, WritesAndReadsTheTextInTheEncodingOfItsLanguage) {
  const std::vector<Body> table = {
      {"ab", "en", "0008 0002 656e 0002 6162"},
      {"caf\u00e9", "en", "<<'en'> <'caf' c3a9>>"},
      {"caf\u00e9", "en.iso-8859-1", "<<'en.iso-8859-1'> <'caf' e9>>"},
      {"caf\u00e9", "en.nonesuch", "<<'en.nonesuch'> <'caf' c3a9>>"},
      {"caf\u00e9", "en.iso-8859-1.x", "<<'en.iso-8859-1.x'> <'caf' c3a9>>"},
      {"\u65e5\u672c", "ja-jp.shift_jis", "<<'ja-jp.shift_jis'> <93fa967b>>"},
      {"fou", "fr-ca", "000c 0005 'fr-ca' 0003 'fou'"},
  };
  for (const auto& [text, language, octets] : table) {
    for (const auto& value : {IPPValue::text(text, language), IPPValue::name(text, language)}) {
      EXPECT_EQ(encodedHex(*value), hexOf(octets));
      const auto decoded = decodedValue(value->ippTag(), octets);
      EXPECT_TRUE(decoded->isEqual(*value)) << decoded->description();
      EXPECT_EQ(decoded->stringValue(), text);
      EXPECT_EQ(asValue(decoded).language(), language);
      EXPECT_EQ(decoded->hash(), value->hash());
    }
  }
}

TEST(IPPStringValueWithLanguage, NamesItsSyntax) {
  EXPECT_EQ(IPPValue::text("a", "en")->description(), "'a' of textWithLanguage");
  EXPECT_EQ(IPPValue::name("a", "en")->description(), "'a' of nameWithLanguage");
  EXPECT_EQ(IPPValue::text("a", "en")->ippTag(), 0x35);
  EXPECT_EQ(IPPValue::name("a", "en")->ippTag(), 0x36);
  EXPECT_EQ(IPPValue::text("12 a", "en")->intValue(), 12);
}

TEST(IPPStringValueWithLanguage, TakesTextsUpToTheirLimit) {
  EXPECT_NO_THROW(IPPValue::text(std::string(1023, 'x'), "en"));
  EXPECT_NO_THROW(IPPValue::name(std::string(255, 'x'), "en"));
  EXPECT_NO_THROW(IPPValue::text("x", std::string(63, 'l')));
  EXPECT_NO_THROW(IPPValue::name("x", std::string(63, 'l')));
  EXPECT_NO_THROW(IPPValue::text("", ""));
}

// Not the kind of failure that the other factories raise, by design.
TEST(IPPStringValueWithLanguage, RefusesLongerOnesAsInvalidArguments) {
  const auto refusal = ThrowsMessage<InvalidArgumentException>("Invalid parameter");
  EXPECT_THAT([] { IPPValue::text(std::string(1024, 'x'), "en"); }, refusal);
  EXPECT_THAT([] { IPPValue::name(std::string(256, 'x'), "en"); }, refusal);
  EXPECT_THAT([] { IPPValue::text("x", std::string(64, 'l')); }, refusal);
  EXPECT_THAT([] { IPPValue::name("x", std::string(64, 'l')); }, refusal);
}

TEST(IPPStringValueWithLanguage, RefusesWhatIsNoString) {
  const auto refusal = ThrowsMessage<InvalidArgumentException>("Invalid parameter");
  EXPECT_THAT([] { IPPTextWithLanguage::_ippValue(1, "en"); }, refusal);
  EXPECT_THAT([] { IPPTextWithLanguage::_ippValue("a", Null()); }, refusal);
  EXPECT_THAT([] { IPPTextWithLanguage::_ippValue("a", RawValue()); }, refusal);
  EXPECT_THAT([] { IPPNameWithLanguage::_ippValue(RawValue(), "en"); }, refusal);
  EXPECT_THAT([] { IPPNameWithLanguage::_ippValue("a", 7); }, refusal);
  EXPECT_TRUE(IPPTextWithLanguage::_checkValue("a", "en"));
  EXPECT_TRUE(IPPNameWithLanguage::_checkValue("a", "en"));
}

// --- Oddities of the wire ------------------------------------------------------------------------

TEST(IPPStringValueWithLanguage, ReadsATotalLengthOfZeroAsNoTextAndNoLanguage) {
  for (const std::uint8_t tag : Data{0x35, 0x36}) {
    const auto coder = unarchiverOf("0000 1234");
    coder->setCurrentTag(tag);
    const auto value = coder->decodeIPPValue();
    EXPECT_FALSE(value->stringValue());
    EXPECT_FALSE(asValue(value).language());
    EXPECT_EQ(coder->decodeInt16(), 0x1234);
  }
}

TEST(IPPStringValueWithLanguage, ReadsATotalLengthOf0x8000AndAboveAsNothingToo) {
  for (const char* length : {"8000", "ffff"}) {
    const auto coder = unarchiverOf(std::string(length) + "1234");
    coder->setCurrentTag(0x35);
    EXPECT_FALSE(coder->decodeIPPValue()->stringValue());
    EXPECT_EQ(coder->decodeInt16(), 0x1234);
  }
}

TEST(IPPStringValueWithLanguage, BelievesTheTotalLengthNothingButItsSign) {
  EXPECT_EQ(decodedValue(0x35, "0001 <'en'> <'text'>")->stringValue(), "text");
  EXPECT_EQ(decodedValue(0x35, "7fff <'en'> <'text'>")->stringValue(), "text");
}

TEST(IPPStringValueWithLanguage, ReadsAnEmptyHalfAsAnAbsentOne) {
  const auto noText = decodedValue(0x35, "<<'en'> <>>");
  EXPECT_FALSE(noText->stringValue());
  EXPECT_EQ(asValue(noText).language(), "en");
  const auto noLanguage = decodedValue(0x35, "<<> <'text'>>");
  EXPECT_EQ(noLanguage->stringValue(), "text");
  EXPECT_FALSE(asValue(noLanguage).language());
}

TEST(IPPStringValueWithLanguage, CountsAnAbsentHalfAsNothingThoughItIsWritten) {
  EXPECT_EQ(encodedHex(*decodedValue(0x35, "0000")), "00 00 00 00 00 00");
  EXPECT_EQ(encodedHex(*decodedValue(0x35, "<<'en'> <>>")), "00 04 00 02 65 6e 00 00");
}

TEST(IPPStringValueWithLanguage, CountsAnEmptyHalfByItsLength) {
  EXPECT_EQ(encodedHex(*IPPValue::text("", "")), "00 04 00 00 00 00");
}

TEST(IPPStringValueWithLanguage, CountsATextThatItsEncodingLacksAsNothing) {
  EXPECT_EQ(encodedHex(*IPPValue::text("\u20ac", "en.iso-8859-1")),
            hexOf("000f <'en.iso-8859-1'> 0000"));
}

TEST(IPPStringValueWithLanguage, CutsTheTextAtItsFirstZeroCharacter) {
  EXPECT_EQ(encodedHex(*IPPValue::text(std::string("a\0b", 3), "en")), hexOf("<<'en'> <'a'>>"));
}

TEST(IPPStringValueWithLanguage, HasNoTextWhenTheOctetsAreNotValidInItsEncoding) {
  const auto value = decodedValue(0x35, "<<'en'> <e9>>");
  EXPECT_FALSE(value->stringValue());
  EXPECT_EQ(asValue(value).language(), "en");
}

TEST(IPPStringValueWithLanguage, WritesTheLanguageInTheNaturalLanguageEncodingOfTheCoder) {
  IPPArchiver archiver(std::make_shared<Data>());
  archiver.setNaturalLanguageEncoding(TextEncoding::latin1());
  archiver.encodeObject(*IPPValue::text("\u00e9", "x-\u00e9"));
  // The total counts the language as UTF-8 all the same.
  EXPECT_EQ(hex(*archiver.archiverData()), hexOf("000a <'x-' e9> <c3a9>"));
}

TEST(IPPStringValueWithLanguage, ReadsALanguageOf32767Octets) {
  const std::string language(32767, 'l');
  const auto value = decodedValue(0x36, "0001 <'" + language + "'> <'text'>");
  EXPECT_EQ(asValue(value).language(), language);
  EXPECT_EQ(value->stringValue(), "text");
  // 32767 + 2 + 4 + 2, cut to 16 bits: no reader will take that for more than nothing.
  EXPECT_EQ(encodedHex(*value).substr(0, 11), "80 07 7f ff");
}

TEST(IPPStringValueWithLanguage, FailsWhenAHalfIsCutShort) {
  EXPECT_THROW(decodedValue(0x35, "0008 0002 'e'"), InconsistentArchiveException);
  EXPECT_THROW(decodedValue(0x35, "0008 0002 'en'"), InconsistentArchiveException);
  EXPECT_THROW(decodedValue(0x35, "0008 0002 'en' 0002 'a'"), InconsistentArchiveException);
  EXPECT_THROW(decodedValue(0x35, "0008 8000"), InconsistentArchiveException);
}

// --- Equality ------------------------------------------------------------------------------------

TEST(IPPStringValueWithLanguage, ComparesTextAndLanguageLetterForLetter) {
  const auto value = IPPValue::text("a", "en");
  EXPECT_TRUE(value->isEqual(*IPPValue::text("a", "en")));
  EXPECT_FALSE(value->isEqual(*IPPValue::text("a", "EN")));
  EXPECT_FALSE(value->isEqual(*IPPValue::text("A", "en")));
  EXPECT_FALSE(value->isEqual(*IPPValue::name("a", "en")));
  EXPECT_FALSE(value->isEqual(*IPPValue::textWithoutLanguage("a")));
}

TEST(IPPStringValueWithLanguage, HashesBothHalvesByExclusiveOr) {
  const std::hash<std::string_view> hash;
  EXPECT_EQ(IPPValue::text("a", "en")->hash(), hash("a") ^ hash("en"));
  EXPECT_EQ(IPPValue::text("en", "a")->hash(), IPPValue::text("a", "en")->hash());
}

TEST(IPPStringValueWithLanguage, TellsTheAbstractClassFromAPlainValue) {
  const IPPStringValueWithLanguage value("a", "en");
  EXPECT_FALSE(value.isEqual(IPPValue()));
  EXPECT_FALSE(value.isEqual(IPPStringValue("a")));
  EXPECT_TRUE(value.isEqual(IPPStringValueWithLanguage("a", "en")));
}

TEST(IPPStringValueWithLanguage, CopiesBothHalves) {
  for (const auto& value : {IPPValue::text("a", "en"), IPPValue::name("a", "en")}) {
    const auto copy = value->copy();
    EXPECT_TRUE(copy->isEqual(*value));
    EXPECT_EQ(asValue(copy).language(), "en");
  }
}

}  // namespace
}  // namespace platen::test
