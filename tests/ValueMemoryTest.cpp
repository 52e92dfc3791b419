// SPDX-License-Identifier: Apache-2.0

/// Who holds the memory of a decoded message, and that it goes. What is read too late and what
/// never goes, the sanitizers find; the counted values below find the second in every build.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platen/IPPArray.h"
#include "platen/IPPMap.h"
#include "platen/IPPMessage.h"
#include "platen/IPPStringValue.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

/// A value that is counted as long as it lives: tag 0x78 where the coder keeps its values, 0x79
/// on its own.
class CountedValue : public IPPValueImpl {
 public:
  static const IPPValueClass descriptor;
  static const IPPValueClass detachedDescriptor;
  static int alive;

  explicit CountedValue(bool isDetached) : isDetached_(isDetached) { ++alive; }
  ~CountedValue() override { --alive; }
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override {
    return isDetached_ ? detachedDescriptor : descriptor;
  }
  [[nodiscard]] RawValue rawValue() const override { return "counted"; }

 private:
  bool isDetached_;
};

int CountedValue::alive = 0;

bool acceptsNothing(const RawValue&) { return false; }

IPPValue::Pointer makeNothing(const RawValue&) { return nullptr; }

IPPValue::Pointer decodeCounted(IPPCoder& coder) {
  coder.decodeInt16();
  return coder.make<CountedValue>(false);
}

IPPValue::Pointer decodeDetached(IPPCoder& coder) {
  coder.decodeInt16();
  return std::make_shared<const CountedValue>(true);
}

const IPPValueClass CountedValue::descriptor{"CountedValue", 0x78,        "counted",
                                             acceptsNothing, makeNothing, decodeCounted};
const IPPValueClass CountedValue::detachedDescriptor{
    "DetachedValue", 0x79, "counted-detached", acceptsNothing, makeNothing, decodeDetached};
const IPPValueRegistration registration(CountedValue::descriptor);
const IPPValueRegistration detachedRegistration(CountedValue::detachedDescriptor);

/// Both kinds of counted value: alone, in a set, in a collection and in a set within a collection.
constexpr std::string_view kCounted =
    "0101 0000 00000001 04 78 <'one'> <> 79 <'other'> <> 78 <'set'> <> 79 <> <> 78 <> <>"
    "34 <'map'> <> 4a <> <'m'> 78 <> <> 4a <> <'n'> 79 <> <> 78 <> <>"
    "  4a <> <'o'> 34 <> <> 4a <> <'p'> 79 <> <> 37 <> <> 37 <> <> 03";
constexpr int kCountedValues = 9;

std::shared_ptr<IPPMessage> sample() {
  return decodedMessage(
      "0101 0000 00000001 04 44 <'keyword'> <'a keyword of some length'>"
      "35 <'text'> <<'en'> <'a text of some length, with its language'>>"
      "45 <'uri'> <'ipp://printer.example.com/ipp/print'>"
      "44 <'set'> <'the first of the set'> 44 <> <'the second of the set'>"
      "34 <'map'> <> 4a <> <'member'> 44 <> <'the keyword of the member'>"
      "  4a <> <'set'> 44 <> <'one of a set in a collection'> 44 <> <'another one of it'>"
      "  4a <> <'inner'> 34 <> <> 4a <> <'leaf'> 21 <> <0000002a> 37 <> <> 37 <> <>"
      "41 <'late'> <'caf' c3a9 ' behind the collection'> 03");
}

IPPValue::Pointer valueOf(const std::shared_ptr<IPPMessage>& message, std::string_view name) {
  return message->attributeForKey(name)->ippValue();
}

TEST(ValueMemory, GoesWithTheMessage) {
  {
    const auto message = decodedMessage(kCounted);
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(CountedValue::alive, kCountedValues);
  }
  EXPECT_EQ(CountedValue::alive, 0);
}

TEST(ValueMemory, GoesWhenTheDecodingFails) {
  const Data data = octets(kCounted);
  for (std::size_t length = 0; length < data.size(); ++length) {
    EXPECT_EQ(IPPMessage::initWithDataRepresentation(Bytes(data).first(length)), nullptr);
    ASSERT_EQ(CountedValue::alive, 0) << length;
  }
}

TEST(ValueMemory, StaysWhileOneValueIsHeld) {
  for (const char* name : {"one", "other", "set", "map"}) {
    auto value = valueOf(decodedMessage(kCounted), name);
    EXPECT_GT(CountedValue::alive, 0) << name;
    value.reset();
    EXPECT_EQ(CountedValue::alive, 0) << name;
  }
}

TEST(ValueMemory, StaysWhileOneAttributeIsHeld) {
  auto attribute = decodedMessage(kCounted)->attributeForKey("one");
  EXPECT_EQ(attribute->name(), "one");
  EXPECT_EQ(attribute->ippValue()->value(), RawValue("counted"));
  attribute.reset();
  EXPECT_EQ(CountedValue::alive, 0);
}

TEST(ValueMemory, StaysWhileOneGroupIsHeld) {
  auto group = decodedMessage(kCounted)->ippGroups().front();
  EXPECT_EQ(group->attributes().size(), 4U);
  group.reset();
  EXPECT_EQ(CountedValue::alive, 0);
}

TEST(ValueMemory, StaysWhileOneElementOfASetIsHeld) {
  for (std::size_t index = 0; index < 3; ++index) {
    auto element = valueOf(decodedMessage(kCounted), "set")->arrayValue()->at(index);
    EXPECT_EQ(element->value(), RawValue("counted"));
    element.reset();
    EXPECT_EQ(CountedValue::alive, 0);
  }
}

TEST(ValueMemory, StaysWhileOneMemberOfACollectionIsHeld) {
  for (const char* name : {"m", "n", "o"}) {
    auto member =
        *valueOf(decodedMessage(kCounted), "map")->dictionaryRepresentationValue()->find(name);
    EXPECT_FALSE(member->description().empty());
    member.reset();
    EXPECT_EQ(CountedValue::alive, 0) << name;
  }
}

TEST(ValueMemory, StaysWhileAnElementWithinACollectionIsHeld) {
  auto element =
      (*valueOf(decodedMessage(kCounted), "map")->dictionaryRepresentationValue()->find("n"))
          ->arrayValue()
          ->at(1);
  EXPECT_EQ(element->value(), RawValue("counted"));
  element.reset();
  EXPECT_EQ(CountedValue::alive, 0);
}

TEST(ValueMemory, LetsTextsBeReadAsLongAsTheirValueLives) {
  const auto keyword =
      std::dynamic_pointer_cast<const IPPStringValue>(valueOf(sample(), "keyword"));
  EXPECT_EQ(keyword->text(), "a keyword of some length");
  const auto text =
      std::dynamic_pointer_cast<const IPPStringValueWithLanguage>(valueOf(sample(), "text"));
  EXPECT_EQ(text->text(), "a text of some length, with its language");
  EXPECT_EQ(text->language(), "en");
  EXPECT_EQ(valueOf(sample(), "uri")->stringValue(), "ipp://printer.example.com/ipp/print");
  EXPECT_EQ(valueOf(sample(), "late")->stringValue(), "caf\u00e9 behind the collection");
}

TEST(ValueMemory, LetsNamesBeReadAsLongAsTheirObjectLives) {
  const auto attribute = sample()->attributeForKey("keyword");
  EXPECT_EQ(attribute->name(), "keyword");
  const auto map = std::dynamic_pointer_cast<const IPPMap>(valueOf(sample(), "map"));
  EXPECT_EQ(map->nameAt(1), "set");
  EXPECT_EQ(map->valueAt(2).description(), "{\"leaf\" = \"'42' of integer\";\n} of collection");
}

TEST(ValueMemory, LetsElementsAndMembersBeReadWithoutTheirMessage) {
  const auto second = valueOf(sample(), "set")->arrayValue()->at(1);
  EXPECT_EQ(second->stringValue(), "the second of the set");
  const auto inner = *valueOf(sample(), "map")->dictionaryRepresentationValue()->find("inner");
  const auto leaf = *inner->dictionaryRepresentationValue()->find("leaf");
  EXPECT_EQ(leaf->intValue(), 42);
  const auto set = *valueOf(sample(), "map")->dictionaryRepresentationValue()->find("set");
  EXPECT_EQ(set->arrayValue()->at(1)->stringValue(), "another one of it");
}

TEST(ValueMemory, MakesCopiesThatHoldNothingOfTheMessage) {
  IPPValueList copies;
  std::vector<std::string> texts;
  auto message = sample();
  for (const auto& attribute : message->ippGroups().front()->attributes()) {
    copies.push_back(attribute->ippValue()->copy());
    texts.push_back(valueText(*attribute->ippValue()));
  }
  message.reset();
  for (std::size_t i = 0; i < copies.size(); ++i) {
    EXPECT_EQ(valueText(*copies[i]), texts[i]);
  }
}

// The copy of a set shares its values, and with them the memory that they are in.
TEST(ValueMemory, StaysWhileACopyOfASetIsHeld) {
  auto copy = valueOf(decodedMessage(kCounted), "set")->copy();
  EXPECT_EQ(copy->description(), "(counted, counted, counted) of counted");
  copy.reset();
  EXPECT_EQ(CountedValue::alive, 0);
}

TEST(ValueMemory, GoesThoughAnAttributeTakesAValueOfTheSameMessage) {
  {
    const auto message = decodedMessage(kCounted);
    const auto one = message->attributeForKey("one");
    one->setIppValue(valueOf(message, "set"));
    message->attributeForKey("other")->setIppValue(valueOf(message, "set")->arrayValue()->at(1));
    message->attributeForKey("map")->setIppValue(
        IPPValue::array({valueOf(message, "other"), valueOf(message, "map"), one->ippValue()}));
    EXPECT_FALSE(message->dataRepresentation().empty());
  }
  EXPECT_EQ(CountedValue::alive, 0);
}

TEST(ValueMemory, GoesThoughTwoMessagesTakeValuesOfEachOther) {
  {
    const auto left = decodedMessage(kCounted);
    const auto right = decodedMessage(kCounted);
    left->attributeForKey("one")->setIppValue(valueOf(right, "map"));
    right->attributeForKey("one")->setIppValue(valueOf(left, "set"));
    left->addGroup(right->ippGroups().front());
    EXPECT_FALSE(left->dataRepresentation().empty());
  }
  EXPECT_EQ(CountedValue::alive, 0);
}

TEST(ValueMemory, LetsAValueBeTakenOverByAMessageThatLivesLonger) {
  const auto message = std::make_shared<IPPMessage>(0, 1);
  const auto group = IPPAttributeGroup::jobGroup();
  message->addGroup(group);
  {
    const auto source = sample();
    group->addAttribute(IPPAttribute::attributeWithValue(valueOf(source, "map"), "taken"));
    group->addAttribute(source->attributeForKey("late"));
  }
  EXPECT_EQ(messageText(*message, 0),
            "message version=1.1 code=0x0000 request-id=1\ngroup 02\n"
            "02\t\"taken\"\t34:{\"member\"=44:\"the keyword of the member\";"
            "\"set\"=44:\"one of a set in a collection\",44:\"another one of it\";"
            "\"inner\"=34:{\"leaf\"=21:42}}\n"
            "02\t\"late\"\t41:\"caf\\xc3\\xa9 behind the collection\"\n");
}

TEST(ValueMemory, LetsAValueOfADeeperPlaceBePutIntoASetOfItsOwnMessage) {
  const auto message = sample();
  const auto member = *valueOf(message, "map")->dictionaryRepresentationValue()->find("member");
  const auto set = IPPValue::array({member, valueOf(message, "keyword")});
  message->attributeForKey("set")->setIppValue(set);
  EXPECT_EQ(message->attributeForKey("set")->description(),
            "set = (the keyword of the member, a keyword of some length) of keyword");
}

// --- Heap calls ---------------------------------------------------------------------------------

Data messageOfAttributes(int count) {
  Data data = octets("0101 0000 00000001 04");
  const Data records = octets(
      "44 <'keyword'> <'value'> 21 <'integer'> <00000001> 44 <'set'> <'a'> 44 <> <'b'>"
      "34 <'map'> <> 4a <> <'m'> 21 <> <00000001> 37 <> <>");
  for (int i = 0; i < count; i += 4) {
    data.insert(data.end(), records.begin(), records.end());
  }
  data.push_back(3);
  return data;
}

std::size_t heapCallsOfDecoding(const Data& data) {
  IPPMessage::initWithDataRepresentation(data);  // the first one also builds the catalogs
  const AllocationCount count;
  EXPECT_NE(IPPMessage::initWithDataRepresentation(data), nullptr);
  return count.sinceThen();
}

// Attributes are kept in blocks of a few; nothing else is counted by its number.
TEST(ValueMemory, CallsTheHeapLessThanOnceForEachFiveAttributes) {
  EXPECT_LT(heapCallsOfDecoding(messageOfAttributes(4)), 25U);
  EXPECT_LT(heapCallsOfDecoding(messageOfAttributes(1000)), 200U);
  EXPECT_LT(heapCallsOfDecoding(messageOfAttributes(10000)), 2000U);
}

TEST(ValueMemory, CallsTheHeapAFewTimesForASetOfManyValues) {
  Data data = octets("0101 0000 00000001 04 44 <'a'> <'value'>");
  const Data record = octets("44 <> <'value'>");
  for (int i = 0; i < 10'000; ++i) {
    data.insert(data.end(), record.begin(), record.end());
  }
  data.push_back(3);
  EXPECT_LT(heapCallsOfDecoding(data), 60U);
}

}  // namespace
}  // namespace platen::test
