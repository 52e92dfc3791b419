// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPConstants.h"
#include "platen/IPPMap.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPStringValue.h"
#include "platen/IPPValue.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

// --- Classes of an application's own ----------------------------------------------------------

/// A value of the tag 0x70: two octets, which are a number.
class ApplicationValue : public IPPValueImpl {
 public:
  static const IPPValueClass descriptor;
  explicit ApplicationValue(int number) : number_(number) {}
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  [[nodiscard]] RawValue rawValue() const override { return number_; }
  [[nodiscard]] std::int32_t intValue() const override { return number_; }
  void encodeWithCoder(IPPCoder& coder) const override {
    coder.encodeInt16(2);
    coder.encodeInt16(static_cast<std::int16_t>(number_));
  }

 private:
  int number_;
};

IPPValue::Pointer makeApplicationValue(const RawValue& object) {
  return std::make_shared<const ApplicationValue>(object.asNumber().intValue());
}

IPPValue::Pointer decodeApplicationValue(IPPCoder& coder) {
  coder.decodeInt16();
  return coder.make<ApplicationValue>(coder.decodeInt16());
}

bool acceptsNumbers(const RawValue& object) { return object.isNumber(); }

const IPPValueClass ApplicationValue::descriptor{"ApplicationValue",   0x70,
                                                 "application",        acceptsNumbers,
                                                 makeApplicationValue, decodeApplicationValue};

const IPPValueRegistration registration(ApplicationValue::descriptor);

// Their names sort in both orders, so that no order but that of registration finds the right ones.
const IPPValueClass earlyClass{
    "Early", 0x71, "application-b", acceptsNumbers, makeApplicationValue, decodeApplicationValue};
const IPPValueClass sameTagBehind{"SameTagBehind",      0x71,
                                  "application-c",      acceptsNumbers,
                                  makeApplicationValue, decodeApplicationValue};
const IPPValueClass sameTagBefore{"SameTagBefore",      0x71,
                                  "application-a",      acceptsNumbers,
                                  makeApplicationValue, decodeApplicationValue};
const IPPValueClass sameName{"SameName",           0x72,
                             "application-b",      acceptsNumbers,
                             makeApplicationValue, decodeApplicationValue};
const IPPValueRegistration earlyRegistration(earlyClass);
const IPPValueRegistration sameTagBehindRegistration(sameTagBehind);
const IPPValueRegistration sameTagBeforeRegistration(sameTagBefore);
const IPPValueRegistration sameNameRegistration(sameName);

TEST(IPPValue, FindsAnApplicationsOwnClass) {
  EXPECT_EQ(IPPValue::classForSyntaxName("application"), &ApplicationValue::descriptor);
  EXPECT_EQ(&IPPValue::classForIPPTag(0x70), &ApplicationValue::descriptor);
}

TEST(IPPValue, DecodesAndEncodesAnApplicationsOwnClass) {
  const std::string octets = "0101 0000 00000001 04 70 <'a'> <002a> 70 <> <0007> 03";
  const auto message = decodedMessage(octets);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->attributeForKey("a")->description(), "a = (42, 7) of application");
  EXPECT_EQ(encodedHex(*message), hexOf(octets));
}

TEST(IPPValue, MakesSetsOfAnApplicationsOwnClass) {
  const RawValue::Array numbers = {1, 2};
  const auto value = IPPValue::array(numbers, "application");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->ippTag(), 0x70);
  EXPECT_TRUE(value->isEqual(*value->copy()));
}

TEST(IPPValue, FindsTheClassThatWasRegisteredFirstOfTwoAlike) {
  EXPECT_EQ(&IPPValue::classForIPPTag(0x71), &earlyClass);
  EXPECT_EQ(IPPValue::classForSyntaxName("application-b"), &earlyClass);
  EXPECT_EQ(&IPPValue::classForIPPTag(0x72), &IPPValue::descriptor);
  EXPECT_EQ(earlyRegistration.next(), &sameTagBehindRegistration);
}

// --- The catalog --------------------------------------------------------------------------------

/// A class of the library.
struct Entry {
  std::uint8_t tag;
  std::string_view syntaxName;
  std::string_view className;
};

const std::vector<Entry>& libraryClasses() {
  static const std::vector<Entry> entries = {
      {0x10, kIPPUnsupportedSyntaxName, "IPPUnsupported"},
      {0x12, kIPPUnknownSyntaxName, "IPPValue"},
      {0x13, kIPPNoValueSyntaxName, "IPPNoValue"},
      {0x15, kIPPNotSettableSyntaxName, "IPPNotSettable"},
      {0x17, kIPPAdminDefineSyntaxName, "IPPAdminDefine"},
      {0x21, kIPPIntegerSyntaxName, "IPPInteger"},
      {0x22, kIPPBooleanSyntaxName, "IPPBoolean"},
      {0x23, kIPPEnumSyntaxName, "IPPEnum"},
      {0x30, kIPPOctetStringSyntaxName, "IPPOctetString"},
      {0x31, kIPPDateTimeSyntaxName, "IPPDateTime"},
      {0x32, kIPPResolutionSyntaxName, "IPPResolutionValue"},
      {0x33, kIPPRangeOfIntegerSyntaxName, "IPPRangeOfInteger"},
      {0x34, kIPPDictionaryBeginSyntaxName, "IPPMap"},
      {0x35, kIPPTextWithLanguageSyntaxName, "IPPTextWithLanguage"},
      {0x36, kIPPNameWithLanguageSyntaxName, "IPPNameWithLanguage"},
      {0x41, kIPPTextWithoutLanguageSyntaxName, "IPPText"},
      {0x42, kIPPNameWithoutLanguageSyntaxName, "IPPName"},
      {0x44, kIPPKeywordSyntaxName, "IPPKeyword"},
      {0x45, kIPPUriSyntaxName, "IPPUri"},
      {0x46, kIPPUriSchemeSyntaxName, "IPPUriScheme"},
      {0x47, kIPPCharsetSyntaxName, "IPPCharset"},
      {0x48, kIPPNaturalLanguageSyntaxName, "IPPNaturalLanguage"},
      {0x49, kIPPMimeMediaSyntaxName, "IPPMimeMediaType"},
  };
  return entries;
}

// The tests register classes of their own there.
bool isApplicationTag(int tag) { return tag >= 0x70 && tag <= 0x7a; }

TEST(IPPValue, HasTwentyThreeClassesInItsCatalog) {
  std::set<int> tags;
  std::size_t count = 0;
  for (const auto& [name, valueClass] : IPPValue::ippValuesCatalog()) {
    EXPECT_EQ(name, valueClass->syntaxName());
    if (!isApplicationTag(valueClass->ippTag())) {
      ++count;
      EXPECT_TRUE(tags.insert(valueClass->ippTag()).second) << name << " shares its tag";
    }
  }
  EXPECT_EQ(count, 23U);
  EXPECT_EQ(libraryClasses().size(), 23U);
}

TEST(IPPValue, FindsEachClassByItsTagAndByItsSyntaxName) {
  for (const Entry& entry : libraryClasses()) {
    const IPPValueClass& byTag = IPPValue::classForIPPTag(entry.tag);
    EXPECT_EQ(byTag.className(), entry.className);
    EXPECT_EQ(byTag.ippTag(), entry.tag);
    EXPECT_EQ(byTag.syntaxName(), entry.syntaxName);
    EXPECT_EQ(IPPValue::classForSyntaxName(entry.syntaxName), &byTag);
  }
}

TEST(IPPValue, FindsThePlainValueForEveryOtherTag) {
  std::set<int> known;
  for (const Entry& entry : libraryClasses()) {
    known.insert(entry.tag);
  }
  for (int tag = 0; tag <= 0xff; ++tag) {
    if (!known.contains(tag) && !isApplicationTag(tag)) {
      EXPECT_EQ(&IPPValue::classForIPPTag(static_cast<std::uint8_t>(tag)), &IPPValue::descriptor);
    }
  }
}

TEST(IPPValue, FindsThePlainValueForTheMarksOfACollection) {
  for (const std::uint8_t tag : Data{0x12, 0x37, 0x4a}) {
    EXPECT_EQ(IPPValue::classForIPPTag(tag).className(), "IPPValue");
  }
  EXPECT_EQ(IPPValue::classForIPPTag(0x34).className(), "IPPMap");
}

TEST(IPPValue, FindsNoClassForANameOutsideOfTheCatalog) {
  for (const char* name :
       {"endCollection", "memberAttrName", "", "Keyword", "nonesuch", "IPPMap"}) {
    EXPECT_EQ(IPPValue::classForSyntaxName(name), nullptr) << name;
  }
  EXPECT_EQ(IPPValue::classForSyntaxName("unknown"), &IPPValue::descriptor);
}

TEST(IPPValue, ExportsTwoVariablesThatAreZeroAndTheCallers) {
  EXPECT_EQ(IPP_DELIMETER_TAG, 0);
  EXPECT_EQ(IPP_RESOLUTUION_UNIT, 0);
  IPP_DELIMETER_TAG = 7;
  EXPECT_EQ(IPP_DELIMETER_TAG, 7);
  IPP_DELIMETER_TAG = 0;
}

// --- The plain value ----------------------------------------------------------------------------

TEST(IPPValue, GivesNeutralAnswers) {
  const IPPValue value;
  EXPECT_TRUE(value.rawValue().isAbsent());
  EXPECT_TRUE(value.value().isAbsent());
  EXPECT_FALSE(value.stringValue());
  EXPECT_EQ(value.intValue(), -1);
  EXPECT_FALSE(value.boolValue());
  EXPECT_EQ(value.rangeValue(), (Range{0, 0}));
  EXPECT_EQ(value.resolutionValue(), (Size{0, 0}));
  EXPECT_FALSE(value.dateTimeValue());
  EXPECT_FALSE(value.arrayValue());
  EXPECT_FALSE(value.dictionaryRepresentationValue());
  EXPECT_EQ(value.ippTag(), 0x12);
  EXPECT_EQ(value.syntaxName(), "unknown");
  EXPECT_EQ(value.className(), "IPPValue");
  EXPECT_EQ(value.description(), "'(null)' of unknown");
}

TEST(IPPValue, GivesNeutralAnswersWhereASyntaxHasNoneOfItsOwn) {
  EXPECT_EQ(IPPValue::rangeOfInteger({1, 10})->intValue(), -1);
  EXPECT_FALSE(IPPValue::rangeOfInteger({1, 10})->boolValue());
  EXPECT_EQ(IPPValue::resolution({1, 2}, true)->intValue(), -1);
  EXPECT_EQ(IPPValue::keyword("a")->rangeValue(), (Range{0, 0}));
  EXPECT_EQ(IPPValue::keyword("a")->resolutionValue(), (Size{0, 0}));
  EXPECT_FALSE(IPPValue::keyword("a")->dateTimeValue());
  EXPECT_FALSE(IPPValue::keyword("a")->arrayValue());
  EXPECT_FALSE(IPPValue::integerWithInt(1)->dictionaryRepresentationValue());
}

TEST(IPPValue, IsWrittenAsALengthOfZeroAndReadAsNothing) {
  EXPECT_EQ(encodedHex(IPPValue()), "00 00");
  const auto coder = unarchiverOf("0000");
  EXPECT_EQ(IPPValue::descriptor.initWithCoder(*coder)->className(), "IPPValue");
  EXPECT_EQ(coder->decodeInt16(), 0);
}

TEST(IPPValue, EqualsEveryOtherPlainValue) {
  EXPECT_TRUE(IPPValue().isEqual(IPPValue()));
  EXPECT_TRUE(IPPValue().copy()->isEqual(IPPValue()));
  EXPECT_FALSE(IPPValue().isEqual(*IPPValue::keyword("a")));
}

TEST(IPPValue, TellsTheAbstractClassesApart) {
  const IPPStringValue string("a");
  EXPECT_EQ(string.ippTag(), 0x12);
  EXPECT_EQ(string.syntaxName(), "unknown");
  EXPECT_FALSE(string.isEqual(IPPValue()));
  EXPECT_FALSE(IPPValue().isEqual(string));
  EXPECT_FALSE(string.isEqual(IPPNumberValue(1)));
  EXPECT_TRUE(string.isEqual(IPPStringValue("a")));
}

// --- Equality -----------------------------------------------------------------------------------

TEST(IPPValue, TellsValuesOfDifferentClassesApartThoughTheirRawObjectsAreEqual) {
  const std::vector<IPPValue::Pointer> values = {IPPValue::textWithoutLanguage("a"),
                                                 IPPValue::nameWithoutLanguage("a"),
                                                 IPPValue::keyword("a"),
                                                 IPPValue::octetString("a"),
                                                 IPPValue::charset("a"),
                                                 IPPValue::uri(URL::parse("a").value()),
                                                 IPPValue::integerWithInt(1),
                                                 IPPValue::enumerationWithInt(1),
                                                 IPPValue::booleanWithBool(true),
                                                 IPPValue::text("a", "en"),
                                                 IPPValue::name("a", "en")};
  for (const auto& left : values) {
    for (const auto& right : values) {
      EXPECT_EQ(left->isEqual(*right), left == right)
          << left->description() << " and " << right->description();
    }
  }
}

TEST(IPPValue, HasEqualHashesForEqualValues) {
  const std::vector<std::pair<IPPValue::Pointer, IPPValue::Pointer>> pairs = {
      {IPPValue::keyword("a"), IPPValue::keyword("a")},
      {IPPValue::integerWithInt(5), IPPValue::integer(5.0)},
      {IPPValue::booleanWithBool(true), IPPValue::boolean(1)},
      {IPPValue::rangeOfInteger({1, 2}), IPPValue::rangeOfInteger({1, 2})},
      {IPPValue::resolution({600, 600}, true), IPPValue::resolution({600, 600}, true)},
      {IPPValue::text("a", "en"), IPPValue::text("a", "en")},
      {IPPValue::uri(*URL::parse("ipp://a/b")), IPPValue::uri(*URL::parse("ipp://a/b"))},
      {IPPValue::array({IPPValue::keyword("a")}), IPPValue::array({IPPValue::keyword("a")})},
      {IPPValue::dictionaryWithObjectsAndKeys(
           {IPPValue::keyword("x"), "a", IPPValue::keyword("y"), "b"}),
       IPPValue::dictionaryWithObjectsAndKeys(
           {IPPValue::keyword("y"), "b", IPPValue::keyword("x"), "a"})}};
  for (const auto& [left, right] : pairs) {
    EXPECT_TRUE(left->isEqual(*right)) << left->description();
    EXPECT_EQ(left->hash(), right->hash()) << left->description();
  }
}

TEST(IPPValue, CopiesIntoANewEqualValue) {
  const std::vector<IPPValue::Pointer> values = {
      IPPValue::keyword("a"),
      IPPValue::integerWithInt(-1),
      IPPValue::booleanWithBool(true),
      IPPValue::rangeOfInteger({1, 10}),
      IPPValue::resolution({1, 2}, false),
      IPPValue::dateTime(Date(std::chrono::seconds(1))),
      IPPValue::name("a", "en"),
      IPPValue::uri(*URL::parse("ipp://a/b")),
      IPPValue::array({IPPValue::keyword("a"), IPPValue::keyword("b")}),
      IPPValue::dictionaryWithObjectsAndKeys({IPPValue::keyword("a"), "name"}),
      std::make_shared<const IPPNoValue>()};
  for (const auto& value : values) {
    const auto copy = value->copy();
    EXPECT_NE(copy, value);
    EXPECT_TRUE(copy->isEqual(*value)) << value->description();
    EXPECT_EQ(valueText(*copy), valueText(*value));
  }
}

// --- Factories -----------------------------------------------------------------------------------

TEST(IPPValue, MakesAValueOfTheRightClassByEachFactory) {
  const URL url = URL::parse("ipp://a/b").value();
  const std::vector<std::pair<IPPValue::Pointer, std::string>> table = {
      {IPPValue::octetString("a"), "30:h'61'"},
      {IPPValue::textWithoutLanguage("a"), "41:\"a\""},
      {IPPValue::nameWithoutLanguage("a"), "42:\"a\""},
      {IPPValue::text("a", "en"), "35:[\"en\"]\"a\""},
      {IPPValue::name("a", "en"), "36:[\"en\"]\"a\""},
      {IPPValue::keyword("a"), "44:\"a\""},
      {IPPValue::uri(url), "45:\"ipp://a/b\""},
      {IPPValue::uriScheme("ipp"), "46:\"ipp\""},
      {IPPValue::mimeMediaType("text/plain"), "49:\"text/plain\""},
      {IPPValue::charset("utf-8"), "47:\"utf-8\""},
      {IPPValue::naturalLanguage("en"), "48:\"en\""},
      {IPPValue::integer(7), "21:7"},
      {IPPValue::enumeration(7), "23:7"},
      {IPPValue::boolean(7), "22:true"},
      {IPPValue::rangeOfInteger({1, 10}), "33:1..10"},
      {IPPValue::resolution({600, 300}, true), "32:600x300/3"},
      {IPPValue::resolution({600, 300}, false), "32:600x300/4"},
      {IPPValue::dateTime(Date()), "31:1970-01-01T00:00:00.0+00:00"},
      {IPPValue::array({IPPValue::keyword("a"), IPPValue::keyword("b")}), "44:\"a\",44:\"b\""},
      {IPPValue::arrayOfKeywords(std::vector<std::string>{"a", "b"}), "44:\"a\",44:\"b\""},
      {IPPValue::dictionaryWithDictionary({{"m", IPPValue::keyword("a")}}), "34:{\"m\"=44:\"a\"}"},
      {IPPValue::booleanWithBool(false), "22:false"},
      {IPPValue::integerWithInt(-5), "21:-5"},
      {IPPValue::enumerationWithInt(3), "23:3"}};
  for (const auto& [value, text] : table) {
    EXPECT_EQ(valueText(*value), text);
  }
}

TEST(IPPValue, RefusesEveryRawObjectAsAPlainValue) {
  for (const RawValue& object : {RawValue(), RawValue(Null()), RawValue("a"), RawValue(1)}) {
    EXPECT_FALSE(IPPValue::descriptor._checkValue(object));
    EXPECT_THAT([&] { static_cast<void>(IPPValue::descriptor._ippValue(object)); },
                ThrowsMessage<RangeException>("Invalid parameter"));
  }
}

TEST(IPPValue, MakesASetOfTheClassThatASyntaxNameNames) {
  const RawValue::Array objects = {1, 2, 3};
  EXPECT_EQ(valueText(*IPPValue::array(objects, "integer")), "21:1,21:2,21:3");
  EXPECT_EQ(valueText(*IPPValue::array(objects, "enum")), "23:1,23:2,23:3");
}

TEST(IPPValue, MakesNoSetForASyntaxNameOutsideOfTheCatalog) {
  const RawValue::Array objects = {1};
  EXPECT_EQ(IPPValue::array(objects, "endCollection"), nullptr);
  EXPECT_EQ(IPPValue::array({}, "nonesuch"), nullptr);
}

TEST(IPPValue, RefusesASetWithARawObjectThatItsClassRefuses) {
  const RawValue::Array objects = {1, "two"};
  EXPECT_THAT([&] { IPPValue::array(objects, "integer"); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_THAT([] { IPPValue::array({}, "integer"); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_THAT([] { IPPValue::arrayOfKeywords({}); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_THAT([] { IPPValue::arrayOfKeywords(std::vector<std::string>{std::string(256, 'k')}); },
              ThrowsMessage<RangeException>("Invalid parameter"));
}

TEST(IPPValue, ReadsPairsOfAValueAndItsNameUpToTheFirstAbsentOne) {
  const auto one = IPPValue::integerWithInt(1);
  const auto two = IPPValue::integerWithInt(2);
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({one, "a", two, "b", nullptr})),
            "34:{\"a\"=21:1;\"b\"=21:2}");
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({one, "a", nullptr, "b", two, "c"})),
            "34:{\"a\"=21:1}");
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({one, nullptr, two, "b"})), "34:{}");
}

TEST(IPPValue, IgnoresALastValueThatHasNoName) {
  const auto one = IPPValue::integerWithInt(1);
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({one, "a", one})), "34:{\"a\"=21:1}");
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({one})), "34:{}");
}

TEST(IPPValue, MakesAnEmptyCollectionWithoutPairs) {
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({})), "34:{}");
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({nullptr})), "34:{}");
}

TEST(IPPValue, LetsALaterPairTakeThePlaceOfAnEarlierOneOfTheSameName) {
  EXPECT_EQ(valueText(*IPPValue::dictionaryWithObjectsAndKeys({IPPValue::integerWithInt(1), "a",
                                                               IPPValue::integerWithInt(2), "b",
                                                               IPPValue::integerWithInt(3), "a"})),
            "34:{\"a\"=21:3;\"b\"=21:2}");
}

// --- The encoding of a language ------------------------------------------------------------------

TEST(IPPValue, TakesTheEncodingFromWhatFollowsTheOneDotOfALanguage) {
  const TextEncoding shiftJIS = TextEncoding::forIANACharSetName("shift_jis").value();
  const std::vector<std::pair<std::string, TextEncoding>> table = {
      {"en-us", TextEncoding::utf8()},
      {"fr", TextEncoding::utf8()},
      {"ja-jp.shift_jis", shiftJIS},
      {"en.iso-8859-1", TextEncoding::latin1()},
      {"en.ISO-8859-1", TextEncoding::latin1()},
      {".iso-8859-1", TextEncoding::latin1()},
      {"en.iso-8859-1.", TextEncoding::utf8()},
      {"en.x.iso-8859-1", TextEncoding::utf8()},
      {"en.nonesuch", TextEncoding::utf8()},
      {"en.", TextEncoding::utf8()},
      {"", TextEncoding::utf8()},
      {".", TextEncoding::utf8()},
      {"en.us-ascii", TextEncoding::ascii()}};
  for (const auto& [language, encoding] : table) {
    EXPECT_EQ(IPPValue::_encodingFromLanguage(language), encoding) << language;
  }
}

}  // namespace
}  // namespace platen::test
