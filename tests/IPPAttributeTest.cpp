// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platen/IPPArray.h"
#include "platen/IPPAttribute.h"
#include "platen/IPPNullValue.h"
#include "tests/support/Coding.h"

namespace platen::test {
namespace {

std::shared_ptr<IPPAttribute> attribute(std::string_view name, IPPValue::Pointer value) {
  return IPPAttribute::attributeWithValue(std::move(value), name);
}

TEST(IPPAttribute, WritesItsTagItsNameAndItsValue) {
  EXPECT_EQ(encodedHex(*attribute("copies", IPPValue::integerWithInt(2))),
            "21 00 06 63 6f 70 69 65 73 00 04 00 00 00 02");
}

TEST(IPPAttribute, WritesOneNamedRecordAndOneMoreForEachFurtherValue) {
  const auto value = IPPValue::array({IPPValue::keyword("none"), IPPValue::keyword("both")});
  EXPECT_EQ(encodedHex(*attribute("sides", value)), hexOf("44 <'sides'> <'none'> 44 <> <'both'>"));
}

TEST(IPPAttribute, WritesATagOfZeroAndItsNameOnlyWithoutAValue) {
  EXPECT_EQ(encodedHex(*attribute("copies", nullptr)), hexOf("00 <'copies'>"));
}

TEST(IPPAttribute, WritesAnAbsentNameAsALengthOfZero) {
  const auto nameless = IPPAttribute::attributeWithValue(IPPValue::integerWithInt(2), std::nullopt);
  EXPECT_EQ(encodedHex(*nameless), hexOf("21 <> <00000002>"));
  EXPECT_FALSE(nameless->name());
}

TEST(IPPAttribute, WritesANameThatIsNotASCIIAsALengthOfZero) {
  EXPECT_EQ(encodedHex(*attribute("caf\u00e9", IPPValue::integerWithInt(2))),
            hexOf("21 <> <00000002>"));
}

TEST(IPPAttribute, ReadsNothingFromASequence) {
  const auto coder = unarchiverOf("21 <'copies'> <00000002>");
  const auto empty = IPPAttribute::initWithCoder(*coder);
  EXPECT_FALSE(empty->name());
  EXPECT_EQ(empty->ippValue(), nullptr);
  EXPECT_EQ(coder->decodeByte(), 0x21);
}

// --- The order of the operation attributes -------------------------------------------------------

TEST(IPPAttribute, HasAPlaceForFiveNames) {
  const std::vector<std::pair<std::string, std::int64_t>> table = {
      {"attributes-charset", 0},
      {"attributes-natural-language", 1},
      {"printer-uri", 2},
      {"job-uri", 3},
      {"requesting-user-name", 4}};
  EXPECT_EQ(IPPAttribute::attributeOrderToNameSpec().size(), table.size());
  for (const auto& [name, order] : table) {
    EXPECT_EQ(IPPAttribute::_attributeOrderFromCodename(name), order);
    EXPECT_EQ(attribute(name, nullptr)->_attributeOrder(), order);
  }
}

TEST(IPPAttribute, PutsEveryOtherNameLast) {
  for (const char* name :
       {"PRINTER-URI", "Printer-Uri", "job-name", "printer-uri ", "printer-*", ""}) {
    EXPECT_FALSE(IPPAttribute::_attributeOrderFromCodename(name));
    EXPECT_EQ(attribute(name, nullptr)->_attributeOrder(), 9223372036854775807);
  }
  EXPECT_EQ(IPPAttribute(nullptr, Text())._attributeOrder(), 9223372036854775807);
}

// --- As an object --------------------------------------------------------------------------------

TEST(IPPAttribute, KeepsACopyOfItsName) {
  std::string name = "copies";
  const auto copies = attribute(name, IPPValue::integerWithInt(2));
  name = "fidelity";
  EXPECT_EQ(copies->name(), "copies");
}

TEST(IPPAttribute, KeepsItsValueWhateverBecomesOfTheCallersPointer) {
  auto value = IPPValue::integerWithInt(2);
  const auto copies = attribute("copies", value);
  value = IPPValue::integerWithInt(3);
  EXPECT_EQ(copies->ippValue()->intValue(), 2);
}

TEST(IPPAttribute, TakesAnotherValue) {
  const auto copies = attribute("copies", IPPValue::integerWithInt(2));
  copies->setIppValue(IPPValue::keyword("many"));
  EXPECT_EQ(copies->ippValue()->stringValue(), "many");
  copies->setIppValue(nullptr);
  EXPECT_EQ(copies->ippValue(), nullptr);
}

TEST(IPPAttribute, EqualsOneWithTheSameNameAndAnEqualValue) {
  const auto copies = attribute("copies", IPPValue::integerWithInt(2));
  EXPECT_TRUE(copies->isEqual(*attribute("copies", IPPValue::integerWithInt(2))));
  EXPECT_EQ(copies->hash(), attribute("copies", IPPValue::integerWithInt(2))->hash());
  EXPECT_FALSE(copies->isEqual(*attribute("Copies", IPPValue::integerWithInt(2))));
  EXPECT_FALSE(copies->isEqual(*attribute("copies", IPPValue::integerWithInt(3))));
  EXPECT_FALSE(copies->isEqual(*attribute("copies", IPPValue::enumerationWithInt(2))));
  EXPECT_FALSE(copies->isEqual(*attribute("copies", nullptr)));
}

TEST(IPPAttribute, ComparesAbsentNamesAndValues) {
  const IPPAttribute neither(nullptr, Text());
  EXPECT_TRUE(neither.isEqual(IPPAttribute(nullptr, Text())));
  EXPECT_FALSE(neither.isEqual(*attribute("", nullptr)));
  EXPECT_TRUE(attribute("a", nullptr)->isEqual(*attribute("a", nullptr)));
  EXPECT_EQ(attribute("a", nullptr)->hash(), attribute("a", nullptr)->hash());
}

TEST(IPPAttribute, HashesItsValueAndItsNameByExclusiveOr) {
  const auto value = IPPValue::keyword("none");
  EXPECT_EQ(attribute("sides", value)->hash(),
            value->hash() ^ std::hash<std::string_view>()("sides"));
}

TEST(IPPAttribute, CopiesIntoOneThatChangesOnItsOwn) {
  const auto copies = attribute("copies", IPPValue::integerWithInt(2));
  const auto copy = copies->copy();
  EXPECT_TRUE(copy->isEqual(*copies));
  copy->setIppValue(IPPValue::integerWithInt(3));
  EXPECT_EQ(copies->ippValue()->intValue(), 2);
}

TEST(IPPAttribute, DescribesItself) {
  EXPECT_EQ(attribute("copies", IPPValue::integerWithInt(2))->description(),
            "copies = '2' of integer");
  EXPECT_EQ(attribute("sides", IPPValue::arrayOfKeywords(std::vector<std::string>{"a", "b"}))
                ->description(),
            "sides = (a, b) of keyword");
  EXPECT_EQ(IPPAttribute(nullptr, Text()).description(), "(null) = (null)");
}

}  // namespace
}  // namespace platen::test
