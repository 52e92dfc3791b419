// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "platen/Error.h"
#include "platen/Exception.h"
#include "platen/IPPMessageKVCForwarder.h"
#include "tests/support/KeyValuePrinting.h"
#include "tests/support/PrintersAnswer.h"

namespace platen {
namespace {

const auto kGroup = IPPAttributeGroup::printerGroup();
const auto kMessage = std::make_shared<IPPMessage>(2, 3);
const auto kForwarder = IPPMessageKVCOperatorAllForwarder::forwarderWithObject(kMessage);
const auto kError = std::make_shared<const Error>("Domain", 9);

// One result of each kind, how the others are told from it, and its text.
struct Row {
  KeyValue value;
  bool (KeyValue::*is)() const noexcept;
  void (*as)(const KeyValue&);
  std::string text;
};

std::vector<Row> rows() {
  return {
      {Null(), &KeyValue::isNull, [](const KeyValue& value) { static_cast<void>(value.asRaw()); },
       "<null>"},
      {"text", &KeyValue::isString,
       [](const KeyValue& value) { static_cast<void>(value.asString()); }, "text"},
      {7, &KeyValue::isNumber, [](const KeyValue& value) { static_cast<void>(value.asNumber()); },
       "7"},
      {Data{0x0A, 0xFF}, &KeyValue::isData,
       [](const KeyValue& value) { static_cast<void>(value.asData()); }, "<0aff>"},
      {IPPValue::keyword("none"), &KeyValue::isValue,
       [](const KeyValue& value) { static_cast<void>(value.asValue()); }, "'none' of keyword"},
      {test::attribute("copies", IPPValue::integerWithInt(2)), &KeyValue::isAttribute,
       [](const KeyValue& value) { static_cast<void>(value.asAttribute()); },
       "copies = '2' of integer"},
      {kGroup, &KeyValue::isGroup,
       [](const KeyValue& value) { static_cast<void>(value.asGroup()); },
       "printer-attributes-tag = ()"},
      {KeyValue(kMessage), &KeyValue::isMessage,
       [](const KeyValue& value) { static_cast<void>(value.asMessage()); }, "()"},
      {KeyValue(kForwarder), &KeyValue::isForwarder,
       [](const KeyValue& value) { static_cast<void>(value.asForwarder()); }, "()"},
      {kError, &KeyValue::isError,
       [](const KeyValue& value) { static_cast<void>(value.asError()); }, "Domain 9"},
      {KeyValue::Array{"a", KeyValue(), 1}, &KeyValue::isArray,
       [](const KeyValue& value) { static_cast<void>(value.asArray()); }, "(a, (null), 1)"},
      {KeyValue::Dictionary{{"a", 1}, {"b", "c"}}, &KeyValue::isDictionary,
       [](const KeyValue& value) { static_cast<void>(value.asDictionary()); }, "{a = 1; b = c; }"},
  };
}

TEST(KeyValue, IsOfOneKindAndRaisesForTheOthers) {
  const auto all = rows();
  for (const Row& row : all) {
    for (const Row& other : all) {
      const bool isSame = &row == &other;
      EXPECT_EQ((row.value.*other.is)(), isSame) << row.text << " as " << other.text;
      EXPECT_EQ(row.value == other.value, isSame) << row.text << " and " << other.text;
      if (isSame) {
        EXPECT_NO_THROW(other.as(row.value)) << row.text;
      } else if (!(row.value.isRaw() && other.value.isNull())) {
        EXPECT_THROW(other.as(row.value), InvalidArgumentException)
            << row.text << " as " << other.text;
      }
      EXPECT_THROW(other.as(KeyValue()), InvalidArgumentException);
    }
  }
}

TEST(KeyValue, LeavesWhatIsTakenOutOfOneThatGoesAway) {
  std::string names;
  for (const KeyValue& name : KeyValue(KeyValue::Array{"a name that is", "a list of"}).asArray()) {
    names += name.asString() + " ";
  }
  EXPECT_EQ(names, "a name that is a list of ");
  const std::string& text = KeyValue("a text that is not short").asString();
  EXPECT_EQ(text, "a text that is not short");
  const Data& octets = KeyValue(Data(100, 7)).asData();
  EXPECT_EQ(octets, Data(100, 7));
  const RawValue& raw = KeyValue("another text, not short").asRaw();
  EXPECT_EQ(raw, RawValue("another text, not short"));
  const KeyValue::Dictionary& entries = KeyValue(KeyValue::Dictionary{{"a", "b"}}).asDictionary();
  EXPECT_EQ(*entries.find("a"), KeyValue("b"));
  EXPECT_THROW(KeyValue("text").asArray(), InvalidArgumentException);
  EXPECT_THROW(KeyValue().asDictionary(), InvalidArgumentException);
}

TEST(KeyValue, HasATextFormForEachKind) {
  for (const Row& row : rows()) {
    EXPECT_EQ(row.value.description(), row.text);
  }
  EXPECT_EQ(KeyValue().description(), "(null)");
}

TEST(KeyValue, IsAbsentWithoutAnObject) {
  EXPECT_TRUE(KeyValue().isAbsent());
  EXPECT_TRUE(KeyValue(RawValue()).isAbsent());
  EXPECT_TRUE(KeyValue(std::optional<std::string>()).isAbsent());
  EXPECT_TRUE(KeyValue(std::shared_ptr<const IPPValue>()).isAbsent());
  EXPECT_TRUE(KeyValue(std::shared_ptr<IPPAttribute>()).isAbsent());
  EXPECT_TRUE(KeyValue(std::shared_ptr<IPPAttributeGroup>()).isAbsent());
  EXPECT_TRUE(KeyValue(std::shared_ptr<const IPPMessage>()).isAbsent());
  EXPECT_TRUE(KeyValue(std::shared_ptr<const IPPMessageKVCForwarder>()).isAbsent());
  EXPECT_TRUE(KeyValue(std::shared_ptr<const Error>()).isAbsent());
  EXPECT_EQ(KeyValue(), KeyValue());
  EXPECT_FALSE(KeyValue() == KeyValue(Null())) << "null is something";
}

TEST(KeyValue, TakesListsAndDictionariesOfRawObjectsForItsOwn) {
  const KeyValue list(RawValue(RawValue::Array{"a", RawValue::Array{1}, Null()}));
  ASSERT_TRUE(list.isArray());
  EXPECT_FALSE(list.isRaw());
  EXPECT_EQ(list, KeyValue(KeyValue::Array{"a", KeyValue::Array{1}, Null()}));
  const KeyValue dictionary(RawValue(RawValue::Dictionary{{"a", RawValue::Dictionary{{"b", 2}}}}));
  EXPECT_EQ(dictionary.asDictionary().find("a")->asDictionary().find("b")->asNumber(), Number(2));
  EXPECT_EQ(KeyValue(std::vector<std::string>{"a", "b"}), KeyValue(KeyValue::Array{"a", "b"}));
  EXPECT_EQ(KeyValue(IPPValueList{IPPValue::keyword("a")}),
            KeyValue(KeyValue::Array{IPPValue::keyword("a")}));
}

TEST(KeyValue, IsEqualAsItsObjectsAre) {
  EXPECT_EQ(KeyValue(true), KeyValue(1));
  EXPECT_EQ(KeyValue(IPPValue::keyword("a")), KeyValue(IPPValue::keyword("a")));
  EXPECT_FALSE(KeyValue(IPPValue::keyword("a")) == KeyValue(IPPValue::charset("a")));
  EXPECT_EQ(KeyValue(std::make_shared<IPPMessage>(2, 3)), KeyValue(kMessage));
  EXPECT_FALSE(KeyValue(std::make_shared<IPPMessage>(2, 4)) == KeyValue(kMessage));
  EXPECT_EQ(KeyValue(std::make_shared<const Error>("Domain", 9)), KeyValue(kError));
  const auto order = KeyValue::Dictionary{{"b", "c"}, {"a", 1}};
  EXPECT_EQ(KeyValue(order), rows().back().value);
}

// The equality of groups is one-sided; that of results is not.
TEST(KeyValue, TellsGroupsOfDifferentKindsApartFromBothSides) {
  const KeyValue unsupported(std::make_shared<IPPAttributeGroup>());
  const KeyValue printer(IPPAttributeGroup::printerGroup());
  ASSERT_TRUE(unsupported.asGroup()->isEqual(*printer.asGroup()));
  EXPECT_FALSE(unsupported == printer);
  EXPECT_FALSE(printer == unsupported);
  EXPECT_EQ(printer, KeyValue(kGroup));
}

TEST(KeyValue, ComparesForwardersByClassAndMessage) {
  const auto same = std::make_shared<IPPMessage>(2, 3);
  EXPECT_EQ(KeyValue(IPPMessageKVCOperatorAllForwarder::forwarderWithObject(same)),
            KeyValue(kForwarder));
  EXPECT_FALSE(KeyValue(IPPMessageKVCOperatorDefaultForwarder::forwarderWithObject(same)) ==
               KeyValue(kForwarder));
  EXPECT_FALSE(KeyValue(IPPMessageKVCOperatorAllForwarder::forwarderWithObject(nullptr)) ==
               KeyValue(kForwarder));
}

std::string classRefusing(const KeyValue& value) {
  try {
    static_cast<void>(value.valueForKey("length"));
  } catch (const UndefinedKeyException& failure) {
    EXPECT_EQ(failure.key(), "length");
    return std::string(failure.className());
  }
  return "nobody";
}

TEST(KeyValue, RefusesEveryKeyOfAPlainObjectByTheNameOfItsKind) {
  EXPECT_EQ(classRefusing("text"), "string");
  EXPECT_EQ(classRefusing(7), "number");
  EXPECT_EQ(classRefusing(true), "number");
  EXPECT_EQ(classRefusing(URL::parse("ipp://host/").value()), "URL");
  EXPECT_EQ(classRefusing(Range{1, 2}), "range");
  EXPECT_EQ(classRefusing(Size{1, 2}), "size");
  EXPECT_EQ(classRefusing(Date(std::chrono::milliseconds(1))), "date");
  EXPECT_EQ(classRefusing(Data{1}), "data");
  EXPECT_EQ(classRefusing(kError), "Error");
  EXPECT_EQ(classRefusing(KeyValue::Array{Null(), "text"}), "string");
  EXPECT_EQ(classRefusing(IPPValue::keyword("none")), "IPPKeyword");
}

TEST(KeyValue, LeadsNowhereFromNothing) {
  EXPECT_TRUE(KeyValue().valueForKeyPath("any.key").isAbsent());
  EXPECT_TRUE(KeyValue(Null()).valueForKeyPath("any.key").isNull());
  EXPECT_TRUE(KeyValue(KeyValue::Dictionary()).valueForKeyPath("any.key").isAbsent());
  EXPECT_EQ(KeyValue(KeyValue::Array()).valueForKeyPath("any.key"), KeyValue(KeyValue::Array()));
}

TEST(KeyValue, TellsOfAnErrorRecord) {
  Error::UserInfo info;
  info.emplace(kLocalizedDescriptionKey, "gone");
  info.emplace(kUnderlyingErrorKey, kError);
  info.emplace("names", std::vector<std::string>{"a", "b"});
  const KeyValue error(std::make_shared<const Error>("Outer", 4, std::move(info)));
  EXPECT_EQ(error.valueForKey("domain"), KeyValue("Outer"));
  EXPECT_EQ(error.valueForKey("code"), KeyValue(4));
  EXPECT_EQ(error.valueForKey("localizedDescription"), KeyValue("gone"));
  EXPECT_EQ(error.valueForKeyPath("underlyingError.code"), KeyValue(9));
  EXPECT_EQ(error.valueForKeyPath("userInfo.names"), KeyValue(KeyValue::Array{"a", "b"}));
  EXPECT_EQ(error.valueForKey("description"), KeyValue("Outer 4: gone; caused by Domain 9"));
}

}  // namespace
}  // namespace platen
