// SPDX-License-Identifier: Apache-2.0

/// One coding pair of each class serves the binary form and a keyed archive: here is the second.

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPMessage.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPResolutionValue.h"
#include "platen/IPPStringValue.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "tests/support/Coding.h"
#include "tests/support/KeyedTree.h"
#include "tests/support/MessageText.h"

namespace platen::test {
namespace {

IPPValue::Pointer uri(std::string_view text) { return IPPValue::uri(URL::parse(text).value()); }

template <class Object>
std::shared_ptr<const Object> archivedAndBack(const IPPCodable& object) {
  return std::dynamic_pointer_cast<const Object>(
      KeyedTreeReader::unarchive(KeyedTreeWriter::archive(object)));
}

/// A value beside its archive.
struct Archive {
  IPPValue::Pointer value;
  std::string text;
};

const std::vector<Archive>& archives() {
  static const std::vector<Archive> table = {
      {std::make_shared<const IPPUnsupported>(), "IPPUnsupported{value=<null>}"},
      {std::make_shared<const IPPNoValue>(), "IPPNoValue{value=<null>}"},
      {std::make_shared<const IPPNotSettable>(), "IPPNotSettable{value=<null>}"},
      {std::make_shared<const IPPAdminDefine>(), "IPPAdminDefine{value=<null>}"},
      {std::make_shared<const IPPValue>(), "IPPValue{value=(null)}"},
      {IPPValue::integerWithInt(-7), "IPPInteger{value=-7}"},
      {IPPValue::booleanWithBool(true), "IPPBoolean{value=1}"},
      {IPPValue::enumerationWithInt(3), "IPPEnum{value=3}"},
      {IPPValue::octetString("a"), "IPPOctetString{value=\"a\"}"},
      {IPPValue::dateTime(Date(std::chrono::seconds(1))),
       "IPPDateTime{value=1970-01-01 00:00:01 +0000}"},
      {IPPValue::resolution({600, 300}, true),
       "IPPResolutionValue{res-horizontal=600, res-vertical=300, unitsAreInches=true}"},
      {IPPValue::resolution({600, 300}, false),
       "IPPResolutionValue{res-horizontal=600, res-vertical=300, unitsAreInches=false}"},
      {IPPValue::rangeOfInteger({1, 10}), "IPPRangeOfInteger{range-length=10, range-location=1}"},
      {IPPValue::text("a", "en"), "IPPTextWithLanguage{language=\"en\", value=\"a\"}"},
      {IPPValue::name("a", "en"), "IPPNameWithLanguage{language=\"en\", value=\"a\"}"},
      {IPPValue::textWithoutLanguage("caf\u00e9"), "IPPText{value=\"caf\u00e9\"}"},
      {IPPValue::nameWithoutLanguage("a"), "IPPName{value=\"a\"}"},
      {IPPValue::keyword("a"), "IPPKeyword{value=\"a\"}"},
      {uri("ipp://a/b"), "IPPUri{value=ipp://a/b}"},
      {IPPValue::uriScheme("ipp"), "IPPUriScheme{value=\"ipp\"}"},
      {IPPValue::charset("utf-8"), "IPPCharset{value=\"utf-8\"}"},
      {IPPValue::naturalLanguage("en"), "IPPNaturalLanguage{value=\"en\"}"},
      {IPPValue::mimeMediaType("text/plain"), "IPPMimeMediaType{value=\"text/plain\"}"},
      {IPPValue::array({IPPValue::keyword("a"), IPPValue::integerWithInt(1)}),
       "IPPArray{value=[IPPKeyword{value=\"a\"}, IPPInteger{value=1}]}"},
      {IPPValue::dictionaryWithDictionary(
           {{"z", IPPValue::keyword("a")},
            {"a", IPPValue::dictionaryWithDictionary({{"m", IPPValue::integerWithInt(1)}})}}),
       "IPPMap{value=[z: IPPKeyword{value=\"a\"}, "
       "a: IPPMap{value=[m: IPPInteger{value=1}]}]}"},
      {IPPValue::dictionaryWithDictionary({}), "IPPMap{value=[]}"}};
  return table;
}

TEST(KeyedCoding, WritesEachValueUnderItsKeys) {
  for (const auto& [value, text] : archives()) {
    EXPECT_EQ(KeyedTreeWriter::archive(*value)->description(), text);
  }
}

TEST(KeyedCoding, ReadsEachValueBack) {
  for (const auto& [value, text] : archives()) {
    const auto back = archivedAndBack<IPPValue>(*value);
    ASSERT_NE(back, nullptr) << text;
    EXPECT_TRUE(back->isEqual(*value)) << text;
    EXPECT_EQ(KeyedTreeWriter::archive(*back)->description(), text);
    EXPECT_EQ(back->className(), value->className());
    EXPECT_EQ(encodedHex(*back), encodedHex(*value));
  }
}

TEST(KeyedCoding, CoversEveryClassOfTheCatalog) {
  for (const auto& [name, valueClass] : IPPValue::ippValuesCatalog()) {
    if (valueClass->ippTag() < 0x70) {
      const auto isOfClass = [&, wanted = valueClass->className()](const Archive& archive) {
        return archive.value->className() == wanted;
      };
      EXPECT_TRUE(std::any_of(archives().begin(), archives().end(), isOfClass)) << name;
    }
  }
}

TEST(KeyedCoding, KeepsWhatIsAbsentAbsent) {
  for (const std::uint8_t tag : Data{0x30, 0x35, 0x36, 0x41, 0x42, 0x44, 0x45, 0x47}) {
    const auto value = decodedValue(tag, "0000");
    const auto back = archivedAndBack<IPPValue>(*value);
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->isEqual(*value));
    EXPECT_FALSE(back->stringValue());
  }
}

TEST(KeyedCoding, KeepsRangesOfAllBounds) {
  for (const char* body : {"<0000000a 00000001>", "<80000000 7fffffff>", "<ffffffff ffffffff>"}) {
    const auto value = decodedValue(0x33, body);
    EXPECT_EQ(archivedAndBack<IPPValue>(*value)->rangeValue(), value->rangeValue()) << body;
  }
}

TEST(KeyedCoding, KeepsTheKindOfANumber) {
  const auto back = archivedAndBack<IPPValue>(*IPPValue::booleanWithBool(true));
  EXPECT_TRUE(back->rawValue().asNumber().isBoolean());
}

TEST(KeyedCoding, ReadsValuesOutOfAnEmptyArchive) {
  for (const auto& [name, valueClass] : IPPValue::ippValuesCatalog()) {
    if (valueClass->ippTag() < 0x70) {
      const auto node = std::make_shared<KeyedTree>();
      node->className = valueClass->className();
      const auto value =
          std::dynamic_pointer_cast<const IPPValue>(KeyedTreeReader::unarchive(node));
      ASSERT_NE(value, nullptr) << name;
      EXPECT_EQ(value->ippTag(), valueClass->ippTag());
      EXPECT_FALSE(value->description().empty());
    }
  }
}

TEST(KeyedCoding, RefusesAnArchivedSetWithoutValues) {
  const auto node = std::make_shared<KeyedTree>();
  node->className = "IPPArray";
  EXPECT_THAT([&] { KeyedTreeReader::unarchive(node); },
              ::testing::ThrowsMessage<RangeException>("Invalid parameter"));
}

// --- Attributes, groups, messages ----------------------------------------------------------------

TEST(KeyedCoding, WritesAndReadsAttributes) {
  const auto copies = IPPAttribute::attributeWithValue(IPPValue::integerWithInt(2), "copies");
  EXPECT_EQ(KeyedTreeWriter::archive(*copies)->description(),
            "IPPAttribute{name=\"copies\", value=IPPInteger{value=2}}");
  EXPECT_TRUE(archivedAndBack<IPPAttribute>(*copies)->isEqual(*copies));
}

TEST(KeyedCoding, WritesAndReadsAttributesWithoutANameOrAValue) {
  const IPPAttribute nothing(nullptr, Text());
  EXPECT_EQ(KeyedTreeWriter::archive(nothing)->description(),
            "IPPAttribute{name=absent, value=absent}");
  EXPECT_TRUE(archivedAndBack<IPPAttribute>(nothing)->isEqual(nothing));
}

TEST(KeyedCoding, KeepsTheKindOfAGroupByItsClassAlone) {
  for (const auto& [name, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    const auto group = groupClass->make();
    group->addNamedValues({{"z", IPPValue::integerWithInt(1)}, {"a", IPPValue::keyword("x")}});
    EXPECT_EQ(KeyedTreeWriter::archive(*group)->description(),
              std::string(groupClass->className()) +
                  "{attributes=[IPPAttribute{name=\"z\", value=IPPInteger{value=1}}, "
                  "IPPAttribute{name=\"a\", value=IPPKeyword{value=\"x\"}}]}");
    const auto back = archivedAndBack<IPPAttributeGroup>(*group);
    EXPECT_EQ(&back->ippClass(), groupClass);
    EXPECT_TRUE(back->isEqual(*group));
  }
}

// Only the binary form has an order of its own for them.
TEST(KeyedCoding, KeepsTheStoredOrderOfAnOperationGroup) {
  const auto group = IPPAttributeGroup::operationGroup();
  group->addNamedValues({{"job-name", IPPValue::nameWithoutLanguage("a")},
                         {"attributes-charset", IPPValue::charset("utf-8")}});
  EXPECT_EQ(archivedAndBack<IPPAttributeGroup>(*group)->attributes().front()->name(), "job-name");
}

std::shared_ptr<IPPMessage> sample() {
  return decodedMessage(
      "0101 8001 ffffffff 01 47 <'attributes-charset'> <'utf-8'> 04"
      "44 <'set'> <'a'> 44 <> <'b'> 13 <'none'> <> 36 <'name'> <<'en.iso-8859-1'> <e9>>"
      "34 <'map'> <> 4a <> <'m'> 34 <> <> 4a <> <'n'> 21 <> <00000001> 21 <> <00000002> 37 <> <>"
      "  37 <> <> 31 <'date'> <07d1 02 03 04 05 06 00 2b 00 00> 05 03");
}

TEST(KeyedCoding, WritesAMessageUnderThreeKeys) {
  EXPECT_EQ(KeyedTreeWriter::archive(IPPMessage(-32767, 7, {IPPAttributeGroup::jobGroup()}))
                ->description(),
            "IPPMessage{groups=[IPPJobGroup{attributes=[]}], request-id=7, tag=-32767}");
}

TEST(KeyedCoding, ReadsAMessageBack) {
  const auto message = sample();
  ASSERT_NE(message, nullptr);
  const auto back = archivedAndBack<IPPMessage>(*message);
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(back->isEqual(*message));
  EXPECT_EQ(messageText(*back, 0), messageText(*message, 0));
  EXPECT_EQ(back->dataRepresentation(), message->dataRepresentation());
  EXPECT_EQ(back->ippTag(), -32767);
  EXPECT_EQ(back->requestId(), -1);
}

TEST(KeyedCoding, KeepsAnArchiveThatOutlivesTheMessage) {
  const auto tree = KeyedTreeWriter::archive(*sample());
  const auto back = std::dynamic_pointer_cast<const IPPMessage>(KeyedTreeReader::unarchive(tree));
  EXPECT_TRUE(back->isEqual(*sample()));
}

TEST(KeyedCoding, KeepsAnObjectThatIsSharedShared) {
  const auto attribute = IPPAttribute::attributeWithValue(IPPValue::keyword("a"), "shared");
  const auto first = IPPAttributeGroup::jobGroup();
  const auto second = IPPAttributeGroup::jobGroup();
  first->addAttribute(attribute);
  second->addAttribute(attribute);
  const auto back = archivedAndBack<IPPMessage>(IPPMessage(0, 1, {first, second, first}));
  ASSERT_EQ(back->ippGroups().size(), 3U);
  EXPECT_EQ(back->ippGroups()[0], back->ippGroups()[2]);
  EXPECT_NE(back->ippGroups()[0], back->ippGroups()[1]);
  EXPECT_EQ(back->ippGroups()[0]->attributes()[0], back->ippGroups()[1]->attributes()[0]);
}

TEST(KeyedCoding, ReadsAMessageOutOfAnEmptyArchive) {
  const auto node = std::make_shared<KeyedTree>();
  node->className = "IPPMessage";
  const auto message =
      std::dynamic_pointer_cast<const IPPMessage>(KeyedTreeReader::unarchive(node));
  ASSERT_NE(message, nullptr);
  EXPECT_TRUE(message->isEqual(IPPMessage(0, 0)));
}

TEST(KeyedCoding, IgnoresObjectsOfAnotherClassInAList) {
  const auto node = KeyedTreeWriter::archive(IPPMessage(0, 1, {IPPAttributeGroup::jobGroup()}));
  std::get<KeyedTree::List>(node->fields.at("groups"))
      .push_back(KeyedTreeWriter::archive(*IPPValue::keyword("a")));
  const auto message =
      std::dynamic_pointer_cast<const IPPMessage>(KeyedTreeReader::unarchive(node));
  EXPECT_EQ(message->ippGroups().size(), 1U);
}

TEST(KeyedCoding, GivesNoMessageWhenAnObjectInItCannotBeMade) {
  const auto group = IPPAttributeGroup::jobGroup();
  group->addNamedValues({{"a", IPPValue::array({IPPValue::keyword("x")})}});
  const auto node = KeyedTreeWriter::archive(IPPMessage(0, 1, {group}));
  const auto groupNode = std::get<KeyedTree::List>(node->fields.at("groups")).front();
  const auto attributeNode = std::get<KeyedTree::List>(groupNode->fields.at("attributes")).front();
  std::get<KeyedTree::Pointer>(attributeNode->fields.at("value"))->fields.clear();
  EXPECT_EQ(KeyedTreeReader::unarchive(node), nullptr);
}

TEST(KeyedCoding, RefusesTheSequentialFaceOfAnArchive) {
  /// Writes a sequence whatever the coder is.
  class Sequential : public IPPCodable {
   public:
    [[nodiscard]] std::string_view className() const noexcept override { return "Sequential"; }
    void encodeWithCoder(IPPCoder& coder) const override { coder.encodeByte(1); }
  };
  EXPECT_THROW(KeyedTreeWriter::archive(Sequential()), InvalidArgumentException);
}

}  // namespace
}  // namespace platen::test
