// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "platen/Exception.h"
#include "platen/RawValue.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

// --- Numbers -------------------------------------------------------------------------------------

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(Number, KnowsItsKind) {
  EXPECT_TRUE(Number(true).isBoolean());
  EXPECT_FALSE(Number(1).isBoolean());
  EXPECT_TRUE(Number(1.0).isReal());
  EXPECT_TRUE(Number(1.0F).isReal());
  EXPECT_FALSE(Number(1).isReal());
  EXPECT_FALSE(Number().isBoolean());
}

TEST(Number, ConvertsToEveryKind) {
  EXPECT_EQ(Number().int64Value(), 0);
  EXPECT_EQ(Number(true).intValue(), 1);
  EXPECT_EQ(Number(-1).unsignedIntValue(), 0xffffffffU);
  EXPECT_EQ(Number(0x1'0000'0005).intValue(), 5);
  EXPECT_EQ(Number(2.9).intValue(), 2);
  EXPECT_EQ(Number(-2.9).int64Value(), -2);
  EXPECT_EQ(Number(7).doubleValue(), 7.0);
  EXPECT_EQ(Number(true).doubleValue(), 1.0);
}

TEST(Number, HoldsDoublesAtTheLimitsOf64Bits) {
  EXPECT_EQ(Number(1e30).int64Value(), kMost);
  EXPECT_EQ(Number(-1e30).int64Value(), kLeast);
  EXPECT_EQ(Number(std::numeric_limits<double>::infinity()).int64Value(), kMost);
  EXPECT_EQ(Number(std::nan("")).int64Value(), 0);
  EXPECT_EQ(Number(9223372036854775808.0).int64Value(), kMost);
  EXPECT_EQ(Number(-9223372036854775808.0).int64Value(), kLeast);
}

TEST(Number, IsTrueWhenItIsNotZero) {
  EXPECT_TRUE(Number(0.5).boolValue());
  EXPECT_TRUE(Number(-1).boolValue());
  EXPECT_TRUE(Number(std::int64_t{1} << 32).boolValue());
  EXPECT_FALSE(Number(0.0).boolValue());
  EXPECT_FALSE(Number(false).boolValue());
}

TEST(Number, IsWrittenInDecimals) {
  EXPECT_EQ(Number(true).stringValue(), "1");
  EXPECT_EQ(Number(false).stringValue(), "0");
  EXPECT_EQ(Number(kLeast).stringValue(), "-9223372036854775808");
  EXPECT_EQ(Number(1.5).stringValue(), "1.5");
  EXPECT_EQ(Number(0.1).stringValue(), "0.1");
}

TEST(Number, ComparesByNumericValueWhateverTheKind) {
  EXPECT_EQ(Number(1), Number(true));
  EXPECT_EQ(Number(1), Number(1.0));
  EXPECT_EQ(Number(1).hash(), Number(true).hash());
  EXPECT_EQ(Number(1).hash(), Number(1.0).hash());
  EXPECT_EQ(Number(0.0).hash(), Number(-0.0).hash());
  EXPECT_NE(Number(1), Number(1.5));
  EXPECT_NE(Number(kMost), Number(kMost - 1));
}

// --- Dictionaries --------------------------------------------------------------------------------

TEST(Dictionary, KeepsItsEntriesInTheOrderOfArrival) {
  Dictionary<int> dictionary{{"z", 1}, {"a", 2}};
  dictionary.set("m", 3);
  dictionary.set("z", 4);
  std::string order;
  for (const auto& [name, value] : dictionary) {
    order += name + std::to_string(value);
  }
  EXPECT_EQ(order, "z4a2m3");
  EXPECT_EQ(dictionary.size(), 3U);
}

TEST(Dictionary, FindsWhatWasSet) {
  Dictionary<int> dictionary;
  EXPECT_TRUE(dictionary.empty());
  EXPECT_EQ(dictionary.find("a"), nullptr);
  dictionary.set("a", 1);
  ASSERT_NE(dictionary.find("a"), nullptr);
  EXPECT_EQ(*dictionary.find("a"), 1);
  EXPECT_EQ(dictionary.find("A"), nullptr);
  dictionary.set("", 2);
  EXPECT_EQ(*dictionary.find(""), 2);
}

// Around the number of entries from which on a hash table is used.
TEST(Dictionary, FindsEveryEntryAtEverySize) {
  Dictionary<int> dictionary;
  for (int size = 1; size <= 200; ++size) {
    dictionary.set(std::to_string(size), size);
    dictionary.set(std::to_string(size / 2 + 1), -size);
    EXPECT_EQ(dictionary.size(), static_cast<std::size_t>(size));
    EXPECT_EQ(*dictionary.find(std::to_string(size / 2 + 1)), -size);
    EXPECT_NE(dictionary.find("1"), nullptr);
    EXPECT_EQ(dictionary.find(std::to_string(size + 1)), nullptr);
  }
}

TEST(Dictionary, EqualsOneWithTheSameEntriesInAnyOrder) {
  Dictionary<int> up;
  Dictionary<int> down;
  for (int i = 0; i < 40; ++i) {
    up.set(std::to_string(i), i);
    down.set(std::to_string(39 - i), 39 - i);
  }
  EXPECT_EQ(up, down);
  down.set("5", 6);
  EXPECT_FALSE(up == down);
  EXPECT_FALSE((Dictionary<int>{{"a", 1}}) == (Dictionary<int>{{"b", 1}}));
  EXPECT_FALSE((Dictionary<int>{{"a", 1}}) == (Dictionary<int>{{"a", 1}, {"b", 1}}));
}

TEST(Dictionary, CopiesAndMoves) {
  Dictionary<int> dictionary;
  for (int i = 0; i < 30; ++i) {
    dictionary.set(std::to_string(i), i);
  }
  Dictionary<int> copy = dictionary;
  copy.set("29", 0);
  EXPECT_EQ(*dictionary.find("29"), 29);
  const Dictionary<int> moved = std::move(copy);
  EXPECT_EQ(*moved.find("29"), 0);
  EXPECT_EQ(*moved.find("17"), 17);
}

// --- Raw objects ---------------------------------------------------------------------------------

/// One object of each kind beside its text form.
const std::vector<std::pair<RawValue, std::string>>& kinds() {
  static const std::vector<std::pair<RawValue, std::string>> table = {
      {RawValue(), "(null)"},
      {RawValue(Null()), "<null>"},
      {RawValue("text"), "text"},
      {RawValue(URL::parse("ipp://a/b")), "ipp://a/b"},
      {RawValue(7), "7"},
      {RawValue(Range{1, 10}), "{1, 10}"},
      {RawValue(Size{600, 300.5}), "{600, 300.5}"},
      {RawValue(Date(std::chrono::milliseconds(981173106789))), "2001-02-03 04:05:06 +0000"},
      {RawValue(RawValue::Array{"a", 1, RawValue::Array{}}), "(a, 1, ())"},
      {RawValue(RawValue::Dictionary{{"b", 1}, {"a", "x"}}), "{b = 1; a = x; }"}};
  return table;
}

TEST(RawValue, IsOfOneKindOnly) {
  for (std::size_t i = 0; i < kinds().size(); ++i) {
    const RawValue& object = kinds()[i].first;
    const std::vector<bool> is = {object.isAbsent(),    object.isNull(),   object.isString(),
                                  object.isURL(),       object.isNumber(), object.isRange(),
                                  object.isSize(),      object.isDate(),   object.isArray(),
                                  object.isDictionary()};
    for (std::size_t kind = 0; kind < is.size(); ++kind) {
      EXPECT_EQ(is[kind], kind == i) << object.description();
    }
  }
}

TEST(RawValue, EqualsItselfAndNoOtherKind) {
  for (const auto& [left, leftText] : kinds()) {
    for (const auto& [right, rightText] : kinds()) {
      EXPECT_EQ(left == right, leftText == rightText) << leftText << " and " << rightText;
    }
    const RawValue copy = left;
    EXPECT_EQ(copy, left);
    EXPECT_EQ(copy.hash(), left.hash());
  }
}

TEST(RawValue, HasATextForm) {
  for (const auto& [object, text] : kinds()) {
    EXPECT_EQ(object.description(), text);
  }
  EXPECT_EQ(RawValue(RawValue::Array{"", "b"}).description(), "(, b)");
}

TEST(RawValue, RaisesWhenItIsAskedForAnotherKind) {
  const auto isNot = [](const char* kind) {
    return ThrowsMessage<InvalidArgumentException>(std::string("The raw object is not ") + kind);
  };
  const RawValue absent;
  EXPECT_THAT([&] { static_cast<void>(absent.asString()); }, isNot("a string"));
  EXPECT_THAT([&] { static_cast<void>(absent.asURL()); }, isNot("a URL"));
  EXPECT_THAT([&] { static_cast<void>(absent.asNumber()); }, isNot("a number"));
  EXPECT_THAT([&] { static_cast<void>(absent.asRange()); }, isNot("a range"));
  EXPECT_THAT([&] { static_cast<void>(absent.asSize()); }, isNot("a size"));
  EXPECT_THAT([&] { static_cast<void>(absent.asDate()); }, isNot("a date"));
  EXPECT_THAT([&] { static_cast<void>(absent.asArray()); }, isNot("an array"));
  EXPECT_THAT([&] { static_cast<void>(absent.asDictionary()); }, isNot("a dictionary"));
}

TEST(RawValue, GivesTheObjectOfItsKind) {
  EXPECT_EQ(RawValue("text").asString(), "text");
  EXPECT_EQ(RawValue(std::string_view("text")).asString(), "text");
  EXPECT_EQ(RawValue(std::string("text")).asString(), "text");
  EXPECT_EQ(RawValue(7).asNumber(), Number(7));
  EXPECT_EQ(RawValue(true).asNumber().isBoolean(), true);
  EXPECT_EQ(RawValue(Range{1, 2}).asRange(), (Range{1, 2}));
  EXPECT_EQ(RawValue(Size{1, 2}).asSize(), (Size{1, 2}));
  EXPECT_EQ(RawValue(Date()).asDate(), Date());
  EXPECT_EQ(RawValue(URL::parse("a")).asURL().absoluteString(), "a");
  EXPECT_EQ(RawValue("text").ifNumber(), nullptr);
}

TEST(RawValue, TellsAbsenceFromTheNullObject) {
  EXPECT_TRUE(RawValue(std::optional<std::string>()).isAbsent());
  EXPECT_EQ(RawValue(std::optional<std::string>("a")), RawValue("a"));
  EXPECT_FALSE(RawValue() == RawValue(Null()));
}

TEST(RawValue, ComparesNumbersAndDictionariesByTheirMeaning) {
  EXPECT_EQ(RawValue(true), RawValue(1.0));
  EXPECT_EQ(RawValue(true).hash(), RawValue(1).hash());
  const RawValue left = RawValue::Dictionary{{"a", 1}, {"b", 2}};
  const RawValue right = RawValue::Dictionary{{"b", 2}, {"a", 1}};
  EXPECT_EQ(left, right);
  EXPECT_EQ(left.hash(), right.hash());
  EXPECT_FALSE(RawValue("1") == RawValue(1));
  EXPECT_FALSE(RawValue(URL::parse("a")) == RawValue("a"));
}

TEST(RawValue, IsVisitedAsItsOwnKind) {
  const auto isString = [](const auto& object) {
    return std::is_same_v<std::decay_t<decltype(object)>, std::string>;
  };
  EXPECT_TRUE(RawValue("a").visit(isString));
  EXPECT_FALSE(RawValue(1).visit(isString));
}

TEST(RawValue, WritesDatesOfEveryYear) {
  const auto text = [](std::int64_t seconds) {
    return textOf(Date(std::chrono::seconds(seconds)));
  };
  EXPECT_EQ(text(0), "1970-01-01 00:00:00 +0000");
  EXPECT_EQ(text(-1), "1969-12-31 23:59:59 +0000");
  EXPECT_EQ(text(2005949145599), "65535-12-31 23:59:59 +0000");
  EXPECT_EQ(text(-62167219200), "0000-01-01 00:00:00 +0000");
  EXPECT_EQ(textOf(Date(std::chrono::milliseconds(-1))), "1969-12-31 23:59:59 +0000");
  EXPECT_FALSE(textOf(Date::max()).empty());
  EXPECT_FALSE(textOf(Date::min()).empty());
}

}  // namespace
}  // namespace platen::test
