// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPStringValue.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

IPPValue::Pointer keywords(const std::vector<std::string>& strings) {
  return IPPValue::arrayOfKeywords(strings);
}

/// The value of the one attribute of a message with these records.
IPPValue::Pointer decodedRecords(const std::string& records) {
  const auto message = decodedMessage("0101 0000 00000001 04" + records + "03");
  return message == nullptr ? nullptr : message->attributeForKey("*")->ippValue();
}

TEST(IPPArray, WritesASetOfOneAsItsValueAlone) {
  EXPECT_EQ(encodedHex(*keywords({"a"})), encodedHex(*IPPValue::keyword("a")));
  EXPECT_EQ(encodedHex(*IPPValue::array({IPPValue::integerWithInt(2)})), hexOf("<00000002>"));
}

TEST(IPPArray, WritesATagAndAnEmptyNameBeforeEachFurtherValue) {
  EXPECT_EQ(encodedHex(*keywords({"a", "b"})), hexOf("<'a'> 44 0000 <'b'>"));
  EXPECT_EQ(encodedHex(*keywords({"a", "b", "c"})), hexOf("<'a'> 44 <> <'b'> 44 <> <'c'>"));
}

/// The records of an attribute beside the text of its value.
struct Body {
  std::string records;
  std::string text;
};

TEST(IPPArray, WritesAndReadsSetsOfEachSyntax) {
  const std::vector<Body> table = {
      {"21 <'a'> <00000001> 21 <> <00000002>", "21:1,21:2"},
      {"44 <'a'> <'x'> 44 <> <'y'> 44 <> <'z'>", "44:\"x\",44:\"y\",44:\"z\""},
      {"33 <'a'> <00000001 00000002> 33 <> <00000003 00000004>", "33:1..2,33:3..4"},
      {"32 <'a'> <00000001 00000002 03> 32 <> <00000001 00000002 04>", "32:1x2/3,32:1x2/4"},
      {"35 <'a'> <<'en'> <'x'>> 35 <> <<'fr'> <'y'>>", "35:[\"en\"]\"x\",35:[\"fr\"]\"y\""},
      {"22 <'a'> <00> 22 <> <01>", "22:false,22:true"},
      {"34 <'a'> <> 37 <> <> 34 <> <> 37 <> <>", "34:{},34:{}"},
      {"13 <'a'> <> 13 <> <>", "13:-,13:-"},
  };
  for (const auto& [records, text] : table) {
    const auto value = decodedRecords(records);
    ASSERT_NE(value, nullptr) << records;
    EXPECT_EQ(valueText(*value), text);
    EXPECT_EQ(encodedHex(*IPPAttribute::attributeWithValue(value, "a")), hexOf(records));
  }
}

TEST(IPPArray, HasTheTagAndTheSyntaxNameOfItsLastValue) {
  const auto value = IPPValue::array({IPPValue::keyword("a"), IPPValue::nameWithoutLanguage("b")});
  EXPECT_EQ(value->ippTag(), 0x42);
  EXPECT_EQ(value->syntaxName(), "nameWithoutLanguage");
  EXPECT_EQ(value->className(), "IPPArray");
}

TEST(IPPArray, WritesTheTagOfItsLastValueForEveryOne) {
  const auto value = IPPValue::array(
      {IPPValue::keyword("a"), IPPValue::keyword("b"), IPPValue::nameWithoutLanguage("c")});
  EXPECT_EQ(encodedHex(*IPPAttribute::attributeWithValue(value, "x")),
            hexOf("42 <'x'> <'a'> 42 <> <'b'> 42 <> <'c'>"));
}

TEST(IPPArray, IsNotInTheCatalog) {
  for (const auto& [name, valueClass] : IPPValue::ippValuesCatalog()) {
    EXPECT_NE(valueClass->className(), "IPPArray");
  }
}

TEST(IPPArray, RefusesToBeEmpty) {
  EXPECT_THAT([] { IPPValue::array(IPPValueList{}); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_THAT([] { IPPArray::setWithValues({}, IPPInteger::descriptor); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_FALSE(IPPArray::_checkValue({}));
}

TEST(IPPArray, RefusesAbsentValues) {
  EXPECT_THAT(
      [] {
        IPPValue::array({IPPValue::keyword("a"), nullptr});
      },
      ThrowsMessage<RangeException>("Invalid parameter"));
}

TEST(IPPArray, IsMadeOfRawObjectsThatTheClassOfItsValuesAccepts) {
  const RawValue::Array objects = {"a", "b"};
  EXPECT_EQ(valueText(*IPPArray::setWithValues(objects, IPPKeyword::descriptor)),
            "44:\"a\",44:\"b\"");
  EXPECT_THAT([&] { IPPArray::setWithValues(objects, IPPInteger::descriptor); },
              ThrowsMessage<RangeException>("Invalid parameter"));
  EXPECT_THAT([&] { static_cast<void>(IPPArray::descriptor._ippValue(objects)); },
              ThrowsMessage<RangeException>("Invalid parameter"));
}

TEST(IPPArray, GivesItsValuesAndTheirRawObjects) {
  const auto first = IPPValue::keyword("a");
  const auto value = IPPValue::array({first, IPPValue::keyword("b")});
  ASSERT_EQ(value->arrayValue()->size(), 2U);
  EXPECT_EQ(value->arrayValue()->front(), first);
  EXPECT_EQ(value->value(), RawValue(RawValue::Array{"a", "b"}));
  const auto& array = dynamic_cast<const IPPArray&>(*value);
  EXPECT_EQ(array.size(), 2U);
  EXPECT_EQ(&array.at(0), first.get());
  EXPECT_FALSE(value->stringValue());
  EXPECT_EQ(value->intValue(), -1);
}

TEST(IPPArray, GivesNullForAnOutOfBandValueInIt) {
  const auto value = IPPValue::array({std::make_shared<const IPPNoValue>(), IPPValue::integer(1)});
  EXPECT_EQ(value->value(), RawValue(RawValue::Array{Null(), 1}));
}

TEST(IPPArray, DescribesItsValuesByTheirRawObjects) {
  EXPECT_EQ(keywords({"a", "b"})->description(), "(a, b) of keyword");
  EXPECT_EQ(keywords({"a"})->description(), "(a) of keyword");
  EXPECT_EQ(IPPValue::array({IPPValue::rangeOfInteger({1, 2})})->description(),
            "({1, 2}) of rangeOfInteger");
  EXPECT_EQ(keywords({"", "b"})->description(), "(, b) of keyword");
}

// Equality is that of the raw objects, and those of plain values have no class left.
TEST(IPPArray, IsEqualWhenTheRawObjectsAreWhateverTheClassesOfItsPlainValues) {
  const auto names = IPPValue::array({IPPValue::nameWithoutLanguage("a")});
  EXPECT_TRUE(keywords({"a"})->isEqual(*names));
  EXPECT_TRUE(names->isEqual(*keywords({"a"})));
  EXPECT_EQ(keywords({"a"})->hash(), names->hash());
  EXPECT_FALSE(keywords({"a"})->isEqual(*keywords({"b"})));
  EXPECT_FALSE(keywords({"a"})->isEqual(*keywords({"a", "a"})));
  EXPECT_FALSE(keywords({"a", "b"})->isEqual(*keywords({"b", "a"})));
}

TEST(IPPArray, ComparesTheValuesWithinItsCollectionsAsValues) {
  const auto of = [](IPPValue::Pointer member) {
    return IPPValue::array({IPPValue::dictionaryWithDictionary({{"m", std::move(member)}})});
  };
  EXPECT_TRUE(of(IPPValue::keyword("a"))->isEqual(*of(IPPValue::keyword("a"))));
  EXPECT_FALSE(of(IPPValue::keyword("a"))->isEqual(*of(IPPValue::nameWithoutLanguage("a"))));
}

TEST(IPPArray, ComparesTheValuesWithinItsSetsAsValues) {
  const auto of = [](IPPValue::Pointer member) {
    return IPPValue::array({IPPValue::array({std::move(member)})});
  };
  EXPECT_TRUE(of(IPPValue::keyword("a"))->isEqual(*of(IPPValue::keyword("a"))));
  EXPECT_FALSE(of(IPPValue::keyword("a"))->isEqual(*of(IPPValue::nameWithoutLanguage("a"))));
}

TEST(IPPArray, IsNotEqualToItsOnlyValue) {
  EXPECT_FALSE(keywords({"a"})->isEqual(*IPPValue::keyword("a")));
  EXPECT_FALSE(IPPValue::keyword("a")->isEqual(*keywords({"a"})));
  EXPECT_FALSE(keywords({"a"})->isEqual(IPPValue()));
  EXPECT_FALSE(IPPValue().isEqual(*keywords({"a"})));
}

TEST(IPPArray, IsEqualToItsDecodedForm) {
  const auto decoded = decodedRecords("44 <'a'> <'x'> 44 <> <'y'>");
  EXPECT_TRUE(decoded->isEqual(*keywords({"x", "y"})));
  EXPECT_TRUE(keywords({"x", "y"})->isEqual(*decoded));
  EXPECT_EQ(decoded->hash(), keywords({"x", "y"})->hash());
}

}  // namespace
}  // namespace platen::test
