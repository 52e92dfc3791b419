// SPDX-License-Identifier: Apache-2.0

// Keys of messages and groups, and of what is in them, without a path.

#include <gtest/gtest.h>

#include "platen/Error.h"
#include "platen/Exception.h"
#include "platen/IPPMessageKVCForwarder.h"
#include "tests/support/KeyValuePrinting.h"
#include "tests/support/PrintersAnswer.h"

namespace platen {
namespace {

using test::attribute;
using test::printersAnswer;

const auto kValue = IPPValue::integerWithInt(1);

IPPAttributeGroup::Pointer groupWith(IPPAttributeGroup::Attributes attributes) {
  auto group = IPPAttributeGroup::printerGroup();
  group->addAttributesFromArray(attributes);
  return group;
}

IPPResponse::Pointer responseWith(IPPAttributeGroup::Attributes attributes) {
  return std::make_shared<IPPResponse>(0, 1, IPPMessage::Groups{groupWith(std::move(attributes))});
}

TEST(KeyValueAccess, GivesTheFirstAttributeOfAMessageByItsName) {
  const auto response = printersAnswer();
  EXPECT_EQ(response->valueForKey("printer-name").asAttribute(),
            response->ippGroups()[1]->attributes()[0]);
  EXPECT_EQ(response->valueForKey("printer-location").asAttribute(),
            response->ippGroups()[2]->attributes()[1]);
}

TEST(KeyValueAccess, TakesAKeyForAPatternBlindToLetterCase) {
  const auto response = printersAnswer();
  const auto name = response->valueForKey("printer-name").asAttribute();
  EXPECT_EQ(response->valueForKey("PRINTER-NAME").asAttribute(), name);
  EXPECT_EQ(response->valueForKey("printer-*").asAttribute(), name);
  EXPECT_EQ(response->valueForKey("printer?nam?").asAttribute(), name);
  EXPECT_EQ(response->valueForKey("prïnter-name").asAttribute(), name);
  EXPECT_EQ(response->valueForKey("*").asAttribute()->name(), "attributes-charset");
  EXPECT_EQ(response->ippGroups()[2]->valueForKey("*-STATE-*").asAttribute()->name(),
            "printer-state-reasons");
}

// The same unknown name: a failure of a message, nothing of a group.
TEST(KeyValueAccess, RaisesForAMessageAndNotForAGroup) {
  const auto response = printersAnswer();
  try {
    static_cast<void>(response->valueForKey("no-such-attribute"));
    FAIL() << "a message has to raise";
  } catch (const UndefinedKeyException& failure) {
    EXPECT_EQ(failure.key(), "no-such-attribute");
    EXPECT_EQ(failure.className(), "IPPResponse");
    EXPECT_STREQ(failure.what(), "IPPResponse has nothing under the key \"no-such-attribute\"");
  }
  EXPECT_TRUE(response->ippGroups()[1]->valueForKey("no-such-attribute").isAbsent());
  EXPECT_TRUE(response->ippGroups()[1]->valueForUndefinedKey("no-such-attribute").isAbsent());
}

TEST(KeyValueAccess, NamesTheClassThatWasAsked) {
  const auto classOf = [](const KeyValueAccess& object) {
    try {
      static_cast<void>(object.valueForKey("no-such-key"));
    } catch (const UndefinedKeyException& failure) {
      return std::string(failure.className());
    }
    return std::string("nobody");
  };
  EXPECT_EQ(classOf(*IPPRequest::requestWithId(2)), "IPPRequest");
  EXPECT_EQ(classOf(IPPMessage(1, 1)), "IPPMessage");
  EXPECT_EQ(classOf(*attribute("copies", kValue)), "IPPAttribute");
  EXPECT_EQ(classOf(*IPPValue::keyword("none")), "IPPKeyword");
  EXPECT_EQ(classOf(*IPPValue::dictionaryWithDictionary({{"no", kValue}})), "IPPMap");
}

TEST(KeyValueAccess, PutsAnOwnPropertyBeforeAnAttributeOfItsName) {
  const auto response = responseWith({attribute("requestId", IPPValue::integerWithInt(99)),
                                      attribute("name", IPPValue::keyword("hidden"))});
  EXPECT_EQ(response->valueForKey("requestId"), KeyValue(1));
  EXPECT_EQ(response->ippGroups()[0]->valueForKey("name"), KeyValue("printer-attributes-tag"));
  // Properties are compared letter for letter, attributes are not.
  EXPECT_EQ(response->valueForKeyPath("requestID.ippValue.value"), KeyValue(99));
  EXPECT_EQ(response->ippGroups()[0]->valueForKeyPath("NAME.ippValue.value"), KeyValue("hidden"));
  // What a message does not call its own is looked for among its attributes.
  EXPECT_EQ(response->valueForKeyPath("name.ippValue.value"), KeyValue("hidden"));
}

TEST(KeyValueAccess, DoesNotTakeInternalNamesForProperties) {
  const auto response = printersAnswer();
  EXPECT_THROW(response->valueForKey("_allUnknownAttributeNames"), UndefinedKeyException);
  EXPECT_TRUE(response->ippGroups()[0]->valueForKey("_sortedForRequestAttributes").isAbsent());
  EXPECT_THROW(attribute("copies", kValue)->valueForKey("_attributeOrder"), UndefinedKeyException);
}

TEST(KeyValueAccess, GivesWhatTheGetterGives) {
  const auto response = printersAnswer();
  EXPECT_EQ(response->valueForKey("statusCode"), KeyValue(0));
  EXPECT_EQ(response->valueForKey("statusDescription"), KeyValue("successful-ok"));
  EXPECT_EQ(response->valueForKey("successfulOk"), KeyValue(true));
  EXPECT_EQ(response->valueForKey("status").asError()->code(), 0);
  EXPECT_TRUE(response->valueForKey("jobId").isAbsent());
  EXPECT_EQ(response->valueForKey("printerState"), KeyValue(3));
  EXPECT_EQ(response->valueForKey("availablePrintQueues"),
            KeyValue(KeyValue::Array{"lobby", "attic"}));
  EXPECT_EQ(response->valueForKey("jobTimeCreation"), KeyValue(Date()));
  EXPECT_EQ(response->valueForKey("notifyTimeInterval"), KeyValue(0.0));
  EXPECT_EQ(response->valueForKey("className"), KeyValue("IPPResponse"));
  EXPECT_EQ(response->valueForKey("description"), KeyValue(response->description()));
  EXPECT_EQ(response->valueForKey("dataRepresentation"), KeyValue(response->dataRepresentation()));
  EXPECT_EQ(response->valueForKey("copy"), KeyValue(response));
  EXPECT_EQ(response->valueForKey("operationGroup").asGroup(), response->ippGroups()[0]);
  EXPECT_TRUE(response->valueForKey("subscriptionGroup").isAbsent());
  EXPECT_EQ(response->valueForKey("printerGroups").asArray().size(), 2U);
}

TEST(KeyValueAccess, GivesWhatTheGettersOfAttributesAndValuesGive) {
  const auto copies = attribute("copies", IPPValue::integerWithInt(-2));
  EXPECT_EQ(copies->valueForKey("name"), KeyValue("copies"));
  EXPECT_EQ(copies->valueForKey("ippValue").asValue(), copies->ippValue());
  const IPPValue& value = *copies->ippValue();
  EXPECT_EQ(value.valueForKey("value"), KeyValue(-2));
  EXPECT_EQ(value.valueForKey("intValue"), KeyValue(-2));
  EXPECT_EQ(value.valueForKey("stringValue"), KeyValue("-2"));
  EXPECT_EQ(value.valueForKey("ippTag"), KeyValue(0x21));
  EXPECT_EQ(value.valueForKey("syntaxName"), KeyValue("integer"));
  EXPECT_EQ(value.valueForKey("className"), KeyValue("IPPInteger"));
  EXPECT_EQ(value.valueForKey("rangeValue"), KeyValue(Range{0, 0}));
  EXPECT_TRUE(value.valueForKey("dateTimeValue").isAbsent());
  EXPECT_TRUE(value.valueForKey("arrayValue").isAbsent());
  EXPECT_EQ(IPPValue::text("Raum", "de")->valueForKey("language"), KeyValue("de"));
  EXPECT_EQ(IPPValue::resolution({600, 300}, true)->valueForKey("unitsAreInches"), KeyValue(true));
  EXPECT_TRUE(attribute("none", nullptr)->valueForKey("ippValue").isAbsent());
}

// The key is the getter: plain objects under `value`, values under `arrayValue`.
TEST(KeyValueAccess, GivesASetAsPlainObjectsAndAsValues) {
  const auto set = IPPValue::array({IPPValue::keyword("a"), IPPValue::keyword("b")});
  EXPECT_EQ(set->valueForKey("value"), KeyValue(KeyValue::Array{"a", "b"}));
  EXPECT_EQ(set->valueForKey("arrayValue"),
            KeyValue(KeyValue::Array{IPPValue::keyword("a"), IPPValue::keyword("b")}));
  EXPECT_EQ(set->valueForKey("size"), KeyValue(2));
}

TEST(KeyValueAccess, AnswersForARequestWhicheverSideAsks) {
  const auto request = IPPRequest::requestWithId(0x000B);
  const IPPMessage& message = *request;
  const IPPConnectionDelegate& delegate = *request;
  EXPECT_EQ(delegate.valueForKey("ippOperationCodename"), KeyValue("Get-Printer-Attributes"));
  EXPECT_EQ(message.valueForKey("ippOperationCodename"), KeyValue("Get-Printer-Attributes"));
  EXPECT_EQ(request->valueForKey("timeoutInterval"), KeyValue(60.0));
  EXPECT_EQ(request->valueForKeyPath("attributes-charset.ippValue.value"), KeyValue("utf-8"));
  EXPECT_TRUE(IPPConnectionDelegate().valueForKey("ippOperationCodename").isAbsent());
}

// A class of an application has the properties of its base and may have more to say.
class LabelledMessage : public IPPMessage {
 public:
  LabelledMessage() : IPPMessage(1, 5) {}
  [[nodiscard]] KeyValue valueForUndefinedKey(std::string_view key) const override {
    return key == "label" ? KeyValue("mine") : IPPMessage::valueForUndefinedKey(key);
  }
};

TEST(KeyValueAccess, LetsAClassOfAnApplicationAnswerKeysOfItsOwn) {
  const auto message = std::make_shared<LabelledMessage>();
  EXPECT_EQ(message->valueForKey("label"), KeyValue("mine"));
  EXPECT_EQ(message->valueForKey("requestId"), KeyValue(5));
  EXPECT_EQ(message->valueForKeyPath("@all.object.label"), KeyValue("mine"));
  EXPECT_THROW(message->valueForKey("other"), UndefinedKeyException);
}

TEST(UndefinedKey, ShowsAKeyThatIsFitForATerminal) {
  const UndefinedKeyException hostile("IPPMessage", std::string("a\0\x1b[2J\xff", 7));
  EXPECT_STREQ(hostile.what(), "IPPMessage has nothing under the key \"a??[2J?\"");
  EXPECT_EQ(hostile.key(), std::string("a\0\x1b[2J\xff", 7));
  const UndefinedKeyException wordy("IPPMessage", std::string(1 << 20, 'k'));
  EXPECT_LT(std::string(wordy.what()).size(), 256U);
  EXPECT_EQ(wordy.key().size(), std::size_t{1} << 20U);
}

}  // namespace
}  // namespace platen
