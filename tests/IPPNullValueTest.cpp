// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPAttribute.h"
#include "platen/IPPNullValue.h"
#include "tests/support/Coding.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

/// A class beside its tag and its syntax name.
struct Kind {
  IPPValue::Pointer value;
  std::uint8_t tag;
  std::string syntaxName;
};

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> table = {
      {std::make_shared<const IPPUnsupported>(), 0x10, "unsupported"},
      {std::make_shared<const IPPNoValue>(), 0x13, "noValue"},
      {std::make_shared<const IPPNotSettable>(), 0x15, "notSettable"},
      {std::make_shared<const IPPAdminDefine>(), 0x17, "adminDefine"}};
  return table;
}

TEST(IPPNullValue, HasTheNullObjectForItsValue) {
  for (const auto& [value, tag, syntaxName] : kinds()) {
    EXPECT_EQ(value->ippTag(), tag);
    EXPECT_EQ(value->syntaxName(), syntaxName);
    EXPECT_TRUE(value->rawValue().isNull());
    EXPECT_TRUE(value->value().isNull());
    EXPECT_EQ(value->description(), "'<null>' of " + syntaxName);
  }
}

TEST(IPPNullValue, GivesNeutralAnswersToEverythingElse) {
  for (const Kind& kind : kinds()) {
    EXPECT_FALSE(kind.value->stringValue());
    EXPECT_EQ(kind.value->intValue(), -1);
    EXPECT_FALSE(kind.value->boolValue());
    EXPECT_EQ(kind.value->rangeValue(), Range());
    EXPECT_FALSE(kind.value->arrayValue());
  }
}

TEST(IPPNullValue, EqualsOthersOfItsClassOnly) {
  for (const Kind& left : kinds()) {
    for (const Kind& right : kinds()) {
      EXPECT_EQ(left.value->isEqual(*right.value), left.tag == right.tag);
    }
    EXPECT_TRUE(left.value->isEqual(*left.value->copy()));
    EXPECT_FALSE(left.value->isEqual(IPPValue()));
  }
  EXPECT_TRUE(IPPNoValue().isEqual(IPPNoValue()));
}

// Equal ones may hash differently: the hash is the object's identity.
TEST(IPPNullValue, HashesByIdentity) {
  const IPPNoValue first;
  const IPPNoValue second;
  EXPECT_TRUE(first.isEqual(second));
  EXPECT_NE(first.hash(), second.hash());
  EXPECT_EQ(first.hash(), first.hash());
}

TEST(IPPNullValue, IsWrittenAsALengthOfZero) {
  for (const Kind& kind : kinds()) {
    EXPECT_EQ(encodedHex(*kind.value), "00 00");
  }
  const auto attribute =
      IPPAttribute::attributeWithValue(std::make_shared<const IPPNotSettable>(), "copies");
  EXPECT_EQ(encodedHex(*attribute), hexOf("15 <'copies'> 0000"));
}

TEST(IPPNullValue, ReadsNothingSoThatItsLengthIsLeft) {
  for (const Kind& kind : kinds()) {
    const auto coder = unarchiverOf("0000 77");
    coder->setCurrentTag(kind.tag);
    EXPECT_TRUE(coder->decodeIPPValue()->isEqual(*kind.value));
    EXPECT_EQ(coder->decodeInt16(), 0);
  }
}

TEST(IPPNullValue, CannotBeMadeOfARawObject) {
  for (const Kind& kind : kinds()) {
    for (const RawValue& object : {RawValue(), RawValue(Null()), RawValue("a")}) {
      EXPECT_THAT([&] { static_cast<void>(kind.value->ippClass()._ippValue(object)); },
                  ThrowsMessage<RangeException>("Invalid parameter"));
    }
  }
}

TEST(IPPNullValue, ReadsAndWritesWithinAMessage) {
  const std::string octets =
      "0101 0001 00000001 05 10 <'a'> <> 13 <'b'> <> 15 <'c'> <> 17 <'d'> <> 03";
  EXPECT_EQ(encodedHex(*decodedMessage(octets)), hexOf(octets));
}

}  // namespace
}  // namespace platen::test
