// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "platen/Exception.h"
#include "platen/IPPMessageKVCForwarder.h"
#include "tests/support/KeyValuePrinting.h"
#include "tests/support/PrintersAnswer.h"

namespace platen {
namespace {

using test::attribute;
using test::printersAnswer;

using All = IPPMessageKVCOperatorAllForwarder;
using Default = IPPMessageKVCOperatorDefaultForwarder;
using Supported = IPPMessageKVCOperatorSupportedForwarder;

TEST(KVCForwarder, ComesFromTheThreeOperatorKeys) {
  const auto message = printersAnswer();
  EXPECT_EQ(message->valueForKey("@all"), KeyValue(All::forwarderWithObject(message)));
  EXPECT_EQ(message->valueForKey("@default"), KeyValue(Default::forwarderWithObject(message)));
  EXPECT_EQ(message->valueForKey("@supported"), KeyValue(Supported::forwarderWithObject(message)));
  EXPECT_EQ(message->valueForKey("@all").asForwarder()->object(), message);
}

TEST(KVCForwarder, ComesFromTheseKeysLetterForLetter) {
  const auto message = printersAnswer();
  for (const char* key : {"@ALL", "@All", "@Default", "@SUPPORTED", "@all ", "@"}) {
    EXPECT_THROW(message->valueForKey(key), UndefinedKeyException) << key;
  }
  const auto odd = attribute("@ALL", IPPValue::keyword("odd"));
  message->ippGroups()[2]->addAttribute(odd);
  EXPECT_EQ(message->valueForKey("@ALL").asAttribute(), odd) << "the name of an attribute";
  EXPECT_TRUE(message->valueForKey("@all").isForwarder()) << "which it does not hide";
  EXPECT_EQ(message->ippGroups()[2]->valueForKey("@all").asAttribute(), odd)
      << "a group knows no operators";
}

TEST(KVCForwarder, GivesEveryAttributeOfAName) {
  const auto message = printersAnswer();
  const KeyValue::Array names{message->ippGroups()[1]->attributes()[0],
                              message->ippGroups()[2]->attributes()[0]};
  EXPECT_EQ(All(message).valueForKey("printer-name"), KeyValue(names));
  EXPECT_EQ(All(message).valueForKey("PRINTER-N?ME"), KeyValue(names));
  EXPECT_EQ(All(message).valueForKey("*").asArray().size(), 12U);
  EXPECT_EQ(Default(message).valueForKey("media"),
            KeyValue(message->attributesForKey("media-default")));
  EXPECT_EQ(Default(message).valueForKey("media*").asArray().size(), 3U);
  EXPECT_EQ(Supported(message).valueForKey("media"),
            KeyValue(message->attributesForKey("media-supported")));
}

TEST(KVCForwarder, GivesAnEmptyListForAnUnknownName) {
  const auto message = printersAnswer();
  const KeyValue nothing(KeyValue::Array{});
  EXPECT_EQ(message->valueForKeyPath("@default.nothing-here"), nothing);
  EXPECT_EQ(message->valueForKeyPath("@supported.nothing-here"), nothing);
  EXPECT_EQ(message->valueForKeyPath("@all.nothing-here"), nothing);
  EXPECT_EQ(message->valueForKeyPath("@all.nothing-here.ippValue.value"), nothing);
}

// Everything but "object" and "description" is left to attributes.
TEST(KVCForwarder, HasTwoKeysOfItsOwn) {
  const auto message = printersAnswer();
  for (const char* taken : {"object", "description", "className", "hash"}) {
    message->ippGroups()[1]->addAttribute(attribute(taken, IPPValue::keyword("x")));
  }
  const auto all = All::forwarderWithObject(message);
  EXPECT_EQ(all->valueForKey("object").asMessage(), message);
  EXPECT_EQ(all->valueForKey("description"), KeyValue(message->description()));
  EXPECT_EQ(all->valueForKey("className").asArray().size(), 1U);
  EXPECT_EQ(all->valueForKey("hash").asArray().size(), 1U);
  EXPECT_EQ(all->valueForKey("Object").asArray().size(), 1U);
  EXPECT_EQ(all->valueForUndefinedKey("object").asArray().size(), 1U);
  EXPECT_EQ(all->propertyNames(), (std::vector<std::string_view>{"object", "description"}));
  EXPECT_EQ(message->valueForKeyPath("@default.object.requestId"), KeyValue(7));
}

TEST(KVCForwarder, DescribesTheMessageOrTheAttributesThatItsKeysLeadTo) {
  const auto message = printersAnswer();
  message->ippGroups()[2]->addAttribute(attribute("Sides-DÉFAULT-x", IPPValue::keyword("one")));
  message->ippGroups()[2]->addAttribute(attribute("x-SUPPORTED-y", IPPValue::keyword("two")));
  EXPECT_EQ(All(message).description(), message->description());
  EXPECT_EQ(Default(message).description(),
            "(media-default = 'iso_a4_210x297mm' of keyword, media-col-default = " +
                message->attributeForKey("media-col-default")->ippValue()->description() +
                ", media-default = 'na_letter_8.5x11in' of keyword, "
                "Sides-DÉFAULT-x = 'one' of keyword)");
  EXPECT_EQ(Supported(message).description(),
            "(media-supported = (iso_a4_210x297mm, na_letter_8.5x11in) of keyword, "
            "x-SUPPORTED-y = 'two' of keyword)");
  EXPECT_EQ(message->valueForKeyPath("@default.description"),
            KeyValue(Default(message).description()));
  EXPECT_EQ(Default(std::make_shared<IPPMessage>(1, 1)).description(), "()");
}

TEST(KVCForwarder, LeavesEveryKeyUndefinedInTheBaseAndWithoutAMessage) {
  const auto base = IPPMessageKVCForwarder::forwarderWithObject(printersAnswer());
  EXPECT_THROW(base->valueForKey("printer-name"), UndefinedKeyException);
  EXPECT_EQ(base->valueForKey("description"), KeyValue(base->object()->description()));
  for (const std::shared_ptr<IPPMessageKVCForwarder>& forwarder :
       {IPPMessageKVCForwarder::forwarderWithObject(nullptr),
        std::shared_ptr<IPPMessageKVCForwarder>(All::forwarderWithObject(nullptr)),
        std::shared_ptr<IPPMessageKVCForwarder>(Default::forwarderWithObject(nullptr)),
        std::shared_ptr<IPPMessageKVCForwarder>(Supported::forwarderWithObject(nullptr))}) {
    try {
      static_cast<void>(forwarder->valueForKey("printer-name"));
      ADD_FAILURE() << forwarder->className();
    } catch (const UndefinedKeyException& failure) {
      EXPECT_EQ(failure.className(), forwarder->className());
      EXPECT_EQ(failure.key(), "printer-name");
    }
    EXPECT_TRUE(forwarder->valueForKey("object").isAbsent());
    EXPECT_EQ(forwarder->description(), "(null)");
  }
}

TEST(KVCForwarder, HoldsItsMessage) {
  auto message = printersAnswer();
  const std::weak_ptr<IPPMessage> watched = message;
  auto forwarder = message->valueForKey("@all").asForwarder();
  message.reset();
  ASSERT_FALSE(watched.expired());
  EXPECT_EQ(forwarder->valueForKey("printer-name").asArray().size(), 2U);
  forwarder.reset();
  EXPECT_TRUE(watched.expired());
}

TEST(KVCForwarder, BorrowsAMessageThatNobodyHolds) {
  IPPMessage message(1, 42);
  message.addGroup(printersAnswer()->ippGroups()[1]);
  EXPECT_EQ(message.valueForKeyPath("@all.printer-name.ippValue.value"),
            KeyValue(KeyValue::Array{"lobby"}));
  EXPECT_EQ(message.valueForKeyPath("@all.object").asMessage().get(), &message);
}

}  // namespace
}  // namespace platen
