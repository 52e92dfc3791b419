// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

#include "platen/IPPArray.h"
#include "platen/IPPMap.h"
#include "platen/IPPUnarchiver.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

/// What follows the header of a message, beside the groups that it gives; "none" for a failure.
struct Decoding {
  std::string octets;
  std::string groups;
};

void expectDecodings(const std::vector<Decoding>& table) {
  for (const auto& [text, groups] : table) {
    EXPECT_EQ(decodedGroups(text), groups) << text;
  }
}

TEST(GroupDecoding, GivesAnEmptyListForTheEndTagAlone) {
  const auto groups = unarchiverOf("03")->decodeIPPGroups();
  ASSERT_TRUE(groups);
  EXPECT_TRUE(groups->empty());
}

TEST(GroupDecoding, GivesAnEmptyGroupForADelimiterAlone) {
  expectDecodings({{"01 03", "group 01\n"},
                   {"01 01 03", "group 01\ngroup 01\n"},
                   {"02 04 05 06 07 03", "group 02\ngroup 04\ngroup 05\ngroup 06\ngroup 07\n"}});
}

TEST(GroupDecoding, MakesAGroupOfTheRightClassOfEveryDelimiter) {
  const std::vector<std::pair<std::string, std::string>> table = {
      {"01", "IPPOperationGroup"},    {"02", "IPPJobGroup"},
      {"04", "IPPPrinterGroup"},      {"05", "IPPAttributeGroup"},
      {"06", "IPPSubscriptionGroup"}, {"07", "IPPNotificationEventGroup"},
      {"80", "IPPAttributeGroup"},    {"85", "IPPAttributeGroup"},
      {"fb", "IPPAttributeGroup"},    {"ff", "IPPAttributeGroup"}};
  for (const auto& [tag, className] : table) {
    const auto groups = unarchiverOf(tag + "03")->decodeIPPGroups();
    ASSERT_TRUE(groups && groups->size() == 1) << tag;
    EXPECT_EQ(groups->front()->className(), className) << tag;
  }
}

TEST(GroupDecoding, TakesEveryTagFrom0x80UpForAnUnknownDelimiter) {
  for (int tag = 0x80; tag <= 0xff; ++tag) {
    const auto octet = hex(Data{static_cast<std::uint8_t>(tag)});
    EXPECT_EQ(decodedGroups(octet + " 21 <'a'> <00000001> 03"), "group 05\n05\t\"a\"\t21:1\n");
  }
}

TEST(GroupDecoding, NamesAGroupOfUnknownDelimiterUnsupportedAttributes) {
  const auto groups = unarchiverOf("85 03")->decodeIPPGroups();
  ASSERT_TRUE(groups && groups->size() == 1);
  EXPECT_EQ(groups->front()->name(), "unsupported-attributes-tag");
  EXPECT_EQ(groups->front()->ippTag(), 5);
}

TEST(GroupDecoding, TakesEveryTagFrom0x08To0x7fForAValue) {
  expectDecodings({{"01 08 <'a'> 03", "group 01\n01\t\"a\"\t12:-\n"},
                   {"01 09 <'a'> 03", "group 01\n01\t\"a\"\t12:-\n"},
                   {"01 7f <'a'> 03", "group 01\n01\t\"a\"\t12:-\n"}});
}

TEST(GroupDecoding, PassesOverTheTagZero) {
  expectDecodings(
      {{"00 00 03", ""}, {"00 01 00 00 21 <'a'> <00000001> 00 03", "group 01\n01\t\"a\"\t21:1\n"}});
}

TEST(GroupDecoding, DropsAnAttributeBeforeTheFirstDelimiter) {
  expectDecodings(
      {{"21 <'early'> <00000001> 04 21 <'late'> <00000002> 03", "group 04\n04\t\"late\"\t21:2\n"},
       {"21 <'early'> <00000001> 03", ""},
       // It is the last named attribute all the same, and takes what follows.
       {"21 <'early'> <00000001> 21 <> <00000002> 04 21 <'late'> <00000003> 03",
        "group 04\n04\t\"late\"\t21:3\n"}});
}

// --- Additional values ------------------------------------------------------------------------

TEST(GroupDecoding, MakesASetOfTheValuesWithoutAName) {
  expectDecodings({{"01 44 <'a'> <'x'> 44 <> <'y'> 44 <> <'z'> 03",
                    "group 01\n01\t\"a\"\t44:\"x\"\t44:\"y\"\t44:\"z\"\n"},
                   {"01 44 <'a'> <'x'> 44 <> <'y'> 21 <'b'> <00000001> 21 <> <00000002> 03",
                    "group 01\n01\t\"a\"\t44:\"x\"\t44:\"y\"\n01\t\"b\"\t21:1\t21:2\n"}});
}

TEST(GroupDecoding, KeepsTheTagOfEachValueOfASet) {
  expectDecodings({{"04 21 <'a'> <00000001> 33 <> <00000002 00000003> 44 <> <'z'> 03",
                    "group 04\n04\t\"a\"\t21:1\t33:2..3\t44:\"z\"\n"}});
}

TEST(GroupDecoding, AddsValuesBehindADelimiterToTheNamedAttributeBeforeIt) {
  expectDecodings({{"01 44 <'a'> <'x'> 04 44 <> <'y'> 21 <'b'> <00000001> 03",
                    "group 01\n01\t\"a\"\t44:\"x\"\t44:\"y\"\ngroup 04\n04\t\"b\"\t21:1\n"},
                   {"01 44 <'a'> <'x'> 44 <> <'y'> 04 44 <> <'z'> 03",
                    "group 01\n01\t\"a\"\t44:\"x\"\t44:\"y\"\t44:\"z\"\ngroup 04\n"}});
}

// The two ends of the same rule, uneven by design.
TEST(GroupDecoding, ForgetsValuesBeforeTheFirstNamedAttributeWhenTheEndFollows) {
  expectDecodings({{"01 21 <> <00000001> 03", "group 01\n"},
                   {"21 <> <00000001> 03", ""},
                   {"01 21 <> <00000001> 04 21 <> <00000002> 03", "group 01\ngroup 04\n"}});
}

TEST(GroupDecoding, FailsWhenANamedAttributeFollowsValuesThatHaveNone) {
  expectDecodings({{"01 21 <> <00000001> 21 <'a'> <00000002> 03", "none"},
                   {"21 <> <00000001> 01 21 <'a'> <00000002> 03", "none"}});
}

TEST(GroupDecoding, TakesARecordWhoseNameIsNotASCIIForAnAdditionalValue) {
  expectDecodings({{"01 21 <'a'> <00000001> 21 <'caf' e9> <00000002> 03",
                    "group 01\n01\t\"a\"\t21:1\t21:2\n"}});
}

TEST(GroupDecoding, MakesASetOfCollections) {
  expectDecodings(
      {{"04 34 <'a'> <> 4a <> <'m'> 21 <> <00000001> 37 <> <>"
        "   34 <> <> 4a <> <'m'> 21 <> <00000002> 37 <> <> 03",
        "group 04\n04\t\"a\"\t34:{\"m\"=21:1}\t34:{\"m\"=21:2}\n"}});
}

// --- Values that read nothing --------------------------------------------------------------------

TEST(GroupDecoding, GetsPastTheLengthOfAnOutOfBandValueAsTwoTagsOfZero) {
  expectDecodings({{"05 10 <'sides'> <> 13 <'a'> <> 15 <'b'> <> 17 <'c'> <> 12 <'d'> <> 03",
                    "group 05\n05\t\"sides\"\t10:-\n05\t\"a\"\t13:-\n05\t\"b\"\t15:-\n"
                    "05\t\"c\"\t17:-\n05\t\"d\"\t12:-\n"},
                   {"04 13 <'a'> <> 21 <> <00000001> 03", "group 04\n04\t\"a\"\t13:-\t21:1\n"}});
}

TEST(GroupDecoding, TakesTheLengthOfAnUnknownValueForTags) {
  expectDecodings({{"01 7e <'a'> 0004 03", "group 01\n01\t\"a\"\t12:-\ngroup 04\n"},
                   {"01 7e <'a'> 0004 01020300 03",
                    "group 01\n01\t\"a\"\t12:-\n"
                    "group 04\ngroup 01\ngroup 02\n"}});
}

TEST(GroupDecoding, TakesALengthOf3OfAnOutOfBandValueForTheEnd) {
  expectDecodings({{"05 10 <'sides'> 0003 'abc' 03", "group 05\n05\t\"sides\"\t10:-\n"}});
}

TEST(GroupDecoding, TakesTheMarksOfACollectionOutsideOfOneForUnknownValues) {
  expectDecodings(
      {{"04 37 <'a'> <> 4a <'b'> <> 03", "group 04\n04\t\"a\"\t12:-\n04\t\"b\"\t12:-\n"}});
}

// --- The charset --------------------------------------------------------------------------------

TEST(GroupDecoding, ReadsTextBehindTheOperationGroupInTheCharsetThatItNames) {
  expectDecodings(
      {{"01 47 <'attributes-charset'> <'iso-8859-1'> 04 41 <'printer-info'> <'caf' e9> 03",
        "group 01\n01\t\"attributes-charset\"\t47:\"iso-8859-1\"\n"
        "group 04\n04\t\"printer-info\"\t41:\"caf\\xc3\\xa9\"\n"}});
}

TEST(GroupDecoding, ReadsTextWithinTheOperationGroupAsUTF8) {
  expectDecodings({{"01 47 <'attributes-charset'> <'iso-8859-1'> 41 <'a'> <e9> 41 <'b'> <c3a9> 03",
                    "group 01\n01\t\"attributes-charset\"\t47:\"iso-8859-1\"\n"
                    "01\t\"a\"\t41:\"\"\n01\t\"b\"\t41:\"\\xc3\\xa9\"\n"}});
}

TEST(GroupDecoding, ReadsTextWithinTheOperationGroupInTheEncodingThatWasSetBefore) {
  const auto coder = unarchiverOf("01 41 <'a'> <e9> 03");
  coder->setNaturalLanguageEncoding(TextEncoding::latin1());
  EXPECT_EQ(coder->decodeIPPGroups()->front()->attributeValueForKey("a"), RawValue("\u00e9"));
}

TEST(GroupDecoding, ReadsTextAsUTF8WhenTheCharsetIsUnknown) {
  for (const char* charset : {"nonesuch", "utf-7", "iso-2022-jp", "x"}) {
    EXPECT_THAT(decodedGroups("01 47 <'attributes-charset'> <'" + std::string(charset) +
                              "'> 04 41 <'a'> <c3a9> 03"),
                ::testing::HasSubstr("41:\"\\xc3\\xa9\""))
        << charset;
  }
}

/// The text of an octet E9 in a printer group behind `octets`: "" unless it is read as Latin-1.
std::string textBehind(const std::string& octets) {
  const auto groups = unarchiverOf(octets + "04 41 <'late'> <e9> 03")->decodeIPPGroups();
  return groups ? groups->back()->attributeForName("late")->ippValue()->stringValue().value_or("")
                : "none";
}

TEST(GroupDecoding, TakesTheCharsetFromOperationGroupsOnly) {
  const std::string charset = "47 <'attributes-charset'> <'iso-8859-1'>";
  EXPECT_EQ(textBehind("01" + charset), "\u00e9");
  EXPECT_EQ(textBehind("02" + charset), "");
  EXPECT_EQ(textBehind("05" + charset), "");
  EXPECT_EQ(textBehind(charset), "");
  EXPECT_EQ(textBehind("01" + charset + "02"), "\u00e9");
  EXPECT_EQ(textBehind("02" + charset + "01" + charset), "\u00e9");
}

TEST(GroupDecoding, FindsTheCharsetWhateverTheLetterCaseOfItsName) {
  EXPECT_EQ(textBehind("01 47 <'Attributes-CHARSET'> <'ISO-8859-1'>"), "\u00e9");
}

TEST(GroupDecoding, TakesTheCharsetOfTheLastOperationGroup) {
  EXPECT_EQ(textBehind("01 47 <'attributes-charset'> <'iso-8859-1'>"
                       "01 47 <'attributes-charset'> <'utf-8'>"),
            "");
  EXPECT_EQ(textBehind("01 47 <'attributes-charset'> <'iso-8859-1'> 01"), "\u00e9");
}

TEST(GroupDecoding, LeavesTheEncodingAloneWhenTheCharsetHasNoValue) {
  const auto coder = unarchiverOf("01 47 <'attributes-charset'> <> 04 41 <'a'> <e9> 03");
  coder->setNaturalLanguageEncoding(TextEncoding::latin1());
  EXPECT_EQ(coder->decodeIPPGroups()->back()->attributeValueForKey("a"), RawValue("\u00e9"));
}

TEST(GroupDecoding, ReadsTextAsUTF8WhenTheCharsetIsNoString) {
  const auto coder = unarchiverOf("01 21 <'attributes-charset'> <00000001> 04 41 <'a'> <e9> 03");
  coder->setNaturalLanguageEncoding(TextEncoding::latin1());
  EXPECT_TRUE(coder->decodeIPPGroups()->back()->attributeValueForKey("a").isAbsent());
}

// The values of a set are put together by what follows them, which is after the delimiter.
TEST(GroupDecoding, TakesTheFirstOfSeveralCharsetsAtTheEndOfTheGroup) {
  EXPECT_EQ(textBehind("01 47 <'attributes-charset'> <'iso-8859-1'> 47 <> <'utf-8'>"), "\u00e9");
}

// --- Failures -----------------------------------------------------------------------------------

TEST(GroupDecoding, GivesNothingWhenTheInputEndsBeforeTheEndTag) {
  expectDecodings({{"", "none"},
                   {"01", "none"},
                   {"01 21", "none"},
                   {"01 21 <'a'>", "none"},
                   {"01 21 <'a'> <00000001>", "none"}});
}

TEST(GroupDecoding, GivesNothingOnALengthOf0x8000AndAbove) {
  expectDecodings({{"01 21 8000 03", "none"},
                   {"01 21 ffff 03", "none"},
                   {"01 44 <'a'> 8000 03", "none"},
                   {"01 31 <'a'> ffff 03", "none"}});
}

TEST(GroupDecoding, GivesNothingWhenABodyHasTheWrongLength) {
  expectDecodings({{"01 21 <'a'> <0001> 03", "none"},
                   {"01 22 <'a'> <0001> 03", "none"},
                   {"01 23 <'a'> <> 03", "none"},
                   {"01 31 <'a'> <07d1> 03", "none"},
                   {"01 32 <'a'> <0001> 03", "none"},
                   {"01 33 <'a'> <0001> 03", "none"}});
}

TEST(GroupDecoding, ForgetsTheGroupsBeforeAFailure) {
  expectDecodings({{"01 21 <'a'> <00000001> 04 21 <'b'> <0001> 03", "none"}});
}

TEST(GroupDecoding, NotesEveryTagThatItReads) {
  const auto coder = unarchiverOf("01 21 <'a'> <0001>");
  EXPECT_FALSE(coder->decodeIPPGroups());
  EXPECT_EQ(coder->currentTag(), 0x21);
  EXPECT_FALSE(coder->isAtEnd());
}

// --- Truncation ----------------------------------------------------------------------------------

const std::vector<std::string>& wholeMessages() {
  static const std::vector<std::string> messages = {
      "0101 0002 00000001 03",
      "0101 0002 00000001 01 47 <'attributes-charset'> <'utf-8'>"
      "48 <'attributes-natural-language'> <'en'> 45 <'printer-uri'> <'ipp://a/b'>"
      "42 <'job-name'> <'foobar'> 22 <'ipp-attribute-fidelity'> <01>"
      "02 21 <'copies'> <00000014> 44 <'sides'> <'one-sided'> 03",
      "0200 0000 00000001 01 04 33 <'a'> <00000001 00000002> 32 <'b'> <00000258 00000258 03>"
      "31 <'c'> <07d1 02 03 04 05 06 00 2b 00 00> 30 <'d'> <'octets'> 13 <'e'> <>"
      "36 <'f'> <<'en'> <'name'>> 35 <'g'> <<'fr.iso-8859-1'> <e9>> 44 <'h'> <'x'> 44 <> <'y'> 03",
      "0101 0000 00000001 04 34 <'a'> <> 4a <> <'m'> 34 <> <> 4a <> <'n'> 21 <> <00000001>"
      "21 <> <00000002> 37 <> <> 4a <> <'o'> 44 <> <'x'> 37 <> <> 34 <> <> 37 <> <> 03",
  };
  return messages;
}

TEST(GroupDecoding, DecodesTheWholeOfEachMessage) {
  for (const std::string& text : wholeMessages()) {
    EXPECT_NE(decodedMessage(text), nullptr) << text;
  }
}

TEST(GroupDecoding, GivesNoMessageForAnyPrefixOfOne) {
  for (const std::string& text : wholeMessages()) {
    const Data data = octets(text);
    for (std::size_t length = 0; length < data.size(); ++length) {
      // A copy of its own, so that a read behind its end is found out.
      const Data prefix(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(length));
      EXPECT_EQ(IPPMessage::initWithDataRepresentation(prefix), nullptr) << text << length;
    }
  }
}

// What a changed octet makes of a message need not come back when it is written again: a value of
// an unknown tag is written as one of tag 0x12, and within a collection that takes the next octets
// for its own. It has to end, and within its memory.
TEST(GroupDecoding, SurvivesEveryChangeOfOneOctet) {
  std::size_t decoded = 0;
  for (const std::string& text : wholeMessages()) {
    Data data = octets(text);
    for (std::uint8_t& octet : data) {
      const std::uint8_t original = octet;
      for (const int change : {0x01, 0x80, 0xff, 0x34, 0x7e}) {
        octet = static_cast<std::uint8_t>(original ^ change);
        if (const auto message = IPPMessage::initWithDataRepresentation(data)) {
          ++decoded;
          EXPECT_TRUE(message->copy()->isEqual(*message));
          EXPECT_FALSE(message->description().empty());
          EXPECT_GE(message->dataRepresentation().size(), 9U);
        }
      }
      octet = original;
    }
  }
  EXPECT_GT(decoded, 100U);
}

// --- Depth and size ------------------------------------------------------------------------------

/// A message with collections nested `depth` deep.
Data nestedCollections(std::size_t depth) {
  Data data = octets("0101 0000 00000001 04 34 <'a'> <>");
  const Data open = octets("4a <> <'m'> 34 <> <>");
  const Data close = octets("37 <> <>");
  for (std::size_t i = 1; i < depth; ++i) {
    data.insert(data.end(), open.begin(), open.end());
  }
  for (std::size_t i = 0; i < depth; ++i) {
    data.insert(data.end(), close.begin(), close.end());
  }
  data.push_back(3);
  return data;
}

TEST(GroupDecoding, DecodesCollectionsNested64Deep) {
  const Data data = nestedCollections(64);
  const auto message = IPPMessage::initWithDataRepresentation(data);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->dataRepresentation(), data);
  int depth = 1;
  RawValue value = message->attributeValueForKey("a");
  for (; !value.asDictionary().empty(); ++depth) {
    const RawValue inner = *value.asDictionary().find("m");
    value = inner;
  }
  EXPECT_EQ(depth, 64);
}

TEST(GroupDecoding, RefusesCollectionsNestedDeeper) {
  for (const std::size_t depth : {65U, 66U, 1000U, 100'000U}) {
    EXPECT_EQ(IPPMessage::initWithDataRepresentation(nestedCollections(depth)), nullptr) << depth;
  }
}

TEST(GroupDecoding, CountsCollectionsBesideEachOtherNotAsNested) {
  std::string text = "04";
  for (int i = 0; i < 200; ++i) {
    text += "34 <'a'> <> 37 <> <>";
  }
  EXPECT_NE(decodedGroups(text + "03"), "none");
}

void append(Data& data, std::string_view text) {
  const Data more = octets(text);
  data.insert(data.end(), more.begin(), more.end());
}

// Anything that walks over all of what it has for each that comes would take minutes here.
constexpr int kMany = 200'000;
constexpr std::chrono::seconds kPatience(20);

TEST(GroupDecoding, DecodesManyAttributesInLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  Data data = octets("0101 0000 00000001 04");
  const Data record = octets("21 <'a'> <00000001>");
  for (int i = 0; i < kMany; ++i) {
    data.insert(data.end(), record.begin(), record.end());
  }
  data.push_back(3);
  const auto message = IPPMessage::initWithDataRepresentation(data);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->ippGroups().front()->attributes().size(), std::size_t{kMany});
  EXPECT_EQ(message->dataRepresentation(), data);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
}

TEST(GroupDecoding, DecodesASetOfManyValuesInLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  Data data = octets("0101 0000 00000001 04 21 <'a'> <00000000>");
  const Data record = octets("21 <> <00000001>");
  for (int i = 1; i < kMany; ++i) {
    data.insert(data.end(), record.begin(), record.end());
  }
  data.push_back(3);
  const auto message = IPPMessage::initWithDataRepresentation(data);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->attributeValueForKey("a").asArray().size(), std::size_t{kMany});
  EXPECT_EQ(message->dataRepresentation(), data);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
}

TEST(GroupDecoding, DecodesACollectionOfManyMembersInLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  Data data = octets("0101 0000 00000001 04 34 <'a'> <>");
  for (int i = 0; i < kMany; ++i) {
    append(data, "4a <> <'" + std::to_string(i) + "'> 21 <> <00000001>");
  }
  append(data, "37 <> <> 03");
  const auto message = IPPMessage::initWithDataRepresentation(data);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->attributeValueForKey("a").asDictionary().size(), std::size_t{kMany});
  EXPECT_EQ(message->dataRepresentation(), data);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
}

TEST(GroupDecoding, DecodesManyMembersOfOneNameInLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  Data data = octets("0101 0000 00000001 04 34 <'a'> <>");
  for (int i = 0; i < kMany; ++i) {
    append(data, "4a <> <'same'> 21 <> <0000000" + std::to_string(i % 10) + ">");
  }
  append(data, "37 <> <> 03");
  const auto message = IPPMessage::initWithDataRepresentation(data);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->attributeValueForKey("a").description(), "{same = 9; }");
  EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
}

TEST(GroupDecoding, DecodesManyGroupsInLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  Data data = octets("0101 0000 00000001");
  data.resize(data.size() + kMany, 2);
  data.push_back(3);
  const auto message = IPPMessage::initWithDataRepresentation(data);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->jobGroups().size(), std::size_t{kMany});
  EXPECT_EQ(message->dataRepresentation(), data);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
}

TEST(GroupDecoding, ReadsNamesAndValuesOf32767Octets) {
  const std::string longest(32767, 'n');
  Data data = octets("0101 0000 00000001 04 44");
  for (int i = 0; i < 2; ++i) {
    append(data, "7fff");
    data.insert(data.end(), longest.begin(), longest.end());
  }
  data.push_back(3);
  const auto message = IPPMessage::initWithDataRepresentation(data);
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->attributeValueForKey(longest), RawValue(longest));
  EXPECT_EQ(message->dataRepresentation(), data);
}

}  // namespace
}  // namespace platen::test
