// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

#include "platen/IPPAttributeGroup.h"
#include "platen/IPPConstants.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"

namespace platen::test {
namespace {

using ::testing::ElementsAre;

std::shared_ptr<IPPAttribute> attribute(std::string_view name, IPPValue::Pointer value) {
  return IPPAttribute::attributeWithValue(std::move(value), name);
}

/// A group with an integer attribute 0, 1, 2 ... of each name.
IPPAttributeGroup::Pointer groupOf(IPPAttributeGroup::Pointer group,
                                   const std::vector<std::string>& names) {
  std::int32_t number = 0;
  for (const std::string& name : names) {
    group->addAttribute(attribute(name, IPPValue::integerWithInt(number++)));
  }
  return group;
}

std::vector<std::string> namesOf(const IPPAttributeGroup::Attributes& attributes) {
  std::vector<std::string> names;
  for (const auto& each : attributes) {
    names.emplace_back(each->name().value_or("(null)"));
  }
  return names;
}

// --- The catalog ---------------------------------------------------------------------------------

/// A kind of group.
struct Kind {
  std::int32_t tag;
  std::string_view name;
  std::string_view className;
};

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> table = {
      {1, kIPPOperationGroupName, "IPPOperationGroup"},
      {2, kIPPJobGroupName, "IPPJobGroup"},
      {4, kIPPPrinterGroupName, "IPPPrinterGroup"},
      {5, kIPPUnsupportedAttributesGroupName, "IPPAttributeGroup"},
      {6, kIPPSubscriptionGroupName, "IPPSubscriptionGroup"},
      {7, kIPPNotificationEventGroupName, "IPPNotificationEventGroup"}};
  return table;
}

TEST(IPPAttributeGroup, HasSixClassesInItsCatalog) {
  std::set<std::int32_t> tags;
  for (const auto& [name, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    EXPECT_EQ(name, groupClass->ippName());
    EXPECT_TRUE(tags.insert(groupClass->ippTag()).second) << name << " shares its tag";
  }
  EXPECT_EQ(IPPAttributeGroup::ippGroupsCatalog().size(), 6U);
}

TEST(IPPAttributeGroup, FindsEachClassByItsTag) {
  for (const Kind& kind : kinds()) {
    const IPPGroupClass& groupClass = IPPAttributeGroup::classForIPPTag(kind.tag);
    EXPECT_EQ(groupClass.className(), kind.className);
    EXPECT_EQ(groupClass.ippName(), kind.name);
    EXPECT_EQ(IPPAttributeGroup::ippGroupsCatalog().at(kind.name), &groupClass);
    const auto group = groupClass.make();
    EXPECT_EQ(group->className(), kind.className);
    EXPECT_EQ(group->ippTag(), kind.tag);
    EXPECT_EQ(group->name(), kind.name);
    EXPECT_TRUE(group->attributes().empty());
  }
}

TEST(IPPAttributeGroup, FindsTheUnsupportedAttributesForEveryOtherTag) {
  for (const std::int32_t tag : {3, 0, 8, -1, -5, -128, 127, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(&IPPAttributeGroup::classForIPPTag(tag), &IPPAttributeGroup::descriptor) << tag;
  }
  EXPECT_EQ(IPPAttributeGroup::classForIPPTag(4).className(), "IPPPrinterGroup");
}

TEST(IPPAttributeGroup, MakesAnEmptyGroupOfEachKind) {
  EXPECT_EQ(IPPAttributeGroup::operationGroup()->ippTag(), 1);
  EXPECT_EQ(IPPAttributeGroup::jobGroup()->ippTag(), 2);
  EXPECT_EQ(IPPAttributeGroup::printerGroup()->ippTag(), 4);
  EXPECT_EQ(IPPAttributeGroup::subscriptionGroup()->ippTag(), 6);
  EXPECT_EQ(IPPAttributeGroup::notificationEventGroup()->ippTag(), 7);
  EXPECT_NE(IPPAttributeGroup::jobGroup(), IPPAttributeGroup::jobGroup());
}

TEST(IPPAttributeGroup, KnowsWhichClassIsDerivedFromWhich) {
  EXPECT_TRUE(IPPJobGroup::descriptor.isKindOf(IPPAttributeGroup::descriptor));
  EXPECT_TRUE(IPPJobGroup::descriptor.isKindOf(IPPJobGroup::descriptor));
  EXPECT_FALSE(IPPJobGroup::descriptor.isKindOf(IPPPrinterGroup::descriptor));
  EXPECT_FALSE(IPPAttributeGroup::descriptor.isKindOf(IPPJobGroup::descriptor));
}

// --- Writing -------------------------------------------------------------------------------------

TEST(IPPAttributeGroup, WritesAnEmptyGroupAsItsTagAlone) {
  EXPECT_EQ(encodedHex(*IPPAttributeGroup::printerGroup()), "04");
  for (const Kind& kind : kinds()) {
    EXPECT_EQ(encodedHex(*IPPAttributeGroup::classForIPPTag(kind.tag).make()),
              "0" + std::to_string(kind.tag));
  }
}

TEST(IPPAttributeGroup, WritesAGroupOfAnUnknownTagAsUnsupportedAttributes) {
  EXPECT_EQ(encodedHex(*IPPAttributeGroup::classForIPPTag(-5).make()), "05");
}

TEST(IPPAttributeGroup, WritesItsAttributesInTheirOrder) {
  EXPECT_EQ(encodedHex(*groupOf(IPPAttributeGroup::jobGroup(),
                                {"printer-uri", "a", "attributes-charset"})),
            hexOf("02 21 <'printer-uri'> <00000000> 21 <'a'> <00000001>"
                  "21 <'attributes-charset'> <00000002>"));
}

TEST(IPPAttributeGroup, WritesTheHeadOfAnOperationGroupInItsFixedOrder) {
  const auto group = groupOf(IPPAttributeGroup::operationGroup(),
                             {"requesting-user-name", "printer-uri", "attributes-natural-language",
                              "attributes-charset", "job-name"});
  EXPECT_THAT(namesOf(group->_sortedForRequestAttributes()),
              ElementsAre("attributes-charset", "attributes-natural-language", "printer-uri",
                          "requesting-user-name", "job-name"));
  EXPECT_EQ(encodedHex(*group),
            hexOf("01 21 <'attributes-charset'> <00000003>"
                  "21 <'attributes-natural-language'> <00000002> 21 <'printer-uri'> <00000001>"
                  "21 <'requesting-user-name'> <00000000> 21 <'job-name'> <00000004>"));
}

TEST(IPPAttributeGroup, KeepsTheOrderOfWhatHasNoPlaceInAnOperationGroup) {
  const auto group = groupOf(IPPAttributeGroup::operationGroup(),
                             {"z", "job-uri", "a", "z", "printer-uri", "m", "job-uri"});
  const auto sorted = group->_sortedForRequestAttributes();
  EXPECT_THAT(namesOf(sorted),
              ElementsAre("printer-uri", "job-uri", "job-uri", "z", "a", "z", "m"));
  EXPECT_EQ(sorted[1]->ippValue()->intValue(), 1);
  EXPECT_EQ(sorted[3]->ippValue()->intValue(), 0);
}

TEST(IPPAttributeGroup, LeavesTheStoredOrderAlone) {
  const auto group =
      groupOf(IPPAttributeGroup::operationGroup(), {"job-name", "attributes-charset"});
  static_cast<void>(encodedHex(*group));
  EXPECT_THAT(namesOf(group->attributes()), ElementsAre("job-name", "attributes-charset"));
}

TEST(IPPAttributeGroup, SortsNoOtherKindOfGroup) {
  for (const Kind& kind : kinds()) {
    if (kind.tag != 1) {
      const auto group = groupOf(IPPAttributeGroup::classForIPPTag(kind.tag).make(),
                                 {"job-name", "attributes-charset"});
      EXPECT_THAT(namesOf(group->_sortedForRequestAttributes()),
                  ElementsAre("job-name", "attributes-charset"));
    }
  }
}

TEST(IPPAttributeGroup, ReadsNothingFromASequence) {
  const auto coder = unarchiverOf("01 02");
  const auto group = IPPJobGroup::descriptor.initWithCoder(*coder);
  EXPECT_EQ(group->className(), "IPPJobGroup");
  EXPECT_TRUE(group->attributes().empty());
  EXPECT_EQ(coder->decodeByte(), 1);
}

// --- Looking attributes up -----------------------------------------------------------------------

TEST(IPPAttributeGroup, FindsAttributesByAPatternInTheirOrder) {
  const auto group = groupOf(IPPAttributeGroup::printerGroup(),
                             {"printer-state", "copies", "printer-state-reasons",
                              "printer-state-message", "printer-name"});
  EXPECT_THAT(namesOf(group->attributesForName("printer-state*")),
              ElementsAre("printer-state", "printer-state-reasons", "printer-state-message"));
  EXPECT_THAT(namesOf(group->attributesForName("printer-state")), ElementsAre("printer-state"));
  EXPECT_THAT(namesOf(group->attributesForName("COPIE?")), ElementsAre("copies"));
  EXPECT_THAT(namesOf(group->attributesForName("c\u00f3pies")), ElementsAre("copies"));
  EXPECT_EQ(group->attributesForName("*").size(), 5U);
  EXPECT_THAT(namesOf(group->attributesForName("printer")), ElementsAre());
}

TEST(IPPAttributeGroup, FindsTheFirstAttributeUnderTwoNames) {
  const auto group = groupOf(IPPAttributeGroup::jobGroup(), {"a", "job-b", "job-c", "job-b"});
  EXPECT_EQ(group->attributeForName("job-*"), group->attributes()[1]);
  EXPECT_EQ(group->attributeWithName("job-*"), group->attributes()[1]);
  EXPECT_EQ(group->attributeForName("x"), nullptr);
  EXPECT_EQ(group->attributeWithName("x"), nullptr);
}

TEST(IPPAttributeGroup, FindsNoAttributeWithoutAName) {
  const auto group = IPPAttributeGroup::jobGroup();
  group->addAttribute(std::make_shared<IPPAttribute>(IPPValue::integerWithInt(1), Text()));
  EXPECT_TRUE(group->attributesForName("*").empty());
  EXPECT_EQ(group->attributeForName("*"), nullptr);
}

TEST(IPPAttributeGroup, GivesThePlainValueOfTheFirstMatch) {
  const auto group = IPPAttributeGroup::jobGroup();
  group->addAttribute(attribute("sides", IPPValue::keyword("none")));
  group->addAttribute(attribute("empty", nullptr));
  EXPECT_EQ(group->attributeValueForKey("SIDES"), RawValue("none"));
  EXPECT_TRUE(group->attributeValueForKey("empty").isAbsent());
  EXPECT_TRUE(group->attributeValueForKey("nonesuch").isAbsent());
}

TEST(IPPAttributeGroup, GivesAnArrayOfValuesInEveryCase) {
  const auto group = groupOf(IPPAttributeGroup::jobGroup(), {"copies"});
  group->addAttribute(
      attribute("sides", IPPValue::arrayOfKeywords(std::vector<std::string>{"a", "b"})));
  group->addAttribute(attribute("empty", nullptr));
  EXPECT_EQ(group->attributeValuesArrayForKey("copies"), (RawValue::Array{0}));
  EXPECT_EQ(group->attributeValuesArrayForKey("sides"), (RawValue::Array{"a", "b"}));
  EXPECT_FALSE(group->attributeValuesArrayForKey("empty"));
  EXPECT_FALSE(group->attributeValuesArrayForKey("nonesuch"));
}

TEST(IPPAttributeGroup, GivesItsValuesByName) {
  const auto group = groupOf(IPPAttributeGroup::jobGroup(), {"a", "b"});
  group->addAttribute(attribute("empty", nullptr));
  EXPECT_EQ(RawValue(group->namedValues()),
            RawValue(RawValue::Dictionary{{"a", 0}, {"b", 1}, {"empty", Null()}}));
}

TEST(IPPAttributeGroup, HasNoNamedValuesWithoutAttributes) {
  EXPECT_FALSE(IPPAttributeGroup::jobGroup()->namedValues());
}

TEST(IPPAttributeGroup, KeepsTheLastOfSeveralNamedValuesOfOneName) {
  EXPECT_EQ(RawValue(groupOf(IPPAttributeGroup::jobGroup(), {"a", "b", "a"})->namedValues()),
            RawValue(RawValue::Dictionary{{"a", 2}, {"b", 1}}));
}

// --- Adding --------------------------------------------------------------------------------------

TEST(IPPAttributeGroup, AppendsAttributesAndNeverReplacesOne) {
  const auto group = groupOf(IPPAttributeGroup::jobGroup(), {"a"});
  group->addAttribute(attribute("a", IPPValue::integerWithInt(7)));
  group->addAttribute(nullptr);
  EXPECT_THAT(namesOf(group->attributes()), ElementsAre("a", "a"));
  group->addAttributesFromArray({attribute("b", nullptr), nullptr, attribute("c", nullptr)});
  group->addAttributesFromArray({});
  EXPECT_THAT(namesOf(group->attributes()), ElementsAre("a", "a", "b", "c"));
}

TEST(IPPAttributeGroup, AppendsItsOwnAttributesOnce) {
  const auto group = groupOf(IPPAttributeGroup::jobGroup(), {"a", "b"});
  group->addAttributesFromArray(group->attributes());
  EXPECT_THAT(namesOf(group->attributes()), ElementsAre("a", "b", "a", "b"));
}

TEST(IPPAttributeGroup, AppendsNamedValuesInTheOrderOfTheDictionary) {
  const auto group = IPPAttributeGroup::jobGroup();
  group->addNamedValues({{"z", IPPValue::keyword("x")}, {"a", IPPValue::integerWithInt(1)}});
  EXPECT_EQ(groupText(*group), "group 02\n02\t\"z\"\t44:\"x\"\n02\t\"a\"\t21:1\n");
}

// --- As an object --------------------------------------------------------------------------------

// One-sided by design: neither the tag nor the exact class is compared.
TEST(IPPAttributeGroup, EqualsAGroupOfADerivedClassWithTheSameAttributesButNotTheOtherWayRound) {
  const auto unsupported = groupOf(std::make_shared<IPPAttributeGroup>(), {"a"});
  const auto operation = groupOf(IPPAttributeGroup::operationGroup(), {"a"});
  EXPECT_TRUE(unsupported->isEqual(*operation));
  EXPECT_FALSE(operation->isEqual(*unsupported));
  EXPECT_EQ(unsupported->hash(), operation->hash());
}

TEST(IPPAttributeGroup, TellsGroupsOfDifferentKindsApart) {
  EXPECT_FALSE(groupOf(IPPAttributeGroup::jobGroup(), {"a"})
                   ->isEqual(*groupOf(IPPAttributeGroup::printerGroup(), {"a"})));
  EXPECT_TRUE(groupOf(IPPAttributeGroup::jobGroup(), {"a"})
                  ->_isEqualToAttributeGroup(*groupOf(IPPAttributeGroup::printerGroup(), {"a"})));
}

TEST(IPPAttributeGroup, ComparesItsAttributesOneByOne) {
  const auto group = groupOf(IPPAttributeGroup::jobGroup(), {"a", "b"});
  EXPECT_TRUE(group->isEqual(*groupOf(IPPAttributeGroup::jobGroup(), {"a", "b"})));
  EXPECT_EQ(group->hash(), groupOf(IPPAttributeGroup::jobGroup(), {"a", "b"})->hash());
  EXPECT_FALSE(group->isEqual(*groupOf(IPPAttributeGroup::jobGroup(), {"a"})));
  EXPECT_FALSE(group->isEqual(*groupOf(IPPAttributeGroup::jobGroup(), {"b", "a"})));
  EXPECT_FALSE(group->isEqual(*groupOf(IPPAttributeGroup::jobGroup(), {"a", "b", "c"})));
}

TEST(IPPAttributeGroup, CopiesItsListAndSharesItsAttributes) {
  const auto group = groupOf(IPPAttributeGroup::jobGroup(), {"a"});
  const auto copy = group->copy();
  EXPECT_EQ(copy->className(), "IPPJobGroup");
  EXPECT_TRUE(copy->isEqual(*group));
  EXPECT_EQ(copy->attributes().front(), group->attributes().front());
  copy->addAttribute(attribute("b", nullptr));
  EXPECT_EQ(group->attributes().size(), 1U);
}

TEST(IPPAttributeGroup, DescribesItsAttributes) {
  EXPECT_EQ(groupOf(IPPAttributeGroup::jobGroup(), {"a", "b"})->description(),
            "job-attributes-tag = (\n    a = '0' of integer,\n    b = '1' of integer\n)");
  EXPECT_EQ(IPPAttributeGroup::printerGroup()->description(), "printer-attributes-tag = ()");
}

}  // namespace
}  // namespace platen::test
