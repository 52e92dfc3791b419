// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPMap.h"
#include "platen/IPPNullValue.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

/// The octets of a collection beside its text.
struct Body {
  std::string octets;
  std::string text;
};

TEST(IPPMap, WritesAndReadsItsMembersInTheirOrder) {
  const std::vector<Body> table = {
      {"0000 37 0000 0000", "34:{}"},
      {"<> 4a <> <'a'> 21 <> <00000001> 37 <> <>", "34:{\"a\"=21:1}"},
      {"<> 4a <> <'z'> 21 <> <00000001> 4a <> <'a'> 44 <> <'x'> 37 <> <>",
       "34:{\"z\"=21:1;\"a\"=44:\"x\"}"},
      {"<> 4a <> <'a'> 44 <> <'x'> 44 <> <'y'> 44 <> <'z'> 37 <> <>",
       "34:{\"a\"=44:\"x\",44:\"y\",44:\"z\"}"},
      {"<> 4a <> <'media-size'> 34 <> <> 4a <> <'x'> 21 <> <00005208> 4a <> <'y'> 21 <> "
       "<00007404> 37 <> <> 4a <> <'media-type'> 44 <> <'stationery'> 37 <> <>",
       "34:{\"media-size\"=34:{\"x\"=21:21000;\"y\"=21:29700};\"media-type\"=44:\"stationery\"}"},
      {"<> 4a <> <'a'> 34 <> <> 37 <> <> 34 <> <> 4a <> <'b'> 22 <> <01> 37 <> <> 37 <> <>",
       "34:{\"a\"=34:{},34:{\"b\"=22:true}}"},
      {"<> 4a <> <'a'> 36 <> <<'en'> <'x'>> 4a <> <'b'> 33 <> <00000001 00000002> 37 <> <>",
       "34:{\"a\"=36:[\"en\"]\"x\";\"b\"=33:1..2}"},
  };
  for (const auto& [octets, text] : table) {
    const auto value = decodedValue(0x34, octets);
    EXPECT_EQ(valueText(*value), text);
    EXPECT_EQ(encodedHex(*value), hexOf(octets)) << text;
  }
}

TEST(IPPMap, ReadsAMemberWithSeveralValuesAsASet) {
  const auto value =
      decodedValue(0x34, "<> 4a <> <'a'> 44 <> <'x'> 44 <> <'y'> 44 <> <'z'> 37 <> <>");
  const auto member = *value->dictionaryRepresentationValue()->find("a");
  ASSERT_NE(dynamic_cast<const IPPArray*>(member.get()), nullptr);
  EXPECT_EQ(member->description(), "(x, y, z) of keyword");
}

TEST(IPPMap, LetsALaterMemberTakeThePlaceOfAnEarlierOneOfTheSameName) {
  EXPECT_EQ(valueText(*decodedValue(0x34,
                                    "<> 4a <> <'a'> 21 <> <00000001> 4a <> <'b'> 21 <> "
                                    "<00000002> 4a <> <'a'> 44 <> <'x'> 37 <> <>")),
            "34:{\"a\"=44:\"x\";\"b\"=21:2}");
}

TEST(IPPMap, TellsMemberNamesApartByTheirLetterCase) {
  EXPECT_EQ(valueText(*decodedValue(0x34,
                                    "<> 4a <> <'a'> 21 <> <00000001> 4a <> <'A'> 21 <> "
                                    "<00000002> 37 <> <>")),
            "34:{\"a\"=21:1;\"A\"=21:2}");
}

TEST(IPPMap, KeepsManyMembersInTheirOrderOfArrival) {
  std::string octets = "<>";
  std::string text;
  for (int i = 40; i > 0; --i) {
    octets += "4a <> <'" + std::to_string(i) + "'> 22 <> <01>";
    text += (text.empty() ? "\"" : ";\"") + std::to_string(i) + "\"=22:true";
  }
  octets += "37 <> <>";
  EXPECT_EQ(valueText(*decodedValue(0x34, octets)), "34:{" + text + "}");
  EXPECT_EQ(encodedHex(*decodedValue(0x34, octets)), hexOf(octets));
}

// --- Oddities of the wire ------------------------------------------------------------------------

TEST(IPPMap, IgnoresItsLengthAndThoseOfItsEnd) {
  EXPECT_EQ(valueText(*decodedValue(0x34, "1234 4a <> <'a'> 21 <> <00000001> 37 8000 ffff")),
            "34:{\"a\"=21:1}");
}

TEST(IPPMap, ReadsNoMoreThanTheTwoLengthsOfItsEnd) {
  const auto coder = unarchiverOf("<> 37 <> <> 77");
  coder->setCurrentTag(0x34);
  coder->decodeIPPValue();
  EXPECT_EQ(coder->decodeByte(), 0x77);
}

TEST(IPPMap, IgnoresTheNamesOfTheRecordsInIt) {
  EXPECT_EQ(valueText(*decodedValue(
                0x34, "<> 4a <> <'a'> 21 <'odd'> <00000001> 21 <'even'> <00000002> 37 <> <>")),
            "34:{\"a\"=21:1,21:2}");
}

TEST(IPPMap, FailsOnAMemberRecordThatHasANameItself) {
  EXPECT_THAT([] { decodedValue(0x34, "<> 4a <'x'> <'a'> 21 <> <00000001> 37 <> <>"); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_THAT([] { decodedValue(0x34, "<> 4a ffff"); },
              ThrowsMessage<RangeException>("Invalid parameter"));
}

TEST(IPPMap, FailsOnAValueBeforeTheFirstMemberName) {
  EXPECT_THROW(decodedValue(0x34, "<> 21 <> <00000001> 37 <> <>"), InvalidArgumentException);
  EXPECT_THROW(decodedValue(0x34, "<> 21 <> <00000001> 4a <> <'a'> 21 <> <00000001> 37 <> <>"),
               InvalidArgumentException);
}

TEST(IPPMap, FailsOnAMemberWithoutAName) {
  EXPECT_THROW(decodedValue(0x34, "<> 4a <> <> 21 <> <00000001> 37 <> <>"),
               InvalidArgumentException);
  EXPECT_THROW(decodedValue(0x34, "<> 4a <> <e9> 21 <> <00000001> 37 <> <>"),
               InvalidArgumentException);
}

TEST(IPPMap, FailsWhenItsEndIsMissing) {
  EXPECT_THROW(decodedValue(0x34, "<>"), InconsistentArchiveException);
  EXPECT_THROW(decodedValue(0x34, "<> 4a <> <'a'> 21 <> <00000001>"), InconsistentArchiveException);
  EXPECT_THROW(decodedValue(0x34, "<> 37"), InconsistentArchiveException);
  EXPECT_THROW(decodedValue(0x34, "<> 37 <>"), InconsistentArchiveException);
}

// Only the group decoder passes over tags of zero; here the length of an out-of-band value is the
// tag and half of the name length of one more value. No resynchronisation is tried.
TEST(IPPMap, TakesTheLengthOfAnOutOfBandMemberForAFurtherValue) {
  EXPECT_THROW(decodedValue(0x34, "<> 4a <> <'a'> 13 <> <> 37 <> <>"),
               InconsistentArchiveException);
  EXPECT_EQ(encodedHex(
                *IPPValue::dictionaryWithDictionary({{"a", std::make_shared<const IPPNoValue>()}})),
            hexOf("<> 4a <> <'a'> 13 <> <> 37 <> <>"));
}

TEST(IPPMap, LeavesNothingBehindInTheCoderWhenItFails) {
  const auto coder = unarchiverOf("<> 4a <> <'a'> 21 <> <00000001> 21 <> <00000002> 4a <'x'>");
  coder->setCurrentTag(0x34);
  EXPECT_THROW(coder->decodeIPPValue(), RangeException);
  EXPECT_TRUE(coder->scratch().members.empty());
  EXPECT_TRUE(coder->scratch().values.empty());
}

// --- As an object --------------------------------------------------------------------------------

IPPValue::Pointer sample() {
  return IPPValue::dictionaryWithDictionary(
      {{"a", IPPValue::keyword("x")}, {"b", IPPValue::integerWithInt(2)}});
}

TEST(IPPMap, GivesItsValuesAndTheirRawObjects) {
  const auto value = sample();
  EXPECT_EQ(value->ippTag(), 0x34);
  EXPECT_EQ(value->syntaxName(), "begCollection");
  EXPECT_EQ(value->value(), RawValue(RawValue::Dictionary{{"a", "x"}, {"b", 2}}));
  EXPECT_EQ((*value->dictionaryRepresentationValue()->find("b"))->intValue(), 2);
  const auto& map = dynamic_cast<const IPPMap&>(*value);
  EXPECT_EQ(map.size(), 2U);
  EXPECT_EQ(map.nameAt(1), "b");
  EXPECT_EQ(map.valueAt(1).intValue(), 2);
}

TEST(IPPMap, DescribesItsMembers) {
  EXPECT_EQ(sample()->description(),
            "{\"a\" = \"'x' of keyword\";\n\"b\" = \"'2' of integer\";\n} of collection");
  EXPECT_EQ(sample()->stringValue(), "{a = 'x' of keyword; b = '2' of integer; }");
  EXPECT_EQ(IPPValue::dictionaryWithDictionary({})->description(), "{} of collection");
}

TEST(IPPMap, RefusesToBeMadeOfARawObjectOrOfAbsentValues) {
  EXPECT_THAT([] { static_cast<void>(IPPMap::descriptor._ippValue(RawValue::Dictionary())); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_THAT(
      [] {
        IPPValue::dictionaryWithDictionary({{"a", nullptr}});
      },
      ThrowsMessage<RangeException>("Invalid parameter"));
}

TEST(IPPMap, IsEqualWhateverTheOrderOfItsMembers) {
  const auto other = IPPValue::dictionaryWithDictionary(
      {{"b", IPPValue::integerWithInt(2)}, {"a", IPPValue::keyword("x")}});
  EXPECT_TRUE(sample()->isEqual(*other));
  EXPECT_TRUE(other->isEqual(*sample()));
  EXPECT_EQ(sample()->hash(), other->hash());
}

TEST(IPPMap, IsEqualWhenTheRawObjectsOfItsPlainMembersAre) {
  const auto other = IPPValue::dictionaryWithDictionary(
      {{"a", IPPValue::nameWithoutLanguage("x")}, {"b", IPPValue::enumerationWithInt(2)}});
  EXPECT_TRUE(sample()->isEqual(*other));
  EXPECT_EQ(sample()->hash(), other->hash());
}

TEST(IPPMap, ComparesTheValuesWithinItsCollectionsAsValues) {
  const auto of = [](IPPValue::Pointer member) {
    return IPPValue::dictionaryWithDictionary(
        {{"outer", IPPValue::dictionaryWithDictionary({{"inner", std::move(member)}})}});
  };
  EXPECT_TRUE(of(IPPValue::keyword("a"))->isEqual(*of(IPPValue::keyword("a"))));
  EXPECT_FALSE(of(IPPValue::keyword("a"))->isEqual(*of(IPPValue::nameWithoutLanguage("a"))));
}

TEST(IPPMap, TellsOtherMembersApart) {
  const auto with = [](const char* name, int value) {
    return IPPValue::dictionaryWithDictionary(
        {{"a", IPPValue::keyword("x")}, {name, IPPValue::integerWithInt(value)}});
  };
  EXPECT_TRUE(sample()->isEqual(*with("b", 2)));
  EXPECT_FALSE(sample()->isEqual(*with("b", 3)));
  EXPECT_FALSE(sample()->isEqual(*with("c", 2)));
  EXPECT_FALSE(sample()->isEqual(*with("a", 2)));
  EXPECT_FALSE(sample()->isEqual(IPPValue()));
  EXPECT_FALSE(IPPValue().isEqual(*sample()));
}

TEST(IPPMap, IsEqualToItsDecodedForm) {
  const auto decoded =
      decodedValue(0x34, "<> 4a <> <'b'> 21 <> <00000002> 4a <> <'a'> 44 <> <'x'> 37 <> <>");
  EXPECT_TRUE(decoded->isEqual(*sample()));
  EXPECT_TRUE(sample()->isEqual(*decoded));
  EXPECT_EQ(decoded->hash(), sample()->hash());
}

}  // namespace
}  // namespace platen::test
